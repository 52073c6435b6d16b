// SPDX-License-Identifier: GPL-3.0-or-later
// Compares both lists with a naive one: after each of many random steps all answers must be equal.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

#include "base/glib-ptr.h"
#include "model/bak-model.h"

using varnholt::take_object;

/** Returns one of eight rows, which differ in one of the words at least. */
static GtkTreeIter row_of(int number) {
  return {1, GINT_TO_POINTER(number & 1), GINT_TO_POINTER(number & 2), GINT_TO_POINTER(number & 4)};
}

static auto words_of(const GtkTreeIter& row) {
  return std::tuple{row.stamp, row.user_data, row.user_data2, row.user_data3};
}

struct Definitions {
  static auto new_list() { return take_object(vh_bak_def_item_list_new()); }
  static auto new_item(int /*seed*/) { return take_object(vh_bak_def_item_new("/a", "/b", 0, 0)); }
  static void insert(VhBakDefItemList* list, VhBakDefItem* item, bool first) {
    if (first) {
      vh_bak_def_item_list_prepend_val(list, item);
    } else {
      vh_bak_def_item_list_append_val(list, item);
    }
  }
  static void change(VhBakDefItem* item, int /*seed*/) {
    vh_bak_def_item_set_is_selected(item, !vh_bak_def_item_get_is_selected(item));
  }
  static void check(VhBakDefItemList* /*list*/, const auto& /*naive*/, int /*seed*/) {}
  static constexpr auto* length = vh_bak_def_item_list_length;
  static constexpr auto* nth = vh_bak_def_item_list_nth_data;
  static constexpr auto* find = vh_bak_def_item_list_find_in_iter;
  static constexpr auto* find_index = vh_bak_def_item_list_find_in_iter_idx;
  static constexpr auto* remove = vh_bak_def_item_list_remove_in_iter;
  static constexpr auto* ticked = vh_bak_def_item_list_total_selected_number;
  static constexpr auto* first_ticked = vh_bak_def_item_list_get_first_selected_item;
};

struct Routes {
  static auto new_list() { return take_object(vh_rut_def_item_list_new()); }
  static auto new_item(int seed) {
    const auto text = [seed](int part) { return std::to_string(seed / part % 3); };
    return take_object(vh_rut_def_item_new(text(1).c_str(), text(3).c_str(), text(9).c_str(),
                                           text(27).c_str(), "", ""));
  }
  static void insert(VhRutDefItemList* list, VhRutDefItem* item, bool first) {
    if (first) {
      list->insert(item, true);
    } else {
      vh_rut_def_item_list_append_val(list, item);
    }
  }
  static void change(VhRutDefItem* item, int seed) {
    vh_rut_def_item_fill_by_other(item, new_item(seed).get());
    vh_rut_def_item_set_is_selected(item, seed % 2 == 0);
  }
  static void check(VhRutDefItemList* list, const auto& naive, int seed) {
    const auto route = new_item(seed);
    const auto* const except = naive.empty() ? nullptr : naive.back().get();
    const auto rival = std::ranges::find_if(naive, [&](const auto& other) {
      const auto contents = [](const auto& each) {
        return std::tie(each->addr, each->mask, each->gw);
      };
      return other.get() != except &&
             (other->name == route->name || contents(other) == contents(route));
    });
    ASSERT_EQ(list->first_rival_of(*route, except), rival == naive.end() ? nullptr : rival->get());
  }
  static constexpr auto* length = vh_rut_def_item_list_length;
  static constexpr auto* nth = vh_rut_def_item_list_nth_data;
  static constexpr auto* find = vh_rut_def_item_list_find_in_iter;
  static constexpr auto* find_index = vh_rut_def_item_list_find_in_iter_idx;
  static constexpr auto* remove = vh_rut_def_item_list_remove_in_iter;
  static constexpr auto* ticked = vh_rut_def_item_list_total_selected_number;
  static constexpr auto* first_ticked = vh_rut_def_item_list_get_first_selected_item;
};

template <typename Kind>
class RowList : public testing::Test {
 protected:
  int roll(std::size_t sides) { return static_cast<int>(dice() % sides); }

  auto place(auto at) {
    return at == naive.end() ? std::pair{decltype(at->get()){}, -1}
                             : std::pair{at->get(), static_cast<int>(at - naive.begin())};
  }

  auto at_row(int number) {
    return std::ranges::find_if(naive, [number](const auto& item) {
      return item->iter && words_of(*item->iter) == words_of(row_of(number));
    });
  }

  /** New items, known ones once more, rows that come late or twice, changes, and removals. */
  void step() {
    const int how = roll(naive.empty() ? 2 : 7);
    auto item = Kind::new_item(roll(81));
    if (how > 1) item = varnholt::make_object(naive[dice() % naive.size()].get());
    if (how == 3) item->iter = row_of(roll(8));
    if (how == 4) Kind::change(item.get(), roll(81));
    if (how < 3) {
      const bool first = roll(2) == 0;
      Kind::insert(list.get(), item.get(), first);
      naive.insert(first ? naive.begin() : naive.end(), std::move(item));
    } else if (how > 4) {
      const int number = roll(8);
      const auto row = row_of(number);
      const auto gone = at_row(number);
      ASSERT_EQ(Kind::remove(list.get(), &row), gone != naive.end());
      if (gone != naive.end()) naive.erase(gone);
    }
  }

  void check() {
    const auto is_ticked = [](const auto& each) { return each->is_selected; };
    ASSERT_EQ(Kind::length(list.get()), naive.size());
    ASSERT_EQ(Kind::ticked(list.get()), std::ranges::count_if(naive, is_ticked));
    for (guint at = 0; at <= naive.size(); ++at) {
      ASSERT_EQ(take_object(Kind::nth(list.get(), at)).get(), place(naive.begin() + at).first);
    }
    int index = 0;
    const auto ticked = take_object(Kind::first_ticked(list.get(), &index));
    ASSERT_EQ(std::pair(ticked.get(), index), place(std::ranges::find_if(naive, is_ticked)));
    for (int number = 0; number < 8; ++number) {
      const auto row = row_of(number);
      const auto found = take_object(Kind::find(list.get(), &row, &index));
      ASSERT_EQ(std::pair(found.get(), index), place(at_row(number)));
      ASSERT_EQ(Kind::find_index(list.get(), &row), index);
    }
    Kind::check(list.get(), naive, roll(81));
  }

  const unsigned seed = std::random_device{}();
  std::mt19937 dice{seed};
  std::vector<decltype(Kind::new_item(0))> naive;
  decltype(Kind::new_list()) list = Kind::new_list();
};

using Kinds = testing::Types<Definitions, Routes>;
TYPED_TEST_SUITE(RowList, Kinds);

TYPED_TEST(RowList, AnswersAsANaiveOne) {
  for (int step = 0; step < 2000; ++step) {
    SCOPED_TRACE("seed " + std::to_string(this->seed) + ", step " + std::to_string(step));
    this->step();
    ASSERT_NO_FATAL_FAILURE(this->check());
  }
}
