// SPDX-License-Identifier: GPL-3.0-or-later
// Writes the tables as the next version of the profile, and applies it.
#include <unistd.h>

#include <string>
#include <utility>

#include "app/varnholt.h"
#include "base/diagnostics.h"
#include "base/paths.h"
#include "base/shell.h"
#include "store/next-version.h"
#include "store/root-rights.h"

namespace {

using varnholt::print_progress;
using varnholt::store::RootRights;
namespace paths = varnholt::paths;

/** Removes the window from the screen, because nothing is drawn while the commands run. */
void hide_window(GtkWidget* window) {
  // A click that has already arrived must not open a dialog now.
  gtk_widget_set_sensitive(window, FALSE);
  gtk_widget_hide(window);
  while (gtk_events_pending() != 0) gtk_main_iteration();
  gdk_flush();
}

/** Moves the temporary profile into place if it was written, and applies the profile. */
void apply(Main* self, bool written, const RootRights& rights, const char* who) {
  // The closed password prompt must not stay on the screen until the commands end.
  gdk_flush();
  if (written) {
    const int status =
        rights.run("/bin/mv -f " + varnholt::path_argument(paths::temporary_profile) + ' ' +
                   varnholt::path_argument(paths::profile) + ' ');
    print_progress("%ssave return  code  %d \n", who, status);
  }
  if (!vh_FileTests(paths::backup_script, VH_FILE_TEST_TYPE_EXISTS)) return;
  hide_window(GTK_WIDGET(self->window.get()));
  print_progress("%sit is backuping  \n", who);
  const char* const program = main_s_exe_path ? main_s_exe_path.get() : "";
  int status = rights.run(varnholt::command_word(program) + " --save_symlink");
  print_progress("%sfinish  save_symlink return code %d\n", who, status);
  status = rights.run(varnholt::command_word(paths::backup_script) + " backup");
  print_progress("%sfinish  backup return code %d\n", who, status);
}

/** Asks for the user's password. Returns null when the user does not enter it. */
varnholt::SecretPtr ask_for_password() {
  char* typed = nullptr;
  const bool confirmed = main_inputdlg(&typed, "请输入用户密码", "保存配置");
  varnholt::SecretPtr password{typed};
  if (!confirmed) password.reset();
  return password;
}

}  // namespace

void main_save_imp(Main* self, std::string* text) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(text != NULL);
  *text = varnholt::store::profile_text(*self->lnk_table->items, *self->rut_table->items,
                                        *self->shl_table->items);
}

void main_save(Main* self) {
  g_return_if_fail(self != NULL);
  std::string text;
  main_save_imp(self, &text);
  const auto next = varnholt::store::write_next_version(text, self->unread);
  if (next == varnholt::store::NextVersion::unknown) return;
  const bool written = next == varnholt::store::NextVersion::written;
  if (getuid() == 0) return apply(self, written, RootRights{}, "root ");
  if (auto password = ask_for_password()) apply(self, written, RootRights{std::move(password)}, "");
}
