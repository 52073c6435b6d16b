// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog in which a static route is entered or changed.
#include "ui/rut-dlg.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/diagnostics.h"
#include "base/file.h"
#include "base/object-type.h"
#include "base/text.h"
#include "ui/dialog-values.h"
#include "ui/form.h"
#include "ui/prompts.h"

namespace {

using varnholt::sink_object;
using varnholt::ui::Field;
using varnholt::ui::Objection;

/** The rows of the grid that have an entry, from top to bottom. A star says "not empty". */
constexpr struct {
  std::string_view caption;
  varnholt::ObjectPtr<GtkLabel> varnholt::ui::RutDlgState::*label;
  varnholt::ObjectPtr<GtkEntry> varnholt::ui::RutDlgState::*entry;
} entry_rows[] = {{"名称*", &VhRutDlg::name_label, &VhRutDlg::name_entry},
                  {"网段地址*", &VhRutDlg::addr_label, &VhRutDlg::addr_entry},
                  {"子网掩码*", &VhRutDlg::mask_label, &VhRutDlg::mask_entry},
                  {"网关地址*", &VhRutDlg::gw_label, &VhRutDlg::gw_entry},
                  {"路由调数", &VhRutDlg::jup_label, &VhRutDlg::jup_entry}};

std::vector<Field> fields_of(VhRutDlg* self) {
  std::vector<Field> fields;
  for (const auto& [caption, label, entry] : entry_rows) {
    const auto name = caption.substr(0, caption.find('*'));
    fields.push_back({(self->*entry).get(), std::string{name},
                      varnholt::ui::entry_text((self->*entry).get()), name == caption});
  }
  return fields;
}

/** Returns what is wrong with the values, if anything is. */
std::optional<Objection> objection_to(VhRutDlg* self, const std::string& nic) {
  auto fields = fields_of(self);
  if (auto objection = varnholt::ui::objection_to_empty(fields)) return objection;
  // The interface is chosen from a list, which has no entry.
  fields.push_back({self->jup_entry.get(), "网卡", nic});
  return varnholt::ui::objection_to_unfit(fields);
}

void fill(VhRutDlg* self) {
  self->table = sink_object<GtkTable>(varnholt::ui::new_grid(6, 2));
  auto* const table = self->table.get();
  for (guint row = 0; const auto& [caption, label, entry] : entry_rows) {
    self->*label = sink_object<GtkLabel>(gtk_label_new(caption.data()));
    self->*entry = sink_object<GtkEntry>(gtk_entry_new());
    varnholt::ui::attach_row(table, row++, (self->*label).get(), (self->*entry).get());
  }
  self->nic_label = sink_object<GtkLabel>(gtk_label_new("选择网卡"));
  self->nic_combo = sink_object<GtkComboBox>(gtk_combo_box_text_new());
  varnholt::ui::attach_row(table, 5, self->nic_label.get(), GTK_WIDGET(self->nic_combo.get()));
  GtkWidget* const content = gtk_dialog_get_content_area(self);
  gtk_box_pack_start(GTK_BOX(content), GTK_WIDGET(table), TRUE, TRUE, 0);
  gtk_widget_show_all(content);
}

void offer_interfaces(VhRutDlg* self) {
  std::vector<std::string> found;
  vh_rut_dlg_get_nics(&found);
  self->nics = {""};
  self->nics.insert(self->nics.end(), found.begin(), found.end());
  for (const auto& nic : self->nics) {
    gtk_combo_box_text_append_text(GTK_COMBO_BOX_TEXT(self->nic_combo.get()),
                                   varnholt::shown(nic).c_str());
  }
}

}  // namespace

GType vh_rut_dlg_get_type() {
  return varnholt::ObjectType<VhRutDlg, VhRutDlgClass, varnholt::ui::RutDlgState>::get(
      gtk_dialog_get_type(), "VhRutDlg");
}

