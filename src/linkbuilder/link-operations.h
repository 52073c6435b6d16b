// SPDX-License-Identifier: GPL-3.0-or-later
// What one symbolic definition does to the file system: its link is made, or undone when the
// definition is marked deleted. Paths are used exactly as the definition spells them. The functions
// print progress to standard output and failures to standard error, and throw no exceptions. A null
// argument logs a critical warning, and the function returns null, 0 or false.
#pragma once

#include "linkbuilder/moves.h"
#include "linkbuilder/note.h"
#include "model/bak-model.h"

/**
 * Makes `to` of a symbolic definition that is not marked deleted a symbolic link to `from`; does
 * nothing for any other definition. A link with another content is replaced. A folder or a regular
 * file at `to` is moved onto `from`, whose earlier content is deleted, and is moved back when the
 * link cannot be made. Missing parent folders of `to` are created with mode 0775, reduced by the
 * umask.
 */
void main_build_symlink(VhBakDefItem* v);

namespace varnholt::linkbuilder {

/** Does the same for a definition as a plain value, and notes what it is about to do. */
void build_symlink(const model::BakDefFields& definition, Note& note);

/** Does what main_build_symlink_imp() does. */
int make_link(const model::BakDefFields& definition);

/** Makes the link of a work whose data is at the source, or moves the data back. */
void link_adopted(Work work, Note& note);

/**
 * Does what main_restore_del_symlink() does for the path of a definition, and notes in this stage
 * what it is about to do. The note then holds a copy that failed, and one that is a link.
 */
void undo_symlink(const model::BakDefFields& definition, Note& note, Stage stage = Stage::undo);

}  // namespace varnholt::linkbuilder

/**
 * Makes the link of a definition with symlink(2), whatever else the definition says. Returns 0, or
 * the result of the call when it failed.
 */
int main_build_symlink_imp(VhBakDefItem* v);

/**
 * Replaces the symbolic link `link` by a recursive copy of what it points to, as cp -r makes it. A
 * relative content counts from the current folder. The original stays where it is.
 */
void main_restore_del_symlink(const char* link);
