// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a program the results of a survey.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <json-glib/json-glib.h>

#include "base/glib-ptr.h"
#include "check/report.h"
#include "check/wording.h"

namespace varnholt::check {
namespace {

/** The number of this form of the document. It changes when a member changes or goes. */
constexpr int format = 2;

/** Builds a document member by member. */
class Document {
 public:
  void add(const char* name, std::string_view text) {
    json_builder_set_member_name(m_builder.get(), name);
    json_builder_add_string_value(m_builder.get(), std::string{text}.c_str());
  }

  void add(const char* name, std::uint64_t value) {
    json_builder_set_member_name(m_builder.get(), name);
    add_number(value);
  }

  void add_number(std::uint64_t value) {
    json_builder_add_int_value(m_builder.get(), static_cast<gint64>(value));
  }

  void add_flag(const char* name, bool value) {
    json_builder_set_member_name(m_builder.get(), name);
    json_builder_add_boolean_value(m_builder.get(), value);
  }

  /** Adds a text of any bytes; when they are not UTF-8, also as they are, in Base64. */
  void add_bytes(const std::string& name, const std::string& bytes) {
    const auto length = static_cast<gssize>(bytes.size());
    if (g_utf8_validate(bytes.data(), length, nullptr)) return add(name.c_str(), bytes);
    add(name.c_str(), printable(bytes));
    const auto encoded =
        take_text(g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()));
    add((name + "-base64").c_str(), encoded.get());
  }

  /** Adds an object, whose members `fill` adds. */
  template <typename Fill>
  void add_object(const char* name, Fill fill) {
    if (name != nullptr) json_builder_set_member_name(m_builder.get(), name);
    json_builder_begin_object(m_builder.get());
    fill();
    json_builder_end_object(m_builder.get());
  }

  /** Adds an array with what `add_each` adds for each of the items. */
  template <typename Items, typename AddEach>
  void add_array(const char* name, const Items& items, AddEach add_each) {
    json_builder_set_member_name(m_builder.get(), name);
    json_builder_begin_array(m_builder.get());
    for (const auto& item : items) add_each(item);
    json_builder_end_array(m_builder.get());
  }

  /** Adds an array of objects, whose members `fill` adds. */
  template <typename Items, typename Fill>
  void add_objects(const char* name, const Items& items, Fill fill) {
    add_array(name, items,
              [&](const auto& item) { add_object(nullptr, [&] { fill(*this, item); }); });
  }

  std::string text() const {
    const std::unique_ptr<JsonNode, FreeWith<json_node_unref>> root{
        json_builder_get_root(m_builder.get())};
    return take_text(json_to_string(root.get(), TRUE)).get();
  }

 private:
  ObjectPtr<JsonBuilder> m_builder = take_object(json_builder_new());
};

void add_tally(Document& document, const char* name, const std::optional<Tally>& tally) {
  if (!tally) return;
  document.add_object(name, [&] {
    document.add_flag("counted", tally->counted);
    if (!tally->counted) return;
    document.add("folders", tally->folders);
    document.add("files", tally->files);
    document.add("bytes", tally->bytes);
    document.add("unreadable", tally->unreadable);
  });
}

void add_finding(Document& document, const Finding& finding) {
  document.add("problem", finding.problem.word);
  if (!finding.about.empty()) document.add_bytes("about", finding.about);
  document.add("text", text_of(finding));
  document.add_flag("notice", finding.problem.is_notice());
}

void add_line_finding(Document& document, const LineFinding& each) {
  document.add("line", each.line);
  add_finding(document, each.finding);
}

void add_forecast(Document& document, const Forecast& forecast) {
  const auto& definition = forecast.definition;
  document.add("line", forecast.line);
  document.add_bytes("source", definition.from);
  document.add_bytes("path", definition.to);
  document.add("operation", model::operation_word(definition));
  document.add_flag("marked", is_marked(definition));
  document.add("outcome", forecast.outcome.word);
  document.add_flag("sure", forecast.sure);
  if (forecast.outcome == outcomes::fails) document.add("remains", forecast.remains.word);
  if (!forecast.reason.word.empty()) document.add("reason", forecast.reason.word);
  if (!forecast.content.empty()) document.add_bytes("content", forecast.content);
  add_tally(document, "moved", forecast.moved);
  add_tally(document, "deleted", forecast.deleted);
  add_tally(document, "copied", forecast.copied);
  document.add_objects("findings", forecast.findings, add_finding);
  document.add_array("depends-on", forecast.depends_on,
                     [&](std::size_t line) { document.add_number(line); });
}

void add_unfinished(Document& document, const UnfinishedWork& unfinished) {
  const auto& [work, next, outlook] = unfinished;
  document.add_bytes("source", work.from);
  document.add_bytes("path", work.to);
  if (!work.backup.empty()) document.add_bytes("backup", work.backup);
  document.add("next", outlook.word);
  if (!next.removed.empty()) document.add_bytes("removed", next.removed);
}

}  // namespace

std::string document_on(const Survey& survey, const std::string& path) {
  Document document;
  document.add_object(nullptr, [&] {
    document.add("format", format);
    document.add_bytes("profile", path);
    document.add("status", static_cast<std::uint64_t>(status_of(survey)));
    document.add("problems", number_of_problems(survey));
    document.add("lines-done", survey.lines_done);
    document.add_objects("unfinished", survey.unfinished, add_unfinished);
    document.add_objects("definitions", survey.definitions, add_forecast);
    document.add_objects("lines", survey.window.findings, add_line_finding);
    document.add_object("reordered", [&] {
      document.add("files", survey.window.reordered_files);
      document.add("scripts", survey.window.reordered_scripts);
    });
    document.add_objects("around", survey.around, add_finding);
  });
  return document.text() + '\n';
}

}  // namespace varnholt::check
