// SPDX-License-Identifier: GPL-3.0-or-later
// Finds out which lines depend on which.
#include "foresight/dependencies.h"

namespace varnholt::foresight {
namespace {

/** More lines tell a person no more, and a profile of many lines with one path has too many. */
constexpr std::size_t most_lines = 16;

}  // namespace

std::set<std::size_t> Dependencies::lines_before(const Footprint& footprint,
                                                 const std::vector<std::string>& passed) const {
  std::set<std::size_t> lines;
  const auto at = [&lines](const Lines& changes, const files::Spot& spot) {
    const auto [first, last] = changes.equal_range(spot);
    for (auto change = first; change != last && lines.size() < most_lines; ++change) {
      lines.insert(change->second);
    }
  };
  const auto below = [&lines](const Lines& changes, const files::Spot& spot) {
    for (auto change = changes.lower_bound(spot);
         change != changes.end() && lines.size() < most_lines &&
         change->first.device == spot.device && change->first.path.starts_with(spot.path);
         ++change) {
      if (files::holds(spot, change->first)) lines.insert(change->second);
    }
  };
  // By way of a mount a place can be reached without passing the folders above it.
  const auto at_or_above = [&](files::Spot spot) {
    for (at(m_changed, spot); !spot.path.empty(); at(m_changed, spot)) {
      spot.path.resize(spot.path.rfind('/'));
    }
  };
  for (const auto& path : passed) at_or_above(m_files.spot_of(path));
  for (const auto* const paths : {&footprint.relied, &footprint.changed}) {
    for (const auto& path : *paths) {
      const auto spot = m_files.spot_of(path);
      at_or_above(spot);
      at(m_made, spot);
    }
  }
  for (const auto& path : footprint.whole) {
    for (const auto& spot : m_files.mounts().spots_from(path)) {
      below(m_changed, spot);
      below(m_made, spot);
    }
  }
  return lines;
}

void Dependencies::add(std::size_t line, const Footprint& footprint) {
  for (const auto& path : footprint.changed) m_changed.emplace(m_files.spot_of(path), line);
  for (const auto& path : footprint.made) m_made.emplace(m_files.spot_of(path), line);
}

}  // namespace varnholt::foresight
