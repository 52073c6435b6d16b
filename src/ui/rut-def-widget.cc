// SPDX-License-Identifier: GPL-3.0-or-later
// The page of the static routes.
#include "ui/rut-def-widget.h"

#include <array>
#include <string>

#include "base/object-type.h"
#include "base/text.h"

namespace {

using varnholt::sink_object;
using varnholt::ui::Value;

/** The columns after the check box, in the order of the store's columns. */
constexpr struct {
  const char* title;
  varnholt::ui::ColumnWidth width;
} text_columns[] = {{"名称", {false, true}},    {"网段地址", {true, true}},
                    {"子网掩码", {true, true}}, {"网关地址", {true, true}},
                    {"路由跳数", {true, true}}, {"网卡", {false, false}}};

void on_del_rut_cb_toggled(VhRutDefWidget* self) {
  if (self->cb_updating == 1) return;
  self->items->del_def_rut =
      gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(self->del_rut_cb.get()));
}

void append_columns(VhRutDefWidget* self) {
  self->append_check_column(
      "选择", [](VhRutDefWidget* table, const char* path) { table->on_sel_toggled(path); });
  for (int column = VH_RUT_DEF_WIDGET_COL_IDX_NAME; const auto& [title, width] : text_columns) {
    self->append_column(title, gtk_cell_renderer_text_new(), width, "text", column++);
  }
}

std::array<Value, 7> values_of(const VhRutDefItem* item, bool ticked) {
  return {Value{ticked},   Value{item->name}, Value{item->addr}, Value{item->mask},
          Value{item->gw}, Value{item->jup},  Value{item->nic}};
}

/** Returns why `item` cannot join the routes when `except` is ignored; empty when it can. */
std::string objection_to(const VhRutDefWidget* self, const VhRutDefItem* item,
                         const VhRutDefItem* except) {
  const auto* const rival = self->items->first_rival_of(*item, except);
  if (rival == nullptr) return {};
  if (item->name == rival->name) return "路由名称已经存在";
  return "路由主要内容和已有路由[" + varnholt::shown_shortened(rival->name) + "]相同";
}

}  // namespace

GType vh_rut_def_widget_col_idx_get_type() {
  static const GEnumValue values[] = {
      {VH_RUT_DEF_WIDGET_COL_IDX_SEL, "VH_RUT_DEF_WIDGET_COL_IDX_SEL", "sel"},
      {VH_RUT_DEF_WIDGET_COL_IDX_NAME, "VH_RUT_DEF_WIDGET_COL_IDX_NAME", "name"},
      {VH_RUT_DEF_WIDGET_COL_IDX_ADDR, "VH_RUT_DEF_WIDGET_COL_IDX_ADDR", "addr"},
      {VH_RUT_DEF_WIDGET_COL_IDX_MASK, "VH_RUT_DEF_WIDGET_COL_IDX_MASK", "mask"},
      {VH_RUT_DEF_WIDGET_COL_IDX_GW, "VH_RUT_DEF_WIDGET_COL_IDX_GW", "gw"},
      {VH_RUT_DEF_WIDGET_COL_IDX_JUP, "VH_RUT_DEF_WIDGET_COL_IDX_JUP", "jup"},
      {VH_RUT_DEF_WIDGET_COL_IDX_NIC, "VH_RUT_DEF_WIDGET_COL_IDX_NIC", "nic"},
      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("VhRutDefWidgetCOL_IDX", values);
  return type;
}

GType vh_rut_def_widget_get_type() {
  return varnholt::
      ObjectType<VhRutDefWidget, VhRutDefWidgetClass, varnholt::ui::RutDefWidgetState>::get(
          gtk_vbox_get_type(), "VhRutDefWidget", [](VhRutDefWidgetClass* klass) {
            VhRutDefWidget::add_signal(klass);
            vh_rut_def_widget_col_idx_get_type();
          });
}

VhRutDefWidget* vh_rut_def_widget_new() {
  return vh_rut_def_widget_construct(vh_rut_def_widget_get_type());
}

VhRutDefWidget* vh_rut_def_widget_construct(GType object_type) {
  auto* const self = static_cast<VhRutDefWidget*>(g_object_new(object_type, nullptr));
  auto* const box = GTK_BOX(self);
  gtk_box_set_spacing(box, 3);
  self->make_view(vh_rut_def_item_list_new(),
                  {G_TYPE_BOOLEAN, G_TYPE_STRING, G_TYPE_STRING, G_TYPE_STRING, G_TYPE_STRING,
                   G_TYPE_STRING, G_TYPE_STRING},
                  VH_RUT_DEF_WIDGET_COL_IDX_NAME);
  append_columns(self);

  self->cb_box = sink_object<GtkHBox>(gtk_hbox_new(FALSE, 3));
  self->del_rut_cb = sink_object<GtkCheckButton>(gtk_check_button_new_with_label("删除默认路由"));
  gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(self->del_rut_cb.get()), self->items->del_def_rut);
  gtk_box_pack_start(GTK_BOX(self->cb_box.get()), GTK_WIDGET(self->del_rut_cb.get()), FALSE, FALSE,
                     0);
  gtk_box_pack_start(box, GTK_WIDGET(self->cb_box.get()), FALSE, FALSE, 3);

  self->scrolled_window = sink_object<GtkScrolledWindow>(gtk_scrolled_window_new(nullptr, nullptr));
  gtk_scrolled_window_set_policy(self->scrolled_window.get(), GTK_POLICY_AUTOMATIC,
                                 GTK_POLICY_ALWAYS);
  gtk_container_add(GTK_CONTAINER(self->scrolled_window.get()), GTK_WIDGET(self->tree_view.get()));
  gtk_box_pack_start(box, GTK_WIDGET(self->scrolled_window.get()), TRUE, TRUE, 0);
  self->attach_signals();
  varnholt::connect(self->del_rut_cb.get(), "toggled", self,
                    [self](GtkToggleButton* /*button*/) { on_del_rut_cb_toggled(self); });
  return self;
}

