// SPDX-License-Identifier: GPL-3.0-or-later
// The lines that tell what the program did: progress on standard output, failures on standard
// error, in the order in which things happened even when both go to one pipe.
#pragma once

namespace varnholt {

/** Writes to standard output, printf(3) style. May stay in the buffer until something follows. */
[[gnu::format(printf, 1, 2)]] void print_progress(const char* format, ...);

/** Writes to standard error, printf(3) style, after all progress so far. */
[[gnu::format(printf, 1, 2)]] void print_failure(const char* format, ...);

/** Hands on what was printed so far. Called before a command runs that prints on its own. */
void flush_progress();

}  // namespace varnholt
