// SPDX-License-Identifier: GPL-3.0-or-later
// The link builder's rewrite of a profile beside a plain one: marked lines go, all others stay byte
// for byte, and each definition is handed on once.
#include <sstream>
#include <vector>

#include "linkbuilder/link-builder.h"
#include "target.h"

namespace {

using Pieces = std::vector<std::string>;

Pieces pieces_of(const std::string& text, char separator) {
  Pieces pieces;
  std::istringstream rest{text};
  for (std::string piece; std::getline(rest, piece, separator);) pieces.push_back(piece);
  if (text.ends_with(separator)) pieces.emplace_back();
  return pieces;
}

bool is_definition(const std::string& line, const Pieces& fields) {
  return line.starts_with("lnk") && (fields.size() == 5 || fields.size() == 7) &&
         line.find('\0') == std::string::npos;
}

bool is_marked(std::string word) {
  while (!word.empty() && std::string{" \t\n\f\r"}.find(word.back()) != std::string::npos) {
    word.pop_back();
  }
  return word.ends_with("deleted");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto profile = text_of(data, size);
  std::string expected;
  std::size_t definitions = 0;
  for (const auto& line : pieces_of(profile, '\n')) {
    const auto fields = pieces_of(line, ',');
    const bool definition = is_definition(line, fields);
    if (definition) ++definitions;
    if (definition && is_marked(fields[4])) continue;
    expected += (expected.empty() ? "" : "\n") + line;
  }
  std::size_t handed_on = 0;
  const auto written = varnholt::applied_profile(
      profile, [&handed_on](const varnholt::BakDefFields& /*definition*/) { ++handed_on; });
  must_hold(written == expected, "the kept lines");
  must_hold(handed_on == definitions, "each definition once");
  return 0;
}
