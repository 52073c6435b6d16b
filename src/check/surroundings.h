// SPDX-License-Identifier: GPL-3.0-or-later
// What stands around a profile.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/finding.h"
#include "linkbuilder/places.h"

namespace varnholt::check {

/** Returns the files without which a run of the link builder cannot end well. */
std::vector<std::string> needed_files();

/** Adds what is to be said about the profile at `path` as a file, and about the files beside it. */
void look_around(const std::string& path, std::string_view profile,
                 const linkbuilder::Mounts& mounts, std::vector<Finding>& findings);

}  // namespace varnholt::check
