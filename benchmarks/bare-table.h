// SPDX-License-Identifier: GPL-3.0-or-later
// The table of file definitions as anyone would write it who has the texts of the cells at hand: a
// view, its store, and no definitions behind it.
#pragma once

#include <gtk/gtk.h>

struct BareTable {
  GtkTreeView* view;
  /** Belongs to the view. */
  GtkListStore* store;
};

struct BareTable bare_table_new(gboolean with_dates);

/** Shows a table in a window of its own. */
GtkWidget* bare_window_new(struct BareTable table);

void bare_table_prepend(struct BareTable table, const char* from, const char* to,
                        gboolean overwrite);

void bare_table_tick(struct BareTable table, int row, gboolean ticked);

/** Highlights a row and leaves it the only ticked one; `ticked` is the one that was. */
void bare_table_highlight(struct BareTable table, int row, int ticked);

void bare_table_mark_ticked_deleted(struct BareTable table);

void bare_table_delete_ticked(struct BareTable table);

/** Writes a profile of the rows as of now. */
gboolean bare_table_save(struct BareTable table, const char* profile);
