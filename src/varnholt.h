// SPDX-License-Identifier: GPL-3.0-or-later
// The class Main, which ties the parts of the program together: what belongs to the class as a
// whole. Its link operations are declared in linkbuilder/, its prompts in ui/prompts.h.
#pragma once

#include "base/glib-ptr.h"
#include "linkbuilder/link-builder.h"
#include "linkbuilder/link-operations.h"
#include "ui/prompts.h"

/** The path by which the program was started, as given; none before the start. */
inline varnholt::TextPtr main_s_exe_path;

/**
 * Runs the program with its arguments, its own name first, and their number: as link builder when,
 * apart from the toolkit's own options, one of them is "--save_symlink", else with a window. Always
 * returns 0.
 */
int main_main(char** argv, int argc);
