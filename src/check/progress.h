// SPDX-License-Identifier: GPL-3.0-or-later
// Shows on a terminal how far a long count has come.
#pragma once

#include <chrono>
#include <cstdint>

namespace varnholt::check {

/**
 * Shows the number of entries once that takes longer than a second. It writes to standard error,
 * and only when that is a terminal; at its end nothing is left there.
 */
class Progress {
 public:
  Progress() = default;
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /** Tells that one more entry is counted. */
  void advance();

 private:
  using Clock = std::chrono::steady_clock;

  bool m_shown = false;
  std::uint64_t m_entries = 0;
  Clock::time_point m_next = Clock::now() + std::chrono::seconds{1};
};

}  // namespace varnholt::check
