// SPDX-License-Identifier: GPL-3.0-or-later
// The function that the program looks up in the module with the window.
#pragma once

extern "C" {

/**
 * Runs window mode until the window is gone, with the arguments of the program, whose own path is
 * the first one. That there is no display is told on standard error.
 */
void varnholt_run_window_mode(int argc, char** argv);

}  // extern "C"
