// SPDX-License-Identifier: GPL-3.0-or-later
// What changes when a profile takes the place of the present one.
#include "check/comparison.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "base/text.h"
#include "linkbuilder/decision.h"
#include "store/profile.h"

namespace varnholt::check {
namespace {

/** A line of a profile. */
struct Line {
  std::size_t number = 0;
  std::string text{};
};

/** What a profile says; a definition is known by the line that is written for it without a time. */
struct Contents {
  int version = 0;
  bool deletes_default_route = true;
  std::map<std::string, Line> definitions{};
  /** The paths of all links, those to be undone included. */
  std::set<std::string> links{};
  /** The definitions of the links that are to be there, by their paths. */
  std::map<std::string, std::string> wanted_links{};
};

std::string definition_in(const store::ProfileLine& line) {
  if (line.route) return model::rut_add_line(*line.route);
  if (!line.definition) return {};
  auto definition = *line.definition;
  definition.last_oper_time = 0;
  return line.kind == store::LineKind::file ? model::lnk_line(definition)
                                            : model::shl_line(definition);
}

Contents contents_of(std::string_view profile) {
  Contents contents;
  std::string text{profile};
  contents.version = main_get_cur_version(&text);
  std::size_t number = 0;
  for_each_piece(profile, '\n', [&](std::string_view piece) {
    ++number;
    const auto line = store::read_profile_line(piece);
    if (line.deletes_default_route) contents.deletes_default_route = *line.deletes_default_route;
    const auto definition = definition_in(line);
    if (definition.empty()) return;
    contents.definitions.emplace(definition, Line{number, std::string{trimmed(piece)}});
    if (line.kind != store::LineKind::file || !line.definition) return;
    const auto to = std::filesystem::path{line.definition->to}.lexically_normal().string();
    if (line.definition->has(VH_FILE_OPERATION_TYPE_FOT_Symbolic)) contents.links.insert(to);
    if (linkbuilder::wants_link(*line.definition)) contents.wanted_links[to] = definition;
  });
  return contents;
}

}  // namespace

void compare_profiles(std::string_view present, std::string_view profile,
                      std::vector<LineFinding>& lines, std::vector<Finding>& around) {
  if (present == profile) return;
  auto before = contents_of(present);
  const auto after = contents_of(profile);
  for (const auto& [definition, line] : after.definitions) {
    if (!before.definitions.contains(definition)) {
      lines.push_back({line.number, {problems::is_new}});
    }
  }
  for (const auto& [path, definition] : before.wanted_links) {
    if (after.links.contains(path)) continue;
    around.push_back({problems::link_abandoned, path});
    before.definitions.erase(definition);
  }
  for (const auto& [definition, line] : before.definitions) {
    if (!after.definitions.contains(definition)) around.push_back({problems::is_gone, line.text});
  }
  if (after.version < before.version) {
    around.push_back({problems::version_lower, std::to_string(before.version)});
  } else if (after.version == before.version) {
    around.push_back({problems::version_same, std::to_string(before.version)});
  }
  if (after.deletes_default_route && !before.deletes_default_route) {
    around.push_back({problems::default_route_changes});
  }
}

}  // namespace varnholt::check
