// SPDX-License-Identifier: GPL-3.0-or-later
// Counts, compares and removes whatever is at a path and below it. Each folder is opened in the one
// above it and no link in it is followed, so that nobody can lead these functions elsewhere.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace varnholt::files {

/** How much is at a path, with everything that is mounted below it. */
struct Tally {
  std::uint64_t entries() const { return folders + files; }

  std::uint64_t folders = 0;
  /** Everything that is no folder: files, links, devices and so on. */
  std::uint64_t files = 0;
  /** The lengths of all regular files together. */
  std::uint64_t bytes = 0;
  /** What all of it takes on the disk, in bytes. */
  std::uint64_t disk_bytes = 0;
  /** Folders whose contents could not be read, so that the true figures are higher. */
  std::uint64_t unreadable = 0;
  /** Whether anybody has counted. */
  bool counted = true;
};

/**
 * Counts the entries from a path down, and calls `next` before each of them. A link at the path is
 * counted, not what it leads to, unless the path ends with a slash. When nothing is there, or root
 * must not follow a link on the way, all is 0. Each level takes a descriptor.
 */
Tally tally_of(
    const std::string& path, const std::function<void()>& next = [] {});

/**
 * Returns the number of entries from a path down, the entry at the path included; 0 when they
 * cannot be counted.
 */
std::uint64_t entries_at(const std::string& path);

/**
 * Returns whether `part` can be a part of a copy of `whole`: each of its entries has a counterpart
 * there, of the same kind, and each file begins as its counterpart does. All contents are compared,
 * because a part that turns out to be whole elsewhere is deleted. Whatever cannot be read makes the
 * answer false.
 */
bool is_part_of_copy(const std::string& part, const std::string& whole);

/**
 * Gives each link in a copy to the owner of its original: a link of root's is followed wherever it
 * leads, and cp(1) makes all of them root's. Returns whether that could be done.
 */
bool give_links_to_owners(const std::string& copy, const std::string& original);

/** Removes everything from a path down. Returns 0, or the errno of the first failure. */
int remove_tree(const std::string& path);

}  // namespace varnholt::files
