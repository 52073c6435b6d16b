// SPDX-License-Identifier: GPL-3.0-or-later
// The scratch folder that stands in for the root of the file system.
#pragma once

#include <string>

namespace varnholt {

/**
 * Returns the absolute path of the folder, without a final slash: the one that the environment
 * variable VARNHOLT_SCRATCH names, or a new folder below /tmp that is removed when the process
 * ends.
 */
const std::string& scratch_folder();

}  // namespace varnholt
