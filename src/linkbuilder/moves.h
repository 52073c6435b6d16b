// SPDX-License-Identifier: GPL-3.0-or-later
// Moves what stands at the path of a link out of the way, and onto the source.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>

#include "base/path.h"

namespace varnholt::linkbuilder {

/** Returns the inode of what is at a path, and 0 for nothing. A link is not followed. */
ino_t inode_at(const std::string& path);

/** Returns whether the folders above two paths are there, and on different file systems. */
bool is_elsewhere(const std::string& path, const std::string& other);

/** Returns whether mv(1) renames a folder in its place by a copy, as overlays make it do. */
bool renames_by_copy(const std::string& path);

/** What stands between a path and the number in the name of its backup. */
constexpr std::string_view backup_mark = ".bak_";

/** Returns whether a path is absolute and ends as the name of a backup does. */
bool is_backup_name(std::string_view path);

/** Returns the path as the backup with this number is called. */
std::string backup_name(const std::string& path, int number);

/** Returns the first backup name at which nothing exists; empty when there is none. */
std::string free_backup_name(const std::string& path);

/** What is to be done at a place before something moves there. */
enum class Clearing {
  /** Nothing that exists stands there. */
  none,
  /** What stands there is deleted. */
  remove,
  /** The deletion would remove what has to be moved, or not what stands there. */
  refuse,
};

/** Decides for two paths without a final slash. */
Clearing clearing_for(const std::string& from, const std::string& to);

/**
 * Does what main_move_file_force() does, and calls `begin_move` between the deletion and the move,
 * which is not made when it returns false.
 */
bool move_file(const char* from_fn, const char* to_fn, const std::function<bool()>& begin_move);

}  // namespace varnholt::linkbuilder

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
