// SPDX-License-Identifier: GPL-3.0-or-later
// Looks up paths that mostly stand in the same folder as the one before.
#include "check/last-folder.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <unistd.h>

namespace varnholt::check {

bool LastFolder::exists(const std::string& path) {
  const char* name = nullptr;
  const int folder = open_for(path, name);
  return faccessat(folder, name, F_OK, 0) == 0;
}

ssize_t LastFolder::read_link(const std::string& path, char* content, std::size_t size) {
  const char* name = nullptr;
  const int folder = open_for(path, name);
  return readlinkat(folder, name, content, size);
}

int LastFolder::open_for(const std::string& path, const char*& name) {
  name = path.c_str();
  const auto slash = path.rfind('/');
  // A name that ends the path is needed, and with a slash after it the path means something else.
  // A path that is too long must stay so.
  if (slash == std::string::npos || slash + 1 == path.size() || path.size() >= PATH_MAX) {
    return AT_FDCWD;
  }
  const auto folder = std::string_view{path}.substr(0, slash + 1);
  if (folder != m_folder) {
    m_folder = folder;
    m_opened.emplace(open(m_folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  }
  if (!*m_opened) return AT_FDCWD;
  name += slash + 1;
  return m_opened->number();
}

}  // namespace varnholt::check
