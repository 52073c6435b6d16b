// SPDX-License-Identifier: GPL-3.0-or-later
// The page of the static routes.
#include "ui/rut-def-widget.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include "base/object-type.h"
#include "base/text.h"

namespace {

using varnholt::sink_object;
using varnholt::Value;

/** The columns behind the check box, in the order of the store's. */
constexpr struct {
  const char* title;
  varnholt::ColumnWidth width;
} text_columns[] = {{"名称", {false, true}},    {"网段地址", {true, true}},
                    {"子网掩码", {true, true}}, {"网关地址", {true, true}},
                    {"路由跳数", {true, true}}, {"网卡", {false, false}}};

void on_sel_toggled(VhRutDefWidget* self, const char* path) {
  self->on_sel_toggled(path);
}

void on_del_rut_cb_toggled(VhRutDefWidget* self) {
  if (self->cb_updating == 1) return;
  self->items->del_def_rut =
      gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(self->del_rut_cb.get()));
}

void append_columns(VhRutDefWidget* self) {
  self->append_check_column("选择", on_sel_toggled);
  for (int column = VH_RUT_DEF_WIDGET_COL_IDX_NAME; const auto& [title, width] : text_columns) {
    self->append_column(title, gtk_cell_renderer_text_new(), width, "text", column++);
  }
}

std::array<Value, 7> values_of(const VhRutDefItem* item, bool ticked) {
  return {Value{ticked},   Value{item->name}, Value{item->addr}, Value{item->mask},
          Value{item->gw}, Value{item->jup},  Value{item->nic}};
}

/** Hashes of the name, and of the main contents. */
std::array<std::size_t, 2> hashes_of(const VhRutDefItem* item) {
  const std::hash<std::string> hash;
  return {hash(item->name), hash(item->addr + ',' + item->mask + ',' + item->gw)};
}

/** Keeps a route of the table to be found by `contents`, which it has or is about to take over. */
void remember(VhRutDefWidget* self, VhRutDefItem* item, const VhRutDefItem* contents) {
  for (const auto key : hashes_of(contents)) {
    self->by_contents.emplace(key, varnholt::make_object(item));
  }
}

void forget(VhRutDefWidget* self, const VhRutDefItem* item) {
  for (const auto key : hashes_of(item)) {
    const auto [from, to] = self->by_contents.equal_range(key);
    const auto kept =
        std::find_if(from, to, [item](const auto& entry) { return entry.second.get() == item; });
    if (kept != to) self->by_contents.erase(kept);
  }
}

bool same_contents(const VhRutDefItem* a, const VhRutDefItem* b) {
  return a->addr == b->addr && a->mask == b->mask && a->gw == b->gw;
}

/** The first route in the table with the name or the main contents of `item`; null for none. */
const VhRutDefItem* rival_of(const VhRutDefWidget* self, const VhRutDefItem* item,
                             const VhRutDefItem* except) {
  VhRutDefItemList::Place first;
  for (const auto key : hashes_of(item)) {
    const auto [from, to] = self->by_contents.equal_range(key);
    for (auto kept = from; kept != to; ++kept) {
      const auto* const other = kept->second.get();
      if (other == except) continue;
      if (item->name != other->name && !same_contents(item, other)) continue;
      const auto found = self->items->find(*other->iter);
      if (found.item == other && (first.item == nullptr || found.index < first.index)) {
        first = found;
      }
    }
  }
  return first.item;
}

/** Why `item` cannot join the routes, if `except` is not counted; empty when it can. */
std::string objection_to(const VhRutDefWidget* self, const VhRutDefItem* item,
                         const VhRutDefItem* except) {
  const auto* const rival = rival_of(self, item, except);
  if (rival == nullptr) return {};
  if (item->name == rival->name) return "路由名称已经存在";
  return "路由主要内容和已有路由[" + varnholt::shown_shortened(rival->name) + "]相同";
}

void attach_signals(VhRutDefWidget* self) {
  self->attach_signals();
  varnholt::connect(self->del_rut_cb.get(), "toggled", self,
                    [self](GtkToggleButton* /*button*/) { on_del_rut_cb_toggled(self); });
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
  using PageType =
      varnholt::ObjectType<VhRutDefWidget, VhRutDefWidgetClass, varnholt::RutDefWidgetState>;
  static const GType type = PageType::register_type(gtk_vbox_get_type(), "VhRutDefWidget",
                                                    [](VhRutDefWidgetClass* klass) {
                                                      VhRutDefWidget::add_signal(klass);
                                                      vh_rut_def_widget_col_idx_get_type();
                                                    });
  return type;
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
  attach_signals(self);
  return self;
}

VhRutDefItemList* vh_rut_def_widget_get_items(VhRutDefWidget* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return varnholt::make_object(self->items.get()).release();
}

guint vh_rut_def_widget_get_total_selections(VhRutDefWidget* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->get_total_selections();
}

VhRutDefItem* vh_rut_def_widget_get_select_item(VhRutDefWidget* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return self->get_select_item();
}

bool vh_rut_def_widget_add_item(VhRutDefWidget* self, VhRutDefItem* item) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(item != NULL, false);
  if (!vh_rut_def_widget_vaild_item(self, item, nullptr)) return false;
  remember(self, item, item);
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
  forget(self, old_item);
  remember(self, old_item, new_item);
  self->replace(old_item, new_item, values_of(new_item, true), vh_rut_def_item_fill_by_other);
  return true;
}

void vh_rut_def_widget_del_selected_items(VhRutDefWidget* self) {
  g_return_if_fail(self != NULL);
  self->del_selected_items([self](const VhRutDefItem& deleted) { forget(self, &deleted); });
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
