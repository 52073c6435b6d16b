// SPDX-License-Identifier: GPL-3.0-or-later
// What is to be done about unfinished work.
#include "linkbuilder/remedy.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "linkbuilder/copies.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/moves.h"
#include "linkbuilder/places.h"

namespace fs = std::filesystem;

namespace varnholt::linkbuilder {
namespace {

using Then = Remedy::Then;
using Definitions = std::vector<model::BakDefFields>;

/** Returns the remedy when the piece is only a part of what is whole elsewhere. */
std::optional<Remedy> remove_part(const Place& piece, const Place& whole, bool is_part, Then then) {
  // Below the piece another file system may be mounted, with what is whole in it.
  if (!is_part || deletion_takes_away(piece.path, whole.path)) return std::nullopt;
  return Remedy{piece.path, whole.path, then};
}

std::optional<Remedy> remove_copy(const Place& copy, const Place& whole, Then then) {
  return remove_part(copy, whole, is_part_of_copy(copy.path, whole.path), then);
}

std::optional<Remedy> remove_rest(const Place& rest, const Place& whole, Then then) {
  return remove_part(rest, whole, is_rest_of_move(rest.path, whole.path), then);
}

/** Returns whether the file system of the source is there, as it was when the work began. */
bool is_reachable(const Work& work) {
  return !work.crosses || lies_elsewhere(work);
}

/** Decides when the backup is there and nothing is at the path. */
std::optional<Remedy> decide_aside(const Work& work, const Place& source, const Place& backup) {
  const Remedy put_back{"", "", Then::put_back};
  if (work.stage == Stage::aside) {
    // The next run deletes the source once more, so nothing new may have come there.
    const bool same = !source.there || source.status.st_ino == work.source_inode;
    return same && is_untouched_since(source.path, work.time) ? std::optional{put_back}
                                                              : std::nullopt;
  }
  if (!source.there || source.leads_nowhere()) return put_back;
  if (auto finish = remove_rest(backup, source, Then::link_first)) return finish;
  if (is_part_of_copy(source.path, backup.path)) return put_back;
  return std::nullopt;
}

/** Decides when the backup is gone: it was put back, or everything is at the source. */
std::optional<Remedy> decide_without_backup(const Work& work, const Place& path,
                                            const Place& source) {
  if (work.stage == Stage::aside || !source.holds_data()) return Remedy{};
  if (!path.there) return Remedy{"", "", Then::link};
  if (path.is_link() || path.status.st_ino != work.inode) return Remedy{};
  // Somebody may have put back what was only the rest of a move.
  if (auto rest = remove_rest(path, source, Then::link)) return rest;
  return is_part_of_copy(source.path, path.path) ? std::optional{Remedy{}} : std::nullopt;
}

/** Decides when the backup is there, and at the path what stood there when the work began. */
std::optional<Remedy> decide_half_renamed(const Place& path, const Place& backup) {
  const bool overlay = renames_by_copy(path.path);
  if (is_part_of_copy(backup.path, path.path)) {
    // Elsewhere a rename leaves nothing behind, so the backup is somebody's own.
    return overlay ? remove_part(backup, path, true, Then::nothing) : Remedy{};
  }
  auto rest = remove_rest(path, backup, Then::put_back);
  return rest || overlay ? rest : Remedy{};
}

/**
 * Returns whether only folders and links stand at the path that definitions below it have made
 * since it was moved aside, and will make again.
 */
bool is_made_by_others(const Work& work, const Definitions& definitions) {
  const fs::path top = work.path_of_backup();
  std::vector<fs::path> left{top};
  while (!left.empty()) {
    const Place place{left.back()};
    left.pop_back();
    if (place.is_link()) {
      const auto spelled = work.to + place.path.substr(top.native().size());
      const bool wanted = std::ranges::any_of(definitions, [&](const model::BakDefFields& each) {
        return wants_link(each) && each.to == spelled && each.from == place.content;
      });
      if (!wanted) return false;
      continue;
    }
    // The program makes no folder but for what is in it.
    const auto names = names_in(place.path);
    if (!names || names->empty()) return false;
    for (const auto& name : *names) left.push_back(fs::path{place.path} / name);
  }
  return true;
}

std::optional<Remedy> decide_adoption(const Work& work, const Definitions& definitions) {
  const Place path{work.path_of_backup()};
  const Place source{without_final_slash(work.from)};
  const Place backup{work.other};
  if (!is_reachable(work)) return Remedy{"", "", Then::wait};
  if (!backup.there) return decide_without_backup(work, path, source);
  if (!path.there) return decide_aside(work, source, backup);
  if (path.is_link()) {
    return path.content == work.from ? remove_rest(backup, source, Then::nothing) : std::nullopt;
  }
  if (path.status.st_ino == work.inode) return decide_half_renamed(path, backup);
  auto aside = decide_aside(work, source, backup);
  const bool can_be_put_back = aside && aside->then == Then::put_back;
  if (!can_be_put_back || !is_made_by_others(work, definitions)) return std::nullopt;
  return Remedy{path.path, "the profile", Then::put_back};
}

std::optional<Remedy> decide_way_back(const Work& work) {
  const Place path{work.path_of_backup()};
  const Place source{without_final_slash(work.from)};
  if (!is_reachable(work)) return Remedy{"", "", Then::wait};
  if (!source.holds_data() || path.is_link()) return Remedy{};
  if (!path.there) return Remedy{"", "", Then::link};
  std::error_code ignored;
  if (fs::equivalent(path.path, source.path, ignored)) return Remedy{};
  if (auto copy = remove_copy(path, source, Then::link)) return copy;
  return remove_rest(source, path, Then::nothing);
}

std::optional<Remedy> decide_undoing(const Work& work) {
  const Place path{without_final_slash(work.to)};
  const Place original{work.other};
  // What a person has put in the place of a part, or nothing, is what he wants.
  const bool replaced = !path.there || path.status.st_ino != work.inode;
  if (work.stage == Stage::again && work.inode != 0 && replaced) return Remedy{"", "", Then::done};
  if (path.is_link() && path.content == work.other) return Remedy{};
  if (!original.there) return Remedy{"", "", Then::wait};
  if (!path.there) return Remedy{"", "", Then::make_link_again};
  // Somebody may have finished the copy by hand, with its owners and times.
  const bool is_part = is_part_of_copy(path.path, original.path);
  if (is_part && lacks_nothing(path.path, original.path)) return Remedy{"", "", Then::done};
  return remove_part(path, original, is_part, Then::make_link_again);
}

Remedy decide_undone(const Work& work) {
  const Place path{work.to};
  const bool stands = path.is_link() && path.content != work.other;
  return {"", "", stands ? Then::done : Then::nothing};
}

}  // namespace

Place::Place(std::string spelled) : path(std::move(spelled)) {
  std::error_code ignored;
  there = lstat(path.c_str(), &status) == 0;
  if (is_link()) content = fs::read_symlink(path, ignored);
}

bool Place::leads_nowhere() const {
  return is_link() && !exists(path);
}

std::string Place::told() const {
  if (is_link()) return path + " is a link to " + content;
  if (!there) return path + " is missing";
  return path + (S_ISDIR(status.st_mode) ? " is a folder" : " is a file");
}

std::optional<Remedy> remedy_for(const Work& work,
                                 const std::vector<model::BakDefFields>& definitions) {
  switch (work.stage) {
    case Stage::aside:
    case Stage::move:
      return decide_adoption(work, definitions);
    case Stage::back:
      return decide_way_back(work);
    case Stage::undo:
    case Stage::again:
      return decide_undoing(work);
    case Stage::undone:
      return decide_undone(work);
  }
  return std::nullopt;
}

}  // namespace varnholt::linkbuilder
