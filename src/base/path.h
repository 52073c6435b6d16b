// SPDX-License-Identifier: GPL-3.0-or-later
// Takes paths apart as they are spelled, and asks the file system about them.
#pragma once

#include <string>
#include <string_view>

namespace varnholt {

/** Returns whether a path leads to something; links are followed. Sets errno when it does not. */
bool exists(const std::string& path);

/** Returns whether anything is at a path, even a link that leads nowhere. */
bool is_there(const std::string& path);

/** Returns whether a path itself is a symbolic link. */
bool is_link(const std::string& path);

/** Returns whether a path leads to a folder; links are followed. */
bool is_folder(const std::string& path);

/** Returns a path without one slash at its end, as the commands that move files get it. */
std::string without_final_slash(std::string_view path);

/** Returns a path without any slash at its end. The root folder becomes the empty path. */
std::string without_final_slashes(std::string_view path);

/**
 * Returns the folder that has the last name of a path, with a slash at its end; "./" when the path
 * has only that name. Slashes at the end of the path do not count.
 */
std::string folder_above(std::string_view path);

/** Returns the part of a path after its last slash: its last name, or nothing. */
std::string last_name(std::string_view path);

}  // namespace varnholt
