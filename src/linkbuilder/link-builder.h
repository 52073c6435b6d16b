// SPDX-License-Identifier: GPL-3.0-or-later
// The link-builder run over the whole profile.
#pragma once

/**
 * Applies every symbolic definition of the profile to the file system, in file order, and writes
 * the profile back, whole and synced to the disk, without the definitions marked deleted; all other
 * lines stay byte for byte. A failed definition is told and does not stop the run. Needs no
 * display. From here on the process reads its standard input from the null device, runs commands in
 * the locale C, ignores SIGPIPE and SIGXFSZ and takes SIGCHLD as usual; it ends with the umask 022.
 */
void main_save_symbolic_dir();
