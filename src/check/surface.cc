// SPDX-License-Identifier: GPL-3.0-or-later
// What the file system at a place allows.
#include "check/surface.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <limits>

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

}  // namespace

bool is_hidden(const std::string& path) {
  return access(path.c_str(), F_OK) != 0 && errno == EACCES;
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

Room room_at(const std::string& folder) {
  constexpr auto no_limit = std::numeric_limits<std::uint64_t>::max();
  struct statvfs status {};
  // A tmpfs without a limit has no blocks at all.
  if (statvfs(folder.c_str(), &status) != 0 || status.f_blocks == 0) return {no_limit, no_limit};
  return {std::uint64_t{status.f_bfree} * status.f_frsize,
          status.f_files == 0 ? no_limit : status.f_ffree};
}

}  // namespace varnholt::check
