// SPDX-License-Identifier: GPL-3.0-or-later
// What must be neither deleted nor moved, because a command would reach more than is meant: by an
// overlap of two paths, by a mount, or by a slash at the end of a path.
#pragma once

#include <string>

namespace varnholt::linkbuilder {

/**
 * Returns whether deleting `doomed`, with everything that is mounted below it, would remove `path`,
 * a part of it, or a folder or link on the way by which one of the two is spelled. A path that
 * names a link means the link itself, because rm(1) and mv(1) do not touch what it leads to.
 * Returns true as well when one of the two does not exist.
 */
bool deletion_takes_away(const std::string& doomed, const std::string& path);

/** How a place is cleared before something moves there. */
enum class Clearing {
  /** Nothing exists there. */
  none,
  /** What exists there is deleted. */
  remove,
  /** The deletion would remove what has to be moved, or not what the path names. */
  refuse,
};

/** Decides how `to` is cleared for `from`; each has lost a slash at its end. */
Clearing clearing_for(const std::string& from, const std::string& to);

/**
 * Returns whether a path ends with a slash and leads to another mount than that of its name, by a
 * link or a mount there. Its backup would lie inside, so mv(1) would copy all of it into itself,
 * for each backup name once more.
 */
bool leads_to_mount_with_slash(const std::string& path);

}  // namespace varnholt::linkbuilder
