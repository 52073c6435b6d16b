// SPDX-License-Identifier: GPL-3.0-or-later
// What the next run of the link builder makes of one definition, as things are now.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "check/finding.h"
#include "check/ground.h"
#include "check/tally.h"
#include "linkbuilder/decision.h"
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
  /** What stands at the path moves to the source, and the link is made. */
  adopted,
  /** The link gives way to a copy of what it leads to. */
  copied,
  /** Nothing, for a reason that is told. */
  left_alone,
  /** Only the line, which is marked deleted, leaves the profile. */
  dropped,
  fails,
  /** It cannot be told, because only root can see what stands there. */
  unknown,
};

/** What a failure leaves behind. */
enum class Remains {
  /** Everything as it was. */
  all,
  /** What stood at the path has its backup name, until the next run. */
  backup,
  /** The same, and what stood at the source is gone, or a part of it. */
  backup_only,
  /** Nothing stands at the path. */
  nothing,
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
  /** What stands there is no link. */
  no_link,
  /** The content leads nowhere from the folder in which the run works. */
  leads_nowhere,
  /** What an earlier run has left cannot be finished. */
  unfinished,
};

/** Where the work on a definition looks, and what it changes. No path has links above its name. */
struct Footprint {
  /** What is passed on the way to the path. */
  std::vector<std::filesystem::path> passed;
  /** What must be there, or be missing, as it is now. */
  std::vector<std::filesystem::path> relied;
  /** What is moved, deleted or copied with all that is in it. */
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
  /** The content of the link that stands there. */
  std::string content{};
  /** What moves to the source. */
  std::optional<Tally> moved{};
  /** What stands at the source and is deleted. */
  std::optional<Tally> deleted{};
  /** What is copied into the place of the link. */
  std::optional<Tally> copied{};
  std::vector<Finding> findings{};
  /** The lines on which it depends what comes of this one; 0 is what an earlier run has left. */
  std::vector<std::size_t> ties{};
  /** Whether what is told comes true as long as nobody else changes anything. */
  bool sure = true;
  /** Empty for a definition of which nothing comes. */
  Footprint footprint{};
};

/** Returns whether a link is as it should be, so that nothing comes of its definition. */
bool is_as_it_should_be(const model::BakDefFields& definition);

/**
 * Tells what comes of a definition, without regard to those before it. `left_alone` says that the
 * run must not touch its places, because of an unfinished work.
 */
Forecast foretell(model::BakDefFields definition, bool left_alone, Ground& ground);

/** These are for the parts of the forecast. */
void add(Forecast& forecast, Problem problem, const std::string& about = "");
void fail(Forecast& forecast, const Finding& why, Remains remains);

/** Adds a doubt when a link, and the folders above it that are missing, may not fit. */
void check_room_for_link(Forecast& forecast, const std::string& folder, std::size_t missing,
                         Ground& ground);

/** Returns why no link can be at a path that is spelled in this way. */
std::optional<Finding> why_no_link_at(const std::string& path);

/** Returns whether the way to the folder of a path goes through the path itself. */
bool leads_through_itself(const std::string& path);

}  // namespace varnholt::check
