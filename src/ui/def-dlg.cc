// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog in which a file definition or a boot script is entered or changed.
#include "ui/def-dlg.h"

#include <array>
#include <string>
#include <string_view>

#include "base/object-type.h"
#include "base/signal.h"
#include "base/text.h"
#include "ui/accessible.h"
#include "ui/dialog-values.h"
#include "ui/form.h"
#include "ui/path-chooser.h"
#include "ui/prompts.h"

namespace {

using varnholt::sink_object;
using varnholt::model::BakDefFields;
using varnholt::ui::Field;
using varnholt::ui::Objection;

/** The folder below which the backup keeps its copies. */
constexpr std::string_view backup_folder = "/data_bak";

bool is_ticked(const auto& box) {
  return gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(box.get())) != 0;
}

void tick(const auto& box, bool ticked) {
  gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(box.get()), ticked);
}

void show(const auto& widget, bool visible) {
  gtk_widget_set_visible(GTK_WIDGET(widget.get()), visible);
}

void offer_files(VhDefDlg* self, bool offered) {
  show(self->select_file_cb, offered);
  self->select_file_shown = offered ? 1 : 0;
}

std::string location_in(GtkEntry* entry) {
  auto path = varnholt::ui::entry_text(entry);
  if (path.ends_with('/')) path.pop_back();
  return path;
}

std::array<Field, 2> fields_of(VhDefDlg* self) {
  auto* const from = self->from_entry.get();
  auto* const to = self->to_entry.get();
  return {Field{from, "原文件(夹)", location_in(from)}, Field{to, "目标文件(夹)", location_in(to)}};
}

/** Returns the fields by the names that their captions have now. */
std::array<Field, 2> captioned_fields_of(VhDefDlg* self) {
  auto fields = fields_of(self);
  fields.front().name = gtk_label_get_text(self->from_label.get());
  fields.back().name = gtk_label_get_text(self->to_label.get());
  return fields;
}

/** Returns what is wrong with the values, if anything is. */
std::optional<Objection> objection_to(VhDefDlg* self) {
  if (auto objection = varnholt::ui::objection_to_empty(fields_of(self))) return objection;
  if (varnholt::model::is_own_source(varnholt::ui::values_of(self))) {
    return Objection{self->to_entry.get(), "目标文件(夹)和原文件(夹)不能相同"};
  }
  return varnholt::ui::objection_to_unfit(captioned_fields_of(self));
}

/** Asks whether a link is meant; anything else needs no question. */
bool is_meant(const BakDefFields& values) {
  if (!values.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic)) return true;
  const auto question = "是否添加软连接" + varnholt::shown_shortened(values.from) + " (链接到" +
                        varnholt::shown_shortened(values.to) + ")";
  return varnholt::ui::show_message(GTK_MESSAGE_INFO, question.c_str(), GTK_BUTTONS_YES_NO) ==
         GTK_RESPONSE_YES;
}

/** Lets the user choose a path to replace the one in an entry. Returns null when none is chosen. */
varnholt::TextPtr ask_for_path(const VhDefDlg* self, GtkEntry* entry) {
  const bool files = self->select_file_shown != 0 && is_ticked(self->select_file_cb);
  return varnholt::ui::choose_path(location_in(entry), self->is_shell == 0 && !files);
}

/** Writes a chosen path into its entry; one for the source also suggests the target. */
void take_path(VhDefDlg* self, GtkEntry* entry, const char* path) {
  varnholt::ui::set_entry_text(entry, path);
  if (entry != self->from_entry.get() || is_ticked(self->jnt_cb)) return;
  vh_def_dlg_set_to_location(self, (std::string{backup_folder} + path).c_str());
}

/** Creates a row of the grid: a caption, an entry for a path, and the button of the chooser. */
void make_path_row(VhDefDlg* self, guint row, auto& caption, auto& entry, auto& btn) {
  auto* const table = self->table.get();
  caption = sink_object<GtkLabel>(gtk_label_new(nullptr));
  entry = sink_object<GtkEntry>(gtk_entry_new());
  btn = sink_object<GtkButton>(gtk_button_new_with_label("..."));
  varnholt::ui::attach_row(table, row, caption.get(), entry.get());
  varnholt::ui::attach_small(table, GTK_WIDGET(btn.get()), 2, row);
  varnholt::ui::take_dropped_paths(
      entry.get(), [self, hit = entry.get()](const char* path) { take_path(self, hit, path); });
  varnholt::ui::name_by(btn.get(), caption.get());
}

