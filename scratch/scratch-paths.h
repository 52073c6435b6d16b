// SPDX-License-Identifier: GPL-3.0-or-later
// The scratch folder that stands in for the root of the file system.
#pragma once

#include <string>

namespace varnholt {

/**
 * The absolute path of the folder, without a final slash: what the environment variable
 * VARNHOLT_SCRATCH names, else a new folder below /tmp that goes when the process ends.
 */
const std::string& scratch_folder();

}  // namespace varnholt
