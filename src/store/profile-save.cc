// SPDX-License-Identifier: GPL-3.0-or-later
// Writes the tables back as the next version of the profile, and has it applied.
#include <unistd.h>

#include <string>
#include <utility>

#include "base/diagnostics.h"
#include "base/file.h"
#include "base/paths.h"
#include "base/shell.h"
#include "store/root-rights.h"
#include "varnholt.h"

namespace {

using varnholt::ErrorPtr;
using varnholt::log_uncaught;
using varnholt::out;
using varnholt::path_argument;
using varnholt::print_failure;
using varnholt::print_progress;
using varnholt::RootRights;
using varnholt::SecretPtr;
namespace paths = varnholt::paths;

enum class Stored {
  /** Another profile than the new one, or none at all. */
  differs,
  same,
  /** It can be anything, so it is left alone. */
  unreadable,
  /** Nothing can be said about it, not even that it is a matter of files. */
  unknown,
};

Stored tell_unreadable(int code) {
  print_failure("open file [%s] failed : %d", paths::profile, code);
  return Stored::unreadable;
}

/** Compares the stored profile with a new text, and takes its version. */
Stored compare_stored(const Main* self, const std::string& text, int& version) {
  // The tables do not hold what it says, even if it can be read by now.
  if (self->unread) return tell_unreadable(*self->unread);
  if (!vh_FileTests(paths::profile, VH_FILE_TEST_TYPE_EXISTS)) return Stored::differs;
  const auto profile = varnholt::read_file(paths::profile);
  if (!profile.error) {
    std::string stored{profile.text()};
    version = main_get_cur_version(&stored);
    if (stored != text) return Stored::differs;
    print_progress("The content is same.\n");
    return Stored::same;
  }
  if (varnholt::is_file_error(*profile.error)) return tell_unreadable(profile.error->code);
  log_uncaught(*profile.error, "varnholt", __LINE__);
  return Stored::unknown;
}

/** The version that follows; after the highest one the lowest, as numbers of 32 bits do. */
int next_version(int version) {
  return static_cast<int>(static_cast<unsigned>(version) + 1U);
}

/** Writes the temporary profile as a whole; returns whether it was written. */
bool write_temporary(const std::string& text, int version) {
  const auto profile = "version," + std::to_string(version) + '\n' + text;
  ErrorPtr error;
  if (g_file_set_contents(paths::temporary_profile, profile.data(),
                          static_cast<gssize>(profile.size()), out(error)) != 0) {
    return true;
  }
  if (!error) {
    print_failure("write file [%s] failed\n", paths::temporary_profile);
  } else if (varnholt::is_file_error(*error)) {
    print_failure("set contents [%s] failed : %d\n", paths::profile, error->code);
  } else {
    print_failure("save file [%s] failed : %s \n", paths::temporary_profile, error->message);
  }
  return false;
}

/** Takes the window from the screen: nothing is drawn while the commands run. */
void hide_window(GtkWidget* window) {
  // A click that has come in already must not open a dialog now.
  gtk_widget_set_sensitive(window, FALSE);
  gtk_widget_hide(window);
  while (gtk_events_pending() != 0) gtk_main_iteration();
  gdk_flush();
}

/** Moves the temporary profile into place if it was written, and has the profile applied. */
void apply(Main* self, bool written, const RootRights& rights, const char* who) {
  // The password prompt has gone; it is not to stay on the screen until the commands end.
  gdk_flush();
  if (written) {
    const int status = rights.run("/bin/mv -f " + path_argument(paths::temporary_profile) + ' ' +
                                  path_argument(paths::profile) + ' ');
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

/** The user's password; none when he does not give it. */
SecretPtr ask_for_password() {
  char* typed = nullptr;
  const bool confirmed = main_inputdlg(&typed, "请输入用户密码", "保存配置");
  SecretPtr password{typed};
  if (!confirmed) password.reset();
  return password;
}

}  // namespace

void main_save(Main* self) {
  g_return_if_fail(self != NULL);
  std::string text;
  main_save_imp(self, &text);
  int version = 0;
  const auto stored = compare_stored(self, text, version);
  if (stored == Stored::unknown) return;
  const bool written = stored == Stored::differs && write_temporary(text, next_version(version));
  if (getuid() == 0) {
    apply(self, written, RootRights{}, "root ");
    return;
  }
  auto password = ask_for_password();
  if (!password) return;
  apply(self, written, RootRights{std::move(password)}, "");
}