VhRutDlg* vh_rut_dlg_new(const char* title, GtkWindow* parent) {
  return vh_rut_dlg_construct(vh_rut_dlg_get_type(), title, parent);
}

VhRutDlg* vh_rut_dlg_construct(GType object_type, const char* title, GtkWindow* parent) {
  auto* const self = static_cast<VhRutDlg*>(g_object_new(object_type, nullptr));
  varnholt::ui::frame_form(self, title, parent);
  fill(self);
  offer_interfaces(self);
  return self;
}

int vh_rut_dlg_run(VhRutDlg* self) {
  g_return_val_if_fail(self != NULL, 0);
  auto* start = varnholt::ui::first_to_fill(fields_of(self));
  while (true) {
    const int response = varnholt::ui::run_form(self, start);
    const auto values = varnholt::ui::values_of(self);
    if (response != GTK_RESPONSE_ACCEPT) return response;
    const auto objection = objection_to(self, values.nic);
    if (!objection) return response;
    start = varnholt::ui::tell(*objection);
  }
}

varnholt::model::RutDefFields varnholt::ui::values_of(VhRutDlg* self) {
  varnholt::model::RutDefFields values;
  for (const auto* text = model::route_texts.begin(); const auto& row : entry_rows) {
    values.** text++ = varnholt::ui::entry_text((self->*row.entry).get());
  }
  const int active = gtk_combo_box_get_active(self->nic_combo.get());
  if (active >= 1) {
    values.nic = self->nics.at(static_cast<std::size_t>(active));
    print_progress("active  nic %s \n", values.nic.c_str());
  }
  return values;
}

void vh_rut_dlg_get_ndata(VhRutDlg* self, char** name, char** addr, char** mask, char** gawy,
                          char** jump, char** nic) {
  g_return_if_fail(self != NULL);
  const auto values = varnholt::ui::values_of(self);
  for (const auto* text = varnholt::model::route_texts.begin();
       auto* wanted : {name, addr, mask, gawy, jump, nic}) {
    if (wanted != nullptr) *wanted = varnholt::give_text(values.**text);
    ++text;
  }
}

void vh_rut_dlg_set_ndata(VhRutDlg* self, const char* name, const char* addr, const char* mask,
                          const char* gawy, const char* jump, const char* nic) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(name != NULL);
  g_return_if_fail(addr != NULL);
  g_return_if_fail(mask != NULL);
  g_return_if_fail(gawy != NULL);
  g_return_if_fail(jump != NULL);
  g_return_if_fail(nic != NULL);
  const std::array texts{name, addr, mask, gawy, jump};
  for (const auto* text = texts.begin(); const auto& row : entry_rows) {
    varnholt::ui::set_entry_text((self->*row.entry).get(), *text++);
  }
  const auto found = std::ranges::find(self->nics, std::string_view{nic});
  const auto row = found == self->nics.end() ? 0 : found - self->nics.begin();
  gtk_combo_box_set_active(self->nic_combo.get(), static_cast<int>(row));
}

void vh_rut_dlg_clear_entries(VhRutDlg* self) {
  g_return_if_fail(self != NULL);
  for (const auto& row : entry_rows) varnholt::ui::set_entry_text((self->*row.entry).get(), "");
}

bool vh_rut_dlg_get_nics(std::vector<std::string>* nics) {
  g_return_val_if_fail(nics != NULL, false);
  nics->clear();
  const auto devices = varnholt::read_file("/proc/net/dev");
  if (devices.error) {
    if (!varnholt::is_file_error(*devices.error)) {
      // The number is part of a message that other programs know.
      varnholt::log_uncaught(*devices.error, "rut-dlg", 590);
    }
    return false;
  }
  for (const auto line : varnholt::split(devices.text(), '\n')) {
    const auto text = varnholt::trimmed(line);
    // Only the headings of the columns have no colon.
    const auto colon = text.find(':');
    if (colon == std::string_view::npos || text.starts_with("lo")) continue;
    nics->emplace_back(text.substr(0, colon));
  }
  return true;
}
