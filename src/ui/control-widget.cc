// SPDX-License-Identifier: GPL-3.0-or-later
// The row of page and action buttons.
#include "ui/control-widget.h"

#include <algorithm>

#include "base/object-type.h"
#include "base/signal.h"

namespace {

using varnholt::make_object;

guint sig_btn_clicked = 0;

void togle_btns(VhControlWidget* self, int page) {
  for (int index = 0; const auto& button : self->page_btns) {
    gtk_toggle_button_set_active(button.get(), index++ == page);
  }
}

/** Returns the buttons in the order of their types. */
std::array<gpointer, VH_CONTROL_WIDGET_BTN_TYPE_BTNULL> buttons_of(const VhControlWidget* self) {
  return {self->btn_link.get(), self->btn_route.get(), self->btn_shell.get(),
          self->btn_edt.get(),  self->btn_del.get(),   self->btn_add.get()};
}

VhControlWidgetBtnType type_of(const VhControlWidget* self, const GtkButton* btn) {
  const auto buttons = buttons_of(self);
  return static_cast<VhControlWidgetBtnType>(std::ranges::find(buttons, btn) - buttons.begin());
}

void on_btn_clicked(VhControlWidget* self, const GtkButton* btn) {
  if (self->in_toggle != 0) return;
  const auto type = type_of(self, btn);
  const bool page = type <= VH_CONTROL_WIDGET_BTN_TYPE_Shell;
  if (page) {
    self->in_toggle = 1;
    togle_btns(self, type);
    self->in_toggle = 0;
    if (self->last_page_btn == type) return;
  }
  g_signal_emit(self, sig_btn_clicked, 0, type);
  if (page) self->last_page_btn = type;
}

void attach_signals(VhControlWidget* self) {
  for (auto* btn : buttons_of(self)) {
    varnholt::connect(btn, "clicked", self,
                      [self](GtkButton* clicked) { on_btn_clicked(self, clicked); });
  }
}

}  // namespace

GType vh_control_widget_btn_type_get_type() {
  static const GEnumValue values[] = {
      {VH_CONTROL_WIDGET_BTN_TYPE_Link, "VH_CONTROL_WIDGET_BTN_TYPE_Link", "link"},
      {VH_CONTROL_WIDGET_BTN_TYPE_Route, "VH_CONTROL_WIDGET_BTN_TYPE_Route", "route"},
      {VH_CONTROL_WIDGET_BTN_TYPE_Shell, "VH_CONTROL_WIDGET_BTN_TYPE_Shell", "shell"},
      {VH_CONTROL_WIDGET_BTN_TYPE_Edt, "VH_CONTROL_WIDGET_BTN_TYPE_Edt", "edt"},
      {VH_CONTROL_WIDGET_BTN_TYPE_Del, "VH_CONTROL_WIDGET_BTN_TYPE_Del", "del"},
      {VH_CONTROL_WIDGET_BTN_TYPE_Add, "VH_CONTROL_WIDGET_BTN_TYPE_Add", "add"},
      {VH_CONTROL_WIDGET_BTN_TYPE_BTNULL, "VH_CONTROL_WIDGET_BTN_TYPE_BTNULL", "btnull"},
      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("VhControlWidgetBtnType", values);
  return type;
}

GType vh_control_widget_get_type() {
  return varnholt::
      ObjectType<VhControlWidget, VhControlWidgetClass, varnholt::ui::ControlWidgetState>::get(
          gtk_hbox_get_type(), "VhControlWidget", [](VhControlWidgetClass* klass) {
            sig_btn_clicked = g_signal_new("sig_btn_clicked", G_TYPE_FROM_CLASS(klass),
                                           G_SIGNAL_RUN_LAST, 0, nullptr, nullptr, nullptr,
                                           G_TYPE_NONE, 1, vh_control_widget_btn_type_get_type());
          });
}

VhControlWidget* vh_control_widget_new() {
  return vh_control_widget_construct(vh_control_widget_get_type());
}

VhControlWidget* vh_control_widget_construct(GType object_type) {
  auto* const self = static_cast<VhControlWidget*>(g_object_new(object_type, nullptr));
  const auto new_page_button = [](const char* label) {
    return varnholt::sink_object<GtkToggleButton>(gtk_toggle_button_new_with_label(label));
  };
  const auto new_button = [](const char* label) {
    return varnholt::sink_object<GtkButton>(gtk_button_new_with_label(label));
  };
  self->btn_link = new_page_button("下发文件");
  self->btn_route = new_page_button("路由设置");
  self->btn_shell = new_page_button("开机脚本");
  self->btn_edt = new_button(" 编辑");
  self->btn_del = new_button("-删除");
  self->btn_add = new_button("+新增");
  self->page_btns = {make_object(self->btn_link.get()), make_object(self->btn_route.get()),
                     make_object(self->btn_shell.get())};

  auto* const box = GTK_BOX(self);
  for (const auto& button : self->page_btns) {
    gtk_box_pack_start(box, GTK_WIDGET(button.get()), FALSE, FALSE, 0);
  }
  for (auto* button : {self->btn_add.get(), self->btn_del.get(), self->btn_edt.get()}) {
    gtk_box_pack_end(box, GTK_WIDGET(button), FALSE, FALSE, 0);
  }
  togle_btns(self, VH_CONTROL_WIDGET_BTN_TYPE_Link);
  attach_signals(self);
  gtk_widget_show_all(GTK_WIDGET(self));
  return self;
}
