// SPDX-License-Identifier: GPL-3.0-or-later
// What a file definition asks for, as a set of flags.
#pragma once

#include <glib-object.h>

/**
 * What a definition asks for: at most one of the first three, with or without Deleted. Registered
 * as flags; nicks "fot-null", "fot-update", "fot-overwrite", "fot-symbolic" and "fot-deleted".
 */
enum VhFileOperationType : int {
  /** The operation word of the line was not recognised. */
  VH_FILE_OPERATION_TYPE_FOT_NULL = 0,
  VH_FILE_OPERATION_TYPE_FOT_Update = 1,
  VH_FILE_OPERATION_TYPE_FOT_OverWrite = 2,
  /** The target path is to be a symbolic link to the source. */
  VH_FILE_OPERATION_TYPE_FOT_Symbolic = 4,
  /** The next run of the link builder takes the definition out of the profile. */
  VH_FILE_OPERATION_TYPE_FOT_Deleted = 8,
};
GType vh_file_operation_type_get_type();

/**
 * Whether `value` has `flag`, which must be one of the four single flags: any other one ends the
 * program.
 */
bool vh_IsFileOperationType(int value, int flag);

/**
 * The text of the operation column, for example "覆盖|标记删除". It belongs to the caller, who
 * releases it with g_free().
 */
char* vh_FileOperationType_tostr(int op);
