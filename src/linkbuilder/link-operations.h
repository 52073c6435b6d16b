// SPDX-License-Identifier: GPL-3.0-or-later
// What one symbolic definition does to the file system: its link is made, or undone when the
// definition is marked deleted. Paths are used exactly as the definition spells them. The functions
// print progress to standard output and failures to standard error, and throw no exceptions. A null
// argument logs a critical warning, and the function returns null, 0 or false.
#pragma once

#include "model/bak-model.h"

/**
 * Makes `to` of a symbolic definition that is not marked deleted a symbolic link to `from`; does
 * nothing for any other definition. A link with another content is replaced. A folder or a regular
 * file at `to` is moved onto `from`, whose earlier content is deleted, and is moved back when the
 * link cannot be made. Missing parent folders of `to` are created with mode 0775, reduced by the
 * umask.
 */
void main_build_symlink(VhBakDefItem* v);

/**
 * Makes the link of a definition with symlink(2), whatever else the definition says. Returns 0, or
 * the result of the call when it failed.
 */
int main_build_symlink_imp(VhBakDefItem* v);

/**
 * Renames `filename` to the first of FILENAME.bak_0 to FILENAME.bak_999 at which nothing exists,
 * not even a dangling link, and to which it can be renamed. Returns the new name, or "" when no
 * name works; the caller releases it with g_free().
 */
char* main_backup_file(const char* filename);

/**
 * Deletes what exists at `to_fn` and moves `from_fn` there. One "/" at the end of either path is
 * ignored, and a path that names a link means the link itself. Nothing is deleted or moved when the
 * deletion would remove what has to be moved, however the two paths are spelled. Returns whether
 * `to_fn` now holds what was at `from_fn`.
 */
bool main_move_file_force(const char* from_fn, const char* to_fn);

/**
 * Replaces the symbolic link `link` by a recursive copy of what it points to, as cp -r makes it. A
 * relative content counts from the current folder. The original stays where it is.
 */
void main_restore_del_symlink(const char* link);
