// SPDX-License-Identifier: GPL-3.0-or-later
// Goes on with what an earlier run of the link builder has begun and left unfinished, because it
// was cut off or because something failed.
#pragma once

#include "linkbuilder/journal.h"
#include "linkbuilder/unfinished.h"

namespace varnholt::linkbuilder {

/**
 * Goes on with each unfinished work at its noted step, the newest one first, given the definitions
 * of the profile, and those of them that the run is still to take. Prints what it does to
 * standard output, and what stays unfinished, and why, to standard error.
 */
void resume(Journal& journal, const store::Definitions& all, const store::Definitions& to_come);

}  // namespace varnholt::linkbuilder
