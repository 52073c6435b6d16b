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

/** Returns whether the kernel can confine a command that moves something to another folder. */
bool can_confine();

/**
 * Runs a command line as run_command() does. It may run and read the programs of the system, and
 * do what the permissions say; permissions without an entry count for nothing. This process stays
 * free. Returns -1 when the command cannot be confined; it is not run then.
 */
int run_confined(const std::string& command_line, const std::vector<Permission>& permissions);

}  // namespace varnholt::files
