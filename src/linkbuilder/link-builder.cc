// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the link builder over the whole profile.
#include "linkbuilder/link-builder.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <string>
#include <string_view>

#include "base/descriptor.h"
#include "base/diagnostics.h"
#include "base/file.h"
#include "base/path.h"
#include "base/paths.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/journal.h"
#include "linkbuilder/operations.h"
#include "linkbuilder/resume.h"
#include "linkbuilder/stop-signals.h"
#include "linkbuilder/unfinished.h"
#include "store/definitions.h"
#include "store/profile.h"
#include "store/replace-file.h"

namespace varnholt::linkbuilder {
namespace {

/**
 * Replaces standard input by the null device: its pipe may still hold a password line, which no
 * command may read.
 */
void take_no_input() {
  const Descriptor null{open("/dev/null", O_RDONLY | O_CLOEXEC)};
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

/**
 * Makes a limit of the process at least as high as a run needs it. Returns whether it is; if not,
 * says so.
 */
bool raise_limit(__rlimit_resource kind, rlim_t needed, const char* what) {
  rlimit limit{};
  if (getrlimit(kind, &limit) != 0 || limit.rlim_cur >= needed) return true;
  rlimit raised{needed, std::max(limit.rlim_max, needed)};
  if (setrlimit(kind, &raised) == 0) return true;
  print_failure("nothing is done, because this process may not %s\n", what);
  return false;
}

/** Raises the limits with which a command would fail between two steps. */
bool raise_limits() {
  // Each level of a folder takes two descriptors when it is compared.
  constexpr rlim_t open_files = 2UL * PATH_MAX;
  constexpr rlim_t stack = 8UL << 20;
  return raise_limit(RLIMIT_STACK, stack, "use much memory") &&
         raise_limit(RLIMIT_FSIZE, RLIM_INFINITY, "write large files") &&
         raise_limit(RLIMIT_NOFILE, open_files, "open many files");
}

/**
 * Waits until no other run is at work. Its commands inherit the descriptor that is returned, so
 * that one which has outlived its run counts too. Nobody but root can open the file, and so keep
 * root waiting. A file system that knows no locks locks nothing.
 */
int wait_for_other_runs() {
  constexpr mode_t own_mode = 0600;
  // NOLINTNEXTLINE(android-cloexec-open): the commands must inherit it
  const int lock = open(paths::lock, O_RDONLY | O_CREAT | O_NOFOLLOW, own_mode);
  if (flock(lock, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    print_progress("another run of the link builder is at work, waiting for its end\n");
    interruptibly([lock] { return flock(lock, LOCK_EX); });
  }
  return lock;
}

/** Removes the new profile that a run has left beside the old one when it was cut off. */
void remove_older_profile(std::string_view profile) {
  const auto left = store::remove_leftover(paths::profile, [profile](std::string_view text) {
    return store::is_superseded(text, profile);
  });
  if (left.empty()) return;
  print_failure(
      "%s is there already, and may hold more than %s: compare the two, and move the first away\n",
      left.c_str(), paths::profile);
}

/** One pass over the profile. */
class Pass {
 public:
  explicit Pass(std::string_view profile)
      : m_profile(profile), m_journal(paths::unfinished, profile) {}

  /** Does the work, and returns the lines for which nothing is left to do. */
  store::Lines run() {
    resume_earlier_pass();
    return store::for_each_definition(m_profile, [this](std::size_t line, const auto& definition) {
      if (line > m_lines_done) take(line, definition);
    });
  }

  /** The profile has been rewritten. */
  void end() { m_journal.end(); }

 private:
  void resume_earlier_pass() {
    m_lines_done = m_journal.lines_done();
    if (m_lines_done > 0) {
      print_progress("an earlier run was cut off at line %zu, and this one goes on from there\n",
                     m_lines_done);
    }
    if (m_journal.unfinished().empty()) return;
    resume(m_journal, store::definitions_after(0, m_profile),
           store::definitions_after(m_lines_done, m_profile));
  }

  void take(std::size_t line, const model::BakDefFields& definition) {
    if (!definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic)) return;
    end_if_stopped();
    if (is_left_alone(definition)) return;
    m_journal.begin_line(line);
    if (wants_link(definition)) return build_symlink(definition, m_journal, m_fresh);
    m_fresh = {};
    restore_del_symlink(definition.to, definition.from, m_journal);
  }

  /** Returns whether a definition must not touch what is unfinished, and says so. */
  bool is_left_alone(const model::BakDefFields& definition) {
    const auto* const work = m_places.touched_by(definition, m_journal.unfinished());
    if (work == nullptr) return false;
    // Of the definition itself all has been said.
    if (work->from == definition.from && work->to == definition.to) return true;
    print_failure("%s is left alone, because %s is not finished\n", definition.to.c_str(),
                  work->to.c_str());
    return true;
  }

  std::string_view m_profile;
  Journal m_journal;
  /** The lines with which an earlier run has done. */
  std::size_t m_lines_done = 0;
  /** The place of the new link that was made last, while nothing else has been done since. */
  files::Place m_fresh;
  PlacesOfWorks m_places;
};

void report_failure(const GError& error) {
  print_failure("open file [%s] failed : %s \n", paths::profile, error.message);
}

void run_over_profile() {
  const auto profile = read_file(paths::profile);
  if (profile.error) return report_failure(*profile.error);
  remove_older_profile(profile.text());
  Pass pass{profile.text()};
  const auto handled = pass.run();
  // Somebody may have saved another profile in the meantime, and nothing of it may be lost.
  const auto error = store::replace_file(
      paths::profile, store::profile_mode,
      [&handled](std::string_view stored) { return store::without_lines(stored, handled); });
  if (error) return report_failure(*error);
  pass.end();
}

}  // namespace
}  // namespace varnholt::linkbuilder

void main_save_symbolic_dir() {
  namespace linkbuilder = varnholt::linkbuilder;
  linkbuilder::take_no_input();
  linkbuilder::secure_process();
  if (!linkbuilder::raise_limits()) return;
  linkbuilder::catch_stop_signals();
  const varnholt::Descriptor lock{linkbuilder::wait_for_other_runs()};
  if (varnholt::exists(varnholt::paths::profile)) {
    linkbuilder::run_over_profile();
  } else {
    varnholt::print_progress("open file  [%s] is not exist \n", varnholt::paths::profile);
  }
  linkbuilder::end_if_stopped();
}
