// SPDX-License-Identifier: GPL-3.0-or-later
// Where paths really lead, through symbolic links and mounts.
#pragma once

#include <filesystem>

namespace varnholt {

/**
 * Whether deleting `doomed`, with all that is mounted below it, would take away `path`, a part of
 * it, or a folder or link on the way by which `path` is spelled. A path that names a link stands
 * for the link itself, of which rm(1) and mv(1) leave alone what it leads to. True as well when one
 * of the two does not exist.
 */
bool deletion_takes_away(const std::filesystem::path& doomed, const std::filesystem::path& path);

}  // namespace varnholt
