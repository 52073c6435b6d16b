// SPDX-License-Identifier: GPL-3.0-or-later
// The two questions that the program asks about a path.
#include "model/file-test.h"

#include "base/path.h"

GType vh_file_test_type_get_type() {
  static const GEnumValue values[] = {
      {VH_FILE_TEST_TYPE_IS_DIR, "VH_FILE_TEST_TYPE_IS_DIR", "is-dir"},
      {VH_FILE_TEST_TYPE_EXISTS, "VH_FILE_TEST_TYPE_EXISTS", "exists"},
      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("VhFileTestType", values);
  return type;
}

bool vh_FileTests(const char* filename, VhFileTestType test) {
  g_return_val_if_fail(filename != NULL, false);
  if (test == VH_FILE_TEST_TYPE_EXISTS) return varnholt::exists(filename);
  return test == VH_FILE_TEST_TYPE_IS_DIR && varnholt::is_folder(filename);
}
