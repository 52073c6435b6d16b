// SPDX-License-Identifier: GPL-3.0-or-later
// Foretells what the next run of the link builder makes of one definition.
#include "foresight/forecast.h"

#include <algorithm>
#include <climits>
#include <tuple>
#include <utility>

#include "base/path.h"
#include "files/mounts.h"
#include "files/way.h"
#include "linkbuilder/backup-name.h"
#include "linkbuilder/decision.h"

namespace varnholt::foresight {
namespace {

bool is_relative(const std::string& path) {
  return !path.starts_with('/');
}

std::optional<Finding> why_no_content(const std::string& content) {
  if (content.empty()) return Finding{problems::source_empty};
  // The content of a link may be as long as a path, see symlink(2).
  if (content.size() >= PATH_MAX) return Finding{problems::name_too_long};
  return std::nullopt;
}

/** The way down to the folder of a new link. */
struct Descent {
  /** The last folder that is there. */
  std::string there;
  /** The folders that are made below it. */
  std::vector<std::string> missing{};
  /** What is in the way; empty for nothing. */
  std::string obstacle{};
};

Descent descent_to(const std::string& path) {
  const auto folder = folder_above(path);
  if (is_folder(folder)) return {folder};
  Descent descent{is_relative(path) ? "." : "/"};
  for (auto end = folder.find('/', 1); end != std::string::npos; end = folder.find('/', end + 1)) {
    const auto prefix = folder.substr(0, end);
    if (!descent.missing.empty() || !is_there(prefix)) {
      descent.missing.push_back(prefix);
    } else if (is_folder(prefix)) {
      descent.there = prefix;
    } else {
      descent.obstacle = prefix;
      break;
    }
  }
  return descent;
}

std::optional<Finding> why_not_made(const Forecast& forecast, const Descent& descent) {
  const auto& to = forecast.definition.to;
  if (!descent.obstacle.empty()) return Finding{problems::path_blocked, descent.obstacle};
  if (auto why = why_no_link_at(to)) return why;
  if (auto why = why_too_long(to)) return why;
  if (auto why = why_nothing_can_be_made(descent.there)) return why;
  if (!can_hold_links(descent.there)) return Finding{problems::no_links, descent.there};
  return why_no_content(forecast.definition.from);
}

void begin_link(Forecast& forecast, const Phrase& outcome, FileSystems& files) {
  forecast.outcome = outcome;
  forecast.footprint.changed = {files.end_of(forecast.definition.to)};
}

/** Foretells that a link by which root would be led astray makes a definition fail. */
void foretell_refusal(Forecast& forecast, const files::Link& link, const Phrase& what_remains,
                      FileSystems& files) {
  begin_link(forecast, outcomes::fails, files);
  forecast.footprint.rely_on(files.entries_on(link.path + '/'));
  forecast.fail({problems::foreign_link, link.path}, what_remains);
}

void foretell_new_link(Forecast& forecast, FileSystems& files) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  if (to.size() >= PATH_MAX) return forecast.fail({problems::name_too_long}, remains::all);
  const auto descent = descent_to(to);
  begin_link(forecast, outcomes::made, files);
  for (const auto& folder : descent.missing) {
    forecast.footprint.made.push_back(files.end_of(folder));
    // Once the folder is there, this leads somewhere else.
    if (last_name(folder) == "..") {
      forecast.add({problems::path_through_missing, folder_above(folder)});
    }
  }
  if (const auto why = why_not_made(forecast, descent)) {
    // The folders are made before the link.
    const bool tries_folders = !descent.missing.empty() && !why_nothing_can_be_made(descent.there);
    return forecast.fail(*why, tries_folders ? remains::folders : remains::all);
  }
  const auto why = files.why_no_room_for_link(descent.there, from, descent.missing.size());
  if (why) forecast.add(*why);
}

void foretell_renewal(Forecast& forecast, FileSystems& files) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  begin_link(forecast, outcomes::replaced, files);
  if (files.is_needed(files.end_of(to))) forecast.add({problems::needed_by_run, to});
  if (const auto why = why_it_must_stay(to)) return forecast.fail(*why, remains::all);
  if (const auto why = why_no_content(from)) return forecast.fail(*why, remains::nothing);
  if (files.leads_through_itself(to)) {
    return forecast.fail({problems::path_through_itself}, remains::nothing);
  }
  if (const auto why = files.why_no_room_for_link(folder_above(to), from)) forecast.add(*why);
}

void leave_alone(Forecast& forecast, const Phrase& reason) {
  forecast.outcome = outcomes::left_alone;
  forecast.reason = reason;
}

