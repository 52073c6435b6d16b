// SPDX-License-Identifier: GPL-3.0-or-later
// The command varnholt-check: its options, and what it prints.
#pragma once

namespace varnholt::check {

/**
 * Runs the command with these arguments and returns its exit status: 0 when nothing would change
 * and nothing is wrong, 1 when something would change, 2 when something is wrong, 3 when the
 * profile cannot be read, 64 when the arguments are wrong.
 */
int run_check(int argc, char** argv);

}  // namespace varnholt::check
