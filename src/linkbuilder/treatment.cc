// SPDX-License-Identifier: GPL-3.0-or-later
// What a run does about unfinished work.
#include "linkbuilder/treatment.h"

#include <algorithm>

#include "base/file.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/moves.h"

namespace varnholt::linkbuilder {
namespace {

using Kind = Treatment::Kind;
using Definitions = std::vector<model::BakDefFields>;

/** Returns whether the paths of a work lead to where they led when it began. */
bool is_at_home(const Work& work) {
  const bool absolute = work.from.starts_with('/') && work.to.starts_with('/') &&
                        (!work.undoes() || work.other.starts_with('/'));
  return absolute || work.folder == current_folder();
}

Treatment changed_since(bool settled) {
  return {Kind::leave_alone, {}, Treatment::Why::changed, settled};
}

Treatment treat_adoption(const Work& work, const Definitions& definitions) {
  const bool wanted =
      std::ranges::any_of(definitions, [&work](const model::BakDefFields& definition) {
        return wants_link(definition) && definition.from == work.from && definition.to == work.to;
      });
  if (wanted) {
    const auto remedy = remedy_for(work, definitions);
    if (remedy) return {Kind::finish, *remedy};
    return changed_since(Place{work.path()}.content == work.from);
  }
  if (!work.has_backup() || !is_there(work.other)) return {};
  return {Kind::leave_alone, {}, Treatment::Why::unwanted};
}

/** What the lines of the profile want at the path of a work that undoes a link. */
struct Wishes {
  Wishes(const std::string& path, const Definitions& definitions) {
    for (const auto& each : definitions) {
      if (each.to != path) continue;
      any = true;
      link = link || wants_link(each);
      undoing = undoing || (each.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic) && !wants_link(each));
    }
  }
  bool any = false;
  bool link = false;
  bool undoing = false;
};

Treatment treat_undoing(const Work& work, const Definitions& definitions) {
  const Wishes wishes{work.to, definitions};
  const bool forgotten = work.stage == Stage::again && !wishes.any;
  if (!forgotten && !wishes.link && !wishes.undoing) return {};
  const auto remedy = remedy_for(work, definitions);
  if (!remedy) return changed_since(!wishes.link);
  const bool done = remedy->then == Remedy::Then::done;
  if (done && wishes.undoing && Place{work.to}.is_link()) return {Kind::keep_copy};
  return {forgotten && !done ? Kind::undo_again : Kind::finish, *remedy};
}

}  // namespace

bool Treatment::leaves_path_alone() const {
  switch (kind) {
    case Kind::elsewhere:
    case Kind::keep_copy:
      return true;
    case Kind::leave_alone:
      return !settled;
    case Kind::finish:
    case Kind::undo_again:
      return remedy.then == Remedy::Then::wait;
    case Kind::forget:
      return false;
  }
  return false;
}

Treatment treatment_of(const Work& work, const Definitions& definitions) {
  if (!is_at_home(work)) return {Kind::elsewhere};
  return work.undoes() ? treat_undoing(work, definitions) : treat_adoption(work, definitions);
}

}  // namespace varnholt::linkbuilder
