// SPDX-License-Identifier: GPL-3.0-or-later
// Looks up paths that mostly stand in the same folder as the one before, without going the whole
// way to the folder each time. The folder must stay where it is as long as this is used.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "base/descriptor.h"

namespace varnholt::check {

class LastFolder {
 public:
  /** Returns whether a path leads to something, as exists() does. */
  bool exists(const std::string& path);

  /** Reads the content of a link as readlink(2) does. */
  ssize_t read_link(const std::string& path, char* content, std::size_t size);

 private:
  /** Returns the descriptor from which the rest of the path, at `name`, counts. */
  int open_for(const std::string& path, const char*& name);

  std::string m_folder;
  std::optional<Descriptor> m_opened;
};

}  // namespace varnholt::check
