// SPDX-License-Identifier: GPL-3.0-or-later
// Fills the tables from the profile.
#include "app/varnholt.h"
#include "base/diagnostics.h"
#include "base/file.h"
#include "base/paths.h"
#include "base/text.h"
#include "store/profile.h"

namespace {

namespace paths = varnholt::paths;

void add_definition(VhBakDefWidget* table, const varnholt::store::ProfileLine& line) {
  const auto item = varnholt::take_object(varnholt::model::new_bak_def_item(line.definition));
  vh_bak_def_widget_add_item(table, item.get());
}

/** Loads a line. One that cannot be read gives no item, and its table logs a critical warning. */
void load_line(Main* self, const varnholt::store::ProfileLine& line) {
  using varnholt::store::LineKind;
  switch (line.kind) {
    case LineKind::file:
      return add_definition(self->lnk_table.get(), line);
    case LineKind::script:
      return add_definition(self->shl_table.get(), line);
    case LineKind::route: {
      const auto route = varnholt::take_object(varnholt::model::new_rut_def_item(line.route));
      vh_rut_def_widget_add_item(self->rut_table.get(), route.get());
      return;
    }
    case LineKind::default_route:
      if (line.deletes_default_route) {
        vh_rut_def_widget_set_del_def_cb_active(self->rut_table.get(), *line.deletes_default_route);
      }
      return;
    case LineKind::other:
      return;
  }
}

}  // namespace

void main_read(Main* self) {
  g_return_if_fail(self != NULL);
  self->unread.reset();
  if (!vh_FileTests(paths::profile, VH_FILE_TEST_TYPE_EXISTS)) {
    varnholt::print_progress("open file  [%s] is not exist \n", paths::profile);
    return;
  }
  const auto profile = varnholt::read_file(paths::profile);
  if (!profile.error) {
    for (const auto line : varnholt::split(profile.text(), '\n')) {
      load_line(self, varnholt::store::read_profile_line(line));
    }
    return;
  }
  self->unread = profile.error->code;
  if (varnholt::is_file_error(*profile.error)) {
    varnholt::print_failure("open file [%s] failed : %d \n", paths::profile, profile.error->code);
  } else {
    varnholt::log_uncaught(*profile.error, "varnholt", __LINE__);
  }
}
