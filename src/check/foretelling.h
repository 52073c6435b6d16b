// SPDX-License-Identifier: GPL-3.0-or-later
// Foretells what the next run of the link builder makes of one definition, as things are now.
#pragma once

#include "check/file-systems.h"
#include "check/forecast.h"
#include "linkbuilder/unfinished.h"
#include "model/definition.h"

namespace varnholt::check {

/** Returns whether a link is as it should be, so that nothing comes of its definition. */
bool is_as_it_should_be(const model::BakDefFields& definition);

/** Foretells what comes of a definition, without regard to those before it. */
Forecast foretell(model::BakDefFields definition, FileSystems& files);

/** Foretells a definition that the run leaves alone because of an unfinished work. */
Forecast foretell_left_alone(model::BakDefFields definition);

/** Foretells what comes of a definition when the run goes on with its unfinished work. */
Forecast foretell_rest(model::BakDefFields definition, const linkbuilder::Work& work,
                       const linkbuilder::Continuation& next, FileSystems& files);

}  // namespace varnholt::check
