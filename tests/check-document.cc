// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the document that varnholt-check prints for programs.
#include "check-document.h"

#include <sstream>

namespace {

// "?" marks a member that is not always there; a text may have a companion in Base64.
constexpr auto* root_schema =
    "format:int profile:text status:int problems:int lines-done:int unfinished:array "
    "definitions:array "
    "lines:array reordered:object around:array";
constexpr auto* definition_schema =
    "line:int source:text path:text operation:text marked:bool outcome:text sure:bool "
    "?remains:text ?reason:text ?content:text ?moved:object ?deleted:object ?copied:object "
    "findings:array depends-on:array";
constexpr auto* finding_schema = "problem:text ?about:text text:text notice:bool";
constexpr auto* line_schema = "line:int problem:text ?about:text text:text notice:bool";
constexpr auto* unfinished_schema = "source:text path:text ?backup:text next:text ?removed:text";
constexpr auto* tally_schema = "counted:bool ?folders:int ?files:int ?bytes:int ?unreadable:int";

std::string type_of(JsonNode* node) {
  if (JSON_NODE_HOLDS_ARRAY(node)) return "array";
  if (JSON_NODE_HOLDS_OBJECT(node)) return "object";
  switch (json_node_get_value_type(node)) {
    case G_TYPE_INT64:
      return "int";
    case G_TYPE_BOOLEAN:
      return "bool";
    default:
      return "text";
  }
}

}  // namespace

std::string DocumentObject::text(const std::string& member) const {
  const auto encoded = member + "-base64";
  if (!has(encoded)) {
    return has(member) ? json_object_get_string_member(m_object, member.c_str()) : "";
  }
  gsize length = 0;
  const varnholt::TextPtr bytes{reinterpret_cast<char*>(
      g_base64_decode(json_object_get_string_member(m_object, encoded.c_str()), &length))};
  return {bytes.get(), length};
}

std::vector<DocumentObject> DocumentObject::objects(const char* member) const {
  return elements<DocumentObject>(member, json_array_get_object_element);
}

std::vector<gint64> DocumentObject::numbers(const char* member) const {
  return elements<gint64>(member, json_array_get_int_element);
}

std::string DocumentObject::faults(const char* schema) const {
  std::string faults;
  guint known = 0;
  std::istringstream members{schema};
  for (std::string member; members >> member;) {
    const bool optional = member.starts_with('?');
    const auto colon = member.find(':');
    const auto name = member.substr(optional ? 1 : 0, colon - (optional ? 1 : 0));
    if (has(name)) ++known;
    if (has(name + "-base64")) ++known;
    if (!has(name) && !optional) faults += name + " is missing\n";
    if (has(name) &&
        type_of(json_object_get_member(m_object, name.c_str())) != member.substr(colon + 1)) {
      faults += name + " is of another type\n";
    }
  }
  if (known != json_object_get_size(m_object)) faults += "there is another member\n";
  return faults;
}

CheckDocument::CheckDocument(const std::string& text)
    : m_parser(varnholt::take_object(json_parser_new())) {
  varnholt::ErrorPtr error;
  const auto length = static_cast<gssize>(text.size());
  json_parser_load_from_data(m_parser.get(), text.data(), length, varnholt::out(error));
  if (error) m_error = error->message;
}

std::string CheckDocument::faults() const {
  if (!m_error.empty()) return m_error;
  auto faults = root().faults(root_schema);
  if (!faults.empty()) return faults;
  for (const auto& definition : root().objects("definitions")) {
    faults += definition.faults(definition_schema);
    for (const auto& finding : definition.objects("findings")) {
      faults += finding.faults(finding_schema);
    }
    for (const auto* const tally : {"moved", "deleted", "copied"}) {
      if (definition.has(tally)) faults += definition.object(tally).faults(tally_schema);
    }
  }
  for (const auto& line : root().objects("lines")) faults += line.faults(line_schema);
  for (const auto& finding : root().objects("around")) faults += finding.faults(finding_schema);
  for (const auto& work : root().objects("unfinished")) faults += work.faults(unfinished_schema);
  return faults + root().object("reordered").faults("files:int scripts:int");
}

DocumentObject CheckDocument::root() const {
  return DocumentObject{json_node_get_object(json_parser_get_root(m_parser.get()))};
}
