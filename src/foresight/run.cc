// SPDX-License-Identifier: GPL-3.0-or-later
// Foretells a run: the note of an earlier one first, then definition by definition.
#include "foresight/run.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "base/path.h"
#include "base/paths.h"
#include "linkbuilder/backup-name.h"
#include "linkbuilder/decision.h"
#include "store/definitions.h"

namespace varnholt::foresight {
namespace {

using Step = linkbuilder::Continuation::Step;

constexpr std::pair<Step, Phrase> outlooks[] = {
    {Step::forget, {"forget", N_("Nothing is left to do.")}},
    {Step::begin, {"begin", N_("It begins anew.")}},
    {Step::move, {"move", N_("The next run tries to move %3 on to %2, and to make the link.")}},
    {Step::link, {"link", N_("The data is at %2, and the next run tries to make the link.")}},
    {Step::undo, {"undo", N_("The link %1 is made again, and undone once more.")}},
    {Step::restore_link, {"restore-link", N_("The link %1 is made again.")}},
    {Step::wait, {"wait", N_("What it needs is not where it was, so it waits.")}},
    {Step::leave_changed,
     {"leave-changed", N_("It is left alone, because somebody has changed something since.")}},
    {Step::forget_changed,
     {"forget-changed", N_("It is left alone, because somebody has changed something since.")}},
    {Step::leave_unwanted,
     {"leave-unwanted", N_("It is left alone, because the profile asks for it no longer.")}}};

/** The knowledge by the line to which the run has come. */
struct Course {
  Course(FileSystems& machine, Dependencies& changed)
      : files(machine), changes(changed), unfinished(machine) {}

  FileSystems& files;
  /** What the lines before may change; line 0 is the unfinished work of earlier runs. */
  Dependencies& changes;
  Run run{};
  /** What the lines before may leave unfinished, so that the later ones leave it alone. */
  Dependencies unfinished;
  /** The works that certainly stay unfinished. */
  std::vector<linkbuilder::Work> left;
  linkbuilder::PlacesOfWorks places;
  /** The forecasts of the lines whose work goes on before the first line is taken. */
  std::map<std::size_t, Forecast> resumed;
  bool note_hidden = false;
  /** The last line that takes away what the run itself needs; 0 for none. */
  std::size_t breaking_line = 0;
};

bool is_symbolic(const model::BakDefFields& definition) {
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic);
}

/** Returns where the source of a definition is; that of a link counts from the link. */
std::string target_of(const model::BakDefFields& definition) {
  const bool from_link = linkbuilder::wants_link(definition) && !definition.from.starts_with('/');
  return from_link ? folder_above(definition.to) + definition.from : definition.from;
}

/** Returns where the link builder looks for unfinished work before it takes a definition. */
Footprint ways_of(const model::BakDefFields& definition, FileSystems& files) {
  Footprint footprint;
  for (const auto& path : {definition.to, definition.from}) {
    footprint.rely_on(files.entries_on(without_final_slash(path)));
    footprint.whole.push_back(footprint.relied.back());
  }
  return footprint;
}

/** Returns where a definition looks of which nothing comes. */
Footprint look_of(const Forecast& forecast, FileSystems& files) {
  Footprint footprint;
  footprint.rely_on(files.entries_on(forecast.definition.to));
  if (forecast.outcome == outcomes::stands) return footprint;
  // Whether a link leads anywhere decides about its undoing.
  footprint.rely_on(files.entries_on(forecast.definition.to + '/'));
  footprint.rely_on(files.entries_on(forecast.content));
  return footprint;
}

/** Returns the work that a definition leaves unfinished when it fails. */
linkbuilder::Work work_of(const Forecast& forecast, FileSystems& files) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  if (is_marked(forecast.definition)) {
    return {.stage = linkbuilder::Stage::undo, .from = forecast.content, .to = to};
  }
  const auto path = files.end_of(to);
  auto backup = linkbuilder::free_backup_name(path);
  if (backup.empty()) backup = linkbuilder::backup_name(path, 0);
  return {.from = from, .to = to, .backup = std::move(backup)};
}

Footprint places_of(const linkbuilder::Work& work, FileSystems& files) {
  Footprint places;
  for (const auto& path : {work.path(), work.backup, without_final_slash(work.from)}) {
    if (!path.empty()) places.changed.push_back(files.end_of(path));
  }
  return places;
}

/** Returns whether the work on a definition fails and then stays unfinished. */
bool leaves_work(const Forecast& forecast) {
  const auto is_refusal = [](const Finding& each) {
    return each.problem == problems::foreign_link;
  };
  return forecast.outcome == outcomes::fails &&
         std::ranges::none_of(forecast.findings, is_refusal) &&
         (forecast.moved || forecast.remains == remains::source || is_marked(forecast.definition));
}

