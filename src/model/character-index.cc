// SPDX-License-Identifier: GPL-3.0-or-later
// Finds one text in another and counts in characters of UTF-8, not in bytes.
#include "model/character-index.h"

#include <string_view>

namespace {

/** Returns whether a byte begins a character, also in a text that ends inside a character. */
bool begins_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

}  // namespace

int vh_string_index_of(const char* rawstr, const char* needle) {
  g_return_val_if_fail(rawstr != NULL, 0);
  g_return_val_if_fail(needle != NULL, 0);
  const std::string_view text = rawstr;
  const std::string_view wanted = needle;
  int characters = 0;
  for (std::size_t at = 0; at + wanted.size() <= text.size(); ++at) {
    if (at < text.size() && !begins_character(text[at])) continue;
    if (text.substr(at).starts_with(wanted)) return characters;
    ++characters;
  }
  return -1;
}
