// SPDX-License-Identifier: GPL-3.0-or-later
// Shell command lines: how a path or a program becomes a word of one, and how one is run.
#pragma once

#include <string>
#include <string_view>

namespace varnholt {

/**
 * `path` as one literal argument, its double quotes included: sh(1) hands on exactly its bytes,
 * none of which may be NUL. A path that begins with "-" gets "./" in front, or the command would
 * read it as an option.
 */
std::string path_argument(std::string_view path);

/**
 * `path` as the first word of a command line: as it stands, or quoted when a shell would read it in
 * another way.
 */
std::string command_word(std::string_view path);

/**
 * Runs a command line through the shell and waits for it.
 * Returns the wait status as system(3) gives it: 0 for success, -1 when no process could be made.
 */
int run_command(const std::string& command_line);

}  // namespace varnholt
