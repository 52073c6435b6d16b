// SPDX-License-Identifier: GPL-3.0-or-later
// Cutting of profile text: fields of a line, lines of a file; and what of a text can be shown.
#include "base/text.h"

#include <algorithm>

#include "base/glib-ptr.h"

namespace varnholt {
namespace {

/** Calls `take` with each piece of a text that is not empty. */
template <typename Take>
void for_each_piece(std::string_view text, char separator, Take take) {
  if (text.empty()) return;
  while (true) {
    const auto end = text.find(separator);
    take(text.substr(0, end));
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  // The vertical tab is no white space of the profile.
  constexpr std::string_view white_space = " \t\n\f\r";
  const auto first = text.find_first_not_of(white_space);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(white_space) - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  pieces.reserve(1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), separator)));
  for_each_piece(text, separator, [&pieces](std::string_view piece) { pieces.push_back(piece); });
  return pieces;
}

std::vector<std::string_view> fields_of(std::string_view line, std::string_view kind) {
  constexpr auto most_separators = 7;
  if (!line.starts_with(kind) || std::count(line.begin(), line.end(), ',') > most_separators) {
    return {};
  }
  auto fields = split(line, ',');
  for (auto& field : fields) field = trimmed(field);
  return fields;
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
  for_each_piece(text, '\n', [&](std::string_view line) {
    if (!keep(line)) return;
    if (!kept.empty()) kept += '\n';
    kept += line;
  });
  return kept;
}

}  // namespace varnholt
