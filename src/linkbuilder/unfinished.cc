// SPDX-License-Identifier: GPL-3.0-or-later
// What the next run does about unfinished works.
#include "linkbuilder/unfinished.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/path.h"
#include "files/path-state.h"
#include "files/tree.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/guards.h"

namespace varnholt::linkbuilder {
namespace {

using Step = Continuation::Step;

/** Decides to remove a part first, unless it is none, or holds what is whole by a mount. */
Continuation after_removing(const files::PathState& part, const files::PathState& whole,
                            Step step) {
  if (!files::is_part_of_copy(part.path, whole.path) ||
      deletion_takes_away(part.path, whole.path)) {
    return {Step::leave_changed};
  }
  return {step, part.path, whole.path};
}

/**
 * Decides by which of two places holds everything, after mv(1) was to move `origin` to `goal`: goes
 * on with `from_origin` or `from_goal`. What the other place holds is a part, and is removed first.
 */
Continuation whichever_is_whole(const Work& work, const files::PathState& origin,
                                const files::PathState& goal, Step from_origin, Step from_goal) {
  if (!goal.there) return {from_origin};
  if (!origin.there) return {from_goal};
  // Where mv(1) renames, only one of the two is there.
  if (work.entries == 0 || !files::mv_copies(origin.path, goal.path)) return {Step::leave_changed};
  // It deletes nothing before all is copied.
  const bool origin_is_whole = files::entries_at(origin.path) >= work.entries;
  return origin_is_whole ? after_removing(goal, origin, from_origin)
                         : after_removing(origin, goal, from_goal);
}

/** Decides when the backup is there and nothing is at the path. */
Continuation with_backup(const Work& work, const files::PathState& source,
                         const files::PathState& backup) {
  // A link at the source that leads nowhere is replaced by the move itself.
  const bool may_be_moved = work.stage == Stage::move && (source.has_data() || exists(source.path));
  if (may_be_moved) return whichever_is_whole(work, backup, source, Step::move, Step::link);
  // Only what the work found at the source may be deleted.
  const bool is_as_before = !source.there || source.inode() == work.source_inode;
  return {is_as_before ? Step::move : Step::leave_changed};
}

/** Decides when the backup is not there, and no link is at the path. */
Continuation without_backup(const Work& work, const files::PathState& path,
                            const files::PathState& source) {
  const bool may_have_moved = work.stage == Stage::move && source.has_data();
  if (!may_have_moved) return {Step::begin};
  if (!path.there) return {Step::link};
  // Somebody may have put the backup back, or only the rest of one that was copied.
  if (work.entries > 0) return whichever_is_whole(work, path, source, Step::begin, Step::link);
  return {path.inode() == work.inode ? Step::begin : Step::leave_changed};
}

/** Decides about a move back to the path, at which no link is. */
Continuation on_the_way_back(const Work& work, const files::PathState& path,
                             const files::PathState& source) {
  std::error_code missing;
  const bool same_place = std::filesystem::equivalent(path.path, source.path, missing);
  if (same_place || !source.has_data()) return {Step::begin};
  return whichever_is_whole(work, source, path, Step::link, Step::begin);
}

Continuation continuation_of_adoption(const Work& work, const std::string& mount,
                                      const store::Definitions& all) {
  const files::PathState path{work.path()};
  const files::PathState source{without_final_slash(work.from)};
  const files::PathState backup{work.backup};
  const bool wanted = std::ranges::any_of(all, [&work](const model::BakDefFields& each) {
    return wants_link(each) && each.from == work.from && each.to == work.to;
  });
  if (!wanted) return {backup.there ? Step::leave_unwanted : Step::forget};
  // A mount may come to the source, as long as it hides nothing that has moved there.
  const bool may_come = backup.there && work.entries == 0 && mount.starts_with(work.mounts[1]);
  if (mount != work.mounts[1] && !may_come) return {Step::wait};
  if (files::way_along(work.spelled_backup()).entries.back() != work.backup) return {Step::wait};
  if (backup.is_link()) return {Step::leave_changed};
  if (path.is_link()) return {backup.there ? Step::leave_changed : Step::forget};
  if (work.stage == Stage::back) return on_the_way_back(work, path, source);
  if (!backup.there) return without_backup(work, path, source);
  if (!path.there) return with_backup(work, source, backup);
  auto renaming = whichever_is_whole(work, path, backup, Step::begin, Step::move);
  const bool is_changed = source.there && source.inode() != work.source_inode;
  if (is_changed && renaming.step == Step::move) renaming = {Step::leave_changed};
  return renaming;
}

Continuation continuation_of_undoing(const Work& work, const std::string& mount,
                                     const store::Definitions& to_come) {
  const files::PathState path{without_final_slash(work.to)};
  const files::PathState original{work.from};
  const bool wants_it = std::ranges::any_of(to_come, [&work](const model::BakDefFields& each) {
    return wants_link(each) && each.to == work.to;
  });
  const auto step = wants_it ? Step::restore_link : Step::undo;
  if (mount != work.mounts[1]) return {Step::wait};
  if (path.is_link_to(work.from)) return {wants_it ? Step::forget : Step::undo};
  if (!original.there) return {Step::wait};
  if (!path.there) return {step};
  auto again = after_removing(path, original, step);
  // What a line wants to move onto the original must be whole.
  if (again.step == Step::leave_changed && !wants_it) again.step = Step::forget_changed;
  return again;
}

/** Returns where the path, the backup and the source of a work are. */
std::vector<files::Spot> places_of(const Work& work, const files::Mounts& mounts) {
  std::vector<files::Spot> places;
  for (const auto& path : {work.path(), work.backup, without_final_slash(work.from)}) {
    if (!path.empty()) places.push_back(mounts.spot_of(files::way_along(path).entries.back()));
  }
  return places;
}

/** Returns whether one of the entries on a way is in a place, or the last one holds it. */
bool touches(const std::vector<files::Spot>& way, const files::Spot& place) {
  return files::holds(way.back(), place) ||
         std::ranges::any_of(way, [&](const auto& each) { return files::holds(place, each); });
}

}  // namespace

bool Continuation::waits() const {
  return step == Step::wait || step == Step::leave_changed || step == Step::leave_unwanted;
}

Continuation continuation_of(const Work& work, const store::Definitions& all,
                             const store::Definitions& to_come) {
  const auto [path_mount, source_mount] = work.present_mounts();
  if (path_mount != work.mounts[0]) return {Step::wait};
  return work.stage == Stage::undo ? continuation_of_undoing(work, source_mount, to_come)
                                   : continuation_of_adoption(work, source_mount, all);
}

const Work* PlacesOfWorks::touched_by(const model::BakDefFields& definition,
                                      const std::vector<Work>& works) {
  m_places.resize(std::min(m_places.size(), works.size()));
  if (works.empty()) return nullptr;
  if (!m_mounts) m_mounts.emplace();
  for (auto at = m_places.size(); at < works.size(); ++at) {
    m_places.push_back(places_of(works[at], *m_mounts));
  }
  std::vector<std::vector<files::Spot>> ways;
  for (const auto& path : {definition.to, definition.from}) {
    // What is undone is the link, wherever its definition says that it leads.
    if (!ways.empty() && wants_undoing(definition)) break;
    ways.push_back(m_mounts->spots_of(files::way_along(without_final_slash(path)).entries));
  }
  for (std::size_t at = 0; at < works.size(); ++at) {
    const bool is_touched = std::ranges::any_of(m_places[at], [&ways](const files::Spot& place) {
      return std::ranges::any_of(ways, [&place](const auto& way) { return touches(way, place); });
    });
    if (is_touched) return &works[at];
  }
  // What is done about a link may lead a way elsewhere; moving what no work needs does not.
  const auto task = decide_link(definition).task;
  const bool changes_link = task == LinkTask::make || task == LinkTask::replace;
  if (changes_link || wants_undoing(definition)) m_places.clear();
  return nullptr;
}

}  // namespace varnholt::linkbuilder
