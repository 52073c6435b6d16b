// SPDX-License-Identifier: GPL-3.0-or-later
// The table of file definitions or of boot scripts.
#include "ui/bak-def-widget.h"

#include <array>
#include <string>

#include "base/diagnostics.h"
#include "base/object-type.h"

namespace {

using varnholt::ui::Value;
using varnholt::ui::value_of;

void on_sel_toggled(VhBakDefWidget* self, const char* path) {
  g_return_if_fail(path != NULL);
  varnholt::print_progress("enter  on toggled\n");
  self->on_sel_toggled(path);
}

void on_force_overwrite_toggled(VhBakDefWidget* self, const char* path) {
  g_return_if_fail(path != NULL);
  varnholt::print_progress("enter2  on toggled\n");
  const auto [found, force] = self->toggle(path, VH_BAK_DEF_WIDGET_COL_IDX_FORCE_OVERWRITE);
  if (found.item != nullptr) found.item->force_overwrite = force;
}

void op_cell_data_func(VhBakDefWidget* /*self*/, GtkCellRenderer* cell, GtkTreeModel* model,
                       GtkTreeIter* iter) {
  const int op = value_of<int>(model, iter, VH_BAK_DEF_WIDGET_COL_IDX_UP);
  g_object_set(cell, "text", varnholt::take_text(vh_FileOperationType_tostr(op)).get(), nullptr);
}

/** Returns a time in UTC as a text; empty for 0 and for a time that no calendar can represent. */
std::string date_of(gint64 time) {
  const time_t seconds = time;
  struct tm utc {};
  if (time == 0 || gmtime_r(&seconds, &utc) == nullptr) return {};
  return varnholt::take_text(g_time_to_string(&utc)).get();
}

void datetime_cell_data_func(VhBakDefWidget* self, GtkCellRenderer* cell, GtkTreeModel* /*model*/,
                             GtkTreeIter* iter) {
  const auto* const item = self->find(*iter).item;
  const auto text = date_of(item == nullptr ? 0 : item->last_oper_time);
  g_object_set(cell, "text", text.c_str(), nullptr);
}

void force_overwrite_cell_data_func(VhBakDefWidget* /*self*/, GtkCellRenderer* cell,
                                    GtkTreeModel* model, GtkTreeIter* iter) {
  const int op = value_of<int>(model, iter, VH_BAK_DEF_WIDGET_COL_IDX_UP);
  const bool force = value_of<bool>(model, iter, VH_BAK_DEF_WIDGET_COL_IDX_FORCE_OVERWRITE);
  g_object_set(cell, "visible", op == VH_FILE_OPERATION_TYPE_FOT_OverWrite, "active", force,
               nullptr);
}

/** Appends a column; `show` is called, with the table, before each of its cells is drawn. */
template <auto show>
GtkTreeViewColumn* append_computed_column(VhBakDefWidget* self, const char* title,
                                          GtkCellRenderer* renderer) {
  auto* const made = self->append_column(title, renderer, {false, false});
  gtk_tree_view_column_set_cell_data_func(
      made, renderer,
      [](GtkTreeViewColumn* column, GtkCellRenderer* cell, GtkTreeModel* model, GtkTreeIter* iter,
         gpointer table) noexcept {
        g_return_if_fail(column != NULL);
        g_return_if_fail(cell != NULL);
        g_return_if_fail(model != NULL);
        show(static_cast<VhBakDefWidget*>(table), cell, model, iter);
      },
      self, nullptr);
  return made;
}

void append_columns(VhBakDefWidget* self) {
  self->append_check_column("选择", on_sel_toggled);
  self->append_column("原文件(夹)", gtk_cell_renderer_text_new(), {true, true}, "text",
                      VH_BAK_DEF_WIDGET_COL_IDX_FROM);
  self->append_column(self->is_shell != 0 ? "目标文件(夹)" : "目标文件(夹)|链接",
                      gtk_cell_renderer_text_new(), {true, true}, "text",
                      VH_BAK_DEF_WIDGET_COL_IDX_TO);
  append_computed_column<op_cell_data_func>(self, "操作", gtk_cell_renderer_text_new());
  auto* const date = append_computed_column<datetime_cell_data_func>(self, "上次更新时间",
                                                                     gtk_cell_renderer_text_new());
  gtk_tree_view_column_set_visible(date, g_getenv("show_date") != nullptr);
  append_computed_column<force_overwrite_cell_data_func>(
      self, "是否覆盖", self->new_toggle(on_force_overwrite_toggled));
}

std::array<Value, 6> values_of(const VhBakDefItem* item, bool ticked, bool force) {
  return {Value{ticked},   Value{item->from},           Value{item->to},
          Value{item->op}, Value{item->last_oper_time}, Value{force}};
}

/** Returns the overwrite flag of an item after it is changed into `new_item`. */
bool force_after_edit(const VhBakDefItem* new_item, const VhBakDefItem* old_item) {
  if (!new_item->has(VH_FILE_OPERATION_TYPE_FOT_OverWrite)) return new_item->force_overwrite;
  if (!old_item->has(VH_FILE_OPERATION_TYPE_FOT_OverWrite)) return true;
  return old_item->force_overwrite;
}

}  // namespace

