// SPDX-License-Identifier: GPL-3.0-or-later
// What the file system at a place allows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/path.h"
#include "check/finding.h"

namespace varnholt::check {

/** Returns whether this user cannot see where a path leads, or whether anything is there. */
bool is_hidden(const std::string& path);

/** Returns why nothing can be made in a folder, even by root. */
std::optional<Finding> why_nothing_can_be_made(const std::string& folder);

/** Returns why an entry cannot be renamed or removed in its folder, even by root. */
std::optional<Finding> why_it_must_stay(const std::string& path);

/** Returns why a path cannot be that of a new entry: it, or a name in it, is too long. */
std::optional<Finding> why_too_long(const std::string& path);

/** Returns whether links can be made in a folder. */
bool can_hold_links(const std::string& folder);

/** What is left of a file system. */
struct Room {
  /** In bytes, those for root included. */
  std::uint64_t bytes = 0;
  /** The number of entries; the highest number when the file system knows no limit. */
  std::uint64_t entries = 0;
};
Room room_at(const std::string& folder);

}  // namespace varnholt::check
