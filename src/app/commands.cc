// SPDX-License-Identifier: GPL-3.0-or-later
// The actions of the buttons of the control bar: each page pairs a table with a dialog.
#include "app/varnholt.h"
#include "base/diagnostics.h"
#include "ui/dialog-values.h"

namespace {

using varnholt::ObjectPtr;
using varnholt::take_object;

/** A page of file definitions or of boot scripts. */
struct FilePage {
  static constexpr auto* add_title = "新增文件";
  static constexpr auto* edit_title = "修改文件";

  int run(int is_edit) const { return vh_def_dlg_run(dialog, is_edit); }
  void clear() const { vh_def_dlg_clear_entries(dialog); }

  void preset(const VhBakDefItem& item) const {
    vh_def_dlg_set_ndata(dialog, item.from.c_str(), item.to.c_str(),
                         static_cast<VhFileOperationType>(item.op));
  }

  ObjectPtr<VhBakDefItem> entered() const {
    return take_object(varnholt::model::new_bak_def_item(varnholt::ui::values_of(dialog)));
  }

  ObjectPtr<VhBakDefItem> highlighted() const {
    return take_object(vh_bak_def_widget_get_select_item(table));
  }

  bool add(VhBakDefItem* item) const { return vh_bak_def_widget_add_item(table, item); }
  void change(VhBakDefItem* values, VhBakDefItem* changed) const {
    vh_bak_def_widget_edit_item(table, values, changed);
  }

  void remove() const {
    if (table->is_shell != 0) {
      // The line of a boot script cannot hold a deletion mark, so the script is removed at once.
      vh_bak_def_widget_del_selected_items(table);
      return;
    }
    varnholt::print_progress("mark_del_selected_items\n");
    vh_bak_def_widget_mark_del_selected_items(table);
  }

  VhBakDefWidget* table;
  VhDefDlg* dialog;
};

/** The page of the routes. */
struct RoutePage {
  static constexpr auto* add_title = "新增路由";
  static constexpr auto* edit_title = "修改路由";

  int run(int /*is_edit*/) const { return vh_rut_dlg_run(dialog); }
  void clear() const { vh_rut_dlg_clear_entries(dialog); }

  void preset(const VhRutDefItem& item) const {
    vh_rut_dlg_set_ndata(dialog, item.name.c_str(), item.addr.c_str(), item.mask.c_str(),
                         item.gw.c_str(), item.jup.c_str(), item.nic.c_str());
  }

  ObjectPtr<VhRutDefItem> entered() const {
    return take_object(varnholt::model::new_rut_def_item(varnholt::ui::values_of(dialog)));
  }

  ObjectPtr<VhRutDefItem> highlighted() const {
    return take_object(vh_rut_def_widget_get_select_item(table));
  }

  bool add(VhRutDefItem* item) const { return vh_rut_def_widget_add_item(table, item); }
  void change(VhRutDefItem* values, VhRutDefItem* changed) const {
    vh_rut_def_widget_edit_item(table, values, changed);
  }

  void remove() const { vh_rut_def_widget_del_selected_items(table); }

  VhRutDefWidget* table;
  VhRutDlg* dialog;
};

/** Runs the page's dialog with a title and hides it; returns whether the user confirmed. */
template <typename Page>
bool is_confirmed(const Page& page, const char* title, int is_edit) {
  gtk_window_set_title(GTK_WINDOW(page.dialog), title);
  const int response = page.run(is_edit);
  gtk_widget_hide(GTK_WIDGET(page.dialog));
  return response == GTK_RESPONSE_ACCEPT;
}

template <typename Page>
void add(const Page& page) {
  if (!is_confirmed(page, Page::add_title, 0)) return;
  const auto entered = page.entered();
  // Values that the table refuses stay in the dialog, where the user can correct them.
  if (!page.add(entered.get())) return;
  page.table->scroll_to(*entered);
  page.clear();
}

template <typename Page>
void edit(const Page& page) {
  const auto edited = page.highlighted();
  if (!edited) {
    main_alter("请选择编辑行", GTK_BUTTONS_CLOSE);
    return;
  }
  page.preset(*edited);
  if (is_confirmed(page, Page::edit_title, 1)) page.change(page.entered().get(), edited.get());
  page.clear();
}

template <typename Page>
void act(const Page& page, VhControlWidgetBtnType type) {
  if (type == VH_CONTROL_WIDGET_BTN_TYPE_Add) add(page);
  if (type == VH_CONTROL_WIDGET_BTN_TYPE_Edt) edit(page);
  if (type == VH_CONTROL_WIDGET_BTN_TYPE_Del) page.remove();
}

}  // namespace

void main_on_btns_clicked(Main* self, VhControlWidgetBtnType type) {
  g_return_if_fail(self != NULL);
  if (type <= VH_CONTROL_WIDGET_BTN_TYPE_Shell) {
    main_show_stack_page(self, type);
    return;
  }
  switch (self->cur_page) {
    case VH_CONTROL_WIDGET_BTN_TYPE_Link:
      return act(FilePage{self->lnk_table.get(), self->lnk_dlg.get()}, type);
    case VH_CONTROL_WIDGET_BTN_TYPE_Route:
      return act(RoutePage{self->rut_table.get(), self->rut_dlg.get()}, type);
    case VH_CONTROL_WIDGET_BTN_TYPE_Shell:
      return act(FilePage{self->shl_table.get(), self->shl_dlg.get()}, type);
    default:
      return;
  }
}
