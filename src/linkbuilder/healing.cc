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
#include "base/file.h"
#include "base/text.h"
#include "linkbuilder/copies.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/link-operations.h"
#include "linkbuilder/places.h"
#include "linkbuilder/stop-signals.h"

namespace fs = std::filesystem;

namespace varnholt {
namespace {

using Then = Remedy::Then;
using Definitions = std::vector<BakDefFields>;

/** What stands at a path. A link is not followed. */
struct Place {
  explicit Place(const std::string& spelled) : path(without_final_slash(spelled)) {
    std::error_code ignored;
    there = lstat(path.c_str(), &status) == 0;
    if (is_link()) content = fs::read_symlink(path, ignored);
  }
  bool is_link() const { return there && S_ISLNK(status.st_mode); }
  bool leads_nowhere() const { return is_link() && !fs::exists(path); }
  bool holds_data() const { return there && !is_link(); }
  std::string told() const {
    if (is_link()) return path + " is a link to " + content;
    return path + (!there                    ? " is missing"
                   : S_ISDIR(status.st_mode) ? " is a folder"
                                             : " is a file");
  }

  std::string path;
  bool there = false;
  struct stat status {};
  std::string content;
};

/** Returns the remedy when the part is only a part of what is whole elsewhere. */
std::optional<Remedy> remove_part(const Place& part, const Place& whole, bool is_part, Then then) {
  // Below the part another file system may be mounted, with what is whole in it.
  if (!is_part || deletion_takes_away(part.path, whole.path)) return std::nullopt;
  return Remedy{part.path, whole.path, then};
}

std::optional<Remedy> remove_copy(const Place& copy, const Place& whole, Then then) {
  return remove_part(copy, whole, is_part_of_copy(copy.path, whole.path), then);
}

std::optional<Remedy> remove_rest(const Place& rest, const Place& whole, Then then) {
  return remove_part(rest, whole, is_rest_of_move(rest.path, whole.path), then);
}

/** Decides when the backup is there and nothing is at the path. */
std::optional<Remedy> decide_aside(const Work& work, const Place& source, const Place& backup) {
  const Remedy put_back{"", "", Then::put_back};
  // Until the move begins the backup is whole, and the next run deletes the source once more.
  if (work.stage == Stage::aside || !source.there || source.leads_nowhere()) return put_back;
  if (auto finish = remove_rest(backup, source, Then::link)) return finish;
  if (is_part_of_copy(source.path, backup.path)) return put_back;
  return std::nullopt;
}

std::optional<Remedy> decide_adoption(const Work& work) {
  const Place path{work.path_of_backup()};
  const Place source{work.from};
  const Place backup{work.other};
  if (!backup.there) {
    const bool moved = !path.there && source.holds_data() && work.stage == Stage::move;
    return Remedy{"", "", moved ? Then::link : Then::nothing};
  }
  if (!path.there) return decide_aside(work, source, backup);
  if (path.is_link() || path.status.st_ino != work.inode) return std::nullopt;
  // Some file systems rename a folder by a copy of it.
  if (auto copy = remove_copy(backup, path, Then::nothing)) return copy;
  return remove_rest(path, backup, Then::put_back);
}

std::optional<Remedy> decide_way_back(const Work& work) {
  const Place path{work.path_of_backup()};
  const Place source{work.from};
  if (!source.holds_data() || path.is_link()) return Remedy{};
  if (!path.there) return Remedy{"", "", Then::link};
  std::error_code ignored;
  if (fs::equivalent(path.path, source.path, ignored)) return Remedy{};
  if (auto copy = remove_copy(path, source, Then::link)) return copy;
  return remove_rest(source, path, Then::nothing);
}

std::optional<Remedy> decide_undoing(const Work& work) {
  const Place path{work.to};
  const Place original{work.other};
  if (!path.there) return Remedy{"", "", Then::make_link_again};
  if (path.is_link() && path.content == work.other) return Remedy{};
  return remove_copy(path, original, Then::make_link_again);
}

std::string path_of(const Work& work) {
  return work.undoes() ? work.to : work.path_of_backup();
}

bool wants_link(const BakDefFields& definition) {
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic) &&
         !definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted);
}

bool wants_no_link(const BakDefFields& definition) {
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic) &&
         definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted);
}

/** Returns whether the paths of a work lead to where they led when it began. */
bool is_at_home(const Work& work) {
  const bool absolute = work.from.starts_with('/') && work.to.starts_with('/') &&
                        (!work.undoes() || work.other.starts_with('/'));
  return absolute || work.folder == current_folder();
}

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

