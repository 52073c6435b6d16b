// SPDX-License-Identifier: GPL-3.0-or-later
// The row of buttons below the ribbon: three page buttons, one of which is pressed, and three
// action buttons. It only reports clicks and does not act on them.
#pragma once

#include <array>

#include <gtk/gtk.h>

#include "base/glib-ptr.h"

/**
 * A button of the bar. The page buttons have the numbers of their pages. The type is registered as
 * an enumeration with the nicks "link", "route", "shell", "edt", "del", "add" and "btnull".
 */
enum VhControlWidgetBtnType : int {
  VH_CONTROL_WIDGET_BTN_TYPE_Link = 0,
  VH_CONTROL_WIDGET_BTN_TYPE_Route = 1,
  VH_CONTROL_WIDGET_BTN_TYPE_Shell = 2,
  VH_CONTROL_WIDGET_BTN_TYPE_Edt = 3,
  VH_CONTROL_WIDGET_BTN_TYPE_Del = 4,
  VH_CONTROL_WIDGET_BTN_TYPE_Add = 5,
  /** No button. */
  VH_CONTROL_WIDGET_BTN_TYPE_BTNULL = 6,
};
GType vh_control_widget_btn_type_get_type();

namespace varnholt::ui {

struct ControlWidgetState {
  ObjectPtr<GtkToggleButton> btn_link;
  ObjectPtr<GtkToggleButton> btn_route;
  ObjectPtr<GtkToggleButton> btn_shell;
  /** The page buttons in the order of the pages. */
  std::array<ObjectPtr<GtkToggleButton>, 3> page_btns;
  ObjectPtr<GtkButton> btn_add;
  ObjectPtr<GtkButton> btn_del;
  ObjectPtr<GtkButton> btn_edt;
  /** 1 while the bar itself presses and releases page buttons: the toolkit reports that too. */
  int in_toggle = 0;
  /** The page button that was reported last. */
  VhControlWidgetBtnType last_page_btn = VH_CONTROL_WIDGET_BTN_TYPE_BTNULL;
};

}  // namespace varnholt::ui

/**
 * The bar. Its signal "sig-btn-clicked" passes the VhControlWidgetBtnType of the clicked button. It
 * is emitted at each click of an action button, and at a click of a page button when another page
 * was reported last.
 */
struct VhControlWidget : GtkHBox, varnholt::ui::ControlWidgetState {
  VhControlWidget() = delete;
};

struct VhControlWidgetClass : GtkHBoxClass {};

GType vh_control_widget_get_type();

/**
 * Creates a bar, or one of a derived type, with its first page button pressed; it is floating, like
 * every new widget.
 */
VhControlWidget* vh_control_widget_new();
VhControlWidget* vh_control_widget_construct(GType object_type);
