// SPDX-License-Identifier: GPL-3.0-or-later
// The operations on links as a run calls them: for plain values, and with a journal that hears of
// each step before it is made. link-operations.h says what they do.
#pragma once

#include <string>

#include "files/way.h"
#include "linkbuilder/journal.h"
#include "model/definition.h"

namespace varnholt::linkbuilder {

/**
 * Makes the link of a definition, from the first step on. `fresh` is the place of the new link that
 * was made right before, or none, and becomes that of this one: so a folder is opened once for all
 * links that are made in it one after another.
 */
void build_symlink(const model::BakDefFields& v, Journal& journal, files::Place& fresh);

/** Does the same from the moment on when everything at the path has its backup name. */
void move_and_link(const model::BakDefFields& v, const std::string& backup, Journal& journal);

/** Does the same from the moment on when everything is at the source. */
void link_or_move_back(const model::BakDefFields& v, Journal& journal);

int build_symlink_imp(const model::BakDefFields& v);
std::string backup_file(const std::string& filename);
bool move_file_force(const std::string& from_fn, const std::string& to_fn, Journal& journal);

/** Undoes a link of a definition with this source. */
void restore_del_symlink(const std::string& link, const std::string& source, Journal& journal);

}  // namespace varnholt::linkbuilder
