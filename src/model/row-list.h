// SPDX-License-Identifier: GPL-3.0-or-later
// The list behind a table: items in the order of the rows, each found by its row. Inserting,
// removing, and finding by index or by a row that an item has cost O(log n).
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

#include <gtk/gtk.h>

#include "base/glib-ptr.h"
#include "model/table-row.h"

namespace varnholt {

/**
 * A list of objects that have a TableRow. An item brings its row when it is put in; a row that it
 * gets later is found by a walk, if no other item was put in with it.
 */
template <typename Item>
class RowList {
 public:
  /** An item, borrowed from the list, and where it stands; none and -1 when none qualifies. */
  struct Place {
    Item* item = nullptr;
    int index = -1;

    /** A reference for a caller of the object system, who also gets the index if he wants it. */
    Item* hand_out(int* wanted_index) const {
      if (wanted_index != nullptr) *wanted_index = index;
      return item == nullptr ? nullptr : static_cast<Item*>(g_object_ref(item));
    }
  };

  /** Goes over borrowed items; the list must not change meanwhile. */
  class Iterator {
   public:
    explicit Iterator(GSequenceIter* at) : m_at(at) {}
    Item* operator*() const { return item_at(m_at); }
    Iterator& operator++() {
      m_at = g_sequence_iter_next(m_at);
      return *this;
    }
    bool operator==(const Iterator&) const = default;

   private:
    GSequenceIter* m_at;
  };
  Iterator begin() const { return Iterator{g_sequence_get_begin_iter(entries.get())}; }
  Iterator end() const { return Iterator{g_sequence_get_end_iter(entries.get())}; }

  guint length() const { return static_cast<guint>(g_sequence_get_length(entries.get())); }

  /** None when there are not so many. */
  Place nth(guint index) const {
    if (index >= length()) return {};
    return place(g_sequence_get_iter_at_pos(entries.get(), static_cast<int>(index)));
  }

  void append(Item* item) { insert(g_sequence_get_end_iter(entries.get()), item); }
  void prepend(Item* item) { insert(g_sequence_get_begin_iter(entries.get()), item); }

  /** The first item with this row. */
  Place find(const GtkTreeIter& row) const { return place(position_of(row)); }

  /** The same item, or null, for who does not ask where it stands. */
  Item* item_of(const GtkTreeIter& row) const {
    auto* const at = position_of(row);
    return g_sequence_iter_is_end(at) ? nullptr : item_at(at);
  }

  /** Takes the first item with this row out of the list; false when there is none. */
  bool remove(const GtkTreeIter& row) {
    auto* const at = position_of(row);
    if (g_sequence_iter_is_end(at)) return false;
    if (m_none_ticked_before == at) m_none_ticked_before = g_sequence_iter_next(at);
    forget_row(at);
    g_sequence_remove(at);
    return true;
  }

  guint selected_number() const {
    guint number = 0;
    for (Item* item : *this) {
      if (item->is_selected) ++number;
    }
    return number;
  }

  /** The first ticked item. Going on where the last search ended, k of them cost O(k + n). */
  Place first_selected() const {
    if (m_tickings_seen != Tick::tickings()) m_none_ticked_before = nullptr;
    m_tickings_seen = Tick::tickings();
    auto* at = m_none_ticked_before;
    if (at == nullptr) at = g_sequence_get_begin_iter(entries.get());
    while (!g_sequence_iter_is_end(at) && !item_at(at)->is_selected) at = g_sequence_iter_next(at);
    m_none_ticked_before = at;
    return place(at);
  }

 private:
  struct Entry {
    ObjectPtr<Item> item;
    /** The row by which it is kept in m_by_row, whatever the item says later. */
    std::optional<GtkTreeIter> row;
  };
  struct RowHash {
    std::size_t operator()(const GtkTreeIter& row) const {
      return std::hash<gpointer>{}(row.user_data);
    }
  };
  struct SameRow {
    bool operator()(const GtkTreeIter& a, const GtkTreeIter& b) const {
      return vh_cmp_iter(&a, &b);
    }
  };

  static Entry& entry_at(GSequenceIter* at) { return *static_cast<Entry*>(g_sequence_get(at)); }
  static Item* item_at(GSequenceIter* at) { return entry_at(at).item.get(); }
  static bool has_row(GSequenceIter* at, const GtkTreeIter& row) {
    const auto& own = item_at(at)->iter;
    return own && vh_cmp_iter(&*own, &row);
  }

  static Place place(GSequenceIter* at) {
    if (g_sequence_iter_is_end(at)) return {};
    return {item_at(at), g_sequence_iter_get_position(at)};
  }

  void insert(GSequenceIter* before, Item* item) {
    auto entry = std::make_unique<Entry>(Entry{make_object(item), item->iter});
    auto* const at = g_sequence_insert_before(before, entry.release());
    if (item->iter) m_by_row.emplace(*item->iter, at);
    if (item->is_selected) m_none_ticked_before = nullptr;
  }

  /** The end when no item has the row. */
  GSequenceIter* position_of(const GtkTreeIter& row) const {
    GSequenceIter* first = nullptr;
    const auto [from, to] = m_by_row.equal_range(row);
    for (auto kept = from; kept != to; ++kept) {
      auto* const at = kept->second;
      if (!has_row(at, row)) continue;
      if (first == nullptr || g_sequence_iter_compare(at, first) < 0) first = at;
    }
    if (first != nullptr) return first;
    auto* at = g_sequence_get_begin_iter(entries.get());
    while (!g_sequence_iter_is_end(at) && !has_row(at, row)) at = g_sequence_iter_next(at);
    return at;
  }

  void forget_row(GSequenceIter* at) {
    const auto& row = entry_at(at).row;
    if (!row) return;
    const auto [from, to] = m_by_row.equal_range(*row);
    for (auto kept = from; kept != to; ++kept) {
      if (kept->second != at) continue;
      m_by_row.erase(kept);
      return;
    }
  }

  std::unique_ptr<GSequence, FreeWith<g_sequence_free>> entries{
      g_sequence_new([](gpointer entry) { std::unique_ptr<Entry>{static_cast<Entry*>(entry)}; })};
  std::unordered_multimap<GtkTreeIter, GSequenceIter*, RowHash, SameRow> m_by_row;
  /** Where the last search for a ticked item ended; null for the front. */
  mutable GSequenceIter* m_none_ticked_before = nullptr;
  mutable guint64 m_tickings_seen = 0;
};

}  // namespace varnholt
