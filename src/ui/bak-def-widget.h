// SPDX-License-Identifier: GPL-3.0-or-later
// The table of file definitions or of boot scripts, whose functions keep rows and list in step.
#pragma once

#include <ctime>

#include <gtk/gtk.h>

#include "model/bak-model.h"
#include "ui/checked-rows.h"

/** The columns of the store. Registered as an enumeration; nicks "sel" to "force-overwrite". */
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

namespace varnholt {

struct BakDefWidgetState : CheckedRows<VhBakDefWidget, VhBakDefItemList, VhBakDefItem> {
  /** 0 for the table of file definitions, 1 for the table of boot scripts. */
  int is_shell = 0;
};

}  // namespace varnholt

/**
 * The table. Its signal "sig-selection-changed" hands over the index of the item that was added,
 * edited, ticked or highlighted, -1 when items were deleted or marked, and the number of items.
 */
struct VhBakDefWidget : GtkScrolledWindow, varnholt::BakDefWidgetState {
  VhBakDefWidget() = delete;
};

struct VhBakDefWidgetClass : GtkScrolledWindowClass {};

GType vh_bak_def_widget_get_type();

/**
 * A new, empty table, or one of a derived type, floating as new widgets are. The column of the last
 * update time is shown when the environment variable "show_date" is defined.
 */
VhBakDefWidget* vh_bak_def_widget_new(int is_shell);
VhBakDefWidget* vh_bak_def_widget_construct(GType object_type, int is_shell);

/** A new reference to the table's own list, not a copy. */
VhBakDefItemList* vh_bak_def_widget_get_items(VhBakDefWidget* self);

/** How many items are ticked. */
guint vh_bak_def_widget_get_total_selections(VhBakDefWidget* self);

/** The item of the highlighted row as a new reference; none when no row is highlighted. */
VhBakDefItem* vh_bak_def_widget_get_select_item(VhBakDefWidget* self);

/**
 * Adds an item, of which the table takes its own reference: a symbolic one last, any other first.
 * False, with nothing changed, when vh_bak_def_widget_vaild_item() refuses it.
 */
bool vh_bak_def_widget_add_item(VhBakDefWidget* self, VhBakDefItem* item);

/**
 * Has `old_item`, which the table holds, take over what `new_item` says. It stays in its row and
 * keeps its last update time, and its overwrite flag when both overwrite. False, with nothing
 * changed, when vh_bak_def_widget_vaild_item() refuses `new_item`.
 */
bool vh_bak_def_widget_edit_item(VhBakDefWidget* self, VhBakDefItem* new_item,
                                 VhBakDefItem* old_item);

/** Removes every ticked item. Tells the user when that fails, and leaves the rest. */
void vh_bak_def_widget_del_selected_items(VhBakDefWidget* self);

/** Marks every ticked item deleted and unticks it. Failure as for deleting. */
void vh_bak_def_widget_mark_del_selected_items(VhBakDefWidget* self);

/** Stamps the current time on update definitions, and on overwrite ones with the flag set. */
void vh_bak_def_widget_update_items_last_oper_time(VhBakDefWidget* self);

/** Unticks every item. */
void vh_bak_def_widget_clear_selection(VhBakDefWidget* self);

/**
 * Whether an item may be added or take the place of another: source and target differ, and the user
 * agrees to a symbolic definition. Tells him when it may not.
 */
bool vh_bak_def_widget_vaild_item(VhBakDefWidget* self, VhBakDefItem* item);

/** Emits "sig-selection-changed" with this index and the number of items. */
void vh_bak_def_widget_emit_selection_changed(VhBakDefWidget* self, int index);

/** A broken-down time as a new text, for example "2010-09-15 20:58:11". */
char* g_time_to_string(const struct tm* time);
