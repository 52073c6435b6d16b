// SPDX-License-Identifier: GPL-3.0-or-later
// The machine on which the forecasts stand.
#include "check/ground.h"

#include <sys/stat.h>

#include "check/surface.h"
#include "check/surroundings.h"

namespace varnholt::check {
namespace {

std::uint64_t entries_of(const Tally& tally) {
  return tally.folders + tally.files;
}

}  // namespace

bool Ground::is_needed(const std::filesystem::path& path) {
  // Most runs change nothing.
  if (m_needed.empty()) {
    for (const auto& file : needed_files()) {
      for (const auto& entry : linkbuilder::way_along(file).entries)
        m_needed.insert(m_mounts.spot_of(entry));
    }
  }
  return m_needed.contains(m_mounts.spot_of(path));
}

std::optional<Finding> Ground::why_no_room(const std::string& folder, const Tally& need,
                                           const Tally& freed) {
  // Without a count nobody knows whether it fits.
  if (!need.counted || !freed.counted) return Finding{Problem::room_uncounted, folder};
  struct stat status {};
  stat(folder.c_str(), &status);
  auto& promised = m_promised[status.st_dev];
  const auto room = room_at(folder);
  const bool fits_alone = need.disk_bytes <= room.bytes + freed.disk_bytes &&
                          entries_of(need) <= room.entries + entries_of(freed);
  promised += need;
  if (!fits_alone) return Finding{Problem::no_room, folder};
  // What a file takes on another file system is known only there, and what is deleted may have
  // other links.
  constexpr std::uint64_t page = 4096;
  const auto at_most = 2 * promised.disk_bytes + page * entries_of(promised);
  const bool surely =
      need.unreadable == 0 && at_most <= room.bytes && entries_of(promised) <= room.entries;
  return surely ? std::nullopt : std::optional{Finding{Problem::little_room, folder}};
}

}  // namespace varnholt::check
