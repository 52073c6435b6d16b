// SPDX-License-Identifier: GPL-3.0-or-later
// The table of file definitions or of boot scripts. Its functions keep the rows and the list in
// step.
#pragma once

#include <ctime>

#include <gtk/gtk.h>

#include "model/bak-model.h"
#include "ui/checked-rows.h"

/** The columns of the store, registered as an enumeration; nicks "sel" to "force-overwrite". */
enum VhBakDefWidgetCOL_IDX : int {
  /** Boolean: the item is ticked. */
  VH_BAK_DEF_WIDGET_COL_IDX_SEL = 0,
  /** The two paths as texts that can be shown. */
  VH_BAK_DEF_WIDGET_COL_IDX_FROM = 1,
  VH_BAK_DEF_WIDGET_COL_IDX_TO = 2,
  /** Integer: VhFileOperationType flags. */
  VH_BAK_DEF_WIDGET_COL_IDX_UP = 3,
  /** 64-bit integer: seconds since the epoch, as of the last add or edit. */
  VH_BAK_DEF_WIDGET_COL_IDX_DATETIME = 4,
  /** Boolean: the overwrite flag. */
  VH_BAK_DEF_WIDGET_COL_IDX_FORCE_OVERWRITE = 5,
};
GType vh_bak_def_widget_col_idx_get_type();

struct VhBakDefWidget;

namespace varnholt::ui {

struct BakDefWidgetState : CheckedRows<VhBakDefWidget, VhBakDefItemList, VhBakDefItem> {
  /** 0 for the table of file definitions, 1 for the table of boot scripts. */
  int is_shell = 0;
};

}  // namespace varnholt::ui

/**
 * The table. Its signal "sig-selection-changed" passes an index and the number of items. The index
 * is that of the item that was edited, ticked or highlighted, that of the last item after one was
 * added, and -1 after items were deleted or marked.
 */
struct VhBakDefWidget : GtkScrolledWindow, varnholt::ui::BakDefWidgetState {
  VhBakDefWidget() = delete;
};

struct VhBakDefWidgetClass : GtkScrolledWindowClass {};

GType vh_bak_def_widget_get_type();

/**
 * Creates an empty table, or one of a derived type; it is floating, like every new widget. The
 * column of the last update time is shown when the environment variable "show_date" is set.
 */
VhBakDefWidget* vh_bak_def_widget_new(int is_shell);
VhBakDefWidget* vh_bak_def_widget_construct(GType object_type, int is_shell);

/** Returns a new reference to the table's own list, not a copy. */
VhBakDefItemList* vh_bak_def_widget_get_items(VhBakDefWidget* self);

/** Returns how many items are ticked. */
guint vh_bak_def_widget_get_total_selections(VhBakDefWidget* self);

/** Returns the item of the highlighted row as a new reference, or null when there is none. */
VhBakDefItem* vh_bak_def_widget_get_select_item(VhBakDefWidget* self);

/**
 * Adds a symbolic item at the end and any other item at the front; the table takes its own
 * reference. Returns false and changes nothing when vh_bak_def_widget_vaild_item() refuses it.
 */
bool vh_bak_def_widget_add_item(VhBakDefWidget* self, VhBakDefItem* item);

/**
 * Copies the contents of `new_item` into `old_item`, which the table holds. `old_item` stays in its
 * row and keeps its last update time, and its overwrite flag when both overwrite. Returns false and
 * changes nothing when vh_bak_def_widget_vaild_item() refuses `new_item`.
 */
bool vh_bak_def_widget_edit_item(VhBakDefWidget* self, VhBakDefItem* new_item,
                                 VhBakDefItem* old_item);

/** Removes every ticked item. When that fails, it shows a message and leaves the rest. */
void vh_bak_def_widget_del_selected_items(VhBakDefWidget* self);

/** Marks every ticked item deleted and unticks it. A failure is handled as for deleting. */
void vh_bak_def_widget_mark_del_selected_items(VhBakDefWidget* self);

/** Sets the last update time of updates, and of overwrites with the flag, to the current time. */
void vh_bak_def_widget_update_items_last_oper_time(VhBakDefWidget* self);

/** Unticks every item. */
void vh_bak_def_widget_clear_selection(VhBakDefWidget* self);

/**
 * Returns whether an item may be added or replace another one: source and target must differ, and
 * the user must agree to a symbolic definition. Shows a message when source and target are the
 * same.
 */
bool vh_bak_def_widget_vaild_item(VhBakDefWidget* self, VhBakDefItem* item);

/** Emits "sig-selection-changed" with this index and the number of items. */
void vh_bak_def_widget_emit_selection_changed(VhBakDefWidget* self, int index);

/**
 * Returns a broken-down time as a new text, for example "2010-09-15 20:58:11". The caller releases
 * it with g_free().
 */
char* g_time_to_string(const struct tm* time);
