// SPDX-License-Identifier: GPL-3.0-or-later
// What is to be done about unfinished work, given what stands where. Deciding changes nothing.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

#include "linkbuilder/note.h"
#include "model/definition.h"

namespace varnholt::linkbuilder {

/** What stands at a path. A link is not followed. */
struct Place {
  explicit Place(std::string spelled);

  bool is_link() const { return there && S_ISLNK(status.st_mode); }
  bool leads_nowhere() const;
  bool holds_data() const { return there && !is_link(); }
  /** Returns the path with a word on what stands there. */
  std::string told() const;

  std::string path;
  bool there = false;
  struct stat status {};
  /** The content of the link that stands there. */
  std::string content;
};

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
std::optional<Remedy> remedy_for(const Work& work,
                                 const std::vector<model::BakDefFields>& definitions);

}  // namespace varnholt::linkbuilder
