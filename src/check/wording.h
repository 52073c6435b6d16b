// SPDX-License-Identifier: GPL-3.0-or-later
// Puts together what a person reads, in the language and with the numbers of his locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "check/problems.h"
#include "files/tree.h"

namespace varnholt::check {

/** Returns a text with these words in the places of %1, %2 and so on. */
std::string filled(std::string_view text, const std::vector<std::string>& words);

/**
 * Returns a text from the file system so that no terminal takes a part of it for a command: a
 * control character, and a byte that is not UTF-8, become \xHH.
 */
std::string printable(std::string_view text);

/** Returns a number with the separators of the locale. */
std::string number(std::uint64_t value);

/** Returns how much there is, such as "2 folders and 14 files (1.2 MB)". */
std::string amount(const files::Tally& tally);

/** Returns a sentence on a finding. */
std::string text_of(const Finding& finding);

/**
 * Returns a text in lines of at most `width` columns, as far as its words allow that. Each line but
 * the first one begins with `indent` spaces, which count for all of them.
 */
std::string wrapped(std::string_view text, std::size_t indent, std::size_t width);

}  // namespace varnholt::check
