// SPDX-License-Identifier: GPL-3.0-or-later
// Counts the entries at a path, and shows on a terminal how far the counting has come.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>

namespace varnholt::check {

/** How much stands at a path, with everything that is mounted below it. */
struct Tally {
  std::uint64_t entries() const { return folders + files; }

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
};

/**
 * Counts, and shows the number of entries once that takes longer than a second. It writes to
 * standard error, and only when that is a terminal; at its end nothing is left there.
 */
class Counter {
 public:
  Counter() = default;
  Counter(const Counter&) = delete;
  Counter& operator=(const Counter&) = delete;
  ~Counter();

  /**
   * Counts the entries at `path` and below it; 0 when nothing is there. A link at the path is
   * counted, not what it leads to. What has been counted once is not counted again.
   */
  Tally count(const std::string& path);

 private:
  using Clock = std::chrono::steady_clock;

  void show_progress();

  std::map<std::string, Tally> m_counted;
  bool m_shown = false;
  std::uint64_t m_entries = 0;
  Clock::time_point m_next = Clock::now() + std::chrono::seconds{1};
};

}  // namespace varnholt::check
