// SPDX-License-Identifier: GPL-3.0-or-later
// What an item knows about its place in a table: the state of its check box, and its row.
#pragma once

#include <optional>

#include <gtk/gtk.h>

/**
 * Returns whether two iterators are equal in all their words: the stamp and the three user words.
 * The program itself compares rows with varnholt::same_row().
 */
bool vh_cmp_iter(const GtkTreeIter* a, const GtkTreeIter* b);

/** Prints an iterator to standard output, without a line end, as an aid for debugging. */
void vh_print_iter(const GtkTreeIter* iter);

namespace varnholt::model {

/**
 * Returns whether two iterators name the same row of a list store. Only the stamp and the first
 * user word matter: a list store never sets the others, which keep whatever the variable held
 * before.
 */
inline bool same_row(const GtkTreeIter& a, const GtkTreeIter& b) {
  return a.stamp == b.stamp && a.user_data == b.user_data;
}

/** An item's place in a table. */
struct TableRow {
  /** The state of the check box. */
  bool is_selected = false;
  /** The row in the table's list store, once a table holds the item. */
  std::optional<GtkTreeIter> iter;
};

}  // namespace varnholt::model
