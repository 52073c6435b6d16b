// SPDX-License-Identifier: GPL-3.0-or-later
// What must be neither deleted nor moved.
#include "linkbuilder/guards.h"

#include <algorithm>
#include <vector>

#include "base/path.h"
#include "files/mounts.h"
#include "files/way.h"

namespace varnholt::linkbuilder {
namespace {

bool any_holds(const std::vector<files::Spot>& outer, const std::vector<files::Spot>& inner) {
  return std::ranges::any_of(outer, [&inner](const files::Spot& folder) {
    return std::ranges::any_of(inner, [&](const auto& spot) { return files::holds(folder, spot); });
  });
}

}  // namespace

bool deletion_takes_away(const std::string& doomed, const std::string& path) {
  const auto doomed_way = files::way_along(doomed);
  const auto way = files::way_along(path);
  if (!doomed_way.whole || !way.whole) return true;
  const files::Mounts mounts;
  const auto gone = mounts.spots_from(doomed_way.entries.back());
  const auto way_to_doomed = files::way_along(folder_above(doomed));
  return any_holds(gone, mounts.spots_of(way_to_doomed.entries)) ||
         any_holds(gone, mounts.spots_of(way.entries)) ||
         any_holds(mounts.spots_from(way.entries.back()), gone);
}

Clearing clearing_for(const std::string& from, const std::string& to) {
  if (!exists(to)) return Clearing::none;
  // With a slash rm would empty the folder behind a link, and keep the link.
  const bool is_link_with_slash = to.ends_with('/') && is_link(without_final_slashes(to));
  return is_link_with_slash || deletion_takes_away(to, from) ? Clearing::refuse : Clearing::remove;
}

bool leads_to_mount_with_slash(const std::string& path) {
  return path.ends_with('/') && !without_final_slashes(path).empty() &&
         files::lie_on_different_mounts(path, folder_above(path));
}

}  // namespace varnholt::linkbuilder
