// SPDX-License-Identifier: GPL-3.0-or-later
// The list behind a table: items in the order of the rows.
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <iterator>
#include <utility>

#include <gtk/gtk.h>

#include "base/glib-ptr.h"
#include "model/table-row.h"

namespace varnholt::model {

/** A list of objects that have a TableRow. It holds a reference to each. */
template <typename Item>
class RowList {
 public:
  /** An item, borrowed from the list, and its index; null and -1 when no item qualifies. */
  struct Place {
    Item* item = nullptr;
    int index = -1;

    /** Returns a new reference for an outside caller, and stores the index if it is wanted. */
    Item* hand_out(int* wanted_index) const {
      if (wanted_index != nullptr) *wanted_index = index;
      return item == nullptr ? nullptr : make_object(item).release();
    }
  };

  // These are for loops over the items; a loop must not change the list.
  auto begin() const { return m_items.begin(); }
  auto end() const { return m_items.end(); }

  guint length() const { return static_cast<guint>(m_items.size()); }

  /** Returns an empty place when the list is shorter. */
  Place nth(guint index) const { return place(m_items.begin() + std::min(index, length())); }

  /** Puts an item at the front or at the end. */
  void insert(Item* item, bool first) {
    m_items.insert(first ? m_items.begin() : m_items.end(), make_object(item));
  }

  /**
   * Returns the first item with this row. A table knows the index of the row and passes it as
   * `likely`, which saves the search: no table gives one row to two items.
   */
  Place find(const GtkTreeIter& row, int likely = -1) const {
    const auto has_row = [&row](const ObjectPtr<Item>& item) {
      return item->iter && vh_cmp_iter(&*item->iter, &row);
    };
    const auto guess = nth(static_cast<guint>(likely));
    if (guess.item != nullptr && has_row(m_items[static_cast<std::size_t>(likely)])) return guess;
    return place(std::ranges::find_if(m_items, has_row));
  }

  /** Removes the item at a place from the list. */
  void remove(const Place& place) {
    // The item may end here, and its end may look at the list.
    const auto removed = std::move(m_items[static_cast<std::size_t>(place.index)]);
    m_items.erase(m_items.begin() + place.index);
  }

  guint selected_number() const {
    return static_cast<guint>(std::ranges::count_if(m_items, is_selected));
  }

  /** Returns the first ticked item at or after an index. */
  Place first_selected(guint from = 0) const {
    return place(
        std::find_if(m_items.begin() + std::min(from, length()), m_items.end(), is_selected));
  }

 private:
  using Items = std::deque<ObjectPtr<Item>>;

  static bool is_selected(const ObjectPtr<Item>& item) { return item->is_selected; }

  Place place(typename Items::const_iterator at) const {
    if (at == m_items.end()) return {};
    return {at->get(), static_cast<int>(std::distance(m_items.begin(), at))};
  }

  Items m_items;
};

}  // namespace varnholt::model
