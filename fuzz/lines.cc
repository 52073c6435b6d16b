// SPDX-License-Identifier: GPL-3.0-or-later
// Checks that a line which was read and written is read again, and then written in the same way;
// and that the findings of varnholt-check about the line are true and can be shown.
#include <algorithm>

#include "base/text.h"
#include "check/window-view.h"
#include "check/wording.h"
#include "model/definition.h"
#include "model/route.h"
#include "store/profile.h"
#include "target.h"

namespace {

/** Checks that a text can be shown on a terminal, and that no word is lost in its lines. */
void check_text(const std::string& text) {
  must_hold(g_utf8_validate(text.c_str(), static_cast<gssize>(text.size()), nullptr) != 0,
            "not UTF-8: " + text);
  constexpr std::size_t indent = 3;
  constexpr std::size_t width = 20;
  const auto letters_of = [](std::string whole) {
    std::erase_if(whole, [](char each) { return each == ' ' || each == '\n'; });
    return whole;
  };
  must_hold(std::ranges::none_of(text, [](char each) { return g_ascii_iscntrl(each) != 0; }),
            "a control character: " + text);
  must_hold(letters_of(varnholt::check::wrapped(text, indent, width)) == letters_of(text),
            "not the same letters: " + text);
}

void check(std::string_view line, auto read, auto written) {
  const auto contents = read(line);
  if (!contents) return;
  const auto text = written(*contents);
  const auto back = read(text);
  must_hold(back.has_value(), "not read back: " + text);
  // An unknown operation is written as an update, which has more fields once it is read again.
  const auto again = written(*back);
  must_hold(again == text || again == text + ",true,0", "written in two ways: " + text);
}

bool loses(const varnholt::check::Problem& problem) {
  namespace problems = varnholt::check::problems;
  return problem == problems::fields || problem == problems::nul_byte ||
         problem == problems::own_source || problem == problems::unknown_kind;
}

/** Checks the findings about a line against the definition that the window keeps of it. */
void check_view(std::string_view line) {
  const auto read = varnholt::store::read_profile_line(line);
  varnholt::check::WindowLoader window;
  window.load(line, read);
  const auto view = window.end();
  const bool reported =
      std::ranges::any_of(view.findings, [](const varnholt::check::LineFinding& each) {
        must_hold(each.line == 1, "the number of the line");
        return loses(each.finding.problem);
      });
  const bool kept = read.route || read.deletes_default_route ||
                    (read.definition && !varnholt::model::is_own_source(*read.definition));
  const bool nothing_to_lose = read.kind == varnholt::store::LineKind::other &&
                               (varnholt::trimmed(line).empty() || line.starts_with("version"));
  must_hold(reported == (!kept && !nothing_to_lose), "whether the line is lost");
  for (const auto& [number, finding] : view.findings) check_text(varnholt::check::text_of(finding));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view line{reinterpret_cast<const char*>(data), size};
  check_view(line);
  check_text(varnholt::check::printable(line));
  check(line, varnholt::model::read_lnk_line, varnholt::model::lnk_line);
  check(line, varnholt::model::read_shl_line, varnholt::model::shl_line);
  check(line, varnholt::model::read_rut_add_line, varnholt::model::rut_add_line);
  check(line, varnholt::model::read_rut_del_line, varnholt::model::rut_del_line);
  return 0;
}
