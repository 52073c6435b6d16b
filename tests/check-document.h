// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the document that varnholt-check prints for programs, and checks its members against the
// manual page.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

using Json = nlohmann::json;

/** Reads a document; the result is discarded when it is none. */
Json read_document(const std::string& text);

/** Returns how this differs from the document of the manual page; empty when it does not. */
std::string faults_of(const Json& document);

/** Returns the bytes of a text in an object; empty when there is none. */
std::string text_in(const Json& object, const std::string& member);
