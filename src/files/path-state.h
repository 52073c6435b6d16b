// SPDX-License-Identifier: GPL-3.0-or-later
// The entry at a path at one moment.
#pragma once

#include <sys/stat.h>

#include <string>

namespace varnholt::files {

/** The entry at a path, as lstat(2) and readlink(2) see it: no link is followed. */
struct PathState {
  explicit PathState(std::string spelled);

  bool is_link() const { return there && S_ISLNK(status.st_mode); }
  bool is_link_to(const std::string& target) const { return is_link() && content == target; }
  /** Returns whether anything but a link is there. */
  bool has_data() const { return there && !is_link(); }
  /** Returns 0 when nothing is there. */
  ino_t inode() const { return status.st_ino; }
  /** Returns the path with a word on its entry, for a message. */
  std::string described() const;

  std::string path;
  bool there = false;
  struct stat status {};
  /** The content of a link. */
  std::string content;
};

}  // namespace varnholt::files