void make_widgets(VhDefDlg* self) {
  const auto new_check = [](const char* label) {
    return sink_object<GtkCheckButton>(gtk_check_button_new_with_label(label));
  };
  self->table = sink_object<GtkTable>(varnholt::ui::new_grid(3, 3));
  make_path_row(self, 0, self->from_label, self->from_entry, self->from_btn);
  make_path_row(self, 1, self->to_label, self->to_entry, self->to_btn);
  self->action_label = sink_object<GtkLabel>(gtk_label_new("动作"));
  self->append_rb = sink_object<GtkRadioButton>(gtk_radio_button_new_with_label(nullptr, "追加"));
  self->overwrite_rb = sink_object<GtkRadioButton>(
      gtk_radio_button_new_with_label_from_widget(self->append_rb.get(), "覆盖"));
  self->action_box = sink_object<GtkHBox>(gtk_hbox_new(FALSE, 0));
  self->select_file_cb = new_check("选择文件");
  self->jnt_cb = new_check("软连接");
}

/** Lets Tab go through each row of the grid from left to right, however high a theme makes them. */
void set_tab_order(VhDefDlg* self) {
  std::unique_ptr<GList, varnholt::FreeWith<g_list_free>> order;
  for (gpointer widget : std::initializer_list<gpointer>{
           self->from_entry.get(), self->from_btn.get(), self->to_entry.get(), self->to_btn.get(),
           self->action_box.get()}) {
    order.reset(g_list_append(order.release(), widget));
  }
  gtk_container_set_focus_chain(GTK_CONTAINER(self->table.get()), order.get());
}

void arrange_widgets(VhDefDlg* self) {
  auto* const table = self->table.get();
  auto* const box = GTK_BOX(self->action_box.get());
  gtk_box_pack_start(box, GTK_WIDGET(self->append_rb.get()), FALSE, FALSE, 0);
  gtk_box_pack_start(box, GTK_WIDGET(self->overwrite_rb.get()), FALSE, FALSE, 0);
  gtk_box_pack_end(box, GTK_WIDGET(self->select_file_cb.get()), FALSE, FALSE, 0);
  varnholt::ui::attach_row(table, 2, self->action_label.get(), GTK_WIDGET(box));
  // A screen reader treats a box as a group of its own only when it has this role.
  atk_object_set_role(gtk_widget_get_accessible(GTK_WIDGET(box)), ATK_ROLE_PANEL);
  varnholt::ui::name_by(box, self->action_label.get());

  set_tab_order(self);
  GtkWidget* const content = gtk_dialog_get_content_area(self);
  gtk_box_pack_start(GTK_BOX(content), GTK_WIDGET(self->jnt_cb.get()), TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(content), GTK_WIDGET(table), TRUE, TRUE, 0);
}

}  // namespace

GType vh_def_dlg_get_type() {
  return varnholt::ObjectType<VhDefDlg, VhDefDlgClass, varnholt::ui::DefDlgState>::get(
      gtk_dialog_get_type(), "VhDefDlg");
}

VhDefDlg* vh_def_dlg_new(int is_shell, const char* title, GtkWindow* parent) {
  return vh_def_dlg_construct(vh_def_dlg_get_type(), is_shell, title, parent);
}

VhDefDlg* vh_def_dlg_construct(GType object_type, int is_shell, const char* title,
                               GtkWindow* parent) {
  auto* const self = static_cast<VhDefDlg*>(g_object_new(object_type, nullptr));
  self->is_shell = is_shell;
  varnholt::ui::frame_form(self, title, parent);
  gtk_window_set_default_size(GTK_WINDOW(self), 300, 120);
  make_widgets(self);
  arrange_widgets(self);
  vh_def_dlg_attach_signals(self);
  gtk_widget_show_all(gtk_dialog_get_content_area(self));
  vh_def_dlg_update_ui(self, 0);
  self->jnt_enabled = is_shell == 0 ? 1 : 0;
  show(self->jnt_cb, is_shell == 0);
  offer_files(self, is_shell == 0);
  return self;
}

int vh_def_dlg_run(VhDefDlg* self, int is_edit) {
  g_return_val_if_fail(self != NULL, 0);
  auto* start = varnholt::ui::first_to_fill(fields_of(self));
  while (true) {
    gtk_widget_set_sensitive(GTK_WIDGET(self->jnt_cb.get()), is_edit == 0);
    if (!is_ticked(self->jnt_cb)) offer_files(self, self->is_shell == 0);
    const int response = varnholt::ui::run_form(self, start);
    if (response != GTK_RESPONSE_ACCEPT) return response;
    if (const auto objection = objection_to(self)) {
      start = varnholt::ui::tell(*objection);
    } else if (is_meant(varnholt::ui::values_of(self))) {
      return response;
    }
  }
}

varnholt::model::BakDefFields varnholt::ui::values_of(VhDefDlg* self) {
  return {.from = location_in(self->from_entry.get()),
          .to = location_in(self->to_entry.get()),
          .op = vh_def_dlg_get_file_operation_type(self)};
}

