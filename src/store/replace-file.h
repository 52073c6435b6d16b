// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces files as a whole. A new text is first written beside the file, as FILE.next, so only one
// program at a time may do so. Another file that has this name already is left alone: the new
// text then is in FILE.next.XXXXXX, where the last letters are those of mkostemp(3).
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>

#include "base/glib-ptr.h"

namespace varnholt::store {

/** Returns where the new text for a file is written when that name is free. */
std::string next_to(const char* path);

/**
 * Replaces a file, or makes it, with this text and mode, as a whole and synced to the disk. Returns
 * null, or the error; the file is unchanged then.
 */
ErrorPtr write_file(const char* path, mode_t mode, const std::string& text);

/**
 * Replaces the text of a file by the one that `rewritten` makes of it, with this mode and synced to
 * the disk.
 * A reader sees either the old text or the new one. When somebody moves another text there at the
 * same time, that text is rewritten too, so `rewritten` may be called several times. Returns null,
 * or the error; the newest text then is as it was in the file, or beside it under its new name.
 */
ErrorPtr replace_file(const char* path, mode_t mode,
                      const std::function<std::string(std::string_view)>& rewritten);

/**
 * Removes the new text that one of these functions has left beside a file when it was cut off, if
 * `is_needless` returns true for the text. A folder, a link or another user's file cannot be such a
 * text and stays as well. Returns the name of the entry that stays; empty for none.
 */
std::string remove_leftover(const char* path,
                            const std::function<bool(std::string_view)>& is_needless);

}  // namespace varnholt::store
