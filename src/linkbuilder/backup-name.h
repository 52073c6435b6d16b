// SPDX-License-Identifier: GPL-3.0-or-later
// The names that folders and files at the paths of links get while they are on their way.
#pragma once

#include <string>
#include <string_view>

namespace varnholt::linkbuilder {

/** The numbers of backup names go from 0 to one less than this. */
constexpr int backup_names = 1000;

/** Returns the backup name of a path with this number. */
std::string backup_name(std::string_view path, int number);

/** Returns the first backup name at which nothing exists; empty when there is none. */
std::string free_backup_name(std::string_view path);

/** Returns whether a path is absolute and ends as a backup name does. */
bool is_backup_name(std::string_view path);

/** Returns the path of which this is a backup name. */
std::string path_of_backup(std::string_view name);

}  // namespace varnholt::linkbuilder
