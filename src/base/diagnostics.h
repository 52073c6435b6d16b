// SPDX-License-Identifier: GPL-3.0-or-later
// Prints what the program does: progress to standard output and failures to standard error, in the
// order in which it happens even when both go to one pipe.
#pragma once

namespace varnholt {

/** Writes to standard output as printf(3) does. The text may wait for flush_progress(). */
[[gnu::format(printf, 1, 2)]] void print_progress(const char* format, ...);

/** Writes to standard error as printf(3) does, after all progress that was printed before. */
[[gnu::format(printf, 1, 2)]] void print_failure(const char* format, ...);

/** Flushes standard output. It is called before a command runs that prints on its own. */
void flush_progress();

}  // namespace varnholt
