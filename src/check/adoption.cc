// SPDX-License-Identifier: GPL-3.0-or-later
// What comes of a definition at whose path there is a folder or a file.
#include "check/adoption.h"

#include <algorithm>

#include "base/path.h"
#include "files/mounts.h"
#include "files/way.h"
#include "linkbuilder/backup-name.h"
#include "linkbuilder/guards.h"

namespace fs = std::filesystem;

namespace varnholt::check {
namespace {

bool contains(const std::vector<fs::path>& entries, const fs::path& entry) {
  return std::ranges::count(entries, entry) > 0;
}

/** One adoption while it is foretold, in the order of its steps. */
class Adoption {
 public:
  /** An adoption of the entry at `moved`: the path, or the backup of an earlier run. */
  Adoption(Forecast& forecast, std::string moved, FileSystems& files)
      : m_forecast(forecast),
        m_files(files),
        m_to(forecast.definition.to),
        m_moved(std::move(moved)),
        m_source(without_final_slash(forecast.definition.from)),
        m_way(files::way_along(m_to).entries),
        m_way_of_source(files::way_along(m_source + '/').entries),
        m_path(m_way.back()),
        m_at_source(files::way_along(m_source).entries.back()) {}

  void foretell() {
    m_forecast.backup = linkbuilder::free_backup_name(m_to);
    m_backup = m_path.parent_path() / last_name(m_forecast.backup);
    begin(m_path);
    if (const auto why = why_not_renamed()) return fail(m_forecast, *why, Remains::all);
    m_forecast.moved = m_files.count(m_path);
    if (leads_through_itself(m_to) && !m_source.empty()) {
      return fail(m_forecast, {Problem::path_through_itself}, Remains::backup);
    }
    go_on(false);
  }

  void foretell_rest(bool clears_source) {
    m_is_aside = true;
    m_path = linkbuilder::path_of_backup(m_moved);
    m_backup = m_forecast.backup = m_moved;
    begin(m_backup);
    m_forecast.moved = m_files.count(m_moved);
    go_on(clears_source);
  }

 private:
  void begin(const fs::path& needed) {
    m_forecast.outcome = Outcome::adopted;
    leave_footprint();
    if (m_files.is_needed(needed)) add(m_forecast, Problem::needed_by_run, m_to);
    if (!m_source.empty() && !m_source.starts_with('/')) {
      add(m_forecast, Problem::relative, m_source);
    }
    if (m_source.ends_with('/')) add(m_forecast, Problem::source_slashes);
  }

  void go_on(bool clears_source) {
    if (const auto why = why_no_way()) return fail(m_forecast, *why, Remains::backup);
    if (is_same_place()) {
      // By way of another mount it is copied there and back.
      m_forecast.sure = m_forecast.sure && m_at_source == m_path && !m_is_aside;
      return fail(m_forecast, {Problem::same_place}, Remains::all);
    }
    if (!clears_source && !clear_source()) return;
    foretell_move(clears_source ? m_files.count(m_source) : m_forecast.deleted.value_or(Tally{}));
  }

  void leave_footprint() {
    auto& footprint = m_forecast.footprint;
    footprint.passed = m_way;
    footprint.relied = m_way_of_source;
    footprint.relied.push_back(m_path);
    footprint.relied.push_back(m_backup);
    footprint.whole = {m_is_aside ? m_backup : m_path};
    footprint.changed = {m_path, m_backup};
    if (m_source.empty()) return;
    for (auto* const entries : {&footprint.relied, &footprint.whole, &footprint.changed}) {
      entries->push_back(m_at_source);
    }
  }

  std::optional<Finding> why_not_renamed() const {
    if (auto why = why_no_link_at(m_to)) return why;
    if (m_files.mounts().is_mount_point(m_path)) return Finding{Problem::path_mounted, m_path};
    if (auto why = why_it_must_stay(m_to)) return why;
    if (m_forecast.backup.empty() || why_too_long(m_forecast.backup)) {
      return Finding{Problem::no_backup_name};
    }
    return std::nullopt;
  }

  /** Returns whether source and path are one entry, which only gets its name back. */
  bool is_same_place() const {
    const auto& mounts = m_files.mounts();
    return (m_is_aside || is_there(m_source)) &&
           mounts.spot_of(m_at_source) == mounts.spot_of(m_path);
  }

  /** Returns why nothing can move to the source, once the path has been renamed. */
  std::optional<Finding> why_no_way() {
    if (m_source.empty()) return Finding{Problem::source_empty};
    const auto folder = folder_above(m_source);
    if (lies_in_path(folder)) return Finding{Problem::source_in_path};
    if (contains(m_way_of_source, m_backup)) {
      // The way to the source depends on a name that nothing has now.
      m_forecast.sure = false;
      return Finding{Problem::source_by_backup, m_backup};
    }
    if (!is_folder(folder)) return Finding{Problem::source_folder_missing, folder};
    // An earlier entry at the source may be deleted nevertheless.
    if (!is_there(m_source)) {
      if (auto why = why_nothing_can_be_made(folder)) return why;
    }
    return why_too_long(m_source);
  }

  /** Returns whether the way to a folder passes the path, or something below it. */
  bool lies_in_path(const std::string& folder) const {
    const auto& mounts = m_files.mounts();
    const auto path = mounts.spot_of(m_path);
    return std::ranges::any_of(files::way_along(folder).entries, [&](const fs::path& entry) {
      return entry == m_path || files::holds(path, mounts.spot_of(entry));
    });
  }

