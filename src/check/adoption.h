// SPDX-License-Identifier: GPL-3.0-or-later
// What comes of a definition at whose path there is a folder or a file.
#pragma once

#include <string>

#include "check/file-systems.h"
#include "check/forecast.h"

namespace varnholt::check {

/** Completes the forecast of an adoption from its first step on. */
void foretell_adoption(Forecast& forecast, FileSystems& files);

/**
 * Does the same when everything that moves has this backup name already. `clears_source` says that
 * whatever is at the source is a part of it and is removed before.
 */
void foretell_rest_of_adoption(Forecast& forecast, const std::string& backup, bool clears_source,
                               FileSystems& files);

}  // namespace varnholt::check
