// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the link builder over the whole profile.
#pragma once

/**
 * Applies every symbolic definition of the profile to the file system, in the order of the file.
 * Then replaces the profile, as a whole and synced to the disk, by the text that is stored by then
 * without the lines of the definitions marked deleted that this run has processed; all other lines
 * stay byte for byte. A failed definition is reported and does not stop the run. A run over a
 * profile over which an earlier one was cut off goes on where that one was. No display is needed.
 * From this call on the process reads its standard input from the null device, runs commands in the
 * locale C, ignores SIGPIPE and SIGXFSZ, and handles SIGCHLD in the default way.
 */
void main_save_symbolic_dir();
