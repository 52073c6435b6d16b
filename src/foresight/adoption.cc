// SPDX-License-Identifier: GPL-3.0-or-later
// What comes of a definition at whose path there is a folder or a file.
#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/path.h"
#include "files/mounts.h"
#include "files/way.h"
#include "foresight/forecast.h"
#include "linkbuilder/backup-name.h"
#include "linkbuilder/guards.h"

namespace fs = std::filesystem;

namespace varnholt::foresight {
namespace {

/** One adoption while it is foretold, in the order of its steps. */
class Adoption {
 public:
  /** An adoption, or the rest of one that has this backup name already. */
  Adoption(Forecast& forecast, const std::string& backup, FileSystems& files)
      : m_forecast(forecast),
        m_files(files),
        m_to(forecast.definition.to),
        m_is_aside(!backup.empty()),
        m_moved(m_is_aside ? backup : m_to),
        m_source(without_final_slash(forecast.definition.from)),
        m_way_of_source(files.entries_on(m_source + '/')),
        m_path(m_is_aside ? linkbuilder::path_of_backup(files.end_of(backup)) : files.end_of(m_to)),
        m_at_source(files.end_of(m_source)) {
    m_forecast.backup = m_is_aside ? backup : linkbuilder::free_backup_name(m_to);
    m_backup = m_forecast.backup.empty() ? m_path : files.end_of(m_forecast.backup);
  }

  void foretell(bool clears_source) {
    begin();
    const auto stays = m_is_aside ? std::nullopt : why_not_renamed();
    if (stays) return m_forecast.fail(*stays, remains::all);
    m_forecast.moved = m_files.count(beginning());
    if (m_files.leads_through_itself(m_to) && !m_source.empty()) {
      return m_forecast.fail({problems::path_through_itself}, remains::backup);
    }
    if (const auto why = why_no_way()) return m_forecast.fail(*why, remains::backup);
    if (is_same_place()) {
      // By way of another mount it is copied there and back.
      m_forecast.sure = m_forecast.sure && m_at_source == m_path && !m_is_aside;
      return m_forecast.fail({problems::same_place}, remains::all);
    }
    if (!clears_source && !clear_source()) return;
    foretell_move(clears_source ? m_files.count(m_source)
                                : m_forecast.deleted.value_or(files::Tally{}));
  }

 private:
  /** Returns the entry of what moves, at the beginning. */
  const std::string& beginning() const { return m_is_aside ? m_backup : m_path; }

  void begin() {
    m_forecast.outcome = outcomes::adopted;
    auto& footprint = m_forecast.footprint;
    footprint.whole = {beginning()};
    footprint.changed = {m_path, m_backup};
    if (!m_source.empty()) {
      footprint.whole.push_back(m_at_source);
      footprint.changed.push_back(m_at_source);
    }
    footprint.rely_on(m_way_of_source);
    if (!m_is_aside) footprint.rely_on(taken_backup_names());
    if (m_files.is_needed(beginning())) m_forecast.add({problems::needed_by_run, m_to});
    if (!m_source.empty() && !m_source.starts_with('/')) {
      m_forecast.add({problems::relative, m_source});
    }
    if (m_source.ends_with('/')) m_forecast.add({problems::source_slashes});
    if (m_way_of_source.size() > most_entries) m_forecast.add({problems::too_deep, m_source});
  }

  /** Returns the backup names before the one that is free: any that another line frees counts. */
  std::vector<std::string> taken_backup_names() const {
    std::vector<std::string> names;
    for (int number = 0; number < linkbuilder::backup_names; ++number) {
      auto name = linkbuilder::backup_name(m_path, number);
      if (name == m_backup) break;
      names.push_back(std::move(name));
    }
    return names;
  }

  std::optional<Finding> why_not_renamed() const {
    if (auto why = why_no_link_at(m_to)) return why;
    if (m_files.mounts().is_mount_point(m_path)) return Finding{problems::path_mounted, m_path};
    if (auto why = why_it_must_stay(m_to)) return why;
    const bool nameless = m_forecast.backup.empty() || why_too_long(m_forecast.backup);
    return nameless ? std::optional{Finding{problems::no_backup_name}} : std::nullopt;
  }

  /** Returns why nothing can move to the source, once the path has been renamed. */
  std::optional<Finding> why_no_way() {
    if (m_source.empty()) return Finding{problems::source_empty};
    const auto folder = folder_above(m_source);
    if (lies_in_path(folder)) return Finding{problems::source_in_path};
    // The way to the source would depend on a name that nothing has now.
    if (passes(m_backup)) return Finding{problems::source_by_backup, m_backup};
    if (!is_folder(folder)) return Finding{problems::source_folder_missing, folder};
    // An earlier entry at the source may be deleted nevertheless.
    if (!is_there(m_source)) {
      if (auto why = why_nothing_can_be_made(folder)) return why;
    }
    return why_too_long(m_source);
  }

