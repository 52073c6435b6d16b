// SPDX-License-Identifier: GPL-3.0-or-later
// The least that a window can cost: one with an empty table of the same columns.
#include "bare-table.h"

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  bare_window_new(bare_table_new(FALSE));
  gtk_main();
  return 0;
}
