// SPDX-License-Identifier: GPL-3.0-or-later
// Cutting of profile text into lines and fields, and what of a text can be shown. Works on bytes.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace varnholt {

/** `text` without the spaces, tabs, line feeds, form feeds and carriage returns at both ends. */
std::string_view trimmed(std::string_view text);

/** The pieces of `text` between single separators; empty pieces count. An empty text has none. */
std::vector<std::string_view> split(std::string_view text, char separator);

/**
 * The trimmed fields of a line that begins with `kind`, between its commas. None when the line
 * begins in another way, has more than the 8 fields of a route, or holds a NUL byte, behind which
 * nobody would see the rest of a path. The first field may go on behind `kind`.
 */
std::vector<std::string_view> fields_of(std::string_view line, std::string_view kind);

/** Whether fields_of() would give `text` back if it stood as a field in a line. */
bool fits_field(std::string_view text);

/** `text` with a replacement character for each byte that is no UTF-8: what a widget may show. */
std::string shown(std::string_view text);

/**
 * `text` as shown(), with an ellipsis for the middle of what no window has room for: more than 400
 * bytes.
 */
std::string shown_shortened(std::string_view text);

/**
 * Asks `keep` about each line of `text`, in order, and returns the kept ones, byte for byte, joined
 * by line feeds. The piece behind the last line feed is a line too. A line feed is written only
 * when something stands before it, so empty lines at the very beginning vanish.
 */
std::string kept_lines(std::string_view text, const std::function<bool(std::string_view)>& keep);

}  // namespace varnholt
