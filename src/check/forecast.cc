// SPDX-License-Identifier: GPL-3.0-or-later
// What the next run of the link builder makes of one definition.
#include "check/forecast.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <optional>
#include <utility>

#include "base/text.h"
#include "check/adoption.h"
#include "check/surface.h"
#include "linkbuilder/backup-name.h"
#include "linkbuilder/places.h"

namespace varnholt::check {
namespace {

bool is_relative(const std::string& path) {
  return !path.starts_with('/');
}

std::optional<Finding> why_no_content(const std::string& content) {
  if (content.empty()) return Finding{Problem::source_empty};
  // The content of a link may be as long as a path, see symlink(2).
  if (content.size() >= PATH_MAX) return Finding{Problem::name_too_long};
  return std::nullopt;
}

/** The folder in which folders and a link are made, and the folders that are missing below it. */
struct Descent {
  std::string there;
  std::vector<std::string> missing;
};

/** Returns the descent to the folder of a path, or what stands in its way. */
std::pair<Descent, std::optional<Finding>> descent_to(const std::string& path) {
  const auto folder = folder_above(path);
  if (is_folder(folder)) return {{folder, {}}, std::nullopt};
  Descent descent{path.starts_with('/') ? "/" : ".", {}};
  for (std::size_t end = folder.find('/', 1); end != std::string::npos;
       end = folder.find('/', end + 1)) {
    const auto prefix = folder.substr(0, end);
    if (!descent.missing.empty() || !is_there(prefix)) {
      descent.missing.push_back(prefix);
    } else if (is_folder(prefix)) {
      descent.there = prefix;
    } else {
      return {descent, Finding{Problem::path_blocked, prefix}};
    }
  }
  return {descent, std::nullopt};
}

std::optional<Finding> why_not_made(const Forecast& forecast, const Descent& descent) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  if (auto why = why_no_link_at(to)) return why;
  if (auto why = why_too_long(to)) return why;
  if (auto why = why_nothing_can_be_made(descent.there)) return why;
  if (!can_hold_links(descent.there)) return Finding{Problem::no_links, descent.there};
  return why_no_content(from);
}

void foretell_new_link(Forecast& forecast, Ground& ground) {
  const auto& to = forecast.definition.to;
  const auto [descent, blocked] = descent_to(to);
  forecast.outcome = Outcome::made;
  const auto way = linkbuilder::way_along(to);
  auto& footprint = forecast.footprint;
  footprint.passed = way.entries;
  footprint.relied = footprint.changed = {way.entries.back()};
  for (const auto& folder : descent.missing) {
    footprint.made.push_back(linkbuilder::way_along(folder).entries.back());
    // Once the folder is there, this leads somewhere else.
    if (last_name(folder) == "..") {
      add(forecast, Problem::path_through_missing, folder_above(folder));
    }
  }
  if (blocked) return fail(forecast, *blocked, Remains::all);
  if (const auto why = why_not_made(forecast, descent)) return fail(forecast, *why, Remains::all);
  check_room_for_link(forecast, descent.there, descent.missing.size(), ground);
}

void foretell_renewal(Forecast& forecast, Ground& ground) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  const auto way = linkbuilder::way_along(to);
  forecast.outcome = Outcome::replaced;
  forecast.footprint.passed = way.entries;
  forecast.footprint.relied = forecast.footprint.changed = {way.entries.back()};
  if (ground.is_needed(way.entries.back())) add(forecast, Problem::needed_by_run, to);
  if (const auto why = why_it_must_stay(to)) return fail(forecast, *why, Remains::all);
  if (const auto why = why_no_content(from)) return fail(forecast, *why, Remains::nothing);
  if (leads_through_itself(to)) {
    return fail(forecast, {Problem::path_through_itself}, Remains::nothing);
  }
  check_room_for_link(forecast, folder_above(to), 0, ground);
}

void foretell_link(Forecast& forecast, Ground& ground) {
  auto decision = linkbuilder::decide_link(forecast.definition);
  forecast.content = std::move(decision.content);
  switch (decision.task) {
    case linkbuilder::LinkTask::none:
      forecast.outcome = Outcome::stands;
      return;
    case linkbuilder::LinkTask::replace:
      return foretell_renewal(forecast, ground);
    case linkbuilder::LinkTask::make:
      return foretell_new_link(forecast, ground);
    case linkbuilder::LinkTask::adopt:
      return foretell_adoption(forecast, ground);
    case linkbuilder::LinkTask::unreadable:
    case linkbuilder::LinkTask::refuse:
      forecast.outcome = Outcome::left_alone;
      forecast.reason =
          decision.task == linkbuilder::LinkTask::refuse ? Reason::kind : Reason::unreadable;
      return;
  }
}

void foretell_copy(Forecast& forecast, Ground& ground) {
  const auto& to = forecast.definition.to;
  const auto& content = forecast.content;
  const auto way = linkbuilder::way_along(to);
  const auto original = linkbuilder::way_along(content);
  const auto followed = linkbuilder::way_along(content + '/');
  const auto& link = way.entries.back();
  forecast.outcome = Outcome::copied;
  forecast.footprint.passed = way.entries;
  forecast.footprint.relied = followed.entries;
  forecast.footprint.relied.push_back(link);
  forecast.footprint.whole = {original.entries.back()};
  forecast.footprint.changed = {link};
  if (ground.is_needed(link)) add(forecast, Problem::needed_by_run, to);
  if (is_relative(content)) add(forecast, Problem::relative, content);
  if (const auto why = why_it_must_stay(to)) return fail(forecast, *why, Remains::all);
  forecast.copied = ground.count(content);
  if (leads_through_itself(to)) {
    return fail(forecast, {Problem::path_through_itself}, Remains::nothing);
  }
  const auto& mounts = ground.mounts();
  const auto spot = mounts.spot_of(link);
  const auto copied = mounts.spots_from(original.entries.back());
  if (std::ranges::any_of(copied, [&spot](const linkbuilder::Spot& each) {
        return linkbuilder::holds(each, spot);
      })) {
    forecast.sure = false;
    return fail(forecast, {Problem::copy_into_itself, content}, Remains::nothing);
  }
  const auto cramped = ground.why_no_room(folder_above(to), *forecast.copied, {});
  if (!cramped) return;
  if (cramped->problem == Problem::no_room) return fail(forecast, *cramped, Remains::nothing);
  add(forecast, cramped->problem, cramped->about);
}

