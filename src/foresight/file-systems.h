// SPDX-License-Identifier: GPL-3.0-or-later
// What the file systems of the machine allow: where a link, a copy or a backup can come to be, and
// where an entry must stay.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "files/mounts.h"
#include "files/tree.h"
#include "files/way.h"
#include "foresight/finding.h"

namespace varnholt::foresight {

/** Returns whether this user cannot see where a path leads, or whether anything is there. */
bool is_hidden(const std::string& path);

/** Returns why no link can be at a path that is spelled in this way. */
std::optional<Finding> why_no_link_at(const std::string& path);

/** Returns why nothing can be made in a folder, even by root. */
std::optional<Finding> why_nothing_can_be_made(const std::string& folder);

/** Returns why an entry cannot be renamed or removed in its folder, even by root. */
std::optional<Finding> why_it_must_stay(const std::string& path);

/** Returns why a path cannot be that of a new entry: it, or a name in it, is too long. */
std::optional<Finding> why_too_long(const std::string& path);

/** Returns whether links can be made in a folder. */
bool can_hold_links(const std::string& folder);

/** A way with more entries is not looked at: only a profile that nobody should trust has one. */
constexpr std::size_t most_entries = 128;

/** What has been asked about some paths. It is forgotten when it has become much. */
template <typename Answer>
class Memory {
 public:
  /** Returns what `ask` answers about a path, or has answered before. */
  template <typename Ask>
  Answer answer(const std::string& path, Ask ask) {
    constexpr std::size_t much = 1000;
    if (m_answers.size() >= much) m_answers.clear();
    const auto [known, is_new] = m_answers.try_emplace(path);
    if (is_new) known->second = ask(path);
    return known->second;
  }

 private:
  std::unordered_map<std::string, Answer> m_answers;
};

/** The ways, mounts and room of the machine, while the lines of one profile are foretold. */
class FileSystems {
 public:
  /**
   * `needed` are the files without which a run cannot end well. `count_next` is called before each
   * entry that is counted; without it nothing is counted.
   */
  FileSystems(const std::vector<std::string>& needed, std::function<void()> count_next);

  const files::Mounts& mounts() const { return m_mounts; }

  /**
   * Returns the entries on the way along a path. When there are more than `most_entries`, it is as
   * many, and the last one.
   */
  std::vector<std::string> entries_on(const std::string& path);

  /** Returns the entry that a path names, as a path without links above its last name. */
  std::string end_of(const std::string& path) { return entries_on(path).back(); }

  /** Returns whether the way to the folder of a path goes through the path itself. */
  bool leads_through_itself(const std::string& path);

  /** Returns the place of an entry, as files::Mounts does. */
  files::Spot spot_of(const std::string& entry);

  /** Returns the tally of a path, or one that says that nobody has counted. */
  files::Tally count(const std::string& path);

  /** Returns whether moving or removing the entry at a path takes away what a run needs. */
  bool is_needed(const std::string& path);

  /**
   * Returns a finding when a copy may not fit into a folder, or certainly does not, although
   * `freed` is deleted there first. Copies that have been asked for before count.
   */
  std::optional<Finding> why_no_room(const std::string& folder, const files::Tally& need,
                                     const files::Tally& freed);

  /** Does the same for a link with this content and for missing folders above it. */
  std::optional<Finding> why_no_room_for_link(const std::string& folder, const std::string& content,
                                              std::size_t missing = 0);

 private:
  std::function<void()> m_count_next;
  files::Mounts m_mounts;
  Memory<std::vector<std::string>> m_ways;
  Memory<files::Spot> m_spots;
  Memory<files::Tally> m_tallies;
  /** The entries on the ways to the needed files. */
  std::set<files::Spot> m_needed;
  /** The size of earlier copies, by the device. */
  std::map<dev_t, files::Tally> m_promised;
};

}  // namespace varnholt::foresight
