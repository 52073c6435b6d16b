// SPDX-License-Identifier: GPL-3.0-or-later
// What the next run of the link builder makes of a whole profile, as things are now. Nothing is
// changed, and no command is run.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foresight/dependencies.h"
#include "foresight/forecast.h"
#include "linkbuilder/note.h"
#include "linkbuilder/unfinished.h"

namespace varnholt::foresight {

/** A file definition and the number of its line, from 1. */
struct Line {
  std::size_t number = 0;
  model::BakDefFields definition{};
};
using Lines = std::deque<Line>;

/** An unfinished work of an earlier run, and how the next one goes on with it. */
struct UnfinishedWork {
  linkbuilder::Work work;
  linkbuilder::Continuation next;
  /** In its text %1 is the path, %2 the source, and %3 the backup. */
  Phrase outlook;
};

struct Run {
  /** All file definitions, in the order of the profile. */
  std::vector<Forecast> definitions{};
  /** The lines with which an earlier run over this profile has done, so that this one skips them.
   */
  std::size_t lines_done = 0;
  /** In the order in which the run takes them. */
  std::vector<UnfinishedWork> unfinished{};
  /** Why it is not known what an earlier run has left, if that is so. */
  std::optional<Finding> why_no_note{};
};

/** Foretells a run over a profile with these definitions, and adds to `changes` what it may change.
 */
Run foretell_run(std::string_view profile, Lines lines, FileSystems& files, Dependencies& changes);

/** Returns why nothing is to be seen at a source, unless a line that makes changes may bring it. */
std::optional<Finding> why_no_source(const std::string& source, FileSystems& files,
                                     const Dependencies& changes);

}  // namespace varnholt::foresight
