// SPDX-License-Identifier: GPL-3.0-or-later
// The page of the static routes: the check box for the default route, and the table of the routes.
#pragma once

#include <gtk/gtk.h>

#include "base/glib-ptr.h"
#include "model/bak-model.h"
#include "ui/checked-rows.h"

/** The columns of store and view, registered as an enumeration with the nicks "sel" to "nic". */
enum VhRutDefWidgetCOL_IDX : int {
  /** Boolean: the item is ticked. */
  VH_RUT_DEF_WIDGET_COL_IDX_SEL = 0,
  /** The route's texts, in a form that can be shown. */
  VH_RUT_DEF_WIDGET_COL_IDX_NAME = 1,
  VH_RUT_DEF_WIDGET_COL_IDX_ADDR = 2,
  VH_RUT_DEF_WIDGET_COL_IDX_MASK = 3,
  VH_RUT_DEF_WIDGET_COL_IDX_GW = 4,
  VH_RUT_DEF_WIDGET_COL_IDX_JUP = 5,
  VH_RUT_DEF_WIDGET_COL_IDX_NIC = 6,
};
GType vh_rut_def_widget_col_idx_get_type();

struct VhRutDefWidget;

namespace varnholt::ui {

struct RutDefWidgetState : CheckedRows<VhRutDefWidget, VhRutDefItemList, VhRutDefItem> {
  ObjectPtr<GtkScrolledWindow> scrolled_window;
  ObjectPtr<GtkHBox> cb_box;
  ObjectPtr<GtkCheckButton> del_rut_cb;
  /** 1 while the program itself sets the check box. */
  int cb_updating = 0;
};

}  // namespace varnholt::ui

/**
 * The page. Its signal "sig-selection-changed" passes the index of the route that was added,
 * edited, ticked or highlighted, or -1 after a deletion, and the number of routes.
 */
struct VhRutDefWidget : GtkVBox, varnholt::ui::RutDefWidgetState {
  VhRutDefWidget() = delete;
};

struct VhRutDefWidgetClass : GtkVBoxClass {};

GType vh_rut_def_widget_get_type();

/** Creates an empty page, or one of a derived type; it is floating, like every new widget. */
VhRutDefWidget* vh_rut_def_widget_new();
VhRutDefWidget* vh_rut_def_widget_construct(GType object_type);

/** Returns a new reference to the page's own list, not a copy. */
VhRutDefItemList* vh_rut_def_widget_get_items(VhRutDefWidget* self);

/** Returns how many routes are ticked. */
guint vh_rut_def_widget_get_total_selections(VhRutDefWidget* self);

/** Returns the route of the highlighted row as a new reference, or null when there is none. */
VhRutDefItem* vh_rut_def_widget_get_select_item(VhRutDefWidget* self);

/**
 * Adds a route at the end; the list takes its own reference. Returns false and changes nothing when
 * vh_rut_def_widget_vaild_item() refuses it.
 */
bool vh_rut_def_widget_add_item(VhRutDefWidget* self, VhRutDefItem* item);

/**
 * Copies the contents of `new_item` into `old_item`, which the page holds and which stays in its
 * row. Returns false and changes nothing when `new_item` repeats another route.
 */
bool vh_rut_def_widget_edit_item(VhRutDefWidget* self, VhRutDefItem* new_item,
                                 VhRutDefItem* old_item);

/** Removes every ticked route. When that fails, it shows a message and leaves the rest. */
void vh_rut_def_widget_del_selected_items(VhRutDefWidget* self);

/**
 * Sets or returns whether to delete the default route. Setting it changes check box and list
 * together.
 */
void vh_rut_def_widget_set_del_def_cb_active(VhRutDefWidget* self, bool active);
bool vh_rut_def_widget_get_del_def_cb_active(VhRutDefWidget* self);

/** Unticks every route. */
void vh_rut_def_widget_clear_selection(VhRutDefWidget* self);

/**
 * Returns whether no route other than `except`, which may be null, has the name of `item`, or its
 * address, mask and gateway. Shows a message about the first route that has them.
 */
bool vh_rut_def_widget_vaild_item(VhRutDefWidget* self, VhRutDefItem* item, VhRutDefItem* except);

/** Emits "sig-selection-changed" with this index and the number of routes. */
void vh_rut_def_widget_emit_selection_changed(VhRutDefWidget* self, int index);
