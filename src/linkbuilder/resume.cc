// SPDX-License-Identifier: GPL-3.0-or-later
// Goes on with what an earlier run of the link builder has left unfinished.
#include "linkbuilder/resume.h"

#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include <glib.h>

#include "base/diagnostics.h"
#include "base/path.h"
#include "files/path-state.h"
#include "files/tree.h"
#include "files/way.h"
#include "linkbuilder/operations.h"
#include "linkbuilder/stop-signals.h"

namespace varnholt::linkbuilder {
namespace {

using Step = Continuation::Step;

/** Prints why a work is not finished, and what is where. */
void report(const Work& work, const std::string& why) {
  const auto backup = work.backup.empty() ? "" : files::PathState{work.backup}.described() + ", ";
  print_failure("an earlier run did not finish %s, and %s: %s%s, and %s\n", work.to.c_str(),
                why.c_str(), backup.c_str(), files::PathState{work.path()}.described().c_str(),
                files::PathState{without_final_slash(work.from)}.described().c_str());
}

/** Prints that a work is left alone, and why. */
void report_left_alone(const Work& work, const char* why) {
  const bool has_backup = files::PathState{work.backup}.there;
  const auto how_long = has_backup ? " as long as " + work.backup + " is there" : std::string{};
  report(work, "it is left alone" + how_long + ", because " + why);
}

void report_cannot_finish(const Work& work, int error) {
  report(work, std::string{"it cannot be finished now ("} + g_strerror(error) + ")");
}

/** Removes a part of what is whole elsewhere. Returns whether nothing is in the way any more. */
bool remove_part(const Work& work, const Continuation& next) {
  if (next.removed.empty()) return true;
  print_progress("an earlier run did not finish: %s is removed, as all of it is in %s\n",
                 next.removed.c_str(), next.whole_at.c_str());
  const int error = interruptibly([&next] { return files::remove_tree(next.removed); });
  if (error != 0) report_cannot_finish(work, error);
  return error == 0;
}

/** Makes the link again that was undone. */
bool restore_link(const Work& work) {
  if (files::PathState{work.to}.is_link_to(work.from)) return true;
  print_progress("an earlier run did not finish: the link %s is made again\n", work.to.c_str());
  const files::Place place{work.to};
  if (symlinkat(work.from.c_str(), place.folder(), place.name()) == 0) return true;
  const int error = place.is_refused() ? EPERM : ENOENT;
  report_cannot_finish(work, place.folder() < 0 ? error : errno);
  return false;
}

void go_on(const Work& work, const Continuation& next, Journal& journal) {
  const model::BakDefFields definition{
      .from = work.from, .to = work.to, .op = VH_FILE_OPERATION_TYPE_FOT_Symbolic};
  files::Place fresh;
  switch (next.step) {
    case Step::forget:
      return journal.forget(work);
    case Step::begin:
      journal.forget(work);
      return build_symlink(definition, journal, fresh);
    case Step::move:
      print_progress("an earlier run did not finish: %s is called %s, and moves on\n",
                     work.to.c_str(), work.backup.c_str());
      journal.take_up(work);
      // By the same way as before, so that what was refused because of it is refused again.
      return move_and_link(definition, work.spelled_backup(), journal);
    case Step::link:
      print_progress("an earlier run did not finish: %s is at %s, and its link is made\n",
                     work.to.c_str(), work.from.c_str());
      journal.take_up(work);
      return link_or_move_back(definition, journal);
    case Step::undo:
    case Step::restore_link:
      if (!restore_link(work)) return;
      journal.forget(work);
      if (next.step == Step::undo) restore_del_symlink(work.to, work.from, journal);
      return;
    case Step::wait:
      return report(work, "it cannot be finished now (what it needs is not where it was)");
    case Step::leave_changed:
    case Step::forget_changed:
      report_left_alone(work, "somebody has changed something since");
      if (next.step == Step::forget_changed) journal.forget(work);
      return;
    case Step::leave_unwanted:
      return report_left_alone(work, "the profile asks for it no longer");
  }
}

}  // namespace

void resume(Journal& journal, const store::Definitions& all, const store::Definitions& to_come) {
  const auto& works = journal.unfinished();
  const std::vector<Work> newest_first{works.rbegin(), works.rend()};
  for (const auto& work : newest_first) {
    end_if_stopped();
    const auto next = interruptibly([&] { return continuation_of(work, all, to_come); });
    if (remove_part(work, next)) go_on(work, next, journal);
  }
}

}  // namespace varnholt::linkbuilder
