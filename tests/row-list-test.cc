// SPDX-License-Identifier: GPL-3.0-or-later
// Compares both lists with a naive one: after each of many random steps all answers must be equal.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/glib-ptr.h"
#include "model/bak-model.h"

using varnholt::take_object;

/** Names a row. Only the first two words count; a list store leaves anything in the others. */
static GtkTreeIter row_of(int number, int left_over = 0) {
  return {1 + number / 4, GINT_TO_POINTER(number % 4), GINT_TO_POINTER(left_over), nullptr};
}

struct Definitions {
  static auto new_list() { return take_object(vh_bak_def_item_list_new()); }
  static auto new_item(int /*seed*/) { return take_object(vh_bak_def_item_new("/a", "/b", 0, 0)); }
  static void change(VhBakDefItem* item, int /*seed*/) { item->is_selected = !item->is_selected; }
  static void check(VhBakDefItemList* /*list*/, const auto& /*naive*/, int /*seed*/) {}
};

struct Routes {
  static auto new_list() { return take_object(vh_rut_def_item_list_new()); }
  static auto new_item(int seed) {
    const auto text = [seed](int part) { return std::to_string(seed / part % 3); };
    return take_object(varnholt::new_rut_def_item({{text(1), text(3), text(9), text(27), "", ""}}));
  }
  static void change(VhRutDefItem* item, int seed) {
    vh_rut_def_item_fill_by_other(item, new_item(seed).get());
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
};

template <typename Kind>
class RowList : public testing::Test {
 protected:
  int roll(std::size_t sides) { return static_cast<int>(dice() % sides); }

  auto place(auto at) {
    return at == naive.end() ? std::pair{decltype(at->get()){}, -1}
                             : std::pair{at->get(), static_cast<int>(at - naive.begin())};
  }
  static auto place_of(const auto& told) { return std::pair{told.item, told.index}; }

  auto at_row(int number) {
    return std::ranges::find_if(naive, [number](const auto& item) {
      return item->iter && varnholt::same_row(*item->iter, row_of(number));
    });
  }

  /** Adds a new or a known item, sets a row late or twice, changes texts, or removes an item. */
  void step() {
    const int how = roll(naive.empty() ? 2 : 7);
    auto item = Kind::new_item(roll(81));
    if (how > 1) item = varnholt::make_object(naive[dice() % naive.size()].get());
    if (how == 3) item->iter = row_of(roll(8));
    if (how == 4) Kind::change(item.get(), roll(81));
    if (how < 3) {
      const bool first = roll(2) == 0;
      list->insert(item.get(), first);
      naive.insert(first ? naive.begin() : naive.end(), std::move(item));
    } else if (const auto gone = at_row(roll(8)); how > 4 && gone != naive.end()) {
      list->remove(list->nth(static_cast<guint>(gone - naive.begin())));
      naive.erase(gone);
    }
  }

  void check() {
    const auto is_ticked = [](const auto& each) { return each->is_selected; };
    ASSERT_EQ(list->length(), naive.size());
    ASSERT_EQ(list->selected_number(), std::ranges::count_if(naive, is_ticked));
    for (guint at = 0; at <= naive.size(); ++at) {
      const auto here = naive.begin() + at;
      ASSERT_EQ(place_of(list->nth(at)), place(here));
      ASSERT_EQ(place_of(list->first_selected(at)),
                place(std::find_if(here, naive.end(), is_ticked)));
    }
    for (int row = 0; row < 8; ++row) {
      const auto right = place(at_row(row));
      ASSERT_EQ(place_of(list->find(row_of(row, 5), roll(2) == 0 ? right.second : -1)), right);
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
