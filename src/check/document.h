// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a program the results of a survey, as one JSON document (RFC 8259). The manual page
// describes its members.
#pragma once

#include <string>

#include "check/survey.h"

namespace varnholt::check {

/** Returns the document on the survey of the profile at `path`. */
std::string document_on(const Survey& survey, const std::string& path);

}  // namespace varnholt::check
