// SPDX-License-Identifier: GPL-3.0-or-later
// Foretells what the next run of the link builder makes of one definition.
#include "check/foretelling.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <optional>
#include <utility>

#include "base/path.h"
#include "check/adoption.h"
#include "files/mounts.h"
#include "files/way.h"
#include "linkbuilder/backup-name.h"
#include "linkbuilder/decision.h"

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

/** Returns the descent to the folder of a path, and the obstacle in its way. */
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

/** Returns what remains when a new link fails: its folders are made before. */
Remains remains_without(const Forecast& forecast, const Descent& descent) {
  const bool tries_folders = !descent.missing.empty() && forecast.definition.to.size() < PATH_MAX &&
                             !why_nothing_can_be_made(descent.there);
  return tries_folders ? Remains::folders : Remains::all;
}

/** Adds a doubt when a link, and the folders above it that are missing, may not fit. */
void check_room_for_link(Forecast& forecast, const std::string& folder, std::size_t missing,
                         FileSystems& files) {
  const auto length = forecast.definition.from.size();
  const auto why = files.why_no_room_for_link(folder, length, missing);
  if (why) add(forecast, why->problem, why->about);
}

void leave_footprint_of_link(Forecast& forecast) {
  auto& footprint = forecast.footprint;
  footprint.passed = files::way_along(forecast.definition.to).entries;
  footprint.relied = footprint.changed = {footprint.passed.back()};
}

/** Foretells that a link by which root would be led astray makes a definition fail. */
void foretell_refusal(Forecast& forecast, const files::Link& link, Remains remains) {
  leave_footprint_of_link(forecast);
  forecast.footprint.relied.push_back(link.path);
  fail(forecast, {Problem::foreign_link, link.path}, remains);
}

void foretell_new_link(Forecast& forecast, FileSystems& files) {
  const auto& to = forecast.definition.to;
  const auto [descent, blocked] = descent_to(to);
  forecast.outcome = Outcome::made;
  leave_footprint_of_link(forecast);
  for (const auto& folder : descent.missing) {
    forecast.footprint.made.push_back(files::way_along(folder).entries.back());
    // Once the folder is there, this leads somewhere else.
    if (last_name(folder) == "..") {
      add(forecast, Problem::path_through_missing, folder_above(folder));
    }
  }
  if (blocked) return fail(forecast, *blocked, Remains::all);
  if (const auto why = why_not_made(forecast, descent)) {
    return fail(forecast, *why, remains_without(forecast, descent));
  }
  check_room_for_link(forecast, descent.there, descent.missing.size(), files);
}

void foretell_renewal(Forecast& forecast, FileSystems& files) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  forecast.outcome = Outcome::replaced;
  leave_footprint_of_link(forecast);
  if (files.is_needed(forecast.footprint.passed.back())) add(forecast, Problem::needed_by_run, to);
  if (const auto why = why_it_must_stay(to)) return fail(forecast, *why, Remains::all);
  if (const auto why = why_no_content(from)) return fail(forecast, *why, Remains::nothing);
  if (leads_through_itself(to)) {
    return fail(forecast, {Problem::path_through_itself}, Remains::nothing);
  }
  check_room_for_link(forecast, folder_above(to), 0, files);
}

void foretell_link(Forecast& forecast, FileSystems& files) {
  auto decision = linkbuilder::decide_link(forecast.definition);
  forecast.content = std::move(decision.content);
  if (decision.task == linkbuilder::LinkTask::none) {
    forecast.outcome = Outcome::stands;
    return;
  }
  const auto& definition = forecast.definition;
  if (const auto link =
          linkbuilder::foreign_link(definition, decision.task, files::Place{definition.to})) {
    return foretell_refusal(forecast, *link, Remains::all);
  }
  switch (decision.task) {
    case linkbuilder::LinkTask::replace:
      return foretell_renewal(forecast, files);
    case linkbuilder::LinkTask::make:
      return foretell_new_link(forecast, files);
    case linkbuilder::LinkTask::adopt:
      return foretell_adoption(forecast, files);
    default:
      forecast.outcome = Outcome::left_alone;
      forecast.reason =
          decision.task == linkbuilder::LinkTask::refuse ? Reason::kind : Reason::unreadable;
      return;
  }
}

void foretell_copy(Forecast& forecast, FileSystems& files) {
  const auto& to = forecast.definition.to;
  const auto& content = forecast.content;
  const auto way = files::way_along(to);
  const auto original = files::way_along(content);
  const auto followed = files::way_along(content + '/');
  const auto& link = way.entries.back();
  forecast.outcome = Outcome::copied;
  forecast.footprint.passed = way.entries;
  forecast.footprint.relied = followed.entries;
  forecast.footprint.relied.push_back(link);
  forecast.footprint.whole = {original.entries.back()};
  forecast.footprint.changed = {link};
  if (files.is_needed(link)) add(forecast, Problem::needed_by_run, to);
  if (is_relative(content)) add(forecast, Problem::relative, content);
  if (const auto why = why_it_must_stay(to)) return fail(forecast, *why, Remains::all);
  forecast.copied = files.count(content);
  if (leads_through_itself(to)) {
    return fail(forecast, {Problem::path_through_itself}, Remains::nothing);
  }
  const auto& mounts = files.mounts();
  const auto spot = mounts.spot_of(link);
  const auto copied = mounts.spots_from(original.entries.back());
  if (std::ranges::any_of(copied,
                          [&spot](const files::Spot& each) { return files::holds(each, spot); })) {
    forecast.sure = false;
    return fail(forecast, {Problem::copy_into_itself, content}, Remains::nothing);
  }
  if (const auto why = files.why_no_room(folder_above(to), *forecast.copied, {})) {
    if (why->problem == Problem::no_room) return fail(forecast, *why, Remains::nothing);
    add(forecast, why->problem, why->about);
  }
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

void foretell_undoing(Forecast& forecast, FileSystems& files) {
  auto decision = linkbuilder::decide_undo(forecast.definition.to);
  forecast.content = std::move(decision.content);
  if (decision.task == linkbuilder::UndoTask::copy) {
    const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
    const auto link = linkbuilder::foreign_link(to, forecast.content, from);
    return link ? foretell_refusal(forecast, *link, Remains::all) : foretell_copy(forecast, files);
  }
  forecast.outcome = Outcome::left_alone;
  forecast.reason = reason_for(decision.task);
  if (forecast.reason == Reason::leads_nowhere && is_relative(forecast.content)) {
    add(forecast, Problem::relative, forecast.content);
  }
  if (forecast.reason == Reason::missing && is_link(forecast.definition.to)) {
    forecast.reason = Reason::dangling;
  }
}

/** Takes the forecast back where only root can see the places. */
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
    const auto end = files::way_along(path).entries.back();
    forecast.footprint.changed.push_back(end);
    forecast.footprint.whole.push_back(end);
  }
  add(forecast, Problem::hidden, path_hidden ? to : from);
}

