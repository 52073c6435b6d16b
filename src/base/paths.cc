// SPDX-License-Identifier: GPL-3.0-or-later
// The fixed paths of the installed program.
#include "base/paths.h"

namespace varnholt::paths {

const char* const profile = "/etc/.varnholt.ini";
const char* const unfinished = "/etc/.varnholt.unfinished";
const char* const lock = "/run/varnholt.lock";
const char* const temporary_profile = "/tmp/varnholt.tmp";
const char* const backup_script = "/usr/bin/nollacrest.sh";
const char* const catalogues = VARNHOLT_CATALOGUES;

}  // namespace varnholt::paths
