// SPDX-License-Identifier: GPL-3.0-or-later
// Counts the entries at a path, and shows on a terminal how far the counting has come.
#pragma once

#include <chrono>
#include <cstdint>
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
 * Shows the number of counted entries once counting takes longer than a second. It writes to
 * standard error, and only when that is a terminal; at its end nothing is left there.
 */
class Progress {
 public:
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /** One more file has been counted. */
  void step();

 private:
  using Clock = std::chrono::steady_clock;
  bool m_terminal;
  bool m_shown = false;
  std::uint64_t m_files = 0;
  Clock::time_point m_next;
};

/**
 * Counts the entries at `path` and below it; 0 when nothing is there. A link at the path is
 * counted, not what it leads to.
 */
Tally tally_of(const std::string& path, Progress& progress);

}  // namespace varnholt::check
