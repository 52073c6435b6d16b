// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog in which a static route is entered or changed.
#include "ui/rut-dlg.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "base/diagnostics.h"
#include "base/file.h"
#include "base/object-type.h"
#include "base/text.h"
#include "ui/form.h"
#include "ui/prompts.h"

namespace {

using varnholt::entry_text;
using varnholt::give_text;
using varnholt::set_entry_text;
using varnholt::sink_object;

/** The entries from top to bottom. */
std::array<GtkEntry*, 5> entries_of(VhRutDlg* self) {
  return {self->name_entry.get(), self->addr_entry.get(), self->mask_entry.get(),
          self->gw_entry.get(), self->jup_entry.get()};
}

/** The six values in the order of a route's texts. */
std::array<std::string, 6> values_of(VhRutDlg* self) {
  std::array<std::string, 6> values;
  std::ranges::transform(entries_of(self), values.begin(), entry_text);
  const int active = gtk_combo_box_get_active(self->nic_combo.get());
  if (active >= 1) {
    values.back() = self->nics.at(static_cast<std::size_t>(active));
    varnholt::print_progress("active  nic %s \n", values.back().c_str());
  }
  return values;
}

/** What to tell the user about values that cannot be a route; none when they can. */
const char* objection_to(const std::array<std::string, 6>& values) {
  const auto& [name, addr, mask, gw, jup, nic] = values;
  if (name.empty()) return "名称不能为空";
  if (addr.empty()) return "网段地址不能为空";
  if (mask.empty()) return "子网掩码不能为空";
  if (gw.empty()) return "网关地址不能为空";
  for (const auto& value : values) {
    if (const auto* objection = varnholt::objection_to_field(value)) return objection;
  }
  return nullptr;
}

/** The interface that a line of /proc/net/dev is about; none for the headings of its columns. */
std::optional<std::string> interface_of(std::string_view line) {
  const auto text = varnholt::trimmed(line);
  const auto colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  return std::string{text.substr(0, colon)};
}

void make_widgets(VhRutDlg* self) {
  const auto new_label = [](const char* text) {
    return sink_object<GtkLabel>(gtk_label_new(text));
  };
  const auto new_entry = [] { return sink_object<GtkEntry>(gtk_entry_new()); };
  self->table = sink_object<GtkTable>(varnholt::new_grid(6, 2));
  self->name_label = new_label("名称*");
  self->addr_label = new_label("网段地址*");
  self->mask_label = new_label("子网掩码*");
  self->gw_label = new_label("网关地址*");
  self->jup_label = new_label("路由调数");
  self->nic_label = new_label("选择网卡");
  self->name_entry = new_entry();
  self->addr_entry = new_entry();
  self->mask_entry = new_entry();
  self->gw_entry = new_entry();
  self->jup_entry = new_entry();
  self->nic_combo = sink_object<GtkComboBox>(gtk_combo_box_text_new());
}

void arrange_widgets(VhRutDlg* self) {
  auto* const table = self->table.get();
  for (guint row = 0;
       const auto& [caption, entry] : {std::pair{self->name_label.get(), self->name_entry.get()},
                                       {self->addr_label.get(), self->addr_entry.get()},
                                       {self->mask_label.get(), self->mask_entry.get()},
                                       {self->gw_label.get(), self->gw_entry.get()},
                                       {self->jup_label.get(), self->jup_entry.get()}}) {
    varnholt::attach_row(table, row++, caption, entry);
  }
  varnholt::attach_row(table, 5, self->nic_label.get(), GTK_WIDGET(self->nic_combo.get()));
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
  using DialogType = varnholt::ObjectType<VhRutDlg, VhRutDlgClass, varnholt::RutDlgState>;
  static const GType type = DialogType::register_type(gtk_dialog_get_type(), "VhRutDlg");
  return type;
}

VhRutDlg* vh_rut_dlg_new(const char* title, GtkWindow* parent) {
  return vh_rut_dlg_construct(vh_rut_dlg_get_type(), title, parent);
}

VhRutDlg* vh_rut_dlg_construct(GType object_type, const char* title, GtkWindow* parent) {
  auto* const self = static_cast<VhRutDlg*>(g_object_new(object_type, nullptr));
  varnholt::frame_form(self, title, parent);
  make_widgets(self);
  offer_interfaces(self);
  arrange_widgets(self);
  return self;
}

int vh_rut_dlg_run(VhRutDlg* self) {
  g_return_val_if_fail(self != NULL, 0);
  while (true) {
    const int response = varnholt::run_form(self, entries_of(self), entry_text);
    const auto values = values_of(self);
    if (response != GTK_RESPONSE_ACCEPT) return response;
    const char* const objection = objection_to(values);
    if (objection == nullptr) return response;
    main_alter(objection, GTK_BUTTONS_CLOSE);
  }
}

void vh_rut_dlg_get_ndata(VhRutDlg* self, char** name, char** addr, char** mask, char** gawy,
                          char** jump, char** nic) {
  g_return_if_fail(self != NULL);
  const auto values = values_of(self);
  for (const auto* value = values.begin(); auto* wanted : {name, addr, mask, gawy, jump, nic}) {
    if (wanted != nullptr) *wanted = give_text(*value);
    ++value;
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
  for (const auto* text = texts.begin(); auto* entry : entries_of(self)) {
    set_entry_text(entry, *text++);
  }
  const auto found = std::ranges::find(self->nics, std::string_view{nic});
  const auto row = found == self->nics.end() ? 0 : found - self->nics.begin();
  gtk_combo_box_set_active(self->nic_combo.get(), static_cast<int>(row));
}

void vh_rut_dlg_clear_entries(VhRutDlg* self) {
  g_return_if_fail(self != NULL);
  for (auto* entry : entries_of(self)) set_entry_text(entry, "");
}

bool vh_rut_dlg_get_nics(std::vector<std::string>* nics) {
  g_return_val_if_fail(nics != NULL, false);
  nics->clear();
  const auto devices = varnholt::read_file("/proc/net/dev");
  if (devices.error) {
    if (!varnholt::is_file_error(*devices.error)) {
      varnholt::log_uncaught(*devices.error, "rut-dlg", 590);
    }
    return false;
  }
  for (const auto line : varnholt::split(devices.text(), '\n')) {
    const auto name = interface_of(line);
    if (name && !name->starts_with("lo")) nics->push_back(*name);
  }
  return true;
}