GType vh_bak_def_widget_col_idx_get_type() {
  static const GEnumValue values[] = {
      {VH_BAK_DEF_WIDGET_COL_IDX_SEL, "VH_BAK_DEF_WIDGET_COL_IDX_SEL", "sel"},
      {VH_BAK_DEF_WIDGET_COL_IDX_FROM, "VH_BAK_DEF_WIDGET_COL_IDX_FROM", "from"},
      {VH_BAK_DEF_WIDGET_COL_IDX_TO, "VH_BAK_DEF_WIDGET_COL_IDX_TO", "to"},
      {VH_BAK_DEF_WIDGET_COL_IDX_UP, "VH_BAK_DEF_WIDGET_COL_IDX_UP", "up"},
      {VH_BAK_DEF_WIDGET_COL_IDX_DATETIME, "VH_BAK_DEF_WIDGET_COL_IDX_DATETIME", "datetime"},
      {VH_BAK_DEF_WIDGET_COL_IDX_FORCE_OVERWRITE, "VH_BAK_DEF_WIDGET_COL_IDX_FORCE_OVERWRITE",
       "force-overwrite"},
      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("VhBakDefWidgetCOL_IDX", values);
  return type;
}

GType vh_bak_def_widget_get_type() {
  return varnholt::
      ObjectType<VhBakDefWidget, VhBakDefWidgetClass, varnholt::ui::BakDefWidgetState>::get(
          gtk_scrolled_window_get_type(), "VhBakDefWidget", [](VhBakDefWidgetClass* klass) {
            VhBakDefWidget::add_signal(klass);
            vh_bak_def_widget_col_idx_get_type();
          });
}

VhBakDefWidget* vh_bak_def_widget_new(int is_shell) {
  return vh_bak_def_widget_construct(vh_bak_def_widget_get_type(), is_shell);
}

VhBakDefWidget* vh_bak_def_widget_construct(GType object_type, int is_shell) {
  auto* const self = static_cast<VhBakDefWidget*>(g_object_new(object_type, nullptr));
  self->is_shell = is_shell;
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(self), GTK_POLICY_AUTOMATIC,
                                 GTK_POLICY_ALWAYS);
  self->make_view(
      vh_bak_def_item_list_new(),
      {G_TYPE_BOOLEAN, G_TYPE_STRING, G_TYPE_STRING, G_TYPE_INT, G_TYPE_INT64, G_TYPE_BOOLEAN},
      VH_BAK_DEF_WIDGET_COL_IDX_FROM);
  append_columns(self);
  self->attach_signals();
  gtk_container_add(GTK_CONTAINER(self), GTK_WIDGET(self->tree_view.get()));
  return self;
}

