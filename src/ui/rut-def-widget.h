// SPDX-License-Identifier: GPL-3.0-or-later
// The page of the static routes: the check box for the default route, and the table of the routes.
#pragma once

#include <gtk/gtk.h>

#include "base/glib-ptr.h"
#include "model/bak-model.h"
#include "ui/checked-rows.h"

/** The columns of store and view. Registered as an enumeration; nicks "sel" to "nic". */
enum VhRutDefWidgetCOL_IDX : int {
  /** Boolean: the item is ticked. */
  VH_RUT_DEF_WIDGET_COL_IDX_SEL = 0,
  /** The route's texts, as they can be shown. */
  VH_RUT_DEF_WIDGET_COL_IDX_NAME = 1,
  VH_RUT_DEF_WIDGET_COL_IDX_ADDR = 2,
  VH_RUT_DEF_WIDGET_COL_IDX_MASK = 3,
  VH_RUT_DEF_WIDGET_COL_IDX_GW = 4,
  VH_RUT_DEF_WIDGET_COL_IDX_JUP = 5,
  VH_RUT_DEF_WIDGET_COL_IDX_NIC = 6,
};
GType vh_rut_def_widget_col_idx_get_type();

struct VhRutDefWidget;

namespace varnholt {

struct RutDefWidgetState : CheckedRows<VhRutDefWidget, VhRutDefItemList, VhRutDefItem> {
  ObjectPtr<GtkScrolledWindow> scrolled_window;
  ObjectPtr<GtkHBox> cb_box;
  ObjectPtr<GtkCheckButton> del_rut_cb;
  /** 1 while the program itself sets the check box. */
  int cb_updating = 0;
};

}  // namespace varnholt

/**
 * The page. Its signal "sig-selection-changed" hands over the index of the route that was added,
 * edited, ticked or highlighted, -1 after a deletion, and the number of routes.
 */
struct VhRutDefWidget : GtkVBox, varnholt::RutDefWidgetState {
  VhRutDefWidget() = delete;
};

struct VhRutDefWidgetClass : GtkVBoxClass {};

GType vh_rut_def_widget_get_type();

/** A new page without routes, or one of a derived type, floating as new widgets are. */
VhRutDefWidget* vh_rut_def_widget_new();
VhRutDefWidget* vh_rut_def_widget_construct(GType object_type);

/** A new reference to the page's own list, not a copy. */
VhRutDefItemList* vh_rut_def_widget_get_items(VhRutDefWidget* self);

/** How many routes are ticked. */
guint vh_rut_def_widget_get_total_selections(VhRutDefWidget* self);

/** The route of the highlighted row as a new reference; none when no row is highlighted. */
VhRutDefItem* vh_rut_def_widget_get_select_item(VhRutDefWidget* self);

/**
 * Adds a route at the end; the list takes its own reference. False, with nothing changed, when
 * vh_rut_def_widget_vaild_item() refuses it.
 */
bool vh_rut_def_widget_add_item(VhRutDefWidget* self, VhRutDefItem* item);

/**
 * Has `old_item`, which the page holds, take over what `new_item` says and stay in its row. False,
 * with nothing changed, when `new_item` repeats another route.
 */
bool vh_rut_def_widget_edit_item(VhRutDefWidget* self, VhRutDefItem* new_item,
                                 VhRutDefItem* old_item);

/** Removes every ticked route. Tells the user when that fails, and leaves the rest. */
void vh_rut_def_widget_del_selected_items(VhRutDefWidget* self);

/** Whether the default route is to be deleted: check box and list together. */
void vh_rut_def_widget_set_del_def_cb_active(VhRutDefWidget* self, bool active);
bool vh_rut_def_widget_get_del_def_cb_active(VhRutDefWidget* self);

/** Unticks every route. */
void vh_rut_def_widget_clear_selection(VhRutDefWidget* self);

/**
 * Whether no route but `except`, which may be missing, has the name of `item`, or its address, mask
 * and gateway. Tells the user of the first that has.
 */
bool vh_rut_def_widget_vaild_item(VhRutDefWidget* self, VhRutDefItem* item, VhRutDefItem* except);

/** Emits "sig-selection-changed" with this index and the number of routes. */
void vh_rut_def_widget_emit_selection_changed(VhRutDefWidget* self, int index);
