// SPDX-License-Identifier: GPL-3.0-or-later
// Reads whole files as texts, brings changes to the disk, and logs unexpected errors of GLib.
#pragma once

#include <string>
#include <string_view>

#include "base/glib-ptr.h"

namespace varnholt {

/** The result of reading a file: its bytes, or the error. */
struct FileText {
  std::string_view text() const { return {bytes.get(), length}; }

  TextPtr bytes;
  gsize length = 0;
  ErrorPtr error;
};

/**
 * Reads a file to its end. A path that names neither a regular file nor a folder, such as a pipe or
 * a device, might block or never end; it is not opened, and the error is G_FILE_ERROR_NXIO.
 */
FileText read_file(const char* path);

/** Returns whether such a file can be read and holds this text, without a copy of it in memory. */
bool file_holds(const char* path, std::string_view text);

/** Returns the current folder; empty when it has none any more. */
std::string current_folder();

/** Returns the folder of the program that runs; empty where /proc is missing. */
std::string program_folder();

/**
 * Waits until the entries of the folder above `path` are on the disk. A failure is ignored, here
 * and in the next function.
 */
void sync_folder_above(const std::string& path);

/** Waits until everything in the file system of that folder is on the disk. */
void sync_file_system(const std::string& path);

/** Returns whether an error belongs to the file layer, whose codes are GFileError values. */
bool is_file_error(const GError& error);

/** Logs a critical warning about an error that the code at this source line does not handle. */
void log_uncaught(const GError& error, const char* source, int line);

}  // namespace varnholt