void vh_def_dlg_get_ndata(VhDefDlg* self, char** from, char** to, VhFileOperationType* op) {
  g_return_if_fail(self != NULL);
  if (from != nullptr) *from = vh_def_dlg_get_from_location(self);
  if (to != nullptr) *to = vh_def_dlg_get_to_location(self);
  if (op != nullptr) *op = vh_def_dlg_get_file_operation_type(self);
}

void vh_def_dlg_set_ndata(VhDefDlg* self, const char* from_loc, const char* to_loc,
                          VhFileOperationType op) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(from_loc != NULL);
  g_return_if_fail(to_loc != NULL);
  vh_def_dlg_set_from_location(self, from_loc);
  vh_def_dlg_set_to_location(self, to_loc);
  vh_def_dlg_set_file_operation_type(self, op);
}

char* vh_def_dlg_get_from_location(VhDefDlg* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return varnholt::give_text(location_in(self->from_entry.get()));
}

char* vh_def_dlg_get_to_location(VhDefDlg* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return varnholt::give_text(location_in(self->to_entry.get()));
}

void vh_def_dlg_set_from_location(VhDefDlg* self, const char* val) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(val != NULL);
  varnholt::ui::set_entry_text(self->from_entry.get(), val);
}

void vh_def_dlg_set_to_location(VhDefDlg* self, const char* val) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(val != NULL);
  varnholt::ui::set_entry_text(self->to_entry.get(), val);
}

VhFileOperationType vh_def_dlg_get_file_operation_type(VhDefDlg* self) {
  g_return_val_if_fail(self != NULL, VH_FILE_OPERATION_TYPE_FOT_NULL);
  if (self->jnt_enabled == 1 && is_ticked(self->jnt_cb)) return VH_FILE_OPERATION_TYPE_FOT_Symbolic;
  return is_ticked(self->append_rb) ? VH_FILE_OPERATION_TYPE_FOT_Update
                                    : VH_FILE_OPERATION_TYPE_FOT_OverWrite;
}

void vh_def_dlg_set_file_operation_type(VhDefDlg* self, VhFileOperationType op) {
  g_return_if_fail(self != NULL);
  const bool symbolic = vh_IsFileOperationType(op, VH_FILE_OPERATION_TYPE_FOT_Symbolic);
  tick(self->jnt_cb, symbolic);
  if (symbolic) return;
  const bool update = vh_IsFileOperationType(op, VH_FILE_OPERATION_TYPE_FOT_Update);
  tick(update ? self->append_rb : self->overwrite_rb, true);
}

void vh_def_dlg_clear_entries(VhDefDlg* self) {
  g_return_if_fail(self != NULL);
  vh_def_dlg_set_from_location(self, "");
  vh_def_dlg_set_to_location(self, "");
}

void vh_def_dlg_update_ui(VhDefDlg* self, int on) {
  g_return_if_fail(self != NULL);
  show(self->to_btn, true);
  gtk_editable_set_editable(GTK_EDITABLE(self->to_entry.get()), TRUE);
  tick(self->select_file_cb, false);
  show(self->select_file_cb, true);
  show(self->append_rb, on == 0);
  show(self->overwrite_rb, on == 0);
  show(self->action_label, on == 0);
  gtk_label_set_text(self->to_label.get(), on == 0 ? "目标文件(夹)" : "链接文件(夹)");
  gtk_label_set_text(self->from_label.get(), on == 0 ? "原文件(夹)" : "备份文件(夹)");
}

void vh_def_dlg_on_jnt_toggled(VhDefDlg* self, GtkToggleButton* cb) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(cb != NULL);
  vh_def_dlg_update_ui(self, gtk_toggle_button_get_active(cb));
}

void vh_def_dlg_on_btns_clicked(VhDefDlg* self, GtkButton* btn) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(btn != NULL);
  const bool source = btn == self->from_btn.get();
  if (!source && btn != self->to_btn.get()) return;
  const auto fields = captioned_fields_of(self);
  auto chosen = source ? fields.front() : fields.back();
  const auto path = ask_for_path(self, chosen.entry);
  chosen.value = path ? path.get() : "";
  const auto objection = varnholt::ui::objection_to_unfit({&chosen, 1});
  if (objection) varnholt::ui::tell(*objection);
  // The chooser was over the main window and left the keyboard there.
  if (gtk_widget_get_visible(GTK_WIDGET(self)) != 0) gtk_window_present(GTK_WINDOW(self));
  if (path && !objection) take_path(self, chosen.entry, path.get());
}

void vh_def_dlg_attach_signals(VhDefDlg* self) {
  g_return_if_fail(self != NULL);
  for (auto* btn : {self->from_btn.get(), self->to_btn.get()}) {
    varnholt::connect(btn, "clicked", self,
                      [self](GtkButton* clicked) { vh_def_dlg_on_btns_clicked(self, clicked); });
  }
  varnholt::connect(self->jnt_cb.get(), "toggled", self,
                    [self](GtkToggleButton* toggled) { vh_def_dlg_on_jnt_toggled(self, toggled); });
}
