// SPDX-License-Identifier: GPL-3.0-or-later
// What comes of one definition.
#include "check/forecast.h"

namespace varnholt::check {

void add(Forecast& forecast, Problem problem, const std::string& about) {
  forecast.findings.push_back({problem, about});
  forecast.sure = forecast.sure && !is_doubtful(problem);
}

void fail(Forecast& forecast, const Finding& why, Remains remains) {
  forecast.outcome = Outcome::fails;
  forecast.remains = remains;
  add(forecast, why.problem, why.about);
}

}  // namespace varnholt::check
