// SPDX-License-Identifier: GPL-3.0-or-later
// The entry at a path at one moment.
#include "files/path-state.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace varnholt::files {

PathState::PathState(std::string spelled) : path(std::move(spelled)) {
  std::error_code unreadable;
  there = lstat(path.c_str(), &status) == 0;
  if (is_link()) content = std::filesystem::read_symlink(path, unreadable);
}

std::string PathState::described() const {
  if (is_link()) return path + " is a link to " + content;
  if (!there) return path + " is missing";
  return path + (S_ISDIR(status.st_mode) ? " is a folder" : " is a file");
}

}  // namespace varnholt::files
