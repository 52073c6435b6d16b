// SPDX-License-Identifier: GPL-3.0-or-later
// What the benchmarks share.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

[[noreturn]] inline void give_up(const std::string& why) {
  std::fprintf(stderr, "benchmark: %s\n", why.c_str());
  std::exit(1);
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/** Only what has these words in its title is run. */
inline const char* wanted = "";

inline bool is_wanted(const std::string& title) {
  return title.find(wanted) != std::string::npos;
}
