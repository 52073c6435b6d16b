// SPDX-License-Identifier: GPL-3.0-or-later
// Takes paths apart as they are spelled, and asks the file system about them.
#include "base/path.h"

#include <sys/stat.h>
#include <unistd.h>

namespace varnholt {

bool exists(const std::string& path) {
  return access(path.c_str(), F_OK) == 0;
}

bool is_there(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

bool is_link(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool is_folder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string without_final_slash(std::string_view path) {
  if (path.ends_with('/')) path.remove_suffix(1);
  return std::string{path};
}

std::string without_final_slashes(std::string_view path) {
  // When there are only slashes, npos + 1 is 0.
  return std::string{path.substr(0, path.find_last_not_of('/') + 1)};
}

std::string folder_above(std::string_view path) {
  const auto named = path.substr(0, path.find_last_not_of('/') + 1);
  const auto slash = named.rfind('/');
  if (slash != std::string::npos) return std::string{named.substr(0, slash + 1)};
  return path.starts_with('/') ? "/" : "./";
}

std::string last_name(std::string_view path) {
  return std::string{path.substr(path.rfind('/') + 1)};
}

}  // namespace varnholt
