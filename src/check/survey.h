// SPDX-License-Identifier: GPL-3.0-or-later
// Everything that a check tells of a profile on this machine before the link builder and the window
// work with it. Nothing is changed, and no command is run.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "check/problems.h"
#include "check/window-view.h"
#include "foresight/run.h"

namespace varnholt::check {

struct Survey {
  foresight::Run run;
  /** What the window makes of the lines, and the findings about boot scripts. */
  WindowView window;
  /** The findings about the file of the profile, and about the files beside it. */
  std::vector<Finding> around;
};

/**
 * Returns 0 when nothing would change and nothing is wrong, 1 when something would change, and 2
 * when something would fail or be lost, or depends on something else.
 */
int status_of(const Survey& survey);

/** Returns the number of findings that are no notices, deletions and dependencies included. */
std::size_t number_of_problems(const Survey& survey);

/**
 * Looks at the profile that has been read from `path`, and compares another one than this machine's
 * own with that. `counts` tells whether to count how much stands at the paths that are moved,
 * deleted or copied.
 */
Survey survey_of(const std::string& path, std::string_view profile, bool counts);

}  // namespace varnholt::check
