// SPDX-License-Identifier: GPL-3.0-or-later
// The list behind a table, beside a plain one: order, rows, ticks, and who holds an item.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/glib-ptr.h"
#include "model/bak-model.h"

using varnholt::ObjectPtr;
using varnholt::take_object;
using ItemPtr = ObjectPtr<VhBakDefItem>;

namespace {

/** The rows that items may share; as many again come late. */
constexpr std::size_t rows = 8;

GtkTreeIter row(std::size_t number) {
  static char nodes[2 * rows];
  return {1, nodes + number, nullptr, nullptr};
}

ItemPtr new_item() {
  return take_object(vh_bak_def_item_new("/from", "/to", VH_FILE_OPERATION_TYPE_FOT_Update, 0));
}

class RowList : public testing::Test {
 protected:
  int index_of_first(const std::function<bool(const ItemPtr&)>& holds) const {
    const auto first = std::find_if(plain.begin(), plain.end(), holds);
    return first == plain.end() ? -1 : static_cast<int>(first - plain.begin());
  }

  int index_of(const GtkTreeIter& wanted) const {
    return index_of_first([&wanted](const ItemPtr& item) {
      return item->iter && vh_cmp_iter(&*item->iter, &wanted);
    });
  }

  /** Whether an item that the list hands out is the one at `index`; none at -1 or behind the end.
   */
  bool is_at(int index, const ItemPtr& item) const {
    if (index < 0 || index >= static_cast<int>(plain.size())) return item == nullptr;
    return item == plain[static_cast<std::size_t>(index)];
  }

  void check() const {
    int index = 77;
    ASSERT_EQ(vh_bak_def_item_list_length(list.get()), plain.size());
    for (int at = 0; at <= static_cast<int>(plain.size()); ++at) {
      const auto position = static_cast<guint>(at);
      ASSERT_TRUE(is_at(at, ItemPtr{vh_bak_def_item_list_nth_data(list.get(), position)}));
    }
    for (std::size_t number = 0; number < 2 * rows; ++number) {
      const auto wanted = row(number);
      const ItemPtr found{vh_bak_def_item_list_find_in_iter(list.get(), &wanted, &index)};
      ASSERT_EQ(index, index_of(wanted));
      ASSERT_TRUE(is_at(index, found));
      ASSERT_EQ(vh_bak_def_item_list_find_in_iter_idx(list.get(), &wanted), index);
    }
    const auto ticked = [](const ItemPtr& item) { return item->is_selected; };
    const ItemPtr first{vh_bak_def_item_list_get_first_selected_item(list.get(), &index)};
    ASSERT_EQ(index, index_of_first(ticked));
    ASSERT_TRUE(is_at(index, first));
    ASSERT_EQ(vh_bak_def_item_list_total_selected_number(list.get()),
              std::count_if(plain.begin(), plain.end(), ticked));
  }

  void insert(ItemPtr item, bool front) {
    (front ? vh_bak_def_item_list_prepend_val : vh_bak_def_item_list_append_val)(list.get(),
                                                                                 item.get());
    plain.insert(front ? plain.begin() : plain.end(), std::move(item));
  }

  void remove(const GtkTreeIter& wanted) {
    const int index = index_of(wanted);
    ASSERT_EQ(vh_bak_def_item_list_remove_in_iter(list.get(), &wanted), index >= 0);
    if (index < 0) return;
    ASSERT_EQ(G_OBJECT(plain[static_cast<std::size_t>(index)].get())->ref_count, 1U);
    plain.erase(plain.begin() + index);
  }

  ObjectPtr<VhBakDefItemList> list = take_object(vh_bak_def_item_list_new());
  std::vector<ItemPtr> plain;
};

}  // namespace

TEST_F(RowList, DoesWhatAPlainListDoes) {
  const auto seed = std::random_device{}();
  std::mt19937 dice{seed};
  const auto roll = [&dice](std::size_t sides) { return dice() % sides; };
  for (int step = 0; step < 3000; ++step) {
    const auto what = roll(7);
    const auto wanted = row(roll(rows));
    auto item = new_item();
    item->iter = wanted;
    vh_bak_def_item_set_is_selected(item.get(), roll(4) == 0);
    auto* const chosen = plain.empty() ? item.get() : plain[roll(plain.size())].get();
    if (what == 0) remove(row(roll(2 * rows)));
    if (what == 1) vh_bak_def_item_set_is_selected(chosen, roll(2) == 0);
    if (what == 2) vh_bak_def_item_fill_by_other(chosen, item.get());
    const auto late = row(rows + roll(rows));
    if (what == 3 && !chosen->iter && index_of(late) < 0) chosen->iter = late;
    if (what == 4) item->iter.reset();
    if (what >= 4 && plain.size() < 2 * rows) insert(std::move(item), roll(2) == 0);
    ASSERT_NO_FATAL_FAILURE(check()) << "seed " << seed << ", step " << step;
  }
}
