// SPDX-License-Identifier: GPL-3.0-or-later
// The start of the program: the choice of its mode. The window is in a module, which is loaded for
// it alone, so that what runs with root rights carries no toolkit.
#pragma once

/**
 * Runs the program: as the link builder when one of the arguments, apart from the toolkit's
 * options, is "--save_symlink", and otherwise with the window. The module is beside the program, as
 * in a build, or where an installation has it. `argv` begins with the program's own name, and
 * `argc` is the number of its entries. Always returns 0; why there is no window is told on standard
 * error.
 */
int main_main(char** argv, int argc);
