// SPDX-License-Identifier: GPL-3.0-or-later
// What comes of a definition at whose path a folder or a file stands.
#include "check/adoption.h"

#include <algorithm>

#include "base/path.h"
#include "check/surface.h"
#include "linkbuilder/backup-name.h"
#include "linkbuilder/guards.h"
#include "linkbuilder/places.h"

namespace fs = std::filesystem;

namespace varnholt::check {
namespace {

bool contains(const std::vector<fs::path>& entries, const fs::path& entry) {
  return std::ranges::count(entries, entry) > 0;
}

/** One adoption while it is foretold, in the order of its steps. */
class Adoption {
 public:
  Adoption(Forecast& forecast, Ground& ground)
      : m_forecast(forecast),
        m_ground(ground),
        m_to(forecast.definition.to),
        m_source(without_final_slash(forecast.definition.from)),
        m_way(linkbuilder::way_along(m_to).entries),
        m_way_of_source(linkbuilder::way_along(m_source + '/').entries),
        m_path(m_way.back()),
        m_at_source(linkbuilder::way_along(m_source).entries.back()),
        m_backup_name(linkbuilder::free_backup_name(m_to)),
        m_backup(m_path.parent_path() / last_name(m_backup_name)) {}

  void foretell() {
    m_forecast.outcome = Outcome::adopted;
    leave_footprint();
    if (m_ground.is_needed(m_path)) add(m_forecast, Problem::needed_by_run, m_to);
    if (!m_source.empty() && !m_source.starts_with('/')) {
      add(m_forecast, Problem::relative, m_source);
    }
    if (const auto why = why_not_renamed()) return fail(m_forecast, *why, Remains::all);
    m_forecast.moved = m_ground.count(m_path);
    if (const auto why = why_no_way()) return fail(m_forecast, *why, Remains::backup);
    if (is_same_place()) {
      // By way of another mount it is copied there and back.
      m_forecast.sure = m_forecast.sure && m_at_source == m_path;
      return fail(m_forecast, {Problem::same_place}, Remains::all);
    }
    if (!clears_source()) return;
    foretell_move();
  }

 private:
  void leave_footprint() {
    auto& footprint = m_forecast.footprint;
    footprint.passed = m_way;
    footprint.relied = m_way_of_source;
    footprint.relied.push_back(m_path);
    footprint.relied.push_back(m_backup);
    footprint.whole = {m_path};
    footprint.changed = {m_path, m_backup};
    if (m_source.empty()) return;
    for (auto* const entries : {&footprint.relied, &footprint.whole, &footprint.changed}) {
      entries->push_back(m_at_source);
    }
  }

  std::optional<Finding> why_not_renamed() const {
    if (auto why = why_no_link_at(m_to)) return why;
    if (m_ground.mounts().is_mount_point(m_path)) return Finding{Problem::path_mounted, m_path};
    if (auto why = why_it_must_stay(m_to)) return why;
    if (m_backup_name.empty() || why_too_long(m_backup_name)) {
      return Finding{Problem::no_backup_name};
    }
    return std::nullopt;
  }

  /** Returns whether the source is what is adopted, so that it only gets its name back. */
  bool is_same_place() const {
    const auto& mounts = m_ground.mounts();
    return is_there(m_source) && mounts.spot_of(m_at_source) == mounts.spot_of(m_path);
  }

  /** Returns why nothing can come to the source, once what is adopted has its backup name. */
  std::optional<Finding> why_no_way() {
    if (m_source.empty()) return Finding{Problem::source_empty};
    if (leads_through_itself(m_to)) return Finding{Problem::path_through_itself};
    const auto folder = folder_above(m_source);
    if (lies_in_path(folder)) return Finding{Problem::source_in_path};
    if (contains(m_way_of_source, m_backup)) {
      // What is found there depends on a name that nothing has now.
      m_forecast.sure = false;
      return Finding{Problem::source_by_backup, m_backup};
    }
    if (!is_folder(folder)) return Finding{Problem::source_folder_missing, folder};
    // What stands at the source may be deleted nevertheless.
    if (!is_there(m_source)) {
      if (auto why = why_nothing_can_be_made(folder)) return why;
    }
    return why_too_long(m_source);
  }

  /** Returns whether the way to a folder passes what is adopted, or something in it. */
  bool lies_in_path(const std::string& folder) const {
    const auto& mounts = m_ground.mounts();
    const auto path = mounts.spot_of(m_path);
    return std::ranges::any_of(linkbuilder::way_along(folder).entries, [&](const fs::path& entry) {
      return entry == m_path || linkbuilder::holds(path, mounts.spot_of(entry));
    });
  }

