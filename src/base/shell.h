// SPDX-License-Identifier: GPL-3.0-or-later
// Turns a path or a program into a word of a shell command line, and runs command lines.
#pragma once

#include <string>
#include <string_view>

namespace varnholt {

/**
 * Returns `path` as one literal argument, including its double quotes: sh(1) passes on exactly its
 * bytes, none of which may be NUL. A path that begins with "-" gets "./" in front, because a
 * command would read it as an option.
 */
std::string path_argument(std::string_view path);

/**
 * Returns `path` as the first word of a command line, quoted when a shell would read it in another
 * way. A path that begins with "-" gets "./" in front, and one with "=" becomes absolute.
 */
std::string command_word(std::string_view path);

/**
 * Runs a command line through the shell and waits for it to end. Returns the wait status as
 * system(3) does: 0 for success, -1 when no process could be created.
 */
int run_command(const std::string& command_line);

}  // namespace varnholt