VhRutDefItemList* vh_rut_def_widget_get_items(VhRutDefWidget* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return varnholt::make_object(self->items.get()).release();
}

guint vh_rut_def_widget_get_total_selections(VhRutDefWidget* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->items->selected_number();
}

VhRutDefItem* vh_rut_def_widget_get_select_item(VhRutDefWidget* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return self->highlighted().hand_out(nullptr);
}

bool vh_rut_def_widget_add_item(VhRutDefWidget* self, VhRutDefItem* item) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(item != NULL, false);
  if (!vh_rut_def_widget_vaild_item(self, item, nullptr)) return false;
  self->insert(item, false, values_of(item, false));
  return true;
}

bool vh_rut_def_widget_edit_item(VhRutDefWidget* self, VhRutDefItem* new_item,
                                 VhRutDefItem* old_item) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(new_item != NULL, false);
  g_return_val_if_fail(old_item != NULL, false);
  if (!vh_rut_def_widget_vaild_item(self, new_item, old_item)) return false;
  g_return_val_if_fail(old_item->iter, false);
  self->replace(old_item, new_item, values_of(new_item, true), vh_rut_def_item_fill_by_other);
  return true;
}

void vh_rut_def_widget_del_selected_items(VhRutDefWidget* self) {
  g_return_if_fail(self != NULL);
  self->del_selected_items();
}

void vh_rut_def_widget_set_del_def_cb_active(VhRutDefWidget* self, bool active) {
  g_return_if_fail(self != NULL);
  self->cb_updating = 1;
  gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(self->del_rut_cb.get()), active);
  self->items->del_def_rut = active;
  self->cb_updating = 0;
}

bool vh_rut_def_widget_get_del_def_cb_active(VhRutDefWidget* self) {
  g_return_val_if_fail(self != NULL, false);
  return self->items->del_def_rut;
}

void vh_rut_def_widget_clear_selection(VhRutDefWidget* self) {
  g_return_if_fail(self != NULL);
  self->clear_selection();
}

bool vh_rut_def_widget_vaild_item(VhRutDefWidget* self, VhRutDefItem* item, VhRutDefItem* except) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(item != NULL, false);
  const auto objection = objection_to(self, item, except);
  if (objection.empty()) return true;
  main_alter(objection.c_str(), GTK_BUTTONS_CLOSE);
  return false;
}

void vh_rut_def_widget_emit_selection_changed(VhRutDefWidget* self, int index) {
  g_return_if_fail(self != NULL);
  self->emit_selection_changed(index);
}
