// SPDX-License-Identifier: GPL-3.0-or-later
// What the window makes of a profile.
#include "check/window-view.h"

#include <algorithm>
#include <utility>

#include <glib.h>

#include "base/glib-ptr.h"
#include "base/text.h"
#include "model/bak-model.h"
#include "store/profile.h"

namespace varnholt::check {
namespace {

/** Returns the word for the operation in the line of a boot script. */
std::string script_word(const model::BakDefFields& script) {
  const auto line = model::shl_line(script);
  return line.substr(line.rfind(',') + 1);
}

}  // namespace

void WindowLoader::load(std::string_view text, const store::ProfileLine& line) {
  ++m_line;
  if (line.kind == store::LineKind::other) return load_other(text);
  // A NUL byte ends the validation too.
  const bool valid = g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) != 0;
  if (!valid && text.find('\0') == std::string_view::npos) find(Problem::no_utf8);
  if (line.kind == store::LineKind::default_route) return load_answer(line, text);
  if (!line.definition && !line.route) return find_unreadable(text);
  if (line.route) return load_route(*line.route);
  load_definition(line, text);
}

WindowView WindowLoader::end() {
  // Only the last answer about the default route counts.
  for (std::size_t answer = 0; answer + 1 < m_answers.size(); ++answer) {
    m_view.findings.push_back(
        {m_answers[answer], {Problem::answer_repeated, std::to_string(m_answers.back())}});
  }
  m_view.reordered_files = m_files.reordered();
  m_view.reordered_scripts = m_scripts.reordered();
  return std::move(m_view);
}

void WindowLoader::find(Problem problem, const std::string& about) {
  m_view.findings.push_back({m_line, {problem, about}});
}

void WindowLoader::load_other(std::string_view text) {
  if (!trimmed(text).empty() && !text.starts_with("version")) find(Problem::unknown_kind);
}

void WindowLoader::find_unreadable(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return find(Problem::nul_byte);
  find(Problem::fields, std::to_string(1 + std::ranges::count(text, ',')));
}

void WindowLoader::load_answer(const store::ProfileLine& line, std::string_view text) {
  if (!line.deletes_default_route) return find(Problem::nul_byte);
  m_answers.push_back(m_line);
  if (trimmed(text) != model::rut_del_line(*line.deletes_default_route)) {
    find(Problem::other_answer, *line.deletes_default_route ? "yes" : "no");
  }
}

void WindowLoader::load_definition(const store::ProfileLine& line, std::string_view text) {
  const auto& definition = *line.definition;
  if (model::is_own_source(definition)) return find(Problem::own_source);
  const bool file = line.kind == store::LineKind::file;
  (file ? m_files : m_scripts).add(m_line, model::comes_first(definition));
  const auto word = file ? model::operation_field(definition) : script_word(definition);
  // In most lines it is the last word.
  if (text.ends_with(word)) return;
  if (file) find_other_values(definition, text);
  if (trimmed(split(text, ',')[file ? 4 : 3]) != word) find(Problem::other_operation, word);
}

void WindowLoader::find_other_values(const model::BakDefFields& definition, std::string_view text) {
  const auto written = model::lnk_line(definition);
  const auto fields = fields_of(text, "lnk");
  const auto kept = split(written, ',');
  for (std::size_t at = 5; at < fields.size() && at < kept.size(); ++at) {
    if (fields[at] != kept[at]) find(Problem::other_value, std::string{kept[at]});
  }
}

void WindowLoader::load_route(const model::RutDefFields& route) {
  if (const auto* const rival = m_routes->first_rival_of(route, nullptr)) {
    const bool same_name = rival->name == route.name;
    return find(same_name ? Problem::route_name_taken : Problem::route_taken,
                std::to_string(m_route_lines[rival]));
  }
  const auto item = take_object(model::new_rut_def_item(route));
  m_routes->insert(item.get(), false);
  m_route_lines.emplace(item.get(), m_line);
  if (route.name.empty() || route.addr.empty() || route.mask.empty() || route.gw.empty()) {
    find(Problem::value_missing);
  }
}

}  // namespace varnholt::check
