// SPDX-License-Identifier: GPL-3.0-or-later
// Tells where paths are in the file systems that are mounted.
#include "files/mounts.h"

#include <fcntl.h>
#include <libmount.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cstdint>
#include <memory>

#include "base/glib-ptr.h"
#include "base/path.h"
#include "files/way.h"

namespace varnholt::files {
namespace {

/** Returns `path` as the beginning of the paths below it; the root becomes the empty path. */
std::string as_prefix(const char* path) {
  const std::string text = path == nullptr ? "" : path;
  return text == "/" ? "" : text;
}

}  // namespace

bool holds(const Spot& outer, const Spot& inner) {
  return outer.device == inner.device && inner.path.starts_with(outer.path) &&
         (inner.path.size() == outer.path.size() || inner.path[outer.path.size()] == '/');
}

Mounts::Mounts() {
  const std::unique_ptr<libmnt_table, FreeWith<mnt_unref_table>> table{
      mnt_new_table_from_file("/proc/self/mountinfo")};
  const std::unique_ptr<libmnt_iter, FreeWith<mnt_free_iter>> step{mnt_new_iter(MNT_ITER_FORWARD)};
  libmnt_fs* mount = nullptr;
  while (table && mnt_table_next_fs(table.get(), step.get(), &mount) == 0) {
    m_mounts.push_back({mnt_fs_get_id(mount),
                        mnt_fs_get_parent_id(mount),
                        as_prefix(mnt_fs_get_target(mount)),
                        {mnt_fs_get_devno(mount), as_prefix(mnt_fs_get_root(mount))}});
  }
}

Spot Mounts::spot_of(const std::string& path) const {
  const std::string text = as_prefix(path.c_str());
  struct statx status {};
  const auto is_there = [&](const std::string& part) {
    const char* const looked_up = part.empty() ? "/" : part.c_str();
    return statx(AT_FDCWD, looked_up, AT_SYMLINK_NOFOLLOW, STATX_MNT_ID, &status) == 0;
  };
  // What is missing is in the mount of what is there above it.
  for (auto part = text; !is_there(part) && !part.empty();) part.resize(part.rfind('/'));
  for (const auto& mount : m_mounts) {
    if (static_cast<std::uint64_t>(mount.id) == status.stx_mnt_id &&
        text.starts_with(mount.target)) {
      return {mount.root.device, mount.root.path + text.substr(mount.target.size())};
    }
  }
  return {0, text};
}

std::vector<Spot> Mounts::spots_of(const std::vector<std::string>& paths) const {
  std::vector<Spot> spots;
  spots.reserve(paths.size());
  for (const auto& path : paths) spots.push_back(spot_of(path));
  return spots;
}

std::vector<Spot> Mounts::spots_from(const std::string& path) const {
  std::vector<Spot> spots{spot_of(path)};
  for (const auto& mount : m_mounts) {
    if (mount.target.starts_with(as_prefix(path.c_str()) + '/')) spots.push_back(mount.root);
  }
  return spots;
}

Spot Mounts::point_of(const Mount& mount) const {
  const auto parent = std::ranges::find(m_mounts, mount.parent, &Mount::id);
  if (parent == m_mounts.end() || !mount.target.starts_with(parent->target)) return {0, ""};
  return {parent->root.device, parent->root.path + mount.target.substr(parent->target.size())};
}

Spot Mounts::seat_of(const std::string& path) const {
  auto seat = spot_of(without_final_slash(folder_above(path)));
  if (path != "/") seat.path += '/' + last_name(path);
  return seat;
}

bool Mounts::is_mount_point(const std::string& path) const {
  const auto seat = seat_of(path);
  return std::ranges::any_of(m_mounts, [&](const Mount& mount) { return point_of(mount) == seat; });
}

std::vector<std::string> Mounts::mount_points_from(const std::string& path) const {
  const auto seat = seat_of(path);
  std::vector<std::string> points;
  for (const auto& mount : m_mounts) {
    const auto point = point_of(mount);
    if (!point.path.empty() && holds(seat, point)) points.push_back(mount.target);
  }
  return points;
}

bool lie_on_different_mounts(const std::string& path, const std::string& other) {
  struct statx one {};
  struct statx another {};
  return statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_MNT_ID, &one) == 0 &&
         statx(AT_FDCWD, other.c_str(), AT_NO_AUTOMOUNT, STATX_MNT_ID, &another) == 0 &&
         (one.stx_mnt_id != another.stx_mnt_id || one.stx_dev_major != another.stx_dev_major ||
          one.stx_dev_minor != another.stx_dev_minor);
}

std::string mount_point_of(const std::string& path) {
  const auto is_mounted = [](const std::string& folder) {
    struct statx status {};
    return statx(AT_FDCWD, folder.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, 0, &status) ==
               0 &&
           (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
  };
  auto folder = way_along(path).entries.back();
  while (folder.size() > 1 && !is_mounted(folder)) {
    folder.resize(std::max<std::size_t>(folder.rfind('/'), 1));
  }
  return folder;
}

bool copies_folders(const std::string& folder) {
  struct statfs status {};
  return statfs(folder.c_str(), &status) == 0 && status.f_type == OVERLAYFS_SUPER_MAGIC;
}

bool mv_copies(const std::string& from, const std::string& to) {
  const auto folder = folder_above(from);
  return lie_on_different_mounts(folder, folder_above(to)) ||
         (copies_folders(folder) && is_folder(from) && !is_link(from));
}

}  // namespace varnholt::files
