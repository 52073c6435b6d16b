// SPDX-License-Identifier: GPL-3.0-or-later
// Compares and prints the names of rows.
#include "model/table-row.h"

#include "base/diagnostics.h"

bool vh_cmp_iter(const GtkTreeIter* a, const GtkTreeIter* b) {
  g_return_val_if_fail(a != NULL, false);
  g_return_val_if_fail(b != NULL, false);
  return a->stamp == b->stamp && a->user_data == b->user_data && a->user_data2 == b->user_data2 &&
         a->user_data3 == b->user_data3;
}

void vh_print_iter(const GtkTreeIter* iter) {
  g_return_if_fail(iter != NULL);
  varnholt::print_progress("st:%d , u0 %d ,u1 %d ,u2 %d", iter->stamp,
                           GPOINTER_TO_INT(iter->user_data), GPOINTER_TO_INT(iter->user_data2),
                           GPOINTER_TO_INT(iter->user_data3));
}
