// SPDX-License-Identifier: GPL-3.0-or-later
// Fills the tables from the profile.
#include <string>
#include <string_view>

#include "base/diagnostics.h"
#include "base/file.h"
#include "base/paths.h"
#include "base/text.h"
#include "varnholt.h"

namespace {

using varnholt::take_object;
namespace paths = varnholt::paths;

/** A line for a reader of lines; a NUL byte would cut it short, so one with it cannot be read. */
std::string readable(std::string_view line) {
  return line.find('\0') == std::string_view::npos ? std::string{line} : std::string{};
}

void load_line(Main* self, std::string_view line) {
  const auto is = [line](std::string_view kind) { return line.starts_with(kind); };
  if (is("version")) return;
  const auto text = readable(line);
  if (is("shl")) {
    const auto item = take_object(vh_bak_def_item_shl_scanf_string(text.c_str()));
    vh_bak_def_widget_add_item(self->shl_table.get(), item.get());
  } else if (is("lnk")) {
    const auto item = take_object(vh_bak_def_item_lnk_scanf_string(text.c_str()));
    vh_bak_def_widget_add_item(self->lnk_table.get(), item.get());
  } else if (is("rut,add")) {
    const auto item = take_object(vh_rut_def_item_scanf_string(text.c_str()));
    vh_rut_def_widget_add_item(self->rut_table.get(), item.get());
  } else if (is("rut,del") && !text.empty()) {
    vh_rut_def_widget_set_del_def_cb_active(self->rut_table.get(),
                                            vh_rut_def_item_list_scanf_del_def_rut(text.c_str()));
  }
}

}  // namespace

void main_read(Main* self) {
  g_return_if_fail(self != NULL);
  if (!vh_FileTests(paths::profile, VH_FILE_TEST_TYPE_EXISTS)) {
    varnholt::print_progress("open file  [%s] is not exist \n", paths::profile);
    return;
  }
  const auto profile = varnholt::read_file(paths::profile);
  if (!profile.error) {
    for (const auto line : varnholt::split(profile.text(), '\n')) load_line(self, line);
    return;
  }
  self->unread = profile.error->code;
  if (varnholt::is_file_error(*profile.error)) {
    varnholt::print_failure("open file [%s] failed : %d \n", paths::profile, profile.error->code);
  } else {
    varnholt::log_uncaught(*profile.error, "varnholt", __LINE__);
  }
}
