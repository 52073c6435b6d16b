// SPDX-License-Identifier: GPL-3.0-or-later
// The fixed paths of the system. paths.cc holds the real ones; tests of the window, the
// demonstration and the benchmark link another definition, which points into a scratch folder.
#pragma once

namespace varnholt::paths {

/** The profile: all definitions, one a line. Only root may write it. */
extern const char* const profile;
/** Where the next profile is written before it is moved into place with root rights. */
extern const char* const temporary_profile;
/** The backup and distribution script that the definitions are for. */
extern const char* const backup_script;

}  // namespace varnholt::paths
