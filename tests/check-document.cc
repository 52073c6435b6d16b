// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the document that varnholt-check prints for programs.
#include "check-document.h"

#include <sstream>

#include "base/glib-ptr.h"

namespace {

// "?" marks a member that is not always there; a text may have a companion in Base64.
constexpr auto* root_schema =
    "format:number profile:string status:number problems:number lines-done:number unfinished:array "
    "definitions:array lines:array reordered:object around:array";
constexpr auto* definition_schema =
    "line:number source:string path:string operation:string marked:boolean outcome:string "
    "sure:boolean ?remains:string ?reason:string ?content:string ?moved:object ?deleted:object "
    "?copied:object findings:array depends-on:array";
constexpr auto* finding_schema = "problem:string ?about:string text:string notice:boolean";
constexpr auto* line_schema = "line:number problem:string ?about:string text:string notice:boolean";
constexpr auto* unfinished_schema =
    "source:string path:string ?backup:string next:string ?removed:string";
constexpr auto* tally_schema =
    "counted:boolean ?folders:number ?files:number ?bytes:number ?unreadable:number";

/** Returns the members that are missing, too many, or of another type than this schema says. */
std::string faults_in(const Json& object, const char* schema) {
  std::string faults;
  std::size_t known = 0;
  std::istringstream members{schema};
  for (std::string member; members >> member;) {
    const bool optional = member.starts_with('?');
    const auto colon = member.find(':');
    const auto name = member.substr(optional ? 1 : 0, colon - (optional ? 1 : 0));
    known += object.count(name) + object.count(name + "-base64");
    if (!object.contains(name)) {
      if (!optional) faults += name + " is missing\n";
    } else if (object.at(name).type_name() != member.substr(colon + 1)) {
      faults += name + " is of another type\n";
    }
  }
  if (known != object.size()) faults += "there is another member\n";
  return faults;
}

}  // namespace

Json read_document(const std::string& text) {
  return Json::parse(text, nullptr, false);
}

std::string faults_of(const Json& document) {
  if (!document.is_object()) return "this is no document\n";
  auto faults = faults_in(document, root_schema);
  if (!faults.empty()) return faults;
  for (const auto& definition : document.at("definitions")) {
    faults += faults_in(definition, definition_schema);
    for (const auto& finding : definition.at("findings")) {
      faults += faults_in(finding, finding_schema);
    }
    for (const auto* const tally : {"moved", "deleted", "copied"}) {
      if (definition.contains(tally)) faults += faults_in(definition.at(tally), tally_schema);
    }
  }
  for (const auto& line : document.at("lines")) faults += faults_in(line, line_schema);
  for (const auto& finding : document.at("around")) faults += faults_in(finding, finding_schema);
  for (const auto& work : document.at("unfinished")) faults += faults_in(work, unfinished_schema);
  return faults + faults_in(document.at("reordered"), "files:number scripts:number");
}

std::string text_in(const Json& object, const std::string& member) {
  if (object.contains(member + "-base64")) {
    const std::string encoded = object.at(member + "-base64");
    gsize length = 0;
    const varnholt::TextPtr bytes{
        reinterpret_cast<char*>(g_base64_decode(encoded.c_str(), &length))};
    return {bytes.get(), length};
  }
  return object.contains(member) ? object.at(member) : "";
}