  /** Foretells the deletion at the source. Returns whether the move is tried then. */
  bool clear_source() {
    if (is_link(m_source)) {
      // The link may lead to the path, which has another name by then.
      const bool dangles = !exists(m_source) || contains(m_way_of_source, m_path);
      if (dangles && is_folder(m_moved)) {
        return failed({Problem::source_is_dangling}, Remains::backup);
      }
      if (dangles) {
        find_link_at_source();
        const auto stays = why_it_must_stay(m_source);
        return !stays || failed(*stays, Remains::backup);
      }
    }
    switch (linkbuilder::clearing_for(m_moved, m_source)) {
      case linkbuilder::Clearing::none:
        return true;
      case linkbuilder::Clearing::refuse:
        return failed({Problem::overlap}, Remains::backup);
      case linkbuilder::Clearing::remove:
        return deletes_source();
    }
    return true;
  }

  void find_link_at_source() {
    std::error_code unknown;
    add(m_forecast, Problem::source_is_link, fs::read_symlink(m_source, unknown));
  }

  bool deletes_source() {
    const auto name = last_name(m_source);
    if (name == "." || name == "..") return failed({Problem::source_dots}, Remains::backup);
    if (m_files.is_needed(m_at_source)) add(m_forecast, Problem::needed_by_run, m_source);
    const bool link = is_link(m_source);
    if (!link) m_forecast.deleted = m_files.count(m_source);
    if (const auto why = why_it_must_stay(m_source)) {
      // Of a folder all may go but its name.
      m_forecast.sure = m_forecast.sure && link;
      return failed(*why, link ? Remains::backup : Remains::backup_only);
    }
    if (link) find_link_at_source();
    const auto mounted = m_files.mounts().mount_points_from(m_at_source);
    return mounted.empty() ||
           failed({Problem::source_mounted, mounted.front()}, Remains::backup_only);
  }

  /** Overlays make mv(1) copy a folder even when it only gets another name. */
  void check_renames() {
    if (!files::copies_folders(m_path) || !is_folder(m_moved)) return;
    const auto mounted = m_files.mounts().mount_points_from(m_path);
    const auto cramped = m_files.why_no_room(folder_above(m_to), *m_forecast.moved, {});
    if (!mounted.empty()) add(m_forecast, Problem::mounted_below, mounted.front());
    if (cramped) add(m_forecast, Problem::little_room, cramped->about);
  }

  void foretell_move(const Tally& freed) {
    const auto folder = folder_above(m_to);
    const auto length = m_forecast.definition.from.size();
    const auto cramped = m_files.why_no_room_for_link(folder, length, 0);
    if (cramped) add(m_forecast, cramped->problem, cramped->about);
    if (!can_hold_links(folder)) add(m_forecast, Problem::no_links_there, m_to);
    if (m_forecast.definition.from.ends_with('/') && !is_folder(m_moved)) {
      add(m_forecast, Problem::leads_nowhere, m_forecast.definition.from);
    }
    check_renames();
    const bool copies =
        files::lie_on_different_mounts(folder_above(m_moved), folder_above(m_source));
    if (copies && !is_copied(freed)) return;
    if (m_is_aside && leads_through_itself(m_to)) {
      fail(m_forecast, {Problem::path_through_itself}, Remains::source);
    }
  }

  /** Foretells a move to another mount. Returns whether it is not known to fail. */
  bool is_copied(const Tally& freed) {
    const bool replaced = m_forecast.deleted || is_link(m_source);
    const auto remains = replaced ? Remains::backup_only : Remains::backup;
    const auto mounted = m_files.mounts().mount_points_from(m_is_aside ? m_backup : m_path);
    if (!mounted.empty()) {
      m_forecast.sure = false;
      return failed({Problem::mounted_below, mounted.front()}, remains);
    }
    const auto cramped = m_files.why_no_room(folder_above(m_source), *m_forecast.moved, freed);
    if (!cramped) return true;
    if (cramped->problem == Problem::no_room) return failed(*cramped, remains);
    add(m_forecast, cramped->problem, cramped->about);
    return true;
  }

  bool failed(const Finding& why, Remains remains) {
    fail(m_forecast, why, remains);
    return false;
  }

  Forecast& m_forecast;
  FileSystems& m_files;
  const std::string& m_to;
  /** The path of what moves, at the beginning. */
  std::string m_moved;
  std::string m_source;
  /** The entries on the way to the path, and on that to the source and where a link there leads. */
  std::vector<fs::path> m_way;
  std::vector<fs::path> m_way_of_source;
  /** The path, the source, and the backup, each without links above its name. */
  fs::path m_path;
  fs::path m_at_source;
  fs::path m_backup{};
  /** Whether everything that moves has its backup name already. */
  bool m_is_aside = false;
};

}  // namespace

void foretell_adoption(Forecast& forecast, FileSystems& files) {
  Adoption{forecast, forecast.definition.to, files}.foretell();
}

void foretell_rest_of_adoption(Forecast& forecast, const std::string& backup, bool clears_source,
                               FileSystems& files) {
  Adoption{forecast, backup, files}.foretell_rest(clears_source);
}

}  // namespace varnholt::check
