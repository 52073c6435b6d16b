// SPDX-License-Identifier: GPL-3.0-or-later
// Findings about the file of a profile, and about the other files that a run needs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/problems.h"
#include "foresight/file-systems.h"

namespace varnholt::check {

/** Returns the files without which a run of the link builder cannot end well. */
std::vector<std::string> needed_files();

/** Adds the findings about the profile at `path` as a file, and about the files beside it. */
void check_profile_file(const std::string& path, std::string_view profile,
                        foresight::FileSystems& files, std::vector<Finding>& findings);

}  // namespace varnholt::check
