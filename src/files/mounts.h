// SPDX-License-Identifier: GPL-3.0-or-later
// Tells where paths are in the file systems that are mounted.
#pragma once

#include <sys/types.h>

#include <compare>
#include <string>
#include <vector>

namespace varnholt::files {

/** A place in a file system, the same for every mount through which it is reached. */
struct Spot {
  dev_t device = 0;
  /** The path from the root of the file system; the root is the empty path. */
  std::string path;

  std::strong_ordering operator<=>(const Spot& that) const = default;
};

/** Returns whether `outer` is `inner` or a folder above it. */
bool holds(const Spot& outer, const Spot& inner);

/** The mounts that this process sees, as /proc lists them; empty where /proc is missing. */
class Mounts {
 public:
  Mounts();

  /**
   * Returns the place of a path that has no links above its last name. When nothing is there, it is
   * the place at which it would be.
   */
  Spot spot_of(const std::string& path) const;

  /** Returns the places of such paths, as those of the entries on a way. */
  std::vector<Spot> spots_of(const std::vector<std::string>& paths) const;

  /** Returns the place of such a path and the roots of all mounts below it. */
  std::vector<Spot> spots_from(const std::string& path) const;

  /** Returns whether something is mounted at such a path. */
  bool is_mount_point(const std::string& path) const;

  /**
   * Returns what is mounted at such a path or below it, as the paths of the mounts. The kernel lets
   * nobody rename or remove a mount point, by whatever other mount its folder is reached.
   */
  std::vector<std::string> mount_points_from(const std::string& path) const;

 private:
  struct Mount {
    int id = 0;
    int parent = 0;
    std::string target;
    Spot root;
  };
  /** Returns the place of the entry for a path in its folder, which a mount may cover. */
  Spot seat_of(const std::string& path) const;

  /** Returns the place at which something is mounted, in the file system that is covered there. */
  Spot point_of(const Mount& mount) const;

  std::vector<Mount> m_mounts;
};

/**
 * Returns whether two paths lead to different mounts, between which rename(2) does not work even
 * when both are of one file system, or to different subvolumes. Returns false when one of them
 * leads nowhere.
 */
bool lie_on_different_mounts(const std::string& path, const std::string& other);

/**
 * Returns the path at which the file system that a path leads to is mounted. What is missing is in
 * that of what is there above it.
 */
std::string mount_point_of(const std::string& path);

/** Returns whether a folder is on an overlay, where rename(2) does not work for folders. */
bool copies_folders(const std::string& folder);

/**
 * Returns whether mv(1) moves `from` to the name `to` by copying it and then deleting it, because
 * rename(2) does not work. The folder above `to` must exist.
 */
bool mv_copies(const std::string& from, const std::string& to);

}  // namespace varnholt::files
