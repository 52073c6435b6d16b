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

std::size_t reordered(const std::deque<std::size_t>& lines) {
  return std::ranges::is_sorted(lines) ? 0 : lines.size();
}

}  // namespace

void WindowLoader::load(std::string_view text, const store::ProfileLine& line) {
  ++m_line;
  if (line.kind == store::LineKind::other) {
    const bool lost = !trimmed(text).empty() && !text.starts_with("version");
    return lost ? find(problems::unknown_kind) : void();
  }
  // A NUL byte ends the validation too.
  const bool has_nul = text.find('\0') != std::string_view::npos;
  const bool valid = g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) != 0;
  if (!valid && !has_nul) find(problems::no_utf8);
  if (line.deletes_default_route) return load_answer(*line.deletes_default_route, text);
  if (line.definition) return load_definition(line, text);
  if (line.route) return load_route(*line.route);
  if (has_nul || line.kind == store::LineKind::default_route) return find(problems::nul_byte);
  find(problems::fields, std::to_string(1 + std::ranges::count(text, ',')));
}

WindowView WindowLoader::end() {
  // Only the last answer about the default route counts.
  for (const auto line : m_answers) {
    if (line == m_answers.back()) break;
    m_view.findings.push_back(
        {line, {problems::answer_repeated, std::to_string(m_answers.back())}});
  }
  m_view.answers_default_route = !m_answers.empty();
  if (m_deletes_default_route) {
    m_view.findings.push_back({m_answers.back(), {problems::default_route}});
  }
  m_view.reordered_files = reordered(m_files);
  m_view.reordered_scripts = reordered(m_scripts);
  return std::move(m_view);
}

void WindowLoader::find(const Problem& problem, const std::string& about) {
  m_view.findings.push_back({m_line, {problem, about}});
}

void WindowLoader::load_answer(bool deletes_default_route, std::string_view text) {
  m_answers.push_back(m_line);
  m_deletes_default_route = deletes_default_route;
  if (trimmed(text) == model::rut_del_line(deletes_default_route)) return;
  find(problems::other_answer, deletes_default_route ? "yes" : "no");
}

void WindowLoader::load_definition(const store::ProfileLine& line, std::string_view text) {
  const auto& definition = *line.definition;
  if (model::is_own_source(definition)) return find(problems::own_source);
  const bool file = line.kind == store::LineKind::file;
  auto& page = file ? m_files : m_scripts;
  page.insert(model::comes_first(definition) ? page.begin() : page.end(), m_line);
  const std::size_t operation = file ? 4 : 3;
  const auto fields = split(text, ',');
  // The fields before the operation are written as they are, and in most lines it is the last one.
  const bool is_last = file && fields.size() == operation + 1;
  if (is_last && fields[operation] == model::operation_field(definition)) return;
  const auto written = file ? model::lnk_line(definition) : model::shl_line(definition);
  const auto kept = split(written, ',');
  for (auto at = operation; at < fields.size() && at < kept.size(); ++at) {
    if (trimmed(fields[at]) == kept[at]) continue;
    find(at == operation ? problems::other_operation : problems::other_value,
         std::string{kept[at]});
  }
}

void WindowLoader::load_route(const model::RutDefFields& route) {
  if (const auto* const rival = m_routes->first_rival_of(route, nullptr)) {
    const bool same_name = rival->name == route.name;
    return find(same_name ? problems::route_name_taken : problems::route_taken,
                std::to_string(m_route_lines[rival]));
  }
  const auto item = take_object(model::new_rut_def_item(route));
  m_routes->insert(item.get(), false);
  m_route_lines.emplace(item.get(), m_line);
  if (route.name.empty() || route.addr.empty() || route.mask.empty() || route.gw.empty()) {
    find(foresight::problems::value_missing);
  }
}

}  // namespace varnholt::check
