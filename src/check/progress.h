// SPDX-License-Identifier: GPL-3.0-or-later
// Shows on a terminal how far the counting has come, once it takes longer than a second.
#pragma once

#include <chrono>
#include <cstdint>

namespace varnholt::check {

/** Writes to standard error, and only when that is a terminal; at its end nothing is left there. */
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

}  // namespace varnholt::check
