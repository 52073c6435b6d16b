// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the link builder over the whole profile.
#include "linkbuilder/link-builder.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "base/descriptor.h"
#include "base/diagnostics.h"
#include "base/file.h"
#include "base/paths.h"
#include "base/text.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/healing.h"
#include "linkbuilder/link-operations.h"
#include "linkbuilder/note.h"
#include "linkbuilder/stop-signals.h"
#include "store/profile.h"
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

/** Opens a folder whose lock only root can take; others could keep root waiting for ever. */
int open_folder_to_lock() {
  // NOLINTBEGIN(android-cloexec-open): the commands must inherit it
  const int of_root = open(paths::private_folder, O_RDONLY | O_DIRECTORY);
  struct stat status {};
  if (fstat(of_root, &status) == 0 && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0) return of_root;
  if (of_root >= 0) close(of_root);
  return open(varnholt::folder_above(paths::profile).c_str(), O_RDONLY | O_DIRECTORY);
  // NOLINTEND(android-cloexec-open)
}

/**
 * Waits until no other run is at work. Its commands inherit the descriptor that is returned, so
 * that one which has outlived its run counts too. A file system that knows no locks locks nothing.
 */
int wait_for_other_runs() {
  const int lock = open_folder_to_lock();
  if (flock(lock, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    varnholt::print_progress("another run of the link builder is at work, waiting for its end\n");
    const varnholt::linkbuilder::EndsAtOnce interruptible;
    flock(lock, LOCK_EX);
  }
  return lock;
}

/** Returns whether a text has nothing that another one lacks, but for definitions to be undone. */
bool is_contained(std::string_view text, std::string_view other) {
  const auto unmarked = [](std::string_view profile) {
    // The room for a text is made before it is written.
    profile = profile.substr(0, profile.find('\0'));
    return varnholt::linkbuilder::without_lines(
        profile, varnholt::linkbuilder::apply_definitions(profile, [](auto&) {}));
  };
  return unmarked(other).starts_with(unmarked(text));
}

/** Removes the new profile that a run has left beside the old one when it was cut off. */
void remove_older_profile(std::string_view profile) {
  const auto left = varnholt::store::remove_leftover(paths::profile, [&](std::string_view text) {
    std::string older{text};
    std::string newer{profile};
    return is_contained(text, profile) ||
           main_get_cur_version(&older) < main_get_cur_version(&newer);
  });
  if (left.empty()) return;
  varnholt::print_failure(
      "%s is from a run that was cut off, and may hold more than %s: compare "
      "the two, and remove the first\n",
      left.c_str(), paths::profile);
}

/** One pass over the profile. */
class Run {
 public:
  explicit Run(std::string_view profile) : m_profile(profile) {}

  /** Does the work, and returns the lines for which nothing is left to do. */
  varnholt::linkbuilder::Lines do_all() {
    finish_earlier_work();
    return varnholt::linkbuilder::apply_definitions(
        m_profile, [this](const varnholt::model::BakDefFields& definition) { take(definition); });
  }

  /** Notes that the lines of copies that have failed are about to leave the profile. */
  void expect_new_profile() {
    for_each_work(varnholt::linkbuilder::Stage::undo,
                  [this](const varnholt::linkbuilder::Work& work) {
                    varnholt::linkbuilder::keep_without_line(work, m_note);
                  });
  }

  /** Forgets the copies for which the profile has no line any more. */
  void forget_copies() {
    for_each_work(varnholt::linkbuilder::Stage::undone,
                  [this](const varnholt::linkbuilder::Work& work) { m_note.drop(work); });
  }

 private:
  void for_each_work(varnholt::linkbuilder::Stage stage,
                     const std::function<void(const varnholt::linkbuilder::Work&)>& act) {
    const auto works = m_note.works();
    for (const auto& work : works) {
      if (work.stage == stage) act(work);
    }
  }

  void finish_earlier_work() {
    if (m_note.works().empty()) return;
    std::vector<varnholt::model::BakDefFields> definitions;
    varnholt::linkbuilder::apply_definitions(
        m_profile,
        [&definitions](const varnholt::model::BakDefFields& each) { definitions.push_back(each); });
    m_left_alone = varnholt::linkbuilder::heal(m_note, definitions);
  }

  void take(const varnholt::model::BakDefFields& definition) {
    using varnholt::linkbuilder::Turn;
    const auto turn = varnholt::linkbuilder::turn_of(definition, m_left_alone, m_note.works());
    if (turn == Turn::none) return;
    varnholt::linkbuilder::end_if_stopped();
    if (turn == Turn::undo) return varnholt::linkbuilder::undo_symlink(definition, m_note);
    if (turn == Turn::build) return varnholt::linkbuilder::build_symlink(definition, m_note);
    if (turn == Turn::left_alone) return;
    varnholt::print_failure("%s is left alone, because what stands there may not be whole\n",
                            definition.to.c_str());
  }

  std::string_view m_profile;
  varnholt::linkbuilder::Note m_note{paths::unfinished};
  std::vector<varnholt::linkbuilder::Work> m_left_alone;
};

void tell_failure(const GError& error) {
  varnholt::print_failure("open file [%s] failed : %s \n", paths::profile, error.message);
}

}  // namespace

varnholt::linkbuilder::Lines varnholt::linkbuilder::apply_definitions(
    std::string_view profile,
    const std::function<void(const varnholt::model::BakDefFields&)>& apply) {
  Lines done;
  for_each_piece(profile, '\n', [&](std::string_view line) {
    // No item is created: that would look up every source, which an existing link does not need.
    const auto definition = model::read_lnk_line(line);
    if (!definition) return;
    apply(*definition);
    if (definition->has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) done.emplace(line);
  });
  return done;
}

std::string varnholt::linkbuilder::without_lines(std::string_view profile, const Lines& lines) {
  if (lines.empty()) {
    // This is the usual run, in which only empty lines at the beginning vanish.
    return std::string{profile.substr(std::min(profile.find_first_not_of('\n'), profile.size()))};
  }
  return kept_lines(profile, [&lines](std::string_view line) { return !lines.contains(line); });
}

void main_save_symbolic_dir() {
  take_no_input();
  secure_process();
  varnholt::linkbuilder::catch_stop_signals();
  const varnholt::Descriptor lock{wait_for_other_runs()};
  if (!vh_FileTests(paths::profile, VH_FILE_TEST_TYPE_EXISTS)) {
    varnholt::print_progress("open file  [%s] is not exist \n", paths::profile);
    return;
  }
  const auto profile = varnholt::read_file(paths::profile);
  if (profile.error) {
    tell_failure(*profile.error);
    return;
  }
  remove_older_profile(profile.text());
  Run run{profile.text()};
  const auto done = run.do_all();
  run.expect_new_profile();
  // Somebody may have saved another profile in the meantime, and nothing of it may be lost.
  const auto error =
      varnholt::store::replace_file(paths::profile, profile_mode, [&done](std::string_view stored) {
        return varnholt::linkbuilder::without_lines(stored, done);
      });
  if (error) {
    tell_failure(*error);
  } else {
    run.forget_copies();
  }
  varnholt::linkbuilder::end_if_stopped();
}
