// SPDX-License-Identifier: GPL-3.0-or-later
// What the window makes of a profile: which lines its next save loses or changes.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "check/finding.h"

namespace varnholt {

struct LineFinding {
  /** From 1. */
  std::size_t line = 0;
  Finding finding;
};

struct WindowView {
  std::vector<LineFinding> findings;
  /** The numbers of definitions that the next save writes in another order. */
  std::size_t reordered_files = 0;
  std::size_t reordered_scripts = 0;
};

/** Reads a profile as the window loads it. */
WindowView window_view_of(std::string_view profile);

}  // namespace varnholt
