// SPDX-License-Identifier: GPL-3.0-or-later
// The link-builder run over the whole profile.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "model/bak-model.h"

namespace varnholt {

using Lines = std::set<std::string, std::less<>>;

/**
 * Calls `apply` with each definition of a profile, in file order. Returns the lines of those that
 * are marked deleted: nothing is left for them to do.
 */
Lines apply_definitions(std::string_view profile,
                        const std::function<void(const BakDefFields&)>& apply);

/** A profile without these lines. All others stay byte for byte. */
std::string without_lines(std::string_view profile, const Lines& lines);

}  // namespace varnholt

/**
 * Applies every symbolic definition of the profile to the file system, in file order. Then replaces
 * the profile, as a whole and synced to the disk, by what stands there by then without the lines of
 * definitions marked deleted that were applied; all other lines stay byte for byte. A failed
 * definition is told and does not stop the run. Needs no display. From here on the process reads
 * its standard input from the null device, runs commands in the locale C, ignores SIGPIPE and
 * SIGXFSZ and takes SIGCHLD as usual.
 */
void main_save_symbolic_dir();
