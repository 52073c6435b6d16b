// SPDX-License-Identifier: GPL-3.0-or-later
// The profile as a text: what the tables hold, the version of what is stored, and where a character
// stands.
#include <array>
#include <cstdlib>
#include <string>

#include "base/text.h"
#include "varnholt.h"

namespace {

using varnholt::take_object;
using varnholt::take_text;

/** Adds a line that a writer of lines returned. */
void add_line(std::string& text, char* line) {
  text += take_text(line).get();
  text += '\n';
}

/** The number at the beginning of a text, as atoi(3) reads it. */
int leading_number(const std::string& text) {
  constexpr int decimal = 10;
  return static_cast<int>(std::strtol(text.c_str(), nullptr, decimal));
}

}  // namespace

void main_save_imp(Main* self, std::string* text) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(text != NULL);
  const auto links = take_object(vh_bak_def_widget_get_items(self->lnk_table.get()));
  const auto routes = take_object(vh_rut_def_widget_get_items(self->rut_table.get()));
  const auto scripts = take_object(vh_bak_def_widget_get_items(self->shl_table.get()));
  text->clear();
  for (auto* link : *links) add_line(*text, vh_bak_def_item_lnk_to_string(link));
  add_line(*text, vh_rut_def_item_list_del_def_rut_to_string(routes.get()));
  for (auto* route : *routes) add_line(*text, vh_rut_def_item_to_string(route));
  for (auto* script : *scripts) add_line(*text, vh_bak_def_item_shl_to_string(script));
}

int main_get_cur_version(std::string* cont) {
  g_return_val_if_fail(cont != NULL, 0);
  const auto end = cont->find('\n');
  if (end == std::string::npos) return 0;
  const auto first_line = cont->substr(0, end);
  if (first_line.find("version") == std::string::npos) return 0;
  cont->erase(0, end + 1);
  const std::string version{varnholt::trimmed(first_line)};
  // Without a comma the whole line is read, which gives 0.
  return leading_number(version.substr(version.find(',') + 1));
}

int main_string_index_of(const char* text, gunichar character) {
  g_return_val_if_fail(text != NULL, 0);
  if (character == 0) return -1;
  constexpr std::size_t longest = 6;
  std::array<char, longest + 1> needle{};
  g_unichar_to_utf8(character, needle.data());
  return vh_string_index_of(text, needle.data());
}
