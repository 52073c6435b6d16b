// SPDX-License-Identifier: GPL-3.0-or-later
// The machine on which the forecasts stand: its mounts, its room, and what a run needs.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "check/finding.h"
#include "check/tally.h"
#include "linkbuilder/places.h"

namespace varnholt::check {

class Ground {
 public:
  /** Returns what stands at a path, or a tally that says that nobody has counted. */
  using Count = std::function<Tally(const std::string& path)>;

  explicit Ground(Count count) : m_count(std::move(count)) {}

  Tally count(const std::string& path) const { return m_count(path); }
  const linkbuilder::Mounts& mounts() const { return m_mounts; }

  /** Returns whether moving or removing what is at a path takes away what a run needs. */
  bool is_needed(const std::filesystem::path& path);

  /**
   * Returns a finding when a copy may not fit into a folder, or certainly does not, given what is
   * deleted there first. Copies that have been asked for before count.
   */
  std::optional<Finding> why_no_room(const std::string& folder, const Tally& need,
                                     const Tally& freed);

 private:
  Count m_count;
  linkbuilder::Mounts m_mounts;
  /** What is passed on the ways to what a run needs, once somebody has asked for it. */
  std::set<linkbuilder::Spot> m_needed;
  /** What earlier copies take, by the number of the device. */
  std::map<std::uint64_t, Tally> m_promised;
};

}  // namespace varnholt::check
