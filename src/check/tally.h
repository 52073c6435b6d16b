// SPDX-License-Identifier: GPL-3.0-or-later
// Counts what stands at a path.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace varnholt::check {

/** How much stands at a path, with everything that is mounted below it. */
struct Tally {
  std::uint64_t folders = 0;
  /** Everything that is no folder: files, links, devices and so on. */
  std::uint64_t files = 0;
  /** The lengths of all regular files together. */
  std::uint64_t bytes = 0;
  /** What all of it takes on the disk, in bytes. */
  std::uint64_t disk_bytes = 0;
  /** Whether anybody has counted. */
  bool counted = true;
  /** Folders whose contents could not be read, so that the true figures are higher. */
  std::uint64_t unreadable = 0;

  Tally& operator+=(const Tally& that);
};

/**
 * Counts what stands at `path`; nothing there counts as nothing. A link at the path is counted, not
 * what it leads to. `on_entry` is called with each entry.
 */
Tally tally_of(const std::string& path, const std::function<void()>& on_entry);

}  // namespace varnholt::check
