// SPDX-License-Identifier: GPL-3.0-or-later
// Puts together what a person reads.
#include "check/wording.h"

#include <algorithm>
#include <array>
#include <climits>
#include <clocale>

#include <glib.h>
#include <glib/gi18n.h>

#include "base/glib-ptr.h"

namespace varnholt::check {
namespace {

std::string_view first_character(std::string_view text) {
  const auto most = static_cast<gssize>(text.size());
  if (static_cast<gint32>(g_utf8_get_char_validated(text.data(), most)) < 0) return {};
  return text.substr(0, static_cast<std::size_t>(g_utf8_next_char(text.data()) - text.data()));
}

/** Returns whether a terminal does something else with a character than to show it. */
bool is_command(gunichar character) {
  const auto type = g_unichar_type(character);
  return type == G_UNICODE_CONTROL || type == G_UNICODE_FORMAT ||
         type == G_UNICODE_LINE_SEPARATOR || type == G_UNICODE_PARAGRAPH_SEPARATOR;
}

std::size_t columns_of(gunichar character) {
  if (g_unichar_iszerowidth(character)) return 0;
  return g_unichar_iswide(character) ? 2 : 1;
}

/** Returns whether a line may end between two characters, as in a script without spaces. */
bool may_part(gunichar before, gunichar after) {
  constexpr std::array no_ends{G_UNICODE_BREAK_OPEN_PUNCTUATION, G_UNICODE_BREAK_QUOTATION,
                               G_UNICODE_BREAK_SPACE};
  constexpr std::array no_beginnings{G_UNICODE_BREAK_CLOSE_PUNCTUATION, G_UNICODE_BREAK_EXCLAMATION,
                                     G_UNICODE_BREAK_INFIX_SEPARATOR, G_UNICODE_BREAK_NON_STARTER,
                                     G_UNICODE_BREAK_QUOTATION};
  return (g_unichar_iswide(before) || g_unichar_iswide(after)) &&
         std::ranges::count(no_ends, g_unichar_break_type(before)) == 0 &&
         std::ranges::count(no_beginnings, g_unichar_break_type(after)) == 0 &&
         g_unichar_type(after) != G_UNICODE_CLOSE_PUNCTUATION;
}

}  // namespace

std::string filled(std::string_view text, const std::vector<std::string>& words) {
  std::string whole;
  while (!text.empty()) {
    const auto mark = text.find('%');
    whole += text.substr(0, mark);
    if (mark == std::string_view::npos || mark + 1 == text.size()) break;
    const auto index = static_cast<std::size_t>(text[mark + 1] - '1');
    if (index < words.size()) whole += words[index];
    text.remove_prefix(mark + 2);
  }
  return whole;
}

std::string printable(std::string_view text) {
  std::string shown{text.empty() ? "\"\"" : ""};
  while (!text.empty()) {
    const auto letter = first_character(text);
    const bool plain = !letter.empty() && !is_command(g_utf8_get_char(letter.data()));
    const auto piece = letter.empty() ? text.substr(0, 1) : letter;
    if (plain) shown += piece;
    for (const char byte : plain ? "" : piece) {
      shown += take_text(g_strdup_printf("\\x%02x", static_cast<guchar>(byte))).get();
    }
    text.remove_prefix(piece.size());
  }
  return shown;
}

std::string number(std::uint64_t value) {
  const auto* const locale = std::localeconv();
  const auto separator =
      take_text(g_locale_to_utf8(locale->thousands_sep, -1, nullptr, nullptr, nullptr));
  auto text = std::to_string(value);
  const char* group = locale->grouping;
  for (std::size_t at = text.size(); *group > 0 && *group < CHAR_MAX;) {
    const std::size_t digits = static_cast<unsigned char>(*group);
    if (at <= digits) break;
    at -= digits;
    text.insert(at, separator ? separator.get() : "");
    // The last group repeats; see localeconv(3).
    if (group[1] != 0) ++group;
  }
  return text;
}

std::string amount(const files::Tally& tally) {
  const auto folders =
      filled(ngettext("%1 folder", "%1 folders", tally.folders), {number(tally.folders)});
  const auto files = filled(ngettext("%1 file", "%1 files", tally.files), {number(tally.files)});
  const std::string size = take_text(g_format_size(tally.bytes)).get();
  const char* const pattern = tally.folders == 0 ? _("%2 (%3)")
                              : tally.files == 0 ? "%1"
                                                 : _("%1 and %2 (%3)");
  auto text = filled(pattern, {folders, files, size});
  if (tally.unreadable > 0) {
    text += filled(ngettext(", and what is in %1 folder that cannot be read",
                            ", and what is in %1 folders that cannot be read", tally.unreadable),
                   {number(tally.unreadable)});
  }
  return text;
}

std::string text_of(const Finding& finding) {
  // The reason comes from the reader of the note, and may have a translation.
  const bool is_reason = finding.problem == foresight::problems::note_unread;
  const std::string about = is_reason ? _(finding.about.c_str()) : finding.about;
  return filled(_(finding.problem.text), {printable(about)});
}

std::string wrapped(std::string_view text, std::size_t indent, std::size_t width) {
  std::string lines;
  std::size_t column = indent;
  // Where the last line may end, and the column there; none for 0.
  std::size_t cut = 0;
  std::size_t column_at_cut = 0;
  gunichar before = 0;
  while (!text.empty()) {
    const auto letter = first_character(text);
    const auto character = g_utf8_get_char(letter.data());
    if ((character == ' ' && before != ' ') || may_part(before, character)) {
      cut = lines.size();
      column_at_cut = column;
    }
    lines += letter;
    column += columns_of(character);
    if (column > width && cut > 0 && character != ' ') {
      const std::size_t space = lines[cut] == ' ' ? 1 : 0;
      lines.replace(cut, space, '\n' + std::string(indent, ' '));
      column += indent - column_at_cut - space;
      cut = 0;
    }
    before = character;
    text.remove_prefix(letter.size());
  }
  return lines;
}

}  // namespace varnholt::check
