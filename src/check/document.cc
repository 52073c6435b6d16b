// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a program the results of a survey.
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/glib-ptr.h"
#include "check/report.h"
#include "check/wording.h"

namespace varnholt::check {
namespace {

namespace outcomes = foresight::outcomes;

/** The members of an object stay in the order in which they are added. */
using Json = nlohmann::ordered_json;

/** The number of this form of the document. It changes when a member changes or goes. */
constexpr int format = 2;

/** Adds a text of any bytes; when they are not UTF-8, also as they are, in Base64. */
void add_bytes(Json& object, const std::string& name, const std::string& bytes) {
  const auto length = static_cast<gssize>(bytes.size());
  const bool valid = g_utf8_validate(bytes.data(), length, nullptr) != 0;
  object[name] = valid ? bytes : printable(bytes);
  if (valid) return;
  const auto* const data = reinterpret_cast<const guchar*>(bytes.data());
  object[name + "-base64"] = take_text(g_base64_encode(data, bytes.size())).get();
}

void add_tally(Json& object, const char* name, const std::optional<files::Tally>& tally) {
  if (!tally) return;
  auto& amount = object[name];
  amount["counted"] = tally->counted;
  if (!tally->counted) return;
  amount["folders"] = tally->folders;
  amount["files"] = tally->files;
  amount["bytes"] = tally->bytes;
  amount["unreadable"] = tally->unreadable;
}

/** Returns an array of objects, to each of which `add` adds the members for an item. */
template <typename Item>
Json list_of(const std::vector<Item>& items, void (*add)(Json& object, const Item& item)) {
  auto list = Json::array();
  for (const auto& item : items) add(list.emplace_back(), item);
  return list;
}

void add_finding(Json& object, const Finding& finding) {
  object["problem"] = finding.problem.word;
  if (!finding.about.empty()) add_bytes(object, "about", finding.about);
  object["text"] = text_of(finding);
  object["notice"] = finding.problem.is_notice();
}

void add_line_finding(Json& object, const LineFinding& each) {
  object["line"] = each.line;
  add_finding(object, each.finding);
}

void add_forecast(Json& object, const foresight::Forecast& forecast) {
  const auto& definition = forecast.definition;
  object["line"] = forecast.line;
  add_bytes(object, "source", definition.from);
  add_bytes(object, "path", definition.to);
  object["operation"] = model::operation_word(definition);
  object["marked"] = foresight::is_marked(definition);
  object["outcome"] = forecast.outcome.word;
  object["sure"] = forecast.sure;
  if (forecast.outcome == outcomes::fails) object["remains"] = forecast.remains.word;
  if (!forecast.reason.word.empty()) object["reason"] = forecast.reason.word;
  if (!forecast.content.empty()) add_bytes(object, "content", forecast.content);
  add_tally(object, "moved", forecast.moved);
  add_tally(object, "deleted", forecast.deleted);
  add_tally(object, "copied", forecast.copied);
  object["findings"] = list_of(forecast.findings, add_finding);
  object["depends-on"] = forecast.depends_on;
}

void add_unfinished(Json& object, const foresight::UnfinishedWork& unfinished) {
  const auto& [work, next, outlook] = unfinished;
  add_bytes(object, "source", work.from);
  add_bytes(object, "path", work.to);
  if (!work.backup.empty()) add_bytes(object, "backup", work.backup);
  object["next"] = outlook.word;
  if (!next.removed.empty()) add_bytes(object, "removed", next.removed);
}

}  // namespace

std::string document_on(const Survey& survey, const std::string& path) {
  Json document;
  document["format"] = format;
  add_bytes(document, "profile", path);
  document["status"] = status_of(survey);
  document["problems"] = number_of_problems(survey);
  document["lines-done"] = survey.run.lines_done;
  document["unfinished"] = list_of(survey.run.unfinished, add_unfinished);
  document["definitions"] = list_of(survey.run.definitions, add_forecast);
  document["lines"] = list_of(survey.window.findings, add_line_finding);
  document["reordered"] = {{"files", survey.window.reordered_files},
                           {"scripts", survey.window.reordered_scripts}};
  document["around"] = list_of(survey.around, add_finding);
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace varnholt::check
