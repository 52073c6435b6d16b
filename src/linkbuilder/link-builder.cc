// SPDX-License-Identifier: GPL-3.0-or-later
// The link-builder run over the whole profile.
#include "linkbuilder/link-builder.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <string_view>

#include "base/diagnostics.h"
#include "base/file.h"
#include "base/glib-ptr.h"
#include "base/paths.h"
#include "base/text.h"
#include "linkbuilder/link-operations.h"
#include "model/bak-model.h"

namespace {

using varnholt::BakDefFields;
using varnholt::ErrorPtr;
using varnholt::out;
using varnholt::print_failure;
using varnholt::print_progress;
namespace paths = varnholt::paths;

constexpr mode_t profile_mode = 0644;
constexpr mode_t all_modes = 07777;

/** The pipe at standard input may still hold a password line, which no command may read. */
void take_no_input() {
  const int null = open("/dev/null", O_RDWR);
  if (null < 0) {
    close(STDIN_FILENO);
    return;
  }
  dup2(null, STDIN_FILENO);
  if (null != STDIN_FILENO) close(null);
}

/** Sets right what the caller of the process may have left in a way that would do harm. */
void secure_process() {
  // Neither a reader of the messages that goes away nor a limit ends the run between two steps.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  // Ignored, it would hide how a command ended.
  std::signal(SIGCHLD, SIG_DFL);
  // In some charsets a shell takes the backslash that protects a quote for half a character.
  g_setenv("LC_ALL", "C", TRUE);
}

bool is_deleted(const BakDefFields& definition) {
  return vh_IsFileOperationType(definition.op, VH_FILE_OPERATION_TYPE_FOT_Deleted);
}

void make_or_undo_link(const BakDefFields& definition) {
  if (!vh_IsFileOperationType(definition.op, VH_FILE_OPERATION_TYPE_FOT_Symbolic)) return;
  if (is_deleted(definition)) {
    main_restore_del_symlink(definition.to.c_str());
  } else {
    varnholt::build_symlink(definition);
  }
}

/** Replaces the profile as a whole: a reader sees the old one or the new one. */
void write_profile(const std::string& text) {
  // An ordinary user's window reads it next time, whatever the umask of this session.
  umask(0022);
  constexpr auto on_disk = static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT |
                                                              G_FILE_SET_CONTENTS_DURABLE);
  ErrorPtr error;
  if (!g_file_set_contents_full(paths::profile, text.data(), static_cast<gssize>(text.size()),
                                on_disk, profile_mode, out(error))) {
    print_failure("open file [%s] failed : %s \n", paths::profile, error->message);
    return;
  }
  // Newer versions of GLib keep the mode of the file that was there.
  struct stat written {};
  if (stat(paths::profile, &written) == 0 && (written.st_mode & all_modes) != profile_mode) {
    chmod(paths::profile, profile_mode);
  }
}

}  // namespace

std::string varnholt::applied_profile(std::string_view profile,
                                      const std::function<void(const BakDefFields&)>& apply) {
  return kept_lines(profile, [&apply](std::string_view line) {
    // No item is made: it would look up every source, and a standing link needs no look at it.
    const auto definition = read_lnk_line(line);
    if (!definition) return true;
    apply(*definition);
    return !is_deleted(*definition);
  });
}

void main_save_symbolic_dir() {
  take_no_input();
  secure_process();
  if (!vh_FileTests(paths::profile, VH_FILE_TEST_TYPE_EXISTS)) {
    print_progress("open file  [%s] is not exist \n", paths::profile);
    return;
  }
  const auto profile = varnholt::read_file(paths::profile);
  if (profile.error) {
    print_failure("open file [%s] failed : %s \n", paths::profile, profile.error->message);
    return;
  }
  write_profile(varnholt::applied_profile(profile.text(), make_or_undo_link));
}
