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

/** Raises a limit to what a run needs. Returns false, after saying so, when it may not. */
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
  Pass(std::string_view profile, Journal& journal) : m_profile(profile), m_journal(journal) {}

  /** Does the work, and returns the lines for which nothing is left to do. */
  store::Lines run() {
    const auto done = m_journal.lines_done();
    if (done > 0) {
      print_progress("an earlier run was cut off at line %zu, and this one goes on from there\n",
                     done);
    }
    if (!m_journal.unfinished().empty()) {
      resume(m_journal, store::definitions_after(0, m_profile),
             store::definitions_after(done, m_profile));
    }
    const auto take_rest = [this, done](std::size_t line, const model::BakDefFields& definition) {
      if (line > done) take(line, definition);
    };
    return store::for_each_definition(m_profile, take_rest);
  }

 private:
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
  Journal& m_journal;
  /** The place of the new link that was made last, while nothing else has been done since. */
  files::Place m_fresh;
  PlacesOfWorks m_places;
};

ErrorPtr run_over_profile() {
  auto profile = read_file(paths::profile);
  if (profile.error) return std::move(profile.error);
  remove_older_profile(profile.text());
  Journal journal{paths::unfinished, profile.text()};
  const auto handled = Pass{profile.text(), journal}.run();
  // Somebody may have saved another profile in the meantime, and nothing of it may be lost.
  auto error = store::replace_file(
      paths::profile, store::profile_mode,
      [&handled](std::string_view stored) { return store::without_lines(stored, handled); });
  journal.end();
  return error;
}

}  // namespace
}  // namespace varnholt::linkbuilder

void main_save_symbolic_dir() {
  namespace linkbuilder = varnholt::linkbuilder;
  linkbuilder::take_no_input();
  linkbuilder::secure_process();
  if (!linkbuilder::raise_limits()) return;
  linkbuilder::catch_stop_signals();
  if (varnholt::exists(varnholt::paths::profile)) {
    const varnholt::Descriptor lock{linkbuilder::wait_for_other_runs()};
    if (const auto error = linkbuilder::run_over_profile()) {
      varnholt::print_failure("open file [%s] failed : %s \n", varnholt::paths::profile,
                              error->message);
    }
  } else {
    varnholt::print_progress("open file  [%s] is not exist \n", varnholt::paths::profile);
  }
  linkbuilder::end_if_stopped();
}
