// SPDX-License-Identifier: GPL-3.0-or-later
// Cuts profile text into lines and fields, and turns a text into one that can be shown. All
// functions work on bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace varnholt {

/** Returns `text` without spaces, tabs, line feeds, form feeds and carriage returns at its ends. */
std::string_view trimmed(std::string_view text);

/**
 * Calls `take` with each piece of `text` between single separators, also with empty pieces. An
 * empty text has no pieces.
 */
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

/** Returns the same pieces. */
std::vector<std::string_view> split(std::string_view text, char separator);

/**
 * Returns the trimmed fields, between its commas, of a line that begins with `kind`. Returns no
 * fields when the line begins in another way, has more than the 8 fields of a route, or contains a
 * NUL byte, because nobody would see the rest of a path after it. The first field may continue
 * after `kind`.
 */
std::vector<std::string_view> fields_of(std::string_view line, std::string_view kind);

/** Returns whether fields_of() returns `text` unchanged when it is a field of a line. */
bool fits_field(std::string_view text);

/**
 * Returns `text` with a replacement character for each byte that is not UTF-8, so that a widget can
 * show it.
 */
std::string shown(std::string_view text);

/**
 * Returns `text` as shown() does, but with an ellipsis in place of its middle when it has more than
 * 400 bytes, because no window has room for it.
 */
std::string shown_shortened(std::string_view text);

}  // namespace varnholt
