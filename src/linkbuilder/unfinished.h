// SPDX-License-Identifier: GPL-3.0-or-later
// What the next run does about unfinished works, given what is where. Deciding changes nothing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "files/mounts.h"
#include "files/way.h"
#include "linkbuilder/note.h"
#include "model/definition.h"
#include "store/definitions.h"

namespace varnholt::linkbuilder {

/** How a run goes on with an unfinished work. */
struct Continuation {
  enum class Step {
    /** Nothing is left to do, and the work is forgotten. */
    forget,
    /** Nothing has happened yet: the definition is taken anew. */
    begin,
    /** The backup moves to the source; what the work found there before is deleted first. */
    move,
    /** The data is at the source: the link is made, or the data moves back. */
    link,
    /** The link that was undone is made again, and undone once more. */
    undo,
    /** The link that was undone is made again, because a line of the profile wants a link there. */
    restore_link,
    /** A place is not where it was: its file system is not mounted, or a link has changed. */
    wait,
    /** Somebody has changed something since: everything stays, and so does the work. */
    leave_changed,
    /** The same, but the original is whole, so the work is forgotten. */
    forget_changed,
    /** The profile does not ask for the link any more: the backup stays, and so does the work. */
    leave_unwanted,
  };

  /** Returns whether the run changes nothing, and the work stays unfinished. */
  bool waits() const;

  Step step = Step::forget;
  /** A part of what is whole elsewhere, which is deleted first; empty when there is none. */
  std::string removed{};
  /** The place at which all of that is. */
  std::string whole_at{};
};

/**
 * Decides about a work, given the definitions of the profile, and those of them that the run is
 * still to take. Comparing contents may take long.
 */
Continuation continuation_of(const Work& work, const store::Definitions& all,
                             const store::Definitions& to_come);

/** The places of unfinished works, which no definition may touch. */
class PlacesOfWorks {
 public:
  /**
   * Returns the first of the works whose path, backup or source a definition touches with its own
   * path or source; null for none. The definition is done before the next call. The works of a call
   * stay as they are for the next one, and new ones come after them: places are looked up once.
   */
  const Work* touched_by(const model::BakDefFields& definition, const std::vector<Work>& works);

 private:
  /** The mounts, once they are asked for. */
  std::optional<files::Mounts> m_mounts;
  /** The places of each work. */
  std::vector<std::vector<files::Spot>> m_places;
};

}  // namespace varnholt::linkbuilder