/** Takes a forecast back about which nobody can tell. */
void take_back(Forecast& forecast, const Finding& why, FileSystems& files) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  forecast.outcome = outcomes::unknown;
  forecast.reason = {};
  forecast.moved = forecast.deleted = forecast.copied = std::nullopt;
  forecast.findings.clear();
  for (const auto& path : {to, from, linkbuilder::free_backup_name(to)}) {
    const auto end = files.end_of(path);
    forecast.footprint.changed.push_back(end);
    forecast.footprint.whole.push_back(end);
  }
  forecast.add(why);
}

/** Returns the path of a definition along which the way is too long; empty for none. */
std::string too_deep_path(const model::BakDefFields& definition, FileSystems& files) {
  for (const auto& path : {definition.to, definition.from}) {
    if (files.entries_on(path).size() > most_entries) return path;
  }
  return {};
}

void foretell_link(Forecast& forecast, FileSystems& files) {
  auto decision = linkbuilder::decide_link(forecast.definition);
  forecast.content = std::move(decision.content);
  const auto& definition = forecast.definition;
  if (decision.task == linkbuilder::LinkTask::none) {
    forecast.outcome = outcomes::stands;
    return;
  }
  if (decision.task == linkbuilder::LinkTask::unreadable) {
    return leave_alone(forecast, reasons::unreadable);
  }
  if (const auto path = too_deep_path(definition, files); !path.empty()) {
    return take_back(forecast, {problems::too_deep, path}, files);
  }
  const files::Place place{definition.to};
  if (const auto link = linkbuilder::foreign_link(definition, decision.task, place)) {
    return foretell_refusal(forecast, *link, remains::all, files);
  }
  switch (decision.task) {
    case linkbuilder::LinkTask::replace:
      return foretell_renewal(forecast, files);
    case linkbuilder::LinkTask::make:
      return foretell_new_link(forecast, files);
    case linkbuilder::LinkTask::adopt:
      return foretell_adoption(forecast, files);
    default:
      return leave_alone(forecast, reasons::kind);
  }
}

/** Returns whether the link at a place lies in what it leads to, and what it is to be copied to. */
bool lies_in(FileSystems& files, const std::string& original, const std::string& link) {
  const auto spot = files.spot_of(link);
  return std::ranges::any_of(files.mounts().spots_from(original),
                             [&spot](const files::Spot& each) { return files::holds(each, spot); });
}

void foretell_copy(Forecast& forecast, FileSystems& files) {
  const auto& to = forecast.definition.to;
  const auto& content = forecast.content;
  const auto link = files.end_of(to);
  const auto original = files.end_of(content);
  begin_link(forecast, outcomes::copied, files);
  forecast.footprint.rely_on(files.entries_on(content + '/'));
  forecast.footprint.whole = {original};
  if (files.is_needed(link)) forecast.add({problems::needed_by_run, to});
  if (is_relative(content)) forecast.add({problems::relative, content});
  if (const auto why = why_it_must_stay(to)) return forecast.fail(*why, remains::all);
  forecast.copied = files.count(content);
  if (files.leads_through_itself(to)) {
    return forecast.fail({problems::path_through_itself}, remains::nothing);
  }
  if (lies_in(files, original, link)) {
    return forecast.fail({problems::copy_into_itself, content}, remains::nothing);
  }
  const auto why = files.why_no_room(folder_above(to), *forecast.copied, {});
  if (why && why->problem == problems::no_room) return forecast.fail(*why, remains::nothing);
  if (why) forecast.add(*why);
}

void foretell_undoing(Forecast& forecast, FileSystems& files) {
  const auto& to = forecast.definition.to;
  if (const auto path = too_deep_path(forecast.definition, files); !path.empty()) {
    return take_back(forecast, {problems::too_deep, path}, files);
  }
  auto decision = linkbuilder::decide_undo(to);
  forecast.content = std::move(decision.content);
  switch (decision.task) {
    case linkbuilder::UndoTask::copy: {
      const auto& source = forecast.definition.from;
      const auto link = linkbuilder::foreign_link(to, forecast.content, source);
      return link ? foretell_refusal(forecast, *link, remains::all, files)
                  : foretell_copy(forecast, files);
    }
    case linkbuilder::UndoTask::missing:
      return leave_alone(forecast, is_link(to) ? reasons::dangling : reasons::missing);
    case linkbuilder::UndoTask::unreadable:
      return leave_alone(forecast, reasons::unreadable);
    case linkbuilder::UndoTask::leads_nowhere:
      if (is_relative(forecast.content)) forecast.add({problems::relative, forecast.content});
      return leave_alone(forecast, reasons::leads_nowhere);
    case linkbuilder::UndoTask::no_link:
    case linkbuilder::UndoTask::root:
      return leave_alone(forecast, reasons::no_link);
  }
}

