// SPDX-License-Identifier: GPL-3.0-or-later
// Finds where paths really lead, through symbolic links and mounts.
#include "linkbuilder/places.h"

#include <fcntl.h>
#include <libmount.h>
#include <sys/stat.h>

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "base/glib-ptr.h"

namespace fs = std::filesystem;

namespace varnholt {
namespace {

/** The number of links that the kernel follows; see path_resolution(7). */
constexpr int most_links = 40;

/**
 * Returns the entries that the kernel passes on its way along `path`, both links and what they lead
 * to, as paths without a link above their last name. The last entry is where the path ends, which
 * may be a link. Returns no entries when the path leads nowhere.
 */
std::vector<fs::path> way_along(const fs::path& path) {
  std::error_code error;
  fs::path at = path.is_absolute() ? "/" : fs::current_path(error);
  std::vector<fs::path> way{at};
  std::list<fs::path> names{path.begin(), path.end()};
  for (int links = 0; !names.empty();) {
    const fs::path name = names.front();
    names.pop_front();
    if (name.empty() || name == ".") continue;
    if (name == "..") {
      at = at.parent_path();
      continue;
    }
    const fs::path entry = name.is_absolute() ? name : at / name;
    way.push_back(entry);
    const auto status = fs::symlink_status(entry, error);
    if (!fs::exists(status)) return {};
    // A link with a slash after it, which gives an empty name, means what the link leads to.
    if (!fs::is_symlink(status) || names.empty()) {
      at = entry;
      continue;
    }
    const fs::path content = fs::read_symlink(entry, error);
    if (error || ++links > most_links) return {};
    names.insert(names.begin(), content.begin(), content.end());
  }
  way.push_back(at);
  return way;
}

/** A place in a file system, the same for every mount through which it is reached. */
struct Place {
  dev_t device = 0;
  /** The path from the root of the file system; the root is the empty path. */
  std::string path;
};

/** Returns whether `outer` is `inner` or a folder above it. */
bool holds(const Place& outer, const Place& inner) {
  return outer.device == inner.device && inner.path.starts_with(outer.path) &&
         (inner.path.size() == outer.path.size() || inner.path[outer.path.size()] == '/');
}

bool any_holds(const std::vector<Place>& outer, const std::vector<Place>& inner) {
  for (const auto& folder : outer) {
    for (const auto& place : inner) {
      if (holds(folder, place)) return true;
    }
  }
  return false;
}

/** Returns `path` as the beginning of the paths below it; the root becomes the empty path. */
std::string as_prefix(const char* path) {
  const std::string text = path == nullptr ? "" : path;
  return text == "/" ? "" : text;
}

/** The mounts that this process sees, as /proc lists them; empty where /proc is missing. */
class Mounts {
 public:
  Mounts() {
    const std::unique_ptr<libmnt_table, FreeWith<mnt_unref_table>> table{
        mnt_new_table_from_file("/proc/self/mountinfo")};
    const std::unique_ptr<libmnt_iter, FreeWith<mnt_free_iter>> step{
        mnt_new_iter(MNT_ITER_FORWARD)};
    libmnt_fs* mount = nullptr;
    while (table && mnt_table_next_fs(table.get(), step.get(), &mount) == 0) {
      m_mounts.push_back({mnt_fs_get_id(mount),
                          as_prefix(mnt_fs_get_target(mount)),
                          {mnt_fs_get_devno(mount), as_prefix(mnt_fs_get_root(mount))}});
    }
  }

  /** Returns the place of a path that has no links above its last name. */
  Place place_of(const fs::path& path) const {
    const std::string text = as_prefix(path.c_str());
    struct statx status {};
    statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_MNT_ID, &status);
    for (const auto& mount : m_mounts) {
      if (static_cast<std::uint64_t>(mount.id) == status.stx_mnt_id &&
          text.starts_with(mount.target)) {
        return {mount.root.device, mount.root.path + text.substr(mount.target.size())};
      }
    }
    return {0, text};
  }

  /** Returns the place of such a path and the roots of all mounts below it. */
  std::vector<Place> places_from(const fs::path& path) const {
    std::vector<Place> places{place_of(path)};
    for (const auto& mount : m_mounts) {
      if (mount.target.starts_with(as_prefix(path.c_str()) + '/')) places.push_back(mount.root);
    }
    return places;
  }

 private:
  struct Mount {
    int id = 0;
    std::string target;
    Place root;
  };
  std::vector<Mount> m_mounts;
};

}  // namespace

bool deletion_takes_away(const fs::path& doomed, const fs::path& path) {
  const auto doomed_way = way_along(doomed);
  const auto way = way_along(path);
  if (doomed_way.empty() || way.empty()) return true;
  const Mounts mounts;
  const auto gone = mounts.places_from(doomed_way.back());
  std::vector<Place> passed;
  passed.reserve(way.size());
  for (const auto& entry : way) passed.push_back(mounts.place_of(entry));
  return any_holds(gone, passed) || any_holds(mounts.places_from(way.back()), gone);
}

}  // namespace varnholt
