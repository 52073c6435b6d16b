// SPDX-License-Identifier: GPL-3.0-or-later
// Cutting of profile text into lines and fields, and what of a text can be shown.
#include "base/text.h"

#include <algorithm>

#include "base/glib-ptr.h"

namespace varnholt {
std::string_view trimmed(std::string_view text) {
  // The vertical tab is no white space of the profile.
  constexpr std::string_view white_space = " \t\n\f\r";
  const auto first = text.find_first_not_of(white_space);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(white_space) - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  if (text.empty()) return {};
  std::vector<std::string_view> pieces;
  for (auto end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
    pieces.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  pieces.push_back(text);
  return pieces;
}

std::vector<std::string_view> fields_of(std::string_view line, std::string_view kind) {
  constexpr auto most_separators = 7;
  if (!line.starts_with(kind) || line.find('\0') != std::string_view::npos ||
      std::count(line.begin(), line.end(), ',') > most_separators) {
    return {};
  }
  auto fields = split(line, ',');
  for (auto& field : fields) field = trimmed(field);
  return fields;
}

bool fits_field(std::string_view text) {
  return text.find_first_of(",\n") == std::string_view::npos && trimmed(text) == text;
}

std::string shown(std::string_view text) {
  if (text.empty()) return {};
  return take_text(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()))).get();
}

std::string shown_shortened(std::string_view text) {
  constexpr std::size_t longest = 400;
  if (text.size() <= longest) return shown(text);
  // The pieces begin and end between two characters of UTF-8, and so also where there are none.
  const auto inside = [text](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  constexpr std::size_t longest_character = 4;
  auto head = longest / 2;
  while (head > longest / 2 - longest_character && inside(head)) --head;
  auto tail = text.size() - longest / 2;
  while (tail < text.size() - longest / 2 + longest_character && inside(tail)) ++tail;
  return shown(text.substr(0, head)) + "…" + shown(text.substr(tail));
}

std::string kept_lines(std::string_view text, const std::function<bool(std::string_view)>& keep) {
  std::string kept;
  kept.reserve(text.size());
  for (const auto line : split(text, '\n')) {
    if (!keep(line)) continue;
    if (!kept.empty()) kept += '\n';
    kept += line;
  }
  return kept;
}

}  // namespace varnholt
