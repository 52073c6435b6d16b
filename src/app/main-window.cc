// SPDX-License-Identifier: GPL-3.0-or-later
// The main window: its contents, and the save when it is closed.
#include <gdk/gdkkeysyms.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "app-icon.xpm"
#include "app-ribbon.xpm"
#include "app/varnholt.h"
#include "base/object-type.h"
#include "base/signal.h"
#include "ui/accessible.h"

namespace {

using varnholt::connect;
using varnholt::sink_object;
using varnholt::take_object;
using varnholt::ui::own_window;

void main_init_dlgs(Main* self) {
  auto* const window = self->window.get();
  self->lnk_dlg = own_window<VhDefDlg>(vh_def_dlg_new(0, nullptr, window));
  self->shl_dlg = own_window<VhDefDlg>(vh_def_dlg_new(1, nullptr, window));
  self->rut_dlg = own_window<VhRutDlg>(vh_rut_dlg_new(nullptr, window));
}

void make_window(Main* self) {
  self->window = own_window<GtkWindow>(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  auto* const window = self->window.get();
  gtk_window_set_position(window, GTK_WIN_POS_CENTER);
  gtk_widget_set_size_request(GTK_WIDGET(window), 400, 300);
  gtk_window_set_title(window, "备份文件");
}

/** Sets the icon of this window and of all windows that are created later. */
void make_icon(Main* self) {
  self->icon_pixbuf = take_object(gdk_pixbuf_new_from_xpm_data(s_app_icon_xpm));
  gtk_window_set_default_icon(self->icon_pixbuf.get());
  gtk_window_set_icon(self->window.get(), self->icon_pixbuf.get());
}

void make_ribbon(Main* self) {
  self->ribbon_box = sink_object<GtkHBox>(gtk_hbox_new(FALSE, 3));
  self->ribbon_pixbuf = take_object(gdk_pixbuf_new_from_xpm_data(s_app_ribbon_xpm));
  self->ribbon_image = sink_object<GtkImage>(gtk_image_new_from_pixbuf(self->ribbon_pixbuf.get()));
  gtk_box_pack_start(GTK_BOX(self->ribbon_box.get()), GTK_WIDGET(self->ribbon_image.get()), FALSE,
                     FALSE, 5);
}

/** Adds a hidden page. A page is measured and laid out when it is shown, not with the window. */
void add_page(Main* self, std::size_t number, gpointer table) {
  auto* const page = GTK_WIDGET(table);
  self->pages.at(number) = varnholt::make_object(page);
  gtk_box_pack_start(GTK_BOX(self->page_box.get()), page, TRUE, TRUE, 0);
  gtk_widget_show_all(page);
  gtk_widget_hide(page);
  gtk_widget_set_no_show_all(page, TRUE);
}

void make_first_page(Main* self) {
  self->page_box = sink_object<GtkHBox>(gtk_hbox_new(FALSE, 0));
  self->lnk_table = sink_object<VhBakDefWidget>(vh_bak_def_widget_new(0));
  add_page(self, 0, self->lnk_table.get());
  gtk_widget_show(self->pages.front().get());
}

void make_other_pages(Main* self) {
  self->rut_table = sink_object<VhRutDefWidget>(vh_rut_def_widget_new());
  self->shl_table = sink_object<VhBakDefWidget>(vh_bak_def_widget_new(1));
  add_page(self, 1, self->rut_table.get());
  add_page(self, 2, self->shl_table.get());
}

void arrange_window(Main* self) {
  self->main_box = sink_object<GtkVBox>(gtk_vbox_new(FALSE, 3));
  auto* const box = GTK_BOX(self->main_box.get());
  gtk_container_set_border_width(GTK_CONTAINER(box), 4);
  const auto pack = [box](gpointer widget, guint padding) {
    gtk_box_pack_start(box, GTK_WIDGET(widget), FALSE, FALSE, padding);
  };
  pack(self->ribbon_box.get(), 0);
  pack(gtk_hseparator_new(), 3);
  pack(self->control_bar.get(), 0);
  pack(gtk_hseparator_new(), 2);
  gtk_box_pack_end(box, GTK_WIDGET(self->page_box.get()), TRUE, TRUE, 0);
  gtk_container_add(GTK_CONTAINER(self->window.get()), GTK_WIDGET(box));
}

/** Sets the initial size of the window: the usual one, or a wider one for a bar in large fonts. */
void size_window(Main* self) {
  constexpr int usual_width = 600;
  constexpr int usual_height = 450;
  gtk_widget_show_all(GTK_WIDGET(self->main_box.get()));
  GtkRequisition wanted{};
  gtk_widget_size_request(GTK_WIDGET(self->main_box.get()), &wanted);
  gtk_window_set_default_size(self->window.get(), std::max(usual_width, wanted.width),
                              usual_height);
}

bool has_check_box(GtkTreeViewColumn* column) {
  const std::unique_ptr<GList, varnholt::FreeWith<g_list_free>> cells{
      gtk_cell_layout_get_cells(GTK_CELL_LAYOUT(column))};
  return GTK_IS_CELL_RENDERER_TOGGLE(cells->data) != 0;
}

/** Makes Return in a table, and a double click on a text of it, press the edit button. */
void edit_on_activation(Main* self, GtkTreeView* table) {
  const auto press = [self] { gtk_button_clicked(self->control_bar->btn_edt.get()); };
  connect(table, "key-press-event", self, [press](GtkTreeView* /*table*/, GdkEventKey* event) {
    // The toolkit would toggle a check box that has the keyboard, as the space bar does.
    const bool enter = event->keyval == GDK_KEY_Return || event->keyval == GDK_KEY_KP_Enter ||
                       event->keyval == GDK_KEY_ISO_Enter;
    if (enter) press();
    return gboolean{enter};
  });
  connect(table, "row-activated", self,
          [press](GtkTreeView* /*table*/, GtkTreePath* /*row*/, GtkTreeViewColumn* column) {
            const std::unique_ptr<GdkEvent, varnholt::FreeWith<gdk_event_free>> event{
                gtk_get_current_event()};
            const bool by_key = event && event->type == GDK_KEY_PRESS;
            if (!by_key && column != nullptr && !has_check_box(column)) press();
          });
}

/** Saves when the user closes the window. Returns whether the window stays open. */
gboolean on_delete_event(Main* self) {
  // The save processes events, so the user may ask to close the window again.
  if (std::exchange(self->closing, true)) return TRUE;
  vh_bak_def_widget_update_items_last_oper_time(self->lnk_table.get());
  main_save(self);
  self->closing = false;
  return FALSE;
}

void attach_signals(Main* self) {
  connect(self->control_bar.get(), "sig-btn-clicked", self,
          [self](VhControlWidget* /*bar*/, VhControlWidgetBtnType type) {
            main_on_btns_clicked(self, type);
          });
  const auto* const bar = self->control_bar.get();
  for (const auto& [table, button] :
       {std::pair{self->lnk_table->tree_view.get(), bar->btn_link.get()},
        std::pair{self->rut_table->tree_view.get(), bar->btn_route.get()},
        std::pair{self->shl_table->tree_view.get(), bar->btn_shell.get()}}) {
    varnholt::ui::name_by(table, button);
    edit_on_activation(self, table);
  }
}

}  // namespace

GType main_get_type() {
  return varnholt::ObjectType<Main, MainClass, varnholt::app::MainState>::get(G_TYPE_OBJECT,
                                                                              "Main");
}

Main* main_new() {
  return main_construct(main_get_type());
}

Main* main_construct(GType object_type) {
  auto* const self = static_cast<Main*>(g_object_new(object_type, nullptr));
  make_window(self);
  make_ribbon(self);
  self->control_bar = sink_object<VhControlWidget>(vh_control_widget_new());
  make_first_page(self);
  arrange_window(self);
  size_window(self);
  gtk_widget_show(GTK_WIDGET(self->window.get()));
  // The window appears while the rest is created.
  gdk_display_flush(gtk_widget_get_display(GTK_WIDGET(self->window.get())));
  make_icon(self);
  make_other_pages(self);
  attach_signals(self);
  main_init_dlgs(self);
  main_read(self);
  main_show_stack_page(self, 0);
  connect(self->window.get(), "destroy", self, [](GtkWidget* /*window*/) { gtk_main_quit(); });
  connect(self->window.get(), "delete-event", self,
          [self](GtkWidget* /*window*/, GdkEvent* /*event*/) { return on_delete_event(self); });
  return self;
}

void main_show_stack_page(Main* self, int page) {
  g_return_if_fail(self != NULL);
  for (int index = 0; const auto& widget : self->pages) {
    const bool shown = index++ == page;
    if (shown) self->cur_page = page;
    gtk_widget_set_visible(widget.get(), shown);
  }
}

void main_run_window() {
  const auto self = take_object(main_new());
  main_s_main_window = varnholt::make_object(self->window.get());
  gtk_main();
}
