// SPDX-License-Identifier: GPL-3.0-or-later
// The names that folders and files at the paths of links get while they are on their way.
#include "linkbuilder/backup-name.h"

#include "base/path.h"

namespace varnholt::linkbuilder {
namespace {

constexpr std::string_view mark = ".bak_";

}  // namespace

std::string backup_name(std::string_view path, int number) {
  return (std::string{path} += mark) += std::to_string(number);
}

std::string free_backup_name(std::string_view path) {
  for (int number = 0; number < backup_names; ++number) {
    auto name = backup_name(path, number);
    if (!is_there(name)) return name;
  }
  return {};
}

bool is_backup_name(std::string_view path) {
  const auto end = path.rfind(mark);
  if (!path.starts_with('/') || end == std::string_view::npos) return false;
  const auto number = path.substr(end + mark.size());
  return !number.empty() && number.size() < std::to_string(backup_names).size() &&
         number.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string path_of_backup(std::string_view name) {
  return std::string{name.substr(0, name.rfind(mark))};
}

}  // namespace varnholt::linkbuilder
