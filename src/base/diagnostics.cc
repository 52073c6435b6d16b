// SPDX-License-Identifier: GPL-3.0-or-later
// Prints what the program does, in the order in which it happens.
#include "base/diagnostics.h"

#include <cstdarg>
#include <cstdio>

namespace varnholt {

// This is printf and not g_print, which would convert the bytes of a path to the locale's charset.

void print_progress(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vprintf(format, arguments);
  va_end(arguments);
}

void print_failure(const char* format, ...) {
  flush_progress();
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(stderr, format, arguments);
  va_end(arguments);
}

void flush_progress() {
  std::fflush(stdout);
}

}  // namespace varnholt
