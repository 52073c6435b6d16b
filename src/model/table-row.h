// SPDX-License-Identifier: GPL-3.0-or-later
// An item's place in a table: the state of its check box, and its row.
#pragma once

#include <optional>

#include <gtk/gtk.h>

/**
 * Returns whether two iterators are equal in all their words: the stamp and the three user words. A
 * list store sets only the stamp and the first word, so the others must be zero before.
 */
bool vh_cmp_iter(const GtkTreeIter* a, const GtkTreeIter* b);

/** Prints an iterator to standard output, without a line end, as an aid for debugging. */
void vh_print_iter(const GtkTreeIter* iter);

namespace varnholt::model {

/** An item's place in a table. */
struct TableRow {
  /** The state of the check box. */
  bool is_selected = false;
  /** The row in the table's list store, once a table holds the item. */
  std::optional<GtkTreeIter> iter;
};

}  // namespace varnholt::model
