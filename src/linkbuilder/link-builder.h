// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the link builder over the whole profile.
#pragma once

/**
 * Applies every symbolic definition of the profile to the file system, in the order of the file.
 * Then replaces the profile, as a whole and synced to the disk, by the text that is stored by then
 * without the lines that this run has seen of definitions marked deleted, whatever has come of
 * them; all other lines stay byte for byte. A failed definition is reported and does not stop the
 * run. A run over a profile over which an earlier one was cut off goes on where that one was. No
 * display is needed.
 * From this call on the process reads its standard input from the null device, runs commands in the
 * locale C, has higher limits, ignores SIGPIPE and SIGXFSZ, and handles SIGCHLD in the default way.
 * A stop signal ends it during the call, and has no effect after it; see stop-signals.h.
 */
void main_save_symbolic_dir();
