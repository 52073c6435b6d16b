// SPDX-License-Identifier: GPL-3.0-or-later
// What the file systems of the machine allow.
#include "check/file-systems.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <limits>

#include "base/path.h"
#include "base/text.h"

namespace varnholt::check {
namespace {

struct statx looked_up(const std::string& path, int flags = AT_SYMLINK_NOFOLLOW) {
  struct statx status {};
  statx(AT_FDCWD, path.c_str(), flags | AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_MNT_ID, &status);
  return status;
}

bool is_read_only(const std::string& folder) {
  struct statvfs status {};
  return statvfs(folder.c_str(), &status) == 0 && (status.f_flag & ST_RDONLY) != 0;
}

std::uint64_t entries_of(const Tally& tally) {
  return tally.folders + tally.files;
}

/** The room that is left in a file system. */
struct Room {
  /** In bytes, those for root included. */
  std::uint64_t bytes = 0;
  /** The number of entries; the highest number when the file system knows no limit. */
  std::uint64_t entries = 0;
};

Room room_at(const std::string& folder) {
  constexpr auto no_limit = std::numeric_limits<std::uint64_t>::max();
  struct statvfs status {};
  // A tmpfs without a limit has no blocks at all.
  if (statvfs(folder.c_str(), &status) != 0 || status.f_blocks == 0) return {no_limit, no_limit};
  return {std::uint64_t{status.f_bfree} * status.f_frsize,
          status.f_files == 0 ? no_limit : status.f_ffree};
}

}  // namespace

bool is_hidden(const std::string& path) {
  return access(path.c_str(), F_OK) != 0 && errno == EACCES;
}

std::optional<Finding> why_no_link_at(const std::string& path) {
  if (path.empty()) return Finding{Problem::path_empty};
  if (path.ends_with('/')) return Finding{Problem::path_ends_in_slash};
  const auto name = last_name(path);
  if (name == "." || name == "..") return Finding{Problem::path_ends_in_dots};
  return std::nullopt;
}

bool leads_through_itself(const std::string& path) {
  return std::ranges::count(files::way_along(folder_above(path)).entries,
                            files::way_along(path).entries.back()) > 0;
}

std::optional<Finding> why_nothing_can_be_made(const std::string& folder) {
  if (is_read_only(folder)) return Finding{Problem::read_only, folder};
  const auto attributes = looked_up(folder, 0).stx_attributes;
  if ((attributes & STATX_ATTR_IMMUTABLE) != 0) return Finding{Problem::immutable, folder};
  return std::nullopt;
}

std::optional<Finding> why_it_must_stay(const std::string& path) {
  constexpr auto fixed = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND;
  const auto folder = folder_above(path);
  if (is_read_only(folder)) return Finding{Problem::read_only, folder};
  const auto attributes = looked_up(folder, 0).stx_attributes;
  if ((attributes & fixed) != 0) return Finding{Problem::immutable, folder};
  if ((looked_up(path).stx_attributes & fixed) != 0) return Finding{Problem::immutable, path};
  return std::nullopt;
}

std::optional<Finding> why_too_long(const std::string& path) {
  bool long_name = path.size() >= PATH_MAX;
  for_each_piece(path, '/',
                 [&](std::string_view name) { long_name = long_name || name.size() > NAME_MAX; });
  return long_name ? std::optional{Finding{Problem::name_too_long}} : std::nullopt;
}

bool can_hold_links(const std::string& folder) {
  constexpr decltype(statfs::f_type) exfat = 0x2011BAB0;
  struct statfs status {};
  return statfs(folder.c_str(), &status) != 0 ||
         (status.f_type != MSDOS_SUPER_MAGIC && status.f_type != exfat);
}

bool FileSystems::is_needed(const std::filesystem::path& path) {
  // Most runs change nothing.
  if (m_needed.empty()) {
    for (const auto& file : m_needed_files) {
      for (const auto& entry : files::way_along(file).entries) {
        m_needed.insert(m_mounts.spot_of(entry));
      }
    }
  }
  return m_needed.contains(m_mounts.spot_of(path));
}

std::optional<Finding> FileSystems::why_no_room(const std::string& folder, const Tally& need,
                                                const Tally& freed) {
  // Without a count nobody knows whether it fits.
  if (!need.counted || !freed.counted) return Finding{Problem::room_uncounted, folder};
  struct stat status {};
  stat(folder.c_str(), &status);
  auto& promised = m_promised[status.st_dev];
  const auto room = room_at(folder);
  const bool fits_alone = need.disk_bytes <= room.bytes + freed.disk_bytes &&
                          entries_of(need) <= room.entries + entries_of(freed);
  promised += need;
  if (!fits_alone) return Finding{Problem::no_room, folder};
  // Only the other file system knows how much a file takes there, and a deleted file may have
  // other links.
  constexpr std::uint64_t page = 4096;
  const auto at_most = 2 * promised.disk_bytes + page * entries_of(promised);
  const bool surely =
      need.unreadable == 0 && at_most <= room.bytes && entries_of(promised) <= room.entries;
  return surely ? std::nullopt : std::optional{Finding{Problem::little_room, folder}};
}

std::optional<Finding> FileSystems::why_no_room_for_link(const std::string& folder,
                                                         std::size_t content, std::size_t missing) {
  // The usual file systems need no block for a short content. A long one does not fit into some.
  constexpr std::size_t short_content = 59;
  constexpr std::size_t long_content = 1000;
  constexpr std::uint64_t page = 4096;
  const auto blocks = missing + (content > short_content ? 1 : 0);
  const Tally need{.folders = missing, .files = 1, .disk_bytes = blocks * page};
  if (!why_no_room(folder, need, {}) && content <= long_content) return std::nullopt;
  return Finding{Problem::little_room, folder};
}

}  // namespace varnholt::check