/** Returns the lines before on which a forecast depends. */
std::set<std::size_t> lines_before(const Forecast& forecast, Course& course) {
  const auto& definition = forecast.definition;
  std::set<std::size_t> lines;
  if (!course.changes.empty()) {
    const auto& footprint = forecast.footprint;
    const auto passed = course.files.entries_on(definition.to);
    lines = course.changes.lines_before(
        footprint.changed.empty() ? look_of(forecast, course.files) : footprint, passed);
    if (!course.left.empty() || !course.unfinished.empty()) {
      // A link above the source decides whether the source lies in an unfinished work.
      const auto way = course.files.entries_on(folder_above(definition.from));
      lines.merge(course.changes.lines_before({}, way));
    }
  }
  if (!course.unfinished.empty()) {
    lines.merge(course.unfinished.lines_before(ways_of(definition, course.files)));
  }
  // A note that only root can read may say anything, and a broken run does nothing more.
  const bool stands = forecast.outcome == outcomes::stands;
  if (course.note_hidden && !stands) lines.insert(0);
  if (course.breaking_line > 0 && !stands) lines.insert(course.breaking_line);
  return lines;
}

void depend_on(const std::set<std::size_t>& lines, Forecast& forecast) {
  forecast.depends_on.assign(lines.begin(), lines.end());
  forecast.sure = forecast.sure && lines.empty();
}

/** Remembers what a line may change, and what it may leave unfinished. */
void remember(std::size_t line, Forecast& forecast, Course& course) {
  const auto breaks = [](const Finding& each) { return each.problem == problems::needed_by_run; };
  if (std::ranges::any_of(forecast.findings, breaks)) course.breaking_line = line;
  // A definition that certainly fails at once changes nothing, except for new folders.
  const bool keeps_all = forecast.outcome == outcomes::fails && forecast.remains == remains::all;
  if (keeps_all && forecast.sure) forecast.footprint.changed.clear();
  course.changes.add(line, forecast.footprint);
  if (forecast.sure && !leaves_work(forecast)) return;
  course.unfinished.add(line, places_of(work_of(forecast, course.files), course.files));
}

/** Returns the line that an unfinished work is about, or the work as one without a number. */
Line line_of(const UnfinishedWork& unfinished, const Lines& lines) {
  const auto& work = unfinished.work;
  const bool undone = unfinished.next.step == Step::undo;
  const auto line = std::ranges::find_if(lines, [&](const Line& each) {
    const auto& definition = each.definition;
    const bool fits = undone ? linkbuilder::wants_undoing(definition)
                             : linkbuilder::wants_link(definition) && definition.from == work.from;
    return fits && definition.to == work.to;
  });
  if (line != lines.end()) return *line;
  const int mark = undone ? VH_FILE_OPERATION_TYPE_FOT_Deleted : 0;
  return {0, {.from = work.from, .to = work.to, .op = VH_FILE_OPERATION_TYPE_FOT_Symbolic | mark}};
}

/** Foretells a work with which the run goes on. */
void resume(const UnfinishedWork& unfinished, const Lines& lines, Course& course) {
  const auto& [work, next, outlook] = unfinished;
  auto line = line_of(unfinished, lines);
  auto forecast = foretell_rest(std::move(line.definition), work, next, course.files);
  depend_on(lines_before(forecast, course), forecast);
  if (line.number > 0) course.resumed.emplace(line.number, forecast);
  if (!forecast.sure || !leaves_work(forecast)) return remember(0, forecast, course);
  const bool has_backup = next.step == Step::move;
  course.left.push_back(has_backup ? work : work_of(forecast, course.files));
  const bool changes_nothing =
      has_backup && forecast.remains == remains::backup && next.removed.empty();
  if (!changes_nothing) course.changes.add(0, forecast.footprint);
}

