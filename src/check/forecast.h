// SPDX-License-Identifier: GPL-3.0-or-later
// What the next run of the link builder makes of one definition, as things are now.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "check/finding.h"
#include "check/tally.h"
#include "model/definition.h"

namespace varnholt::check {

/** What comes of a definition. */
enum class Outcome {
  /** Nothing: the link builder has nothing to do with it. */
  none,
  /** Nothing: the link is as it should be. */
  stands,
  /** The link is made where nothing stands. */
  made,
  /** Another link gives way. */
  replaced,
  /** A folder or a file at the path moves to the source, and the link is made. */
  adopted,
  /** The link gives way to a copy of what it leads to. */
  copied,
  /** Nothing; a Reason tells why. */
  left_alone,
  /** Only the line, which is marked deleted, leaves the profile. */
  dropped,
  fails,
  /** Nobody but root can see enough to tell. */
  unknown,
};

/** What a failure leaves behind. */
enum class Remains {
  /** Everything as it was. */
  all,
  /** The same, but folders above the path are made. */
  folders,
  /** The folder or file from the path has its backup name, until the next run. */
  backup,
  /** The same as `backup`, and the earlier source is gone, or a part of it. */
  backup_only,
  /** Nothing is at the path. */
  nothing,
  /** The folder or file is at the source, without a link at the path. */
  source,
};

/** Why a definition is left alone. */
enum class Reason {
  none,
  /** Something that is no folder, file or link stands at the path. */
  kind,
  unreadable,
  /** Nothing stands at the path of a link that is to be undone. */
  missing,
  /** The link that is to be undone leads nowhere. */
  dangling,
  /** No link is at the path of a link that is to be undone. */
  no_link,
  /** The content leads nowhere from the folder in which the run works. */
  leads_nowhere,
  /** What an earlier run has left cannot be finished. */
  unfinished,
};

/** Where the work on a definition looks, and what it changes. No path has links above its name. */
struct Footprint {
  /** The entries on the way to the path. */
  std::vector<std::filesystem::path> passed;
  /** The entries that must be there, or be missing, as they are now. */
  std::vector<std::filesystem::path> relied;
  /** The entries that are moved, deleted or copied with everything in them. */
  std::vector<std::filesystem::path> whole;
  std::vector<std::filesystem::path> changed;
  /** The folders that are made above a link. */
  std::vector<std::filesystem::path> made;
};

struct Forecast {
  /** The number of the line in the profile, from 1. */
  std::size_t line = 0;
  model::BakDefFields definition{};
  Outcome outcome = Outcome::none;
  Remains remains = Remains::all;
  Reason reason = Reason::none;
  /** The backup name in an adoption. */
  std::string backup{};
  /** The content of the link that stands there. */
  std::string content{};
  /** The folder or file that moves to the source. */
  std::optional<Tally> moved{};
  /** The earlier source, which is deleted. */
  std::optional<Tally> deleted{};
  /** The copy in the place of the link. */
  std::optional<Tally> copied{};
  std::vector<Finding> findings{};
  /** The lines on which the outcome depends; 0 stands for the unfinished work of earlier runs. */
  std::vector<std::size_t> depends_on{};
  /** Whether the forecast comes true as long as nobody else changes anything. */
  bool sure = true;
  /** Empty for a definition of which nothing comes. */
  Footprint footprint{};
};

/** Adds a finding. A doubtful one makes the forecast unsure. */
void add(Forecast& forecast, Problem problem, const std::string& about = "");

/** Adds the finding with which the work on a definition fails. */
void fail(Forecast& forecast, const Finding& why, Remains remains);

}  // namespace varnholt::check
