// SPDX-License-Identifier: GPL-3.0-or-later
// The fixed paths of the system. paths.cc holds the real ones. The test programs, the demonstration
// and the benchmark link another definition, which points into a scratch folder.
#pragma once

namespace varnholt::paths {

/** The profile, which holds all definitions, one per line. Only root may write it. */
extern const char* const profile;
/** The note of the work that the link builder has not finished; missing while there is none. */
extern const char* const unfinished;
/** The lock of a run of the link builder, a file that only root can open. */
extern const char* const lock;
/** The next profile is written here before it is moved into place with root rights. */
extern const char* const temporary_profile;
/** The backup and distribution script, for which the definitions are made. */
extern const char* const backup_script;
/** The folder of the translations, which may count from that of the program; see gettext(3). */
extern const char* const catalogues;

}  // namespace varnholt::paths
