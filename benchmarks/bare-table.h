// SPDX-License-Identifier: GPL-3.0-or-later
// The table of file definitions in its simplest form, for a program that already has the texts of
// the cells: a view and its store, without definitions behind them.
#pragma once

#include <gtk/gtk.h>

struct BareTable {
  GtkTreeView* view;
  /** The view owns the store. */
  GtkListStore* store;
};

struct BareTable bare_table_new(gboolean with_dates);

/** Creates a window that shows a table. */
GtkWidget* bare_window_new(struct BareTable table);

void bare_table_prepend(struct BareTable table, const char* from, const char* to,
                        gboolean overwrite);

void bare_table_tick(struct BareTable table, int row, gboolean ticked);

/** Highlights a row and makes it the only ticked one; `ticked` is the row ticked before. */
void bare_table_highlight(struct BareTable table, int row, int ticked);

void bare_table_mark_ticked_deleted(struct BareTable table);

void bare_table_delete_ticked(struct BareTable table);

/** Writes the rows as a profile; updates get the current time. Returns whether it succeeded. */
gboolean bare_table_save(struct BareTable table, const char* profile);
