// SPDX-License-Identifier: GPL-3.0-or-later
// Whole files as texts, and errors of GLib that nobody foresaw.
#pragma once

#include <string_view>

#include "base/glib-ptr.h"

namespace varnholt {

/** What came of reading a file: its bytes, or why not. */
struct FileText {
  std::string_view text() const { return {bytes.get(), length}; }

  TextPtr bytes;
  gsize length = 0;
  ErrorPtr error;
};

/**
 * Reads a file to its end. What is no file but would be waited for or never end, a pipe or a
 * device, is not opened: G_FILE_ERROR_NXIO.
 */
FileText read_file(const char* path);

/** Whether an error is one of the file layer, whose codes are GFileError values. */
bool is_file_error(const GError& error);

/** Logs, as critical, an error of a kind that its place in a source file does not handle. */
void log_uncaught(const GError& error, const char* source, int line);

}  // namespace varnholt
