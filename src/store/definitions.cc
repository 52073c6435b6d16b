// SPDX-License-Identifier: GPL-3.0-or-later
// The file definitions in the text of a profile.
#include "store/definitions.h"

#include <algorithm>

#include "base/text.h"
#include "store/profile.h"

namespace varnholt::store {

Lines for_each_definition(
    std::string_view profile,
    const std::function<void(std::size_t line, const model::BakDefFields&)>& take) {
  Lines marked;
  std::size_t number = 0;
  for_each_piece(profile, '\n', [&](std::string_view line) {
    ++number;
    // No item is created: that would look up every source, which an existing link does not need.
    const auto definition = model::read_lnk_line(line);
    if (!definition) return;
    take(number, *definition);
    if (definition->has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) marked.emplace(line);
  });
  return marked;
}

Definitions definitions_after(std::size_t line, std::string_view profile) {
  Definitions definitions;
  for_each_definition(profile, [&](std::size_t number, const auto& each) {
    if (number > line) definitions.push_back(each);
  });
  return definitions;
}

std::string without_lines(std::string_view profile, const Lines& lines) {
  if (lines.empty()) {
    // This is the usual run, in which only empty lines at the beginning vanish.
    return std::string{profile.substr(std::min(profile.find_first_not_of('\n'), profile.size()))};
  }
  std::string kept;
  kept.reserve(profile.size());
  for_each_piece(profile, '\n', [&](std::string_view line) {
    if (lines.contains(line)) return;
    if (!kept.empty()) kept += '\n';
    kept += line;
  });
  return kept;
}

std::string without_marked_lines(std::string_view profile) {
  return without_lines(profile, for_each_definition(profile, [](std::size_t, auto&) {}));
}

bool is_superseded(std::string_view older, std::string_view profile) {
  std::string older_text{older};
  std::string text{profile};
  return without_marked_lines(profile).starts_with(without_marked_lines(older)) ||
         main_get_cur_version(&older_text) < main_get_cur_version(&text);
}

}  // namespace varnholt::store
