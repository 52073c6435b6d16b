// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a person what a survey has found.
#pragma once

#include <cstddef>
#include <string>

#include "check/survey.h"

namespace varnholt::check {

struct ReportStyle {
  /** Whether links that stand as they should are told too. */
  bool all = false;
  /** Whether only the summary is told. */
  bool summary_only = false;
  bool colour = false;
  std::size_t width = 80;
};

/** Returns the report, which ends with a summary of one line. */
std::string report_on(const Survey& survey, const ReportStyle& style);

}  // namespace varnholt::check
