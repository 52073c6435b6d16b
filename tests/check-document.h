// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the document that varnholt-check prints for programs, and checks its members against the
// manual page.
#pragma once

#include <json-glib/json-glib.h>

#include <string>
#include <vector>

#include "base/glib-ptr.h"

/** An object of the document. */
class DocumentObject {
 public:
  explicit DocumentObject(JsonObject* object) : m_object(object) {}

  bool has(const std::string& member) const {
    return json_object_has_member(m_object, member.c_str()) != 0;
  }
  /** Returns the bytes of a text; empty when there is none. */
  std::string text(const std::string& member) const;
  gint64 number(const char* member) const { return json_object_get_int_member(m_object, member); }
  bool flag(const char* member) const {
    return json_object_get_boolean_member(m_object, member) != 0;
  }
  DocumentObject object(const char* member) const {
    return DocumentObject{json_object_get_object_member(m_object, member)};
  }
  std::vector<DocumentObject> objects(const char* member) const;
  std::vector<gint64> numbers(const char* member) const;

  /** Returns the members that are missing, too many, or of another type than this schema says. */
  std::string faults(const char* schema) const;

 private:
  template <typename Value, typename Get>
  std::vector<Value> elements(const char* member, Get get) const {
    std::vector<Value> all;
    auto* const array = json_object_get_array_member(m_object, member);
    for (guint index = 0; index < json_array_get_length(array); ++index) {
      all.emplace_back(get(array, index));
    }
    return all;
  }

  JsonObject* m_object;
};

/** The whole document. */
class CheckDocument {
 public:
  explicit CheckDocument(const std::string& text);

  /** Returns how this differs from such a document; empty when it is one. */
  std::string faults() const;
  DocumentObject root() const;

 private:
  varnholt::ObjectPtr<JsonParser> m_parser;
  std::string m_error;
};