  /** Tells what becomes of what stands at the source. Returns whether the move is tried then. */
  bool clears_source() {
    if (m_source.ends_with('/')) add(m_forecast, Problem::source_slashes);
    if (is_link(m_source)) {
      // What it leads to may be what is adopted, which has another name by then.
      const bool dangles = !exists(m_source) || contains(m_way_of_source, m_path);
      if (dangles && is_folder(m_to)) {
        return failed({Problem::source_is_dangling}, Remains::backup);
      }
      if (dangles) {
        tell_link_at_source();
        const auto stays = why_it_must_stay(m_source);
        return !stays || failed(*stays, Remains::backup);
      }
    }
    switch (linkbuilder::clearing_for(m_to, m_source)) {
      case linkbuilder::Clearing::none:
        return true;
      case linkbuilder::Clearing::refuse:
        return failed({Problem::overlap}, Remains::backup);
      case linkbuilder::Clearing::remove:
        return deletes_source();
    }
    return true;
  }

  void tell_link_at_source() {
    std::error_code unknown;
    add(m_forecast, Problem::source_is_link, fs::read_symlink(m_source, unknown));
  }

  bool deletes_source() {
    const auto name = last_name(m_source);
    if (name == "." || name == "..") return failed({Problem::source_dots}, Remains::backup);
    if (m_ground.is_needed(m_at_source)) add(m_forecast, Problem::needed_by_run, m_source);
    const bool link = is_link(m_source);
    if (!link) m_forecast.deleted = m_ground.count(m_source);
    if (const auto why = why_it_must_stay(m_source)) {
      // Of a folder all may go but its name.
      m_forecast.sure = m_forecast.sure && link;
      return failed(*why, link ? Remains::backup : Remains::backup_only);
    }
    if (link) tell_link_at_source();
    const auto mounted = m_ground.mounts().mount_points_from(m_at_source);
    return mounted.empty() ||
           failed({Problem::source_mounted, mounted.front()}, Remains::backup_only);
  }

  /** Overlays make mv(1) copy a folder even when it only gets another name. */
  void check_renames() {
    if (!linkbuilder::copies_folders(m_path) || !is_folder(m_to)) return;
    const auto mounted = m_ground.mounts().mount_points_from(m_path);
    const auto cramped = m_ground.why_no_room(folder_above(m_to), *m_forecast.moved, {});
    if (!mounted.empty()) add(m_forecast, Problem::mounted_below, mounted.front());
    if (cramped) add(m_forecast, Problem::little_room, cramped->about);
  }

  void foretell_move() {
    const auto there = folder_above(m_source);
    check_room_for_link(m_forecast, folder_above(m_to), 0, m_ground);
    if (!can_hold_links(folder_above(m_to))) add(m_forecast, Problem::no_links_there, m_to);
    if (m_forecast.definition.from.ends_with('/') && !is_folder(m_to)) {
      add(m_forecast, Problem::leads_nowhere, m_forecast.definition.from);
    }
    check_renames();
    if (!linkbuilder::lie_on_different_mounts(folder_above(m_to), there)) return;
    const bool replaced = m_forecast.deleted || is_link(m_source);
    const auto remains = replaced ? Remains::backup_only : Remains::backup;
    const auto mounted = m_ground.mounts().mount_points_from(m_path);
    if (!mounted.empty()) {
      m_forecast.sure = false;
      return fail(m_forecast, {Problem::mounted_below, mounted.front()}, remains);
    }
    const auto cramped =
        m_ground.why_no_room(there, *m_forecast.moved, m_forecast.deleted.value_or(Tally{}));
    if (!cramped) return;
    if (cramped->problem == Problem::no_room) return fail(m_forecast, *cramped, remains);
    add(m_forecast, cramped->problem, cramped->about);
  }

  bool failed(const Finding& why, Remains remains) {
    fail(m_forecast, why, remains);
    return false;
  }

  Forecast& m_forecast;
  Ground& m_ground;
  const std::string& m_to;
  std::string m_source;
  /** What is passed on the way to the path, and on that to the source and where a link there leads.
   */
  std::vector<fs::path> m_way;
  std::vector<fs::path> m_way_of_source;
  /** What is adopted, the source, and the backup, each without links above its name. */
  fs::path m_path;
  fs::path m_at_source;
  std::string m_backup_name;
  fs::path m_backup;
};

}  // namespace

void foretell_adoption(Forecast& forecast, Ground& ground) {
  Adoption{forecast, ground}.foretell();
}

}  // namespace varnholt::check
