// SPDX-License-Identifier: GPL-3.0-or-later
// Shell command lines: how a path or a program becomes a word of one, and how one is run. How the
// password becomes one is told in store/root-rights.h.
#pragma once

#include <string>
#include <string_view>

namespace varnholt {

/**
 * `text` as it must stand between double quotes, so that sh(1) hands on exactly its bytes. Must not
 * hold a NUL byte.
 */
std::string escaped_for_double_quotes(std::string_view text);

/**
 * `path` as one literal argument, its double quotes included. A path that begins with "-" gets "./"
 * in front, or the command would read it as an option.
 */
std::string path_argument(std::string_view path);

/** `path` as the first word of a command line: as it stands, or quoted when a shell would read it
 * in another way. */
std::string command_word(std::string_view path);

/**
 * Runs a command line through the shell and waits for it.
 * Returns the wait status as system(3) gives it: 0 for success, -1 when no process could be made.
 */
int run_command(const char* command_line);
inline int run_command(const std::string& command_line) {
  return run_command(command_line.c_str());
}

}  // namespace varnholt
