// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the link builder over the whole profile.
#include "linkbuilder/link-builder.h"

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "base/descriptor.h"
#include "base/diagnostics.h"
#include "base/file.h"
#include "base/paths.h"
#include "base/text.h"
#include "linkbuilder/link-operations.h"
#include "store/replace-file.h"

namespace {

namespace paths = varnholt::paths;

/** An ordinary user's window must be able to read the profile next time. */
constexpr mode_t profile_mode = 0644;

/**
 * Replaces standard input by the null device: its pipe may still hold a password line, which no
 * command may read.
 */
void take_no_input() {
  const varnholt::Descriptor null{open("/dev/null", O_RDONLY | O_CLOEXEC)};
  if (!null || dup2(null.number(), STDIN_FILENO) < 0) close(STDIN_FILENO);
}

/** Corrects what the caller of the process may have left in a harmful state. */
void secure_process() {
  // Neither a broken message pipe nor a file size limit may end the run between two steps.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  // If this signal were ignored, the wait status of a command would be lost.
  std::signal(SIGCHLD, SIG_DFL);
  // In some charsets a shell reads the backslash that protects a quote as half of a character.
  g_setenv("LC_ALL", "C", TRUE);
}

void make_or_undo_link(const varnholt::BakDefFields& definition) {
  if (!definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic)) return;
  if (definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) {
    main_restore_del_symlink(definition.to.c_str());
  } else {
    varnholt::build_symlink(definition);
  }
}

void tell_failure(const GError& error) {
  varnholt::print_failure("open file [%s] failed : %s \n", paths::profile, error.message);
}

}  // namespace

varnholt::Lines varnholt::apply_definitions(
    std::string_view profile, const std::function<void(const varnholt::BakDefFields&)>& apply) {
  Lines done;
  for_each_piece(profile, '\n', [&](std::string_view line) {
    // No item is created: that would look up every source, which an existing link does not need.
    const auto definition = read_lnk_line(line);
    if (!definition) return;
    apply(*definition);
    if (definition->has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) done.emplace(line);
  });
  return done;
}

std::string varnholt::without_lines(std::string_view profile, const Lines& lines) {
  if (lines.empty()) {
    // This is the usual run, in which only empty lines at the beginning vanish.
    return std::string{profile.substr(std::min(profile.find_first_not_of('\n'), profile.size()))};
  }
  return kept_lines(profile, [&lines](std::string_view line) { return !lines.contains(line); });
}

void main_save_symbolic_dir() {
  take_no_input();
  secure_process();
  if (!vh_FileTests(paths::profile, VH_FILE_TEST_TYPE_EXISTS)) {
    varnholt::print_progress("open file  [%s] is not exist \n", paths::profile);
    return;
  }
  const auto profile = varnholt::read_file(paths::profile);
  if (profile.error) {
    tell_failure(*profile.error);
    return;
  }
  const auto done = varnholt::apply_definitions(profile.text(), make_or_undo_link);
  // Somebody may have saved another profile in the meantime, and nothing of it may be lost.
  const auto error = varnholt::replace_file(
      paths::profile, profile_mode,
      [&done](std::string_view stored) { return varnholt::without_lines(stored, done); });
  if (error) tell_failure(*error);
}
