// SPDX-License-Identifier: GPL-3.0-or-later
// Finds out which lines depend on which: a line that looks where an earlier one changes something.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <vector>

#include "files/mounts.h"
#include "files/way.h"
#include "foresight/forecast.h"

namespace varnholt::foresight {

/** What the definitions so far may change, by places that no link or mount can disguise. */
class Dependencies {
 public:
  explicit Dependencies(FileSystems& files) : m_files(files) {}

  /** Returns whether nothing is changed so far. */
  bool empty() const { return m_changed.empty() && m_made.empty(); }

  /**
   * Returns lines, up to 16, that may change something where a definition looks that has this
   * footprint and passes these entries, no matter whether they are made.
   */
  std::set<std::size_t> lines_before(const Footprint& footprint,
                                     const std::vector<std::string>& passed = {}) const;

  /** Adds what the work of a line may change. */
  void add(std::size_t line, const Footprint& footprint);

 private:
  using Lines = std::multimap<files::Spot, std::size_t>;
  FileSystems& m_files;
  Lines m_changed;
  Lines m_made;
};

}  // namespace varnholt::foresight
