// SPDX-License-Identifier: GPL-3.0-or-later
// Tells the results of a survey: a person by a text, and a program by a document.
#pragma once

#include <cstddef>
#include <string>

#include "check/survey.h"

namespace varnholt::check {

struct ReportStyle {
  /** Whether to tell of links that are as they should be, too. */
  bool all = false;
  /** Whether to tell the summary only. */
  bool summary_only = false;
  bool colour = false;
  std::size_t width = 80;
};

/** Returns the report, which ends with a summary of one line. */
std::string report_on(const Survey& survey, const ReportStyle& style);

/**
 * Returns a JSON document (RFC 8259) on the survey of the profile at `path`. The manual page
 * describes its members.
 */
std::string document_on(const Survey& survey, const std::string& path);

}  // namespace varnholt::check
