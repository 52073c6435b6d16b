// SPDX-License-Identifier: GPL-3.0-or-later
// Cuts profile text into lines and fields, and turns a text into one that can be shown.
#include "base/text.h"

#include <algorithm>

#include "base/glib-ptr.h"

namespace varnholt {
std::string_view trimmed(std::string_view text) {
  // The vertical tab is not white space in a profile.
  constexpr std::string_view white_space = " \t\n\f\r";
  const auto first = text.find_first_not_of(white_space);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(white_space) - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  constexpr std::size_t most_fields = 8;
  pieces.reserve(most_fields);
  for_each_piece(text, separator, [&pieces](std::string_view piece) { pieces.push_back(piece); });
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
  auto whole = shown(text);
  if (whole.size() <= longest) return whole;
  const char* const begin = whole.c_str();
  const char* const end = begin + whole.size();
  const char* const head = g_utf8_find_prev_char(begin, begin + longest / 2 + 1);
  const char* const tail = g_utf8_find_next_char(end - longest / 2 - 1, nullptr);
  return whole.substr(0, static_cast<std::size_t>(head - begin)) + "…" + tail;
}

}  // namespace varnholt
