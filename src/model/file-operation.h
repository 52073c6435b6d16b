// SPDX-License-Identifier: GPL-3.0-or-later
// The operation of a file definition, as a set of flags.
#pragma once

#include <glib-object.h>

/**
 * The operation of a definition: at most one of Update, OverWrite and Symbolic, with or without
 * Deleted. It is registered as flags with the nicks "fot-null", "fot-update", "fot-overwrite",
 * "fot-symbolic" and "fot-deleted".
 */
enum VhFileOperationType : int {
  /** The operation word of the line was not recognised. */
  VH_FILE_OPERATION_TYPE_FOT_NULL = 0,
  VH_FILE_OPERATION_TYPE_FOT_Update = 1,
  VH_FILE_OPERATION_TYPE_FOT_OverWrite = 2,
  /** The target path becomes a symbolic link to the source. */
  VH_FILE_OPERATION_TYPE_FOT_Symbolic = 4,
  /** The next run of the link builder removes the definition from the profile. */
  VH_FILE_OPERATION_TYPE_FOT_Deleted = 8,
};
GType vh_file_operation_type_get_type();

/**
 * Returns whether `value` has `flag`, which must be one of the four single flags: any other value
 * ends the program.
 */
bool vh_IsFileOperationType(int value, int flag);

/**
 * Returns the text of the operation column, for example "覆盖|标记删除". The caller owns it and
 * releases it with g_free().
 */
char* vh_FileOperationType_tostr(int op);
