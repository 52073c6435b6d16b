// SPDX-License-Identifier: GPL-3.0-or-later
// Both lists beside a naive one: random steps through the public operations, after each of which
// every answer must be the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/glib-ptr.h"
#include "model/bak-model.h"

using varnholt::take_object;

namespace {

struct Definitions {
  using Item = VhBakDefItem;
  static Item* new_item(int /*seed*/) { return vh_bak_def_item_new("/a", "/b", 1, 0); }
  static constexpr auto* new_list = vh_bak_def_item_list_new;
  static constexpr auto* append = vh_bak_def_item_list_append_val;
  static constexpr auto* find = vh_bak_def_item_list_find_in_iter;
  static constexpr auto* find_index = vh_bak_def_item_list_find_in_iter_idx;
  static constexpr auto* remove = vh_bak_def_item_list_remove_in_iter;
  static constexpr auto* length = vh_bak_def_item_list_length;
  static constexpr auto* nth = vh_bak_def_item_list_nth_data;
  static constexpr auto* ticked = vh_bak_def_item_list_total_selected_number;
  static constexpr auto* first_ticked = vh_bak_def_item_list_get_first_selected_item;
  static constexpr auto* tick = vh_bak_def_item_set_is_selected;
};

struct Routes {
  using Item = VhRutDefItem;
  static Item* new_item(int seed) {
    const auto text = [&seed](int choices) {
      return std::to_string(std::exchange(seed, seed / choices) % choices);
    };
    return vh_rut_def_item_new(text(5).c_str(), text(3).c_str(), text(2).c_str(), text(2).c_str(),
                               "", "");
  }
  static constexpr auto* new_list = vh_rut_def_item_list_new;
  static constexpr auto* append = vh_rut_def_item_list_append_val;
  static constexpr auto* find = vh_rut_def_item_list_find_in_iter;
  static constexpr auto* find_index = vh_rut_def_item_list_find_in_iter_idx;
  static constexpr auto* remove = vh_rut_def_item_list_remove_in_iter;
  static constexpr auto* length = vh_rut_def_item_list_length;
  static constexpr auto* nth = vh_rut_def_item_list_nth_data;
  static constexpr auto* ticked = vh_rut_def_item_list_total_selected_number;
  static constexpr auto* first_ticked = vh_rut_def_item_list_get_first_selected_item;
  static constexpr auto* tick = vh_rut_def_item_set_is_selected;
};

/** A row by its number; what stands in the words that a list store leaves alone does not matter. */
GtkTreeIter row_of(int number, int leftover = 0) {
  return {1 + number / 4, GINT_TO_POINTER(number % 4), GINT_TO_POINTER(leftover), nullptr};
}

}  // namespace

template <typename Kind>
class RowList : public testing::Test {
 protected:
  using Item = typename Kind::Item;
  using Naive = std::vector<varnholt::ObjectPtr<Item>>;
  static constexpr int rows = 8;

  int roll(int sides) { return static_cast<int>(dice() % static_cast<unsigned>(sides)); }

  auto at_row(int number) {
    return std::ranges::find_if(naive, [number](const auto& item) {
      return item->iter && varnholt::same_row(*item->iter, row_of(number));
    });
  }

  int index_of(typename Naive::iterator at) const {
    return at == naive.end() ? -1 : static_cast<int>(at - naive.begin());
  }

  void insert(Item* item, bool first) {
    if (first) {
      if constexpr (std::is_same_v<Kind, Definitions>) {
        vh_bak_def_item_list_prepend_val(list.get(), item);
      }
      naive.insert(naive.begin(), varnholt::make_object(item));
    } else {
      Kind::append(list.get(), item);
      naive.push_back(varnholt::make_object(item));
    }
  }