/** Foretells the undoing of a link that is made again first. */
void foretell_second_undoing(Forecast& forecast, const linkbuilder::Work& work,
                             FileSystems& files) {
  forecast.content = work.from;
  foretell_copy(forecast, files);
  // A copy that is a link is undone in its turn, and nothing is copied by way of a broken link.
  if (is_link(work.from)) forecast.sure = false;
}

std::optional<files::Link> foreign_link_for(const linkbuilder::Work& work) {
  if (work.stage == linkbuilder::Stage::undo) {
    return linkbuilder::foreign_link(work.to, work.from, work.from);
  }
  return linkbuilder::foreign_link({.from = work.from, .to = work.to}, linkbuilder::LinkTask::adopt,
                                   files::Place{work.to});
}

/** Foretells a work for which only the link is missing. */
void foretell_last_step(Forecast& forecast, const linkbuilder::Work& work, FileSystems& files) {
  const auto& to = forecast.definition.to;
  const auto folder = folder_above(to);
  const bool is_adoption = work.stage != linkbuilder::Stage::undo;
  leave_footprint_of_link(forecast);
  if (is_adoption) {
    for (const auto& path : {work.path(), without_final_slash(work.from)}) {
      const auto end = files::way_along(path).entries.back();
      forecast.footprint.relied.push_back(end);
      forecast.footprint.whole.push_back(end);
      forecast.footprint.changed.push_back(end);
    }
  }
  forecast.outcome = Outcome::made;
  const auto remains = is_adoption ? Remains::source : Remains::all;
  if (!is_folder(folder)) {
    const bool by_itself = leads_through_itself(to);
    return fail(forecast,
                {by_itself ? Problem::path_through_itself : Problem::path_blocked, folder},
                remains);
  }
  if (const auto why = why_nothing_can_be_made(folder)) return fail(forecast, *why, remains);
  if (!can_hold_links(folder)) return add(forecast, Problem::no_links_there, to);
  check_room_for_link(forecast, folder, 0, files);
}

/** Adds what holds for every link. */
void complete(Forecast& forecast) {
  const auto& to = forecast.definition.to;
  if (is_relative(to) && !to.empty()) add(forecast, Problem::relative, to);
  find_hidden(forecast);
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

bool is_as_it_should_be(const model::BakDefFields& definition) {
  return !is_relative(definition.to) &&
         linkbuilder::decide_link(definition).task == linkbuilder::LinkTask::none;
}

Forecast foretell(model::BakDefFields definition, FileSystems& files) {
  Forecast forecast{.definition = std::move(definition)};
  if (!forecast.definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic)) {
    foretell_others(forecast);
    return forecast;
  }
  if (linkbuilder::wants_link(forecast.definition)) {
    foretell_link(forecast, files);
  } else {
    foretell_undoing(forecast, files);
  }
  complete(forecast);
  return forecast;
}

Forecast foretell_left_alone(model::BakDefFields definition) {
  Forecast forecast{.definition = std::move(definition)};
  forecast.outcome = Outcome::left_alone;
  forecast.reason = Reason::unfinished;
  complete(forecast);
  return forecast;
}

Forecast foretell_rest(model::BakDefFields definition, const linkbuilder::Work& work,
                       const linkbuilder::Continuation& next, FileSystems& files) {
  using Step = linkbuilder::Continuation::Step;
  if (next.step == Step::begin) {
    auto forecast = foretell(std::move(definition), files);
    forecast.sure = forecast.sure && next.removed.empty();
    return forecast;
  }
  Forecast forecast{.definition = std::move(definition)};
  if (const auto link = foreign_link_for(work)) {
    const bool is_aside = next.step == Step::move;
    const bool is_moved = next.step == Step::link;
    foretell_refusal(forecast, *link,
                     is_aside   ? Remains::backup
                     : is_moved ? Remains::source
                                : Remains::all);
  } else if (next.step == Step::move) {
    foretell_rest_of_adoption(forecast, work.backup, !next.removed.empty(), files);
  } else if (next.step == Step::undo) {
    foretell_second_undoing(forecast, work, files);
  } else {
    foretell_last_step(forecast, work, files);
  }
  if (!next.removed.empty() && why_it_must_stay(next.removed)) forecast.sure = false;
  return forecast;
}

}  // namespace varnholt::check
