// SPDX-License-Identifier: GPL-3.0-or-later
// Finishes what an earlier run of the link builder has left unfinished.
#include "linkbuilder/healing.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "base/diagnostics.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/link-operations.h"
#include "linkbuilder/moves.h"
#include "linkbuilder/remedy.h"
#include "linkbuilder/stop-signals.h"
#include "linkbuilder/treatment.h"

namespace fs = std::filesystem;

namespace varnholt::linkbuilder {
namespace {

using Then = Remedy::Then;
using Definitions = std::vector<model::BakDefFields>;

bool put_back(const Work& work) {
  const char* const backup = work.other.c_str();
  const auto path = work.path_of_backup();
  if (renameat2(AT_FDCWD, backup, AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0) return true;
  // Some file systems cannot rename in this way.
  return errno == EINVAL && !is_there(path) && rename(backup, path.c_str()) == 0;
}

/** Removes a file or folder. Sets errno when it fails. */
bool remove_all(const std::string& path) {
  const EndsAtOnce interruptible;
  std::error_code error;
  fs::remove_all(path, error);
  if (error) errno = error.value();
  return !error;
}

model::BakDefFields definition_of(const Work& work) {
  return {.from = work.from, .to = work.to};
}

/** Carries out what a remedy does beside the deletion. Returns whether it worked. */
bool carry_out(Then then, const Work& work, Note& note) {
  const char* const path = work.to.c_str();
  switch (then) {
    case Then::nothing:
    case Then::done:
    case Then::wait:
      return then != Then::wait;
    case Then::put_back:
      print_progress("an earlier run did not finish: %s becomes %s again\n", work.other.c_str(),
                     path);
      return put_back(work);
    case Then::link_first:
      return is_there(work.to) || make_link(definition_of(work)) == 0;
    case Then::link:
      print_progress("an earlier run did not finish: %s is at %s, and its link is made\n", path,
                     work.from.c_str());
      link_adopted(work, note);
      return true;
    case Then::make_link_again:
      print_progress("an earlier run did not finish: the link %s is made again\n", path);
      return symlink(work.other.c_str(), path) == 0;
  }
  return false;
}

/** Tells what is not finished and why, and what stands where. */
void tell(const Work& work, const std::string& why) {
  const auto backup = work.has_backup() ? Place{work.other}.told() + ", " : "";
  const auto path = Place{work.path()}.told();
  const auto source = Place{work.undoes() ? work.other : work.from}.told();
  print_failure("an earlier run did not finish %s, and %s: %s%s, and %s\n", work.to.c_str(),
                why.c_str(), backup.c_str(), path.c_str(), source.c_str());
}

/**
 * Leaves a work to the operator, and its path alone as long as what the note alone knows of is
 * there: where the backup comes from, or that a copy is not whole. A copy in the place of a link
 * counts as finished when no line wants the link: the original is whole.
 */
void leave_alone(const Work& work, const char* why, bool settled, Note& note) {
  const auto how_long = !work.has_backup()     ? work.to + " is there"
                        : is_there(work.other) ? work.other + " is there"
                                               : work.to + " and " + work.from + " are there";
  tell(work, "it is left alone" + (settled ? "" : " as long as " + how_long) + ", because " + why);
  if (settled) note.drop(work);
}

const char* words_for(Treatment::Why why) {
  return why == Treatment::Why::changed ? "somebody has changed something since"
                                        : "the profile asks for it no longer";
}

bool remove_part(const Remedy& remedy) {
  if (remedy.removed.empty()) return true;
  print_progress("an earlier run did not finish: %s is removed, as all of it is in %s\n",
                 remedy.removed.c_str(), remedy.whole_at.c_str());
  return remove_all(remedy.removed);
}

/** Carries out what is to be done about a work. Returns whether that worked. */
bool mend(const Work& work, const Remedy& remedy, Note& note) {
  const bool link_first = remedy.then == Then::link_first;
  const bool mended = link_first ? carry_out(remedy.then, work, note) && remove_part(remedy)
                                 : remove_part(remedy) && carry_out(remedy.then, work, note);
  if (mended) return true;
  const auto* const why =
      remedy.then == Then::wait ? "what it needs is missing" : g_strerror(errno);
  tell(work, std::string{"it cannot be finished now ("} + why + ")");
  return false;
}

/** Does the same, and drops the work when it is mended. Returns whether this run may take it. */
bool finish(const Work& work, const Remedy& remedy, Note& note) {
  if (!mend(work, remedy, note)) return false;
  // The link has its own ends.
  if (remedy.then != Then::link) note.drop(work);
  return true;
}

/** Undoes a link for which there is no line any more; the note must not forget it in between. */
void undo_again(const Work& work, Note& note) {
  if (decide_undo(work.to).task != UndoTask::copy) return note.drop(work);
  undo_symlink(definition_of(work), note, Stage::again);
  const auto left = std::ranges::find_if(note.works(), [&work](const Work& each) {
    return each.stage == Stage::again && each.same_definition(work);
  });
  if (left != note.works().end()) keep_without_line(*left, note);
}

/** Decides without being in the way of a stop signal, as comparing may take long. */
Treatment looked_up_treatment(const Work& work, const Definitions& definitions) {
  const EndsAtOnce interruptible;
  return treatment_of(work, definitions);
}

/** Returns whether this run may take the path of the work. */
bool heal_work(Work work, const Definitions& definitions, Note& note) {
  const auto treatment = looked_up_treatment(work, definitions);
  switch (treatment.kind) {
    case Treatment::Kind::elsewhere:
      tell(work, "it can be finished only in the folder " + work.folder);
      break;
    case Treatment::Kind::leave_alone:
      leave_alone(work, words_for(treatment.why), treatment.settled, note);
      break;
    case Treatment::Kind::forget:
      note.drop(work);
      break;
    case Treatment::Kind::keep_copy:
      work.stage = Stage::undone;
      note.keep(work);
      break;
    case Treatment::Kind::finish:
      if (!finish(work, treatment.remedy, note)) return false;
      break;
    case Treatment::Kind::undo_again:
      // From here on nobody can tell the removal of the part from one by hand.
      work.inode = 0;
      if (!note.keep(work) || !mend(work, treatment.remedy, note)) return false;
      undo_again(work, note);
      break;
  }
  return !treatment.leaves_path_alone();
}

}  // namespace

void keep_without_line(Work work, Note& note) {
  work.inode = inode_at(work.to);
  work.stage = Stage::again;
  note.keep(work);
}

std::vector<Work> heal(Note& note, const std::vector<model::BakDefFields>& definitions) {
  std::vector<Work> left_alone;
  // A later work may have moved a folder in which an earlier one has left something.
  const std::vector<Work> newest_first{note.works().rbegin(), note.works().rend()};
  for (const auto& work : newest_first) {
    end_if_stopped();
    if (!heal_work(work, definitions, note)) left_alone.push_back(work);
  }
  return left_alone;
}

}  // namespace varnholt::linkbuilder