  void step() {
    const bool definitions = std::is_same_v<Kind, Definitions>;
    auto* const any =
        naive.empty() ? nullptr
                      : naive[static_cast<std::size_t>(roll(static_cast<int>(naive.size())))].get();
    const int number = roll(rows);
    switch (roll(any == nullptr ? 2 : 7)) {
      case 0:
      case 1: {
        const auto item = take_object(Kind::new_item(roll(1000)));
        if (roll(3) != 0) item->iter = row_of(number, roll(9));
        insert(item.get(), definitions && roll(2) == 0);
        break;
      }
      case 2:
        // Two items with one row, and an item that gets its row late.
        any->iter = row_of(number);
        break;
      case 3:
        Kind::tick(any, roll(2) == 0);
        break;
      case 4:
        insert(any, definitions && roll(2) == 0);
        break;
      case 5:
        change(any, number);
        break;
      default: {
        const auto gone = at_row(number);
        const auto row = row_of(number);
        ASSERT_EQ(Kind::remove(list.get(), &row), gone != naive.end());
        if (gone != naive.end()) naive.erase(gone);
      }
    }
  }

  void change(VhBakDefItem* /*any*/, int number) {
    const auto hidden = at_row(number);
    const auto row = row_of(number);
    testing::internal::CaptureStdout();
    ASSERT_EQ(vh_bak_def_item_list_hide_in_iter(list.get(), &row), hidden != naive.end());
    ASSERT_EQ(testing::internal::GetCapturedStdout(),
              "hide_in_iter " + std::to_string(index_of(hidden)) + '\n');
    if (hidden == naive.end()) return;
    ASSERT_EQ((*hidden)->op, 9);
    ASSERT_FALSE((*hidden)->is_selected);
  }
  void change(VhRutDefItem* any, int /*number*/) {
    vh_rut_def_item_fill_by_other(any, take_object(Kind::new_item(roll(1000))).get());
  }

  void check_rivals(VhBakDefItemList* /*list*/) {}
  void check_rivals(VhRutDefItemList* routes) {
    const auto route = take_object(Kind::new_item(roll(1000)));
    const auto* const except = naive.empty() ? nullptr : naive.front().get();
    const auto rival = std::ranges::find_if(naive, [&](const auto& other) {
      const bool same =
          other->addr == route->addr && other->mask == route->mask && other->gw == route->gw;
      return other.get() != except && (other->name == route->name || same);
    });
    ASSERT_EQ(routes->first_rival_of(*route, except),
              rival == naive.end() ? nullptr : rival->get());
  }

  void check() {
    ASSERT_EQ(Kind::length(list.get()), naive.size());
    for (guint index = 0; index <= naive.size(); ++index) {
      const auto item = take_object(Kind::nth(list.get(), index));
      ASSERT_EQ(item.get(), index < naive.size() ? naive[index].get() : nullptr);
    }
    for (int number = 0; number < rows; ++number) {
      const auto row = row_of(number, 5);
      const auto expected = at_row(number);
      int index = 0;
      const auto item = take_object(Kind::find(list.get(), &row, &index));
      ASSERT_EQ(item.get(), expected == naive.end() ? nullptr : expected->get());
      ASSERT_EQ(index, index_of(expected));
      ASSERT_EQ(Kind::find_index(list.get(), &row), index);
    }
    const auto is_ticked = [](const auto& item) { return item->is_selected; };
    ASSERT_EQ(Kind::ticked(list.get()), std::ranges::count_if(naive, is_ticked));
    int index = 0;
    const auto first = std::ranges::find_if(naive, is_ticked);
    const auto item = take_object(Kind::first_ticked(list.get(), &index));
    ASSERT_EQ(item.get(), first == naive.end() ? nullptr : first->get());
    ASSERT_EQ(index, index_of(first));
    check_rivals(list.get());
  }

  std::mt19937 dice{std::random_device{}()};
  Naive naive;
  decltype(take_object(Kind::new_list())) list = take_object(Kind::new_list());
};

using Kinds = testing::Types<Definitions, Routes>;
TYPED_TEST_SUITE(RowList, Kinds);

TYPED_TEST(RowList, AnswersAsANaiveOne) {
  const auto seed = std::random_device{}();
  this->dice.seed(seed);
  for (int number = 0; number < 3000; ++number) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(number));
    ASSERT_NO_FATAL_FAILURE(this->step());
    ASSERT_NO_FATAL_FAILURE(this->check());
  }
}
