// SPDX-License-Identifier: GPL-3.0-or-later
// What changes when a profile takes the place of the present one.
#pragma once

#include <string_view>
#include <vector>

#include "check/problems.h"
#include "check/window-view.h"

namespace varnholt::check {

/**
 * Adds the findings about what a profile says other than the present one: about lines of its own to
 * `lines`, and about what it does not hold any more, its version and the default route to `around`.
 */
void compare_profiles(std::string_view present, std::string_view profile,
                      std::vector<LineFinding>& lines, std::vector<Finding>& around);

}  // namespace varnholt::check
