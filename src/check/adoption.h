// SPDX-License-Identifier: GPL-3.0-or-later
// What comes of a definition at whose path a folder or a file stands.
#pragma once

#include "check/forecast.h"

namespace varnholt::check {

/** Completes the forecast for what is adopted: moved to the source, where other things may stand.
 */
void foretell_adoption(Forecast& forecast, Ground& ground);

}  // namespace varnholt::check