/** Carries out what a remedy does after the deletion. Returns whether it worked. */
bool carry_out(Then then, const Work& work, Note& note) {
  const char* const path = work.to.c_str();
  switch (then) {
    case Then::nothing:
      return true;
    case Then::put_back:
      print_progress("an earlier run did not finish: %s becomes %s again\n", work.other.c_str(),
                     path);
      return put_back(work);
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
  const auto path = Place{path_of(work)}.told();
  const auto source = Place{work.undoes() ? work.other : work.from}.told();
  const auto backup = work.undoes() ? "" : Place{work.other}.told() + ", ";
  print_failure("an earlier run did not finish %s, and %s: %s%s, and %s\n", work.to.c_str(),
                why.c_str(), backup.c_str(), path.c_str(), source.c_str());
}

constexpr auto* changed_since = "somebody has changed something since";

/**
 * Leaves a work to the operator. A copy in the place of a link then counts as finished, as the
 * original is whole. But only the note knows where the backup comes from, so the work stays in it,
 * and its path is left alone, until the backup is gone or the link is there.
 */
bool leave_alone(const Work& work, const char* why, Note& note) {
  const bool settled = work.undoes() || Place{path_of(work)}.content == work.from;
  const auto how_long = settled ? "" : " until " + work.other + " is gone";
  tell(work, "it is left alone" + how_long + ", because " + why);
  if (settled) note.drop(work);
  return settled;
}

/** Carries out what is to be done about a work. Returns whether this run may take its path. */
bool finish(const Work& work, const Remedy& remedy, Note& note) {
  if (!remedy.removed.empty()) {
    print_progress("an earlier run did not finish: %s is removed, as all of it is in %s\n",
                   remedy.removed.c_str(), remedy.whole_at.c_str());
  }
  const bool removed = remedy.removed.empty() || remove_all(remedy.removed);
  if (!removed || !carry_out(remedy.then, work, note)) {
    tell(work, std::string{"it cannot be finished now ("} + g_strerror(errno) + ")");
    return false;
  }
  // The link has its own ends.
  if (remedy.then != Then::link) note.drop(work);
  return true;
}

/** Returns whether this run may take the path of the work. */
bool heal_adoption(const Work& work, const Definitions& definitions, Note& note) {
  const bool wanted = std::ranges::any_of(definitions, [&work](const BakDefFields& definition) {
    return wants_link(definition) && definition.from == work.from && definition.to == work.to;
  });
  if (wanted) {
    const auto remedy = remedy_for(work);
    return remedy ? finish(work, *remedy, note) : leave_alone(work, changed_since, note);
  }
  if (is_there(work.other)) {
    return leave_alone(work, "the profile asks for it no longer", note);
  }
  note.drop(work);
  return true;
}

/** Returns whether this run may take the path of the work. */
bool heal_undoing(const Work& work, const Definitions& definitions, Note& note) {
  const auto defined =
      std::ranges::find_if(definitions, [&work](const auto& each) { return each.to == work.to; });
  // The line of a copy that failed has left the profile all the same.
  const bool forgotten = defined == definitions.end();
  if (!forgotten && !wants_no_link(*defined)) {
    note.drop(work);
    return true;
  }
  if (work.stage == Stage::undone) {
    const Place path{work.to};
    const bool stands = path.is_link() && path.content != work.other;
    if (!stands || forgotten) note.drop(work);
    return !stands;
  }
  const auto remedy = remedy_for(work);
  if (!remedy) {
    return leave_alone(work, changed_since, note);
  }
  if (!finish(work, *remedy, note)) return false;
  if (forgotten) undo_symlink({.from = work.from, .to = work.to}, note);
  return true;
}

bool heal_work(const Work& work, const Definitions& definitions, Note& note) {
  if (!is_at_home(work)) {
    tell(work, "it can be finished only in the folder " + work.folder);
    return false;
  }
  return work.undoes() ? heal_undoing(work, definitions, note)
                       : heal_adoption(work, definitions, note);
}

}  // namespace

std::optional<Remedy> remedy_for(const Work& work) {
  switch (work.stage) {
    case Stage::aside:
    case Stage::move:
      return decide_adoption(work);
    case Stage::back:
      return decide_way_back(work);
    case Stage::undo:
      return decide_undoing(work);
    case Stage::undone:
      return Remedy{};
  }
  return std::nullopt;
}

std::vector<Work> heal(Note& note, const std::vector<BakDefFields>& definitions) {
  std::vector<Work> left_alone;
  // A later work may have moved a folder in which an earlier one has left something.
  const std::vector<Work> newest_first{note.works().rbegin(), note.works().rend()};
  for (const auto& work : newest_first) {
    end_if_stopped();
    if (!heal_work(work, definitions, note)) left_alone.push_back(work);
  }
  return left_alone;
}

}  // namespace varnholt
