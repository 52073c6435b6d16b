// SPDX-License-Identifier: GPL-3.0-or-later
// Everything that a check tells of a profile on this machine before the link builder and the window
// work with it. Nothing is changed, and no command is run.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "check/forecast.h"
#include "check/window-view.h"
#include "linkbuilder/note.h"
#include "linkbuilder/unfinished.h"

namespace varnholt::check {

/** An unfinished work of an earlier run, and how the next one goes on with it. */
struct UnfinishedWork {
  linkbuilder::Work work;
  linkbuilder::Continuation next;
  /** In its text %1 is the path, %2 the source, and %3 the backup. */
  Phrase outlook;
};

struct Survey {
  /** All file definitions, in the order of the profile. */
  std::vector<Forecast> definitions;
  /** The lines with which an earlier run over this profile has done, so that the next skips them.
   */
  std::size_t lines_done = 0;
  /** In the order in which the next run takes them. */
  std::vector<UnfinishedWork> unfinished;
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

/** Returns whether a definition is left alone although something would have to be done for it. */
bool is_neglected(const Forecast& forecast);

/** Returns the number of findings that are no notices, deletions and dependencies included. */
std::size_t number_of_problems(const Survey& survey);

/**
 * Looks at the profile that has been read from `path`, and compares another one than this machine's
 * own with that. `counts` tells whether to count how much
 * stands at the paths that are moved, deleted or copied.
 */
Survey survey_of(const std::string& path, std::string_view profile, bool counts);

}  // namespace varnholt::check
