// SPDX-License-Identifier: GPL-3.0-or-later
// Finds out which lines depend on which: a line that looks where an earlier one changes something.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <set>

#include "check/forecast.h"
#include "files/mounts.h"
#include "files/way.h"

namespace varnholt::check {

/** What the definitions so far may change, by places that no link or mount can disguise. */
class Dependencies {
 public:
  explicit Dependencies(const files::Mounts& mounts) : m_mounts(mounts) {}

  /** Returns whether nothing is changed so far. */
  bool empty() const { return m_changed.empty() && m_made.empty(); }

  /** Returns the lines that may change something where this work looks. */
  std::set<std::size_t> lines_before(const Footprint& footprint) const;

  /** Adds what the work of a line may change. */
  void add(std::size_t line, const Footprint& footprint);

  /** Returns whether something may come to a place, or to where it leads, or be taken from it. */
  bool may_change(const std::filesystem::path& path) const;

 private:
  using Lines = std::multimap<files::Spot, std::size_t>;
  const files::Mounts& m_mounts;
  Lines m_changed;
  Lines m_made;
};

}  // namespace varnholt::check
