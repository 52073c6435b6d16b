// SPDX-License-Identifier: GPL-3.0-or-later
// Finishes what an earlier run of the link builder has begun and left unfinished, because it was
// cut off or because something failed. It brings back the moment before the definition began, so
// that the run can do all of it anew; or, when the data is at the source already, it makes the
// link.
#pragma once

#include <vector>

#include "linkbuilder/note.h"
#include "model/definition.h"

namespace varnholt::linkbuilder {

/**
 * Finishes the works of a note, the newest one first, as far as the definitions of the profile
 * still ask for them. Tells on standard output what it does, and on standard error what it leaves
 * alone in doubt. Returns the works whose definitions this run must leave alone.
 */
std::vector<Work> heal(Note& note, const std::vector<model::BakDefFields>& definitions);

/** Notes that the line of an undoing whose copy has failed leaves the profile. */
void keep_without_line(Work work, Note& note);

}  // namespace varnholt::linkbuilder
