// SPDX-License-Identifier: GPL-3.0-or-later
// The start of the program: the choice of its mode. The window is a program of its own, so that
// what runs with root rights carries no toolkit.
#pragma once

/**
 * Runs the program: as the link builder when one of the arguments, apart from the toolkit's
 * options, is "--save_symlink", and otherwise by replacing this process with the window's program,
 * which gets all arguments. That program is beside this one, as in a build, or where an
 * installation has it. `argv` begins with the program's own name and ends with a null pointer,
 * before which it has `argc` entries. Always returns 0; that there is no window's program is told
 * on standard error.
 */
int main_main(char** argv, int argc);
