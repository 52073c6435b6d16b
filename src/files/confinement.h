// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a command line with the rights to change only what it is meant for. A command takes names,
// and an ordinary user may exchange them while it runs; see landlock(7).
#pragma once

#include <string>
#include <vector>

namespace varnholt::files {

/** What a command may do to an opened entry, and to everything below it. */
struct Permission {
  enum class To {
    /** Read it. */
    read,
    /** Remove what is in it, or move that away, without reading. */
    take,
    /** Make something in it, or move something there. */
    put,
    /** Give it another name and folder. */
    move,
    /** All of these. */
    change,
  };
  int entry = -1;
  To to = To::read;
};

/** How a command works. */
enum class Work {
  /** It renames and deletes. */
  rename,
  /** It copies, and sets owners and modes by name: nothing outside of its folders may change. */
  copy,
};

/** Returns whether such a command can be confined here, when it works in two folders. */
bool can_confine(Work work);

/**
 * Runs a command line as run_command() does. It may run and read the programs of the system, and
 * do what the permissions say; permissions without an entry count for nothing. This process stays
 * free. Returns -1 when the command could be confined, but something came in between; it is not run
 * then.
 */
int run_confined(const std::string& command_line, const std::vector<Permission>& permissions,
                 Work work);

}  // namespace varnholt::files
