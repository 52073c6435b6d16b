// SPDX-License-Identifier: GPL-3.0-or-later
// What a run does about unfinished work, given the definitions of the profile. Deciding changes
// nothing.
#pragma once

#include <vector>

#include "linkbuilder/note.h"
#include "linkbuilder/remedy.h"
#include "model/definition.h"

namespace varnholt::linkbuilder {

struct Treatment {
  enum class Kind {
    /** It waits: its paths are relative, and it began in another folder. */
    elsewhere,
    /** It is left to the operator, for the reason in `why`. */
    leave_alone,
    /** Nothing is left to do. */
    forget,
    /** The copy that stands in the place of a link stays, although it is a link itself. */
    keep_copy,
    /** The remedy is carried out, and then the definition is taken as any other. */
    finish,
    /** The remedy is carried out, and then the link is undone, for which there is no line. */
    undo_again,
  };

  /** Why a work is left to the operator. */
  enum class Why {
    /** Somebody has changed something since. */
    changed,
    /** The profile asks for it no longer. */
    unwanted,
  };

  /** Returns whether a run does nothing with the path of the work after this. */
  bool leaves_path_alone() const;

  Kind kind = Kind::forget;
  Remedy remedy{};
  Why why = Why::changed;
  /** Whether nothing that is left alone needs the note any more, so that the path can be taken. */
  bool settled = false;
};

/** Decides by comparing what stands there, which may take long. */
Treatment treatment_of(const Work& work, const std::vector<model::BakDefFields>& definitions);

}  // namespace varnholt::linkbuilder
