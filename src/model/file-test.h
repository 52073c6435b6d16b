// SPDX-License-Identifier: GPL-3.0-or-later
// The two questions that the program asks about a path.
#pragma once

#include <glib-object.h>

/** A question about a path, registered as an enumeration; nicks "is-dir" and "exists". */
enum VhFileTestType : int {
  VH_FILE_TEST_TYPE_IS_DIR = 0,
  VH_FILE_TEST_TYPE_EXISTS = 1,
};
GType vh_file_test_type_get_type();

/**
 * Asks the file system about `filename` and follows symbolic links, as stat(2) and access(2) do: a
 * dangling link does not exist. Returns false for any other `test`, and false with a critical
 * warning when `filename` is null.
 */
bool vh_FileTests(const char* filename, VhFileTestType test);
