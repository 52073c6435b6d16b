// SPDX-License-Identifier: GPL-3.0-or-later
// Finds where paths really lead, through symbolic links and mounts.
#pragma once

#include <filesystem>

namespace varnholt {

/**
 * Returns whether deleting `doomed`, with everything that is mounted below it, would remove `path`,
 * a part of it, or a folder or link on the way by which `path` is spelled. A path that names a link
 * means the link itself, because rm(1) and mv(1) do not touch what it leads to. Returns true as
 * well when one of the two does not exist.
 */
bool deletion_takes_away(const std::filesystem::path& doomed, const std::filesystem::path& path);

}  // namespace varnholt
