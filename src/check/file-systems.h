// SPDX-License-Identifier: GPL-3.0-or-later
// What the file systems of the machine allow: where a link, a copy or a backup can come to be, and
// where an entry must stay.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "check/finding.h"
#include "check/tally.h"
#include "files/mounts.h"
#include "files/way.h"

namespace varnholt::check {

/** Returns the entry that a path names, as a path without links above its last name. */
std::string end_of(const std::string& path);

/** Returns whether this user cannot see where a path leads, or whether anything is there. */
bool is_hidden(const std::string& path);

/** Returns why no link can be at a path that is spelled in this way. */
std::optional<Finding> why_no_link_at(const std::string& path);

/** Returns whether the way to the folder of a path goes through the path itself. */
bool leads_through_itself(const std::string& path);

/** Returns why nothing can be made in a folder, even by root. */
std::optional<Finding> why_nothing_can_be_made(const std::string& folder);

/** Returns why an entry cannot be renamed or removed in its folder, even by root. */
std::optional<Finding> why_it_must_stay(const std::string& path);

/** Returns why a path cannot be that of a new entry: it, or a name in it, is too long. */
std::optional<Finding> why_too_long(const std::string& path);

/** Returns whether links can be made in a folder. */
bool can_hold_links(const std::string& folder);

/** The mounts and the room of the machine, while the lines of one profile are foretold. */
class FileSystems {
 public:
  /** `needed` are the files without which a run cannot end well. */
  FileSystems(bool counts, const std::vector<std::string>& needed);

  const files::Mounts& mounts() const { return m_mounts; }

  /** Returns the tally of a path, or one that says that nobody has counted. */
  Tally count(const std::string& path);

  /** Returns whether moving or removing the entry at a path takes away what a run needs. */
  bool is_needed(const std::string& path) const;

  /**
   * Returns a finding when a copy may not fit into a folder, or certainly does not, although
   * `freed` is deleted there first. Copies that have been asked for before count.
   */
  std::optional<Finding> why_no_room(const std::string& folder, const Tally& need,
                                     const Tally& freed);

  /** Does the same for a link with this content and for missing folders above it. */
  std::optional<Finding> why_no_room_for_link(const std::string& folder, const std::string& content,
                                              std::size_t missing = 0);

 private:
  bool m_counts;
  Counter m_counter;
  files::Mounts m_mounts;
  /** The entries on the ways to the needed files. */
  std::set<files::Spot> m_needed;
  /** The size of earlier copies, by the device. */
  std::map<dev_t, Tally> m_promised;
};

}  // namespace varnholt::check