  /** Returns whether the way to a folder passes the path, or something below it. */
  bool lies_in_path(const std::string& folder) const {
    const auto path = m_files.spot_of(m_path);
    return std::ranges::any_of(m_files.entries_on(folder), [&](const std::string& entry) {
      return entry == m_path || files::holds(path, m_files.spot_of(entry));
    });
  }

  /** Returns whether the way to the source, and to where a link there leads, passes an entry. */
  bool passes(const std::string& entry) const {
    return std::ranges::count(m_way_of_source, entry) > 0;
  }

  /** Returns whether source and path are one entry, which only gets its name back. */
  bool is_same_place() const {
    return (m_is_aside || is_there(m_source)) &&
           m_files.spot_of(m_at_source) == m_files.spot_of(m_path);
  }

  /** Foretells the deletion at the source. Returns whether the move is tried then. */
  bool clear_source() {
    // A link there may lead to the path, which has another name by then.
    if (is_link(m_source) && (!exists(m_source) || passes(m_path))) {
      if (is_folder(m_moved)) return failed({problems::source_is_dangling}, remains::backup);
      find_link_at_source();
      const auto stays = why_it_must_stay(m_source);
      return !stays || failed(*stays, remains::backup);
    }
    const auto clearing = linkbuilder::clearing_for(m_moved, m_source);
    if (clearing == linkbuilder::Clearing::refuse) {
      return failed({problems::overlap}, remains::backup);
    }
    return clearing == linkbuilder::Clearing::none || deletes_source();
  }

  void find_link_at_source() {
    std::error_code unknown;
    m_forecast.add({problems::source_is_link, fs::read_symlink(m_source, unknown)});
  }

  bool deletes_source() {
    const auto name = last_name(m_source);
    if (name == "." || name == "..") return failed({problems::source_dots}, remains::backup);
    if (m_files.is_needed(m_at_source)) m_forecast.add({problems::needed_by_run, m_source});
    const bool link = is_link(m_source);
    if (!link) m_forecast.deleted = m_files.count(m_source);
    if (const auto why = why_it_must_stay(m_source)) {
      // Of a folder all may go but its name.
      m_forecast.sure = m_forecast.sure && link;
      return failed(*why, link ? remains::backup : remains::backup_only);
    }
    if (link) find_link_at_source();
    const auto mounted = m_files.mounts().mount_points_from(m_at_source);
    return mounted.empty() ||
           failed({problems::source_mounted, mounted.front()}, remains::backup_only);
  }

  void foretell_move(const files::Tally& freed) {
    const auto& from = m_forecast.definition.from;
    const auto folder = folder_above(m_to);
    if (const auto why = m_files.why_no_room_for_link(folder, from)) m_forecast.add(*why);
    if (!can_hold_links(folder)) m_forecast.add({problems::no_links_there, m_to});
    if (from.ends_with('/') && !is_folder(m_moved)) {
      m_forecast.add({problems::leads_nowhere, from});
    }
    if (!m_is_aside && files::mv_copies(m_to, m_forecast.backup)) check_renaming(folder);
    if (files::lie_on_different_mounts(folder_above(m_moved), folder_above(m_source))) {
      find_in_copy(freed);
    }
  }

  /** Overlays make mv(1) copy a folder even when it only gets another name. */
  void check_renaming(const std::string& folder) {
    const auto mounted = m_files.mounts().mount_points_from(m_path);
    const auto cramped = m_files.why_no_room(folder, *m_forecast.moved, {});
    if (!mounted.empty()) m_forecast.add({problems::mounted_below, mounted.front()});
    if (cramped) m_forecast.add({problems::little_room, cramped->about});
  }

  /** Foretells a move to another mount. */
  void find_in_copy(const files::Tally& freed) {
    const bool replaces = m_forecast.deleted || is_link(m_source);
    const auto left = replaces ? remains::backup_only : remains::backup;
    const auto mounted = m_files.mounts().mount_points_from(beginning());
    if (!mounted.empty()) {
      return m_forecast.fail({problems::mounted_below, mounted.front()}, left);
    }
    const auto cramped = m_files.why_no_room(folder_above(m_source), *m_forecast.moved, freed);
    if (!cramped) return;
    if (cramped->problem == problems::no_room) return m_forecast.fail(*cramped, left);
    m_forecast.add(*cramped);
  }

  bool failed(const Finding& why, const Phrase& what_remains) {
    m_forecast.fail(why, what_remains);
    return false;
  }

  Forecast& m_forecast;
  FileSystems& m_files;
  const std::string& m_to;
  /** Whether everything that moves has its backup name already. */
  bool m_is_aside;
  /** The path of what moves, at the beginning. */
  std::string m_moved;
  std::string m_source;
  /** The entries on the way to the source and where a link there leads. */
  std::vector<std::string> m_way_of_source;
  /** The path, the source, and the backup, each without links above its name. */
  std::string m_path;
  std::string m_at_source;
  std::string m_backup{};
};

}  // namespace

void foretell_adoption(Forecast& forecast, FileSystems& files, const std::string& backup,
                       bool clears_source) {
  Adoption{forecast, backup, files}.foretell(clears_source);
}

}  // namespace varnholt::foresight