/** Takes the forecast back where this user, even as root, cannot see the places. */
void find_hidden(Forecast& forecast, FileSystems& files) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  const auto& outcome = forecast.outcome;
  const bool source_counts = linkbuilder::wants_link(forecast.definition) &&
                             (outcome == outcomes::adopted || outcome == outcomes::fails);
  const bool path_hidden = outcome != outcomes::stands && is_hidden(to);
  if (!path_hidden && !(source_counts && is_hidden(from))) return;
  take_back(forecast, {problems::hidden, path_hidden ? to : from}, files);
}

std::optional<files::Link> foreign_link_for(const linkbuilder::Work& work) {
  const files::Place place{work.to};
  if (work.stage == linkbuilder::Stage::undo) {
    return place.foreign() ? place.foreign() : files::way_behind({}, work.from).foreign;
  }
  return linkbuilder::foreign_link({.from = work.from, .to = work.to}, linkbuilder::LinkTask::adopt,
                                   place);
}

/** Foretells a work for which only the link is missing. */
void foretell_last_step(Forecast& forecast, const linkbuilder::Work& work, FileSystems& files) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  const auto folder = folder_above(to);
  const bool is_adoption = work.stage != linkbuilder::Stage::undo;
  const auto& left = is_adoption ? remains::source : remains::all;
  begin_link(forecast, outcomes::made, files);
  if (is_adoption) {
    auto& footprint = forecast.footprint;
    footprint.whole = {files.end_of(work.path()), files.end_of(without_final_slash(work.from))};
    footprint.changed.insert(footprint.changed.end(), footprint.whole.begin(),
                             footprint.whole.end());
  }
  if (!is_folder(folder)) {
    const bool by_itself = files.leads_through_itself(to);
    return forecast.fail(
        {by_itself ? problems::path_through_itself : problems::path_blocked, folder}, left);
  }
  if (const auto why = why_nothing_can_be_made(folder)) return forecast.fail(*why, left);
  if (!can_hold_links(folder)) return forecast.add({problems::no_links_there, to});
  if (const auto why = files.why_no_room_for_link(folder, from)) forecast.add(*why);
}

/** Adds what holds for every link. */
void complete(Forecast& forecast, FileSystems& files) {
  const auto& to = forecast.definition.to;
  if (is_relative(to) && !to.empty()) forecast.add({problems::relative, to});
  find_hidden(forecast, files);
}

void foretell_others(Forecast& forecast) {
  const auto& definition = forecast.definition;
  if (is_marked(definition)) {
    forecast.outcome = outcomes::dropped;
  } else if (definition.from.empty() || definition.to.empty()) {
    forecast.add({problems::value_missing});
  }
}

}  // namespace

void Footprint::rely_on(const std::vector<std::string>& way) {
  relied.insert(relied.end(), way.begin(), way.end());
}

void Forecast::add(const Finding& finding) {
  findings.push_back(finding);
  sure = sure && !finding.problem.is_doubtful();
}

void Forecast::fail(const Finding& why, const Phrase& what_remains) {
  outcome = outcomes::fails;
  remains = what_remains;
  add(why);
}

bool Forecast::is_neglected() const {
  // A link that has been undone already is what its definition wants.
  const bool undone = reason == reasons::missing || reason == reasons::no_link;
  return outcome == outcomes::left_alone && !undone;
}

bool is_marked(const model::BakDefFields& definition) {
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted);
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
  complete(forecast, files);
  return forecast;
}

Forecast foretell_left_alone(model::BakDefFields definition, FileSystems& files) {
  Forecast forecast{.definition = std::move(definition)};
  leave_alone(forecast, reasons::unfinished);
  complete(forecast, files);
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
    const bool is_moved = next.step == Step::link;
    const auto& left = next.step == Step::move ? remains::backup : remains::all;
    foretell_refusal(forecast, *link, is_moved ? remains::source : left, files);
  } else if (next.step == Step::move) {
    foretell_adoption(forecast, files, work.spelled_backup(), !next.removed.empty());
  } else if (next.step == Step::undo && is_folder(folder_above(work.to))) {
    forecast.content = work.from;
    foretell_copy(forecast, files);
    // A copy that is a link is undone in its turn, and nothing is copied by way of a broken link.
    if (is_link(work.from)) forecast.sure = false;
  } else {
    // An undoing also ends here when its folder is gone, and the link cannot be made again.
    foretell_last_step(forecast, work, files);
  }
  if (!next.removed.empty() && why_it_must_stay(next.removed)) forecast.sure = false;
  return forecast;
}

}  // namespace varnholt::foresight
