// SPDX-License-Identifier: GPL-3.0-or-later
// The profile as a whole text.
#include "store/profile.h"

#include <array>
#include <cstdlib>

#include "base/glib-ptr.h"
#include "base/text.h"

namespace varnholt::store {

ProfileLine read_profile_line(std::string_view line) {
  if (line.starts_with("shl")) return {LineKind::script, model::read_shl_line(line)};
  if (line.starts_with("lnk")) return {LineKind::file, model::read_lnk_line(line)};
  if (line.starts_with("rut,add")) {
    return {.kind = LineKind::route, .route = model::read_rut_add_line(line)};
  }
  if (!line.starts_with("rut,del")) return {};
  return {.kind = LineKind::default_route, .deletes_default_route = model::read_rut_del_line(line)};
}

std::string profile_text(const VhBakDefItemList& files, const VhRutDefItemList& routes,
                         const VhBakDefItemList& scripts) {
  std::string text;
  const auto add = [&text](const std::string& line) { (text += line) += '\n'; };
  // A type that is derived from the type of the items may write its line in its own way.
  for (const auto& file : files) add(take_text(vh_bak_def_item_lnk_to_string(file.get())).get());
  add(model::rut_del_line(routes.del_def_rut));
  for (const auto& route : routes) add(model::rut_add_line(*route));
  for (const auto& script : scripts) add(model::shl_line(*script));
  return text;
}

}  // namespace varnholt::store

int main_get_cur_version(std::string* cont) {
  g_return_val_if_fail(cont != NULL, 0);
  const auto end = cont->find('\n');
  if (end == std::string::npos) return 0;
  const auto first_line = cont->substr(0, end);
  if (first_line.find("version") == std::string::npos) return 0;
  cont->erase(0, end + 1);
  const std::string version{varnholt::trimmed(first_line)};
  // Without a comma the whole line is read, which gives 0.
  // The number is read as atoi(3) reads it.
  return static_cast<int>(std::strtol(&version[version.find(',') + 1], nullptr, 10));
}

int main_string_index_of(const char* text, gunichar character) {
  g_return_val_if_fail(text != NULL, 0);
  if (character == 0) return -1;
  constexpr std::size_t longest = 6;
  std::array<char, longest + 1> needle{};
  g_unichar_to_utf8(character, needle.data());
  return vh_string_index_of(text, needle.data());
}