VhBakDefItemList* vh_bak_def_widget_get_items(VhBakDefWidget* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return varnholt::make_object(self->items.get()).release();
}

guint vh_bak_def_widget_get_total_selections(VhBakDefWidget* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->items->selected_number();
}

VhBakDefItem* vh_bak_def_widget_get_select_item(VhBakDefWidget* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return self->highlighted().hand_out(nullptr);
}

bool vh_bak_def_widget_add_item(VhBakDefWidget* self, VhBakDefItem* item) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(item != NULL, false);
  if (!vh_bak_def_widget_vaild_item(self, item)) return false;
  self->insert(item, varnholt::model::comes_first(*item),
               values_of(item, false, item->force_overwrite));
  return true;
}

bool vh_bak_def_widget_edit_item(VhBakDefWidget* self, VhBakDefItem* new_item,
                                 VhBakDefItem* old_item) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(new_item != NULL, false);
  g_return_val_if_fail(old_item != NULL, false);
  if (!vh_bak_def_widget_vaild_item(self, new_item)) return false;
  g_return_val_if_fail(old_item->iter, false);
  new_item->force_overwrite = force_after_edit(new_item, old_item);
  new_item->last_oper_time = old_item->last_oper_time;
  const bool force =
      new_item->has(VH_FILE_OPERATION_TYPE_FOT_OverWrite) && new_item->force_overwrite;
  self->replace(old_item, new_item, values_of(new_item, true, force),
                vh_bak_def_item_fill_by_other);
  return true;
}

void vh_bak_def_widget_del_selected_items(VhBakDefWidget* self) {
  g_return_if_fail(self != NULL);
  self->del_selected_items();
}

void vh_bak_def_widget_mark_del_selected_items(VhBakDefWidget* self) {
  g_return_if_fail(self != NULL);
  self->take_ticked([self](const VhBakDefItemList::Place& ticked) {
    GtkTreeIter row = *ticked.item->iter;
    if (!VhBakDefItemList::hide(ticked)) return false;
    gtk_list_store_set(self->store.get(), &row, VH_BAK_DEF_WIDGET_COL_IDX_SEL, FALSE,
                       VH_BAK_DEF_WIDGET_COL_IDX_UP, ticked.item->op, -1);
    return true;
  });
}

void vh_bak_def_widget_update_items_last_oper_time(VhBakDefWidget* self) {
  g_return_if_fail(self != NULL);
  for (const auto& item : *self->items) {
    if (varnholt::model::is_stamped(*item)) item->last_oper_time = std::time(nullptr);
  }
}

void vh_bak_def_widget_clear_selection(VhBakDefWidget* self) {
  g_return_if_fail(self != NULL);
  self->clear_selection();
}

bool vh_bak_def_widget_vaild_item(VhBakDefWidget* self, VhBakDefItem* item) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(item != NULL, false);
  if (varnholt::model::is_own_source(*item)) {
    main_alter("原文件和目标文件相同", GTK_BUTTONS_CLOSE);
    return false;
  }
  if (!item->has(VH_FILE_OPERATION_TYPE_FOT_Symbolic)) return true;
  return main_alter(
             "链接的原文件(夹)必须包含在之前定义的非链接的文件夹下,才能备份.\n否则仅建立软链接."
             "\n是否继续",
             GTK_BUTTONS_YES_NO) == GTK_RESPONSE_YES;
}

void vh_bak_def_widget_emit_selection_changed(VhBakDefWidget* self, int index) {
  g_return_if_fail(self != NULL);
  self->emit_selection_changed(index);
}

char* g_time_to_string(const struct tm* time) {
  g_return_val_if_fail(time != NULL, nullptr);
  // tm_year counts from 1900, so the year itself may not fit into an int.
  const gint64 year = gint64{time->tm_year} + 1900;
  return g_strdup_printf("%04" G_GINT64_FORMAT "-%02d-%02d %02d:%02d:%02d", year, time->tm_mon + 1,
                         time->tm_mday, time->tm_hour, time->tm_min, time->tm_sec);
}