/** Foretells what comes of the note of an earlier run, with which the next one begins. */
void take_note(std::string_view profile, const Lines& lines, Course& course) {
  auto& run = course.run;
  const auto stored = linkbuilder::stored_note(paths::unfinished, 0);
  if (!stored.why.empty()) run.why_no_note = {problems::note_unread, stored.why};
  course.note_hidden = stored.error == EACCES;
  const auto& note = stored.note;
  const bool same_profile = note.line > 0 && note.profile == linkbuilder::digest_of(profile);
  if (same_profile) run.lines_done = note.line;
  if (note.works.empty()) return;
  const auto all = store::definitions_after(0, profile);
  const auto to_come = store::definitions_after(run.lines_done, profile);
  const std::vector<linkbuilder::Work> newest_first{note.works.rbegin(), note.works.rend()};
  for (const auto& work : newest_first) {
    const auto next = linkbuilder::continuation_of(work, all, to_come);
    const auto* const outlook =
        std::ranges::find(outlooks, next.step, &std::pair<Step, Phrase>::first);
    run.unfinished.push_back({work, next, outlook->second});
    if (next.waits()) {
      course.left.push_back(work);
    } else if (next.step != Step::forget && next.step != Step::forget_changed) {
      resume(run.unfinished.back(), lines, course);
    }
  }
}

/** Foretells a line with which an earlier run has done. */
Forecast foretell_done(model::BakDefFields definition) {
  const bool stands = definition.to.starts_with('/') &&
                      linkbuilder::decide_link(definition).task == linkbuilder::LinkTask::none;
  const auto& outcome = is_marked(definition) ? outcomes::dropped
                        : stands              ? outcomes::stands
                                              : outcomes::none;
  return {.definition = std::move(definition), .outcome = outcome};
}

/** Foretells a line whose work has gone on already when the run comes to it. */
Forecast foretell_resumed(std::size_t line, Course& course) {
  auto forecast = std::move(course.resumed.extract(line).mapped());
  auto lines = lines_before(forecast, course);
  // This line itself is among what an earlier run has left.
  lines.erase(0);
  const bool changed_since = !lines.empty();
  lines.insert(forecast.depends_on.begin(), forecast.depends_on.end());
  depend_on(lines, forecast);
  if (changed_since) remember(line, forecast, course);
  return forecast;
}

/** Takes the definition of a line, and foretells what comes of it. */
Forecast foretell_line(Line& line, Course& course) {
  auto& definition = line.definition;
  if (!is_symbolic(definition)) return foretell(std::move(definition), course.files);
  const bool resumed = course.resumed.contains(line.number);
  if (line.number <= course.run.lines_done && !resumed) return foretell_done(std::move(definition));
  if (resumed) return foretell_resumed(line.number, course);
  const bool left_alone = course.places.touched_by(definition, course.left) != nullptr;
  auto forecast = left_alone ? foretell_left_alone(std::move(definition), course.files)
                             : foretell(std::move(definition), course.files);
  depend_on(lines_before(forecast, course), forecast);
  remember(line.number, forecast, course);
  return forecast;
}

void find_same_paths(Run& run) {
  std::unordered_map<std::string_view, std::size_t> first_lines;
  for (auto& forecast : run.definitions) {
    if (forecast.line <= run.lines_done || !is_symbolic(forecast.definition)) continue;
    const auto [first, is_new] = first_lines.emplace(forecast.definition.to, forecast.line);
    if (!is_new) forecast.add({problems::same_path, std::to_string(first->second)});
  }
}

void find_missing_source(Forecast& forecast, const Course& course) {
  const auto& definition = forecast.definition;
  const auto& outcome = forecast.outcome;
  const bool done = is_symbolic(definition) && outcome == outcomes::none;
  if (done || is_marked(definition) || definition.from.empty()) return;
  const auto why = why_no_source(target_of(definition), course.files, course.changes);
  if (!why || outcome == outcomes::unknown) return;
  const bool hidden = why->problem == problems::hidden;
  const bool is_link =
      outcome == outcomes::stands || outcome == outcomes::made || outcome == outcomes::replaced;
  if (!hidden && is_link) return forecast.add({problems::leads_nowhere, definition.from});
  if (hidden || outcome == outcomes::none) forecast.add({why->problem, definition.from});
}

}  // namespace

Run foretell_run(std::string_view profile, Lines lines, FileSystems& files, Dependencies& changes) {
  Course course{files, changes};
  take_note(profile, lines, course);
  auto& definitions = course.run.definitions;
  definitions.reserve(lines.size());
  for (auto& line : lines) {
    definitions.push_back(foretell_line(line, course));
    definitions.back().line = line.number;
  }
  find_same_paths(course.run);
  for (auto& forecast : definitions) find_missing_source(forecast, course);
  return std::move(course.run);
}

std::optional<Finding> why_no_source(const std::string& source, FileSystems& files,
                                     const Dependencies& changes) {
  if (exists(source)) return std::nullopt;
  const auto& problem = errno == EACCES ? problems::hidden : problems::source_missing;
  const Footprint way{.relied = files.entries_on(source)};
  return changes.lines_before(way).empty() ? std::optional{Finding{problem, source}} : std::nullopt;
}

}  // namespace varnholt::foresight
