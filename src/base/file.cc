// SPDX-License-Identifier: GPL-3.0-or-later
// Whole files as texts, and errors of GLib that nobody foresaw.
#include "base/file.h"

namespace varnholt {

FileText read_file(const char* path) {
  FileText file;
  g_file_get_contents(path, out(file.bytes), &file.length, out(file.error));
  return file;
}

bool is_file_error(const GError& error) {
  return error.domain == G_FILE_ERROR;
}

void log_uncaught(const GError& error, const char* source, int line) {
  g_critical("file %s: line %d: uncaught error: %s", source, line, error.message);
}

}  // namespace varnholt
