// SPDX-License-Identifier: GPL-3.0-or-later
// The link-builder run over the whole profile.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "model/bak-model.h"

namespace varnholt {

/**
 * Hands each definition of a profile to `apply`, in file order, and returns the profile without the
 * lines of those marked deleted; all other lines stay byte for byte.
 */
std::string applied_profile(std::string_view profile,
                            const std::function<void(const BakDefFields&)>& apply);

}  // namespace varnholt

/**
 * Applies every symbolic definition of the profile to the file system, in file order, and writes
 * the profile back, whole and synced to the disk, without the definitions marked deleted; all other
 * lines stay byte for byte. A failed definition is told and does not stop the run. Needs no
 * display. From here on the process reads its standard input from the null device, runs commands in
 * the locale C, ignores SIGPIPE and SIGXFSZ and takes SIGCHLD as usual; it ends with the umask 022.
 */
void main_save_symbolic_dir();