Reason reason_for(linkbuilder::UndoTask task) {
  switch (task) {
    case linkbuilder::UndoTask::missing:
      return Reason::missing;
    case linkbuilder::UndoTask::unreadable:
      return Reason::unreadable;
    case linkbuilder::UndoTask::leads_nowhere:
      return Reason::leads_nowhere;
    default:
      return Reason::no_link;
  }
}

void foretell_undoing(Forecast& forecast, Ground& ground) {
  auto decision = linkbuilder::decide_undo(forecast.definition.to);
  forecast.content = std::move(decision.content);
  if (decision.task == linkbuilder::UndoTask::copy) return foretell_copy(forecast, ground);
  forecast.outcome = Outcome::left_alone;
  forecast.reason = reason_for(decision.task);
  if (forecast.reason == Reason::leads_nowhere && is_relative(forecast.content)) {
    add(forecast, Problem::relative, forecast.content);
  }
  if (forecast.reason == Reason::missing && is_link(forecast.definition.to)) {
    forecast.reason = Reason::dangling;
  }
}

/** Takes back what is told of places that only root can see. */
void find_hidden(Forecast& forecast) {
  if (geteuid() == 0) return;
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  const bool source_counts =
      linkbuilder::wants_link(forecast.definition) && forecast.outcome != Outcome::left_alone &&
      forecast.outcome != Outcome::stands && forecast.outcome != Outcome::made &&
      forecast.outcome != Outcome::replaced;
  const bool path_hidden = is_hidden(to) && forecast.outcome != Outcome::stands;
  if (!path_hidden && !(source_counts && is_hidden(from))) return;
  forecast.outcome = Outcome::unknown;
  forecast.reason = Reason::none;
  forecast.moved = forecast.deleted = forecast.copied = std::nullopt;
  forecast.findings.clear();
  for (const auto& path : {to, from, linkbuilder::free_backup_name(to)}) {
    const auto end = linkbuilder::way_along(path).entries.back();
    forecast.footprint.changed.push_back(end);
    forecast.footprint.whole.push_back(end);
  }
  add(forecast, Problem::hidden, path_hidden ? to : from);
}

void foretell_others(Forecast& forecast) {
  const auto& definition = forecast.definition;
  if (definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) {
    forecast.outcome = Outcome::dropped;
  } else if (definition.from.empty() || definition.to.empty()) {
    add(forecast, Problem::value_missing);
  }
}

}  // namespace

void check_room_for_link(Forecast& forecast, const std::string& folder, std::size_t missing,
                         Ground& ground) {
  // The usual file systems need no block for a short content. A long one does not fit into some.
  constexpr std::size_t short_content = 59;
  constexpr std::size_t long_content = 1000;
  constexpr std::uint64_t page = 4096;
  const auto length = forecast.definition.from.size();
  const auto blocks = missing + (length > short_content ? 1 : 0);
  const Tally need{.folders = missing, .files = 1, .disk_bytes = blocks * page};
  const auto cramped = ground.why_no_room(folder, need, {});
  if (cramped || length > long_content) add(forecast, Problem::little_room, folder);
}

void add(Forecast& forecast, Problem problem, const std::string& about) {
  forecast.findings.push_back({problem, about});
  forecast.sure = forecast.sure && !is_doubtful(problem);
}

void fail(Forecast& forecast, const Finding& why, Remains remains) {
  forecast.outcome = Outcome::fails;
  forecast.remains = remains;
  add(forecast, why.problem, why.about);
}

std::optional<Finding> why_no_link_at(const std::string& path) {
  if (path.empty()) return Finding{Problem::path_empty};
  if (path.ends_with('/')) return Finding{Problem::path_ends_in_slash};
  const auto name = last_name(path);
  if (name == "." || name == "..") return Finding{Problem::path_ends_in_dots};
  return std::nullopt;
}

bool leads_through_itself(const std::string& path) {
  return std::ranges::count(linkbuilder::way_along(folder_above(path)).entries,
                            linkbuilder::way_along(path).entries.back()) > 0;
}

bool is_as_it_should_be(const model::BakDefFields& definition) {
  return !is_relative(definition.to) &&
         linkbuilder::decide_link(definition).task == linkbuilder::LinkTask::none;
}

Forecast foretell(model::BakDefFields definition, bool left_alone, Ground& ground) {
  Forecast forecast{.definition = std::move(definition)};
  if (!forecast.definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic)) {
    foretell_others(forecast);
    return forecast;
  }
  if (left_alone) {
    forecast.outcome = Outcome::left_alone;
    forecast.reason = Reason::unfinished;
  } else if (linkbuilder::wants_link(forecast.definition)) {
    foretell_link(forecast, ground);
  } else {
    foretell_undoing(forecast, ground);
  }
  const auto& to = forecast.definition.to;
  if (is_relative(to) && !to.empty()) {
    add(forecast, Problem::relative, to);
  }
  find_hidden(forecast);
  return forecast;
}

}  // namespace varnholt::check
