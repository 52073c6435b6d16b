// SPDX-License-Identifier: GPL-3.0-or-later
// What the file systems of the machine allow.
#include "foresight/file-systems.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <limits>
#include <utility>

#include "base/path.h"
#include "base/text.h"

namespace varnholt::foresight {
namespace {

bool has_attribute(const std::string& path, std::uint64_t attributes, int flags = 0) {
  struct statx status {};
  statx(AT_FDCWD, path.c_str(), flags | AT_NO_AUTOMOUNT, STATX_BASIC_STATS, &status);
  return (status.stx_attributes & attributes) != 0;
}

std::optional<Finding> why_fixed(const std::string& folder, std::uint64_t attributes) {
  struct statvfs status {};
  const bool known = statvfs(folder.c_str(), &status) == 0;
  if (known && (status.f_flag & ST_RDONLY) != 0) return Finding{problems::read_only, folder};
  if (has_attribute(folder, attributes)) return Finding{problems::immutable, folder};
  return std::nullopt;
}

/** The room that is left in a file system. */
struct Room {
  /** In bytes, those for root included. */
  std::uint64_t bytes = std::numeric_limits<std::uint64_t>::max() / 2;
  std::uint64_t entries = bytes;
};

Room room_at(const std::string& folder) {
  struct statvfs status {};
  Room room;
  // A tmpfs without a limit has no blocks at all.
  if (statvfs(folder.c_str(), &status) != 0 || status.f_blocks == 0) return room;
  room.bytes = std::uint64_t{status.f_bfree} * status.f_frsize;
  // Some file systems know no limit.
  if (status.f_files > 0) room.entries = status.f_ffree;
  return room;
}

}  // namespace

bool is_hidden(const std::string& path) {
  return access(path.c_str(), F_OK) != 0 && errno == EACCES;
}

std::optional<Finding> why_no_link_at(const std::string& path) {
  if (path.empty()) return Finding{problems::path_empty};
  if (path.ends_with('/')) return Finding{problems::path_ends_in_slash};
  const auto name = last_name(path);
  if (name == "." || name == "..") return Finding{problems::path_ends_in_dots};
  return std::nullopt;
}

std::optional<Finding> why_nothing_can_be_made(const std::string& folder) {
  return why_fixed(folder, STATX_ATTR_IMMUTABLE);
}

std::optional<Finding> why_it_must_stay(const std::string& path) {
  constexpr std::uint64_t attributes = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND;
  if (auto why = why_fixed(folder_above(path), attributes)) return why;
  const bool fixed = has_attribute(path, attributes, AT_SYMLINK_NOFOLLOW);
  return fixed ? std::optional{Finding{problems::immutable, path}} : std::nullopt;
}

std::optional<Finding> why_too_long(const std::string& path) {
  const auto is_long = [](std::string_view name) { return name.size() > NAME_MAX; };
  const bool fits = path.size() < PATH_MAX && std::ranges::none_of(split(path, '/'), is_long);
  return fits ? std::nullopt : std::optional{Finding{problems::name_too_long}};
}

bool can_hold_links(const std::string& folder) {
  constexpr decltype(statfs::f_type) exfat = 0x2011BAB0;
  struct statfs status {};
  return statfs(folder.c_str(), &status) != 0 ||
         (status.f_type != MSDOS_SUPER_MAGIC && status.f_type != exfat);
}

FileSystems::FileSystems(const std::vector<std::string>& needed, std::function<void()> count_next)
    : m_count_next(std::move(count_next)) {
  for (const auto& file : needed) {
    for (const auto& entry : entries_on(file)) m_needed.insert(spot_of(entry));
  }
}

std::vector<std::string> FileSystems::entries_on(const std::string& path) {
  return m_ways.answer(path, [](const std::string& asked) {
    auto entries = files::way_along(asked).entries;
    if (entries.size() > most_entries) {
      entries.erase(entries.begin() + most_entries, entries.end() - 1);
    }
    return entries;
  });
}

bool FileSystems::leads_through_itself(const std::string& path) {
  return std::ranges::count(entries_on(folder_above(path)), end_of(path)) > 0;
}

files::Spot FileSystems::spot_of(const std::string& entry) {
  return m_spots.answer(entry,
                        [this](const std::string& asked) { return m_mounts.spot_of(asked); });
}

files::Tally FileSystems::count(const std::string& path) {
  if (!m_count_next) return {.counted = false};
  return m_tallies.answer(
      path, [this](const std::string& asked) { return files::tally_of(asked, m_count_next); });
}

bool FileSystems::is_needed(const std::string& path) {
  return m_needed.contains(spot_of(path));
}

std::optional<Finding> FileSystems::why_no_room(const std::string& folder, const files::Tally& need,
                                                const files::Tally& freed) {
  // Without a count nobody knows whether it fits.
  if (!need.counted || !freed.counted) return Finding{problems::room_uncounted, folder};
  struct stat status {};
  stat(folder.c_str(), &status);
  const auto room = room_at(folder);
  auto& promised = m_promised[status.st_dev];
  promised.files += need.entries();
  promised.disk_bytes += need.disk_bytes;
  if (need.disk_bytes > room.bytes + freed.disk_bytes ||
      need.entries() > room.entries + freed.entries()) {
    return Finding{problems::no_room, folder};
  }
  // Only the other file system knows how much a file takes there, and a deleted file may have
  // other links.
  constexpr std::uint64_t page = 4096;
  const auto at_most = 2 * promised.disk_bytes + page * promised.files;
  const bool surely =
      need.unreadable == 0 && at_most <= room.bytes && promised.files <= room.entries;
  return surely ? std::nullopt : std::optional{Finding{problems::little_room, folder}};
}

std::optional<Finding> FileSystems::why_no_room_for_link(const std::string& folder,
                                                         const std::string& content,
                                                         std::size_t missing) {
  // The usual file systems need no block for a short content. A long one does not fit into some.
  constexpr std::size_t short_content = 59;
  constexpr std::size_t long_content = 1000;
  constexpr std::uint64_t page = 4096;
  const auto blocks = missing + (content.size() > short_content ? 1 : 0);
  const files::Tally need{.folders = missing, .files = 1, .disk_bytes = blocks * page};
  const bool surely = !why_no_room(folder, need, {}) && content.size() <= long_content;
  return surely ? std::nullopt : std::optional{Finding{problems::little_room, folder}};
}

}  // namespace varnholt::foresight
