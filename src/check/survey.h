// SPDX-License-Identifier: GPL-3.0-or-later
// Everything that a check tells of a profile on this machine before the link builder and the window
// work with it. Nothing is changed, and no command is run.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "check/file-systems.h"
#include "check/forecast.h"
#include "check/window-view.h"
#include "linkbuilder/note.h"
#include "linkbuilder/unfinished.h"

namespace varnholt::check {

/** An unfinished work of an earlier run, and how the next one goes on with it. */
struct UnfinishedWork {
  linkbuilder::Work work;
  linkbuilder::Continuation next;
};

struct Survey {
  /** File definitions in the order of the profile: all, or those of which there is much to tell. */
  std::vector<Forecast> definitions;
  /** How many links are as they should be, and stay so. */
  std::size_t standing = 0;
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

/** What the exit status tells. */
enum class Verdict {
  /** Nothing would change, and nothing is wrong. */
  fine = 0,
  /** Something would change. */
  changes = 1,
  /** Something would fail or be lost, or depends on something else. */
  wrong = 2,
};
Verdict verdict_on(const Survey& survey);

/** Returns the number of findings that are no notices, deletions and dependencies included. */
std::size_t number_of_problems(const Survey& survey);

/**
 * Looks at the profile that has been read from `path`. `count` is asked how much stands at the
 * paths that are moved, deleted or copied. `all` asks for all definitions.
 */
Survey survey_of(const std::string& path, std::string_view profile, bool all,
                 const FileSystems::Count& count);

}  // namespace varnholt::check
