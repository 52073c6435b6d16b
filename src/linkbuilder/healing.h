// SPDX-License-Identifier: GPL-3.0-or-later
// Finishes what an earlier run of the link builder has begun and left unfinished, because it was
// cut off or because something failed. It brings back the moment before the definition began, so
// that the run can do all of it anew; or, when the data is at the source already, it makes the
// link.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "linkbuilder/note.h"
#include "model/definition.h"

namespace varnholt {

/** What is to be done about an unfinished work, given what stands where. */
struct Remedy {
  enum class Then {
    /** The definition can be taken anew. */
    nothing,
    /** The copy in the place of a link is whole, or was removed: nothing is left to do. */
    done,
    /** What the work needs is not there, such as a file system that is not mounted yet. */
    wait,
    /** What has the backup name gets its path back. */
    put_back,
    /** The data is at the source: the link is made, or the data moved back. */
    link,
    /** The same, but the link is made before the deletion, which may fail. */
    link_first,
    /** The link that is undone is made again. */
    make_link_again,
  };

  /** What is deleted first: a part of what is whole in `whole_at`. Empty when nothing is. */
  std::string removed{};
  std::string whole_at{};
  Then then = Then::nothing;
};

/**
 * Decides what is to be done, given the definitions of the profile, and changes nothing. Returns
 * nullopt in doubt: when what stands there is not what the work, or a definition below its path,
 * can have left, because somebody has changed something since.
 */
std::optional<Remedy> remedy_for(const Work& work, const std::vector<BakDefFields>& definitions);

/**
 * Finishes the works of a note, the newest one first, as far as the definitions of the profile
 * still ask for them. Tells on standard output what it does, and on standard error what it leaves
 * alone in doubt. Returns the works whose definitions this run must leave alone.
 */
std::vector<Work> heal(Note& note, const std::vector<BakDefFields>& definitions);

/** Notes that the line of an undoing whose copy has failed leaves the profile. */
void keep_without_line(Work work, Note& note);

}  // namespace varnholt
