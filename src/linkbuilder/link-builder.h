// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the link builder over the whole profile.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "model/bak-model.h"

namespace varnholt::linkbuilder {

using Lines = std::set<std::string, std::less<>>;

/**
 * Calls `apply` with each file definition of a profile, in the order of the file. Returns the lines
 * of those that are marked deleted: nothing is left to do for them.
 */
Lines apply_definitions(std::string_view profile,
                        const std::function<void(const model::BakDefFields&)>& apply);

/** Returns a profile without these lines; all others stay as kept_lines() keeps them. */
std::string without_lines(std::string_view profile, const Lines& lines);

}  // namespace varnholt::linkbuilder

/**
 * Applies every symbolic definition of the profile to the file system, in the order of the file.
 * Then replaces the profile, as a whole and synced to the disk, by the text that is stored by then
 * without the lines of the definitions marked deleted that this run has processed; all other lines
 * stay byte for byte. A failed definition is reported and does not stop the run. No display is
 * needed. From this call on the process reads its standard input from the null device, runs
 * commands in the locale C, ignores SIGPIPE and SIGXFSZ, and handles SIGCHLD in the default way.
 */
void main_save_symbolic_dir();
