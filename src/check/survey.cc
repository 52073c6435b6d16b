// SPDX-License-Identifier: GPL-3.0-or-later
// Surveys a profile on this machine: the note of an earlier run first, then line by line.
#include "check/survey.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/path.h"
#include "base/paths.h"
#include "base/text.h"
#include "check/dependencies.h"
#include "check/foretelling.h"
#include "check/profile-file.h"
#include "linkbuilder/backup-name.h"
#include "linkbuilder/decision.h"
#include "store/definitions.h"
#include "store/profile.h"

namespace varnholt::check {
namespace {

using files::way_along;

/** A definition and its line. */
struct Line {
  std::size_t number = 0;
  model::BakDefFields definition{};
};

/** A definition at whose source nothing is, or nothing that this user can see. */
struct Missing {
  /** The place of its forecast in the survey. */
  std::size_t index = 0;
  bool hidden = false;
};

/** The knowledge of a survey by the line to which it has come. */
struct Course {
  Course(FileSystems& machine, bool asked_for_all)
      : files(machine), all(asked_for_all), changes(machine.mounts()), unfinished(files.mounts()) {}

  FileSystems& files;
  bool all;
  /** What the lines before may change; line 0 is the unfinished work of earlier runs. */
  Dependencies changes;
  /** What the lines before may leave unfinished, so that the later ones leave it alone. */
  Dependencies unfinished;
  /** The works that certainly stay unfinished. */
  std::vector<linkbuilder::Work> left;
  /** The forecasts of the lines whose work goes on before the first line is taken. */
  std::map<std::size_t, Forecast> resumed;
  bool note_hidden = false;
  /** The last line that takes away what the run itself needs; 0 for none. */
  std::size_t breaking_line = 0;
  /** The first line of a link for each path. */
  std::unordered_map<std::string, std::size_t> first_lines;
  std::vector<Missing> missing;
};

bool is_symbolic(const model::BakDefFields& definition) {
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic);
}

bool is_marked(const model::BakDefFields& definition) {
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted);
}

bool stays_unfinished(const UnfinishedWork& unfinished) {
  return unfinished.next.waits();
}

/** Returns whether there is nothing to tell of a definition. */
bool is_plain(const Forecast& forecast) {
  return (forecast.outcome == Outcome::stands || forecast.outcome == Outcome::none) &&
         forecast.findings.empty() && forecast.depends_on.empty();
}

/** Returns where the source of a definition is; that of a link counts from the link. */
std::string target_of(const model::BakDefFields& definition) {
  const bool from_link = linkbuilder::wants_link(definition) && !definition.from.starts_with('/');
  return from_link ? folder_above(definition.to) + definition.from : definition.from;
}

void append(std::vector<std::filesystem::path>& entries, const std::filesystem::path& path) {
  const auto way = way_along(path);
  entries.insert(entries.end(), way.entries.begin(), way.entries.end());
}

/** Returns where the link builder looks for unfinished work before it takes a definition. */
Footprint ways_of(const model::BakDefFields& definition) {
  Footprint footprint;
  for (const auto& path : {definition.to, definition.from}) {
    append(footprint.relied, without_final_slash(path));
    footprint.whole.push_back(footprint.relied.back());
  }
  return footprint;
}

/** Returns the entries at which a definition looks of which nothing comes. */
std::vector<std::filesystem::path> looked_at(const Forecast& forecast) {
  auto entries = way_along(forecast.definition.to).entries;
  if (forecast.outcome == Outcome::stands) return entries;
  // Whether a link leads anywhere decides about its undoing.
  append(entries, forecast.definition.to + '/');
  append(entries, forecast.content);
  return entries;
}

/** Returns the work that a definition leaves unfinished when it fails. */
linkbuilder::Work work_of(const Forecast& forecast) {
  const auto& [from, to] = std::tie(forecast.definition.from, forecast.definition.to);
  if (is_marked(forecast.definition)) {
    return {.stage = linkbuilder::Stage::undo, .from = forecast.content, .to = to};
  }
  const std::string path = way_along(to).entries.back();
  auto backup = linkbuilder::free_backup_name(path);
  if (backup.empty()) backup = linkbuilder::backup_name(path, 0);
  return {.from = from, .to = to, .backup = std::move(backup)};
}

Footprint places_of(const linkbuilder::Work& work) {
  Footprint places;
  for (const auto& path : {work.path(), work.backup, without_final_slash(work.from)}) {
    if (!path.empty()) places.changed.push_back(way_along(path).entries.back());
  }
  return places;
}

/** Returns whether the work on a definition fails and then stays unfinished. */
bool leaves_work(const Forecast& forecast) {
  return forecast.outcome == Outcome::fails &&
         (forecast.moved || forecast.remains == Remains::source || is_marked(forecast.definition));
}

/** Returns the lines before on which a forecast depends. */
std::set<std::size_t> lines_before(Forecast& forecast, const Course& course) {
  auto& footprint = forecast.footprint;
  std::set<std::size_t> lines;
  if (!course.changes.empty()) {
    if (footprint.changed.empty()) footprint.passed = footprint.relied = looked_at(forecast);
    const bool any_left = !course.left.empty() || !course.unfinished.empty();
    // A link above the source decides whether the source lies in an unfinished work.
    if (any_left) append(footprint.passed, folder_above(forecast.definition.from));
    lines.merge(course.changes.lines_before(footprint));
  }
  if (!course.unfinished.empty()) {
    lines.merge(course.unfinished.lines_before(ways_of(forecast.definition)));
  }
  // A note that only root can read may say anything, and a broken run does nothing more.
  const bool stands = forecast.outcome == Outcome::stands;
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
  const auto breaks = [](const Finding& each) { return each.problem == Problem::needed_by_run; };
  if (std::ranges::any_of(forecast.findings, breaks)) course.breaking_line = line;
  // A definition that certainly fails at once changes nothing, except for new folders.
  const bool keeps_all = forecast.outcome == Outcome::fails && forecast.remains == Remains::all;
  if (keeps_all && forecast.sure) forecast.footprint.changed.clear();
  course.changes.add(line, forecast.footprint);
  if (forecast.sure && !leaves_work(forecast)) return;
  course.unfinished.add(line, places_of(work_of(forecast)));
}

/** Returns the line that an unfinished work is about, or the work as one without a number. */
Line line_of(const linkbuilder::Work& work, linkbuilder::Continuation::Step step,
             const std::vector<Line>& lines) {
  const bool undone = step == linkbuilder::Continuation::Step::undo;
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

/** Surveys a work with which the run goes on. */
void survey_rest(const UnfinishedWork& unfinished, const std::vector<Line>& lines, Course& course) {
  const auto& [work, next] = unfinished;
  auto line = line_of(work, next.step, lines);
  auto forecast = foretell_rest(std::move(line.definition), work, next, course.files);
  forecast.line = line.number;
  depend_on(lines_before(forecast, course), forecast);
  if (line.number > 0) course.resumed.emplace(line.number, forecast);
  if (!forecast.sure || !leaves_work(forecast)) return remember(0, forecast, course);
  const bool has_backup = next.step == linkbuilder::Continuation::Step::move;
  course.left.push_back(has_backup ? work : work_of(forecast));
  const bool changes_nothing =
      has_backup && forecast.remains == Remains::backup && next.removed.empty();
  if (!changes_nothing) {
    course.changes.add(0, forecast.footprint);
  }
}

/** Surveys the note of an earlier run, with which the next one begins. */
void survey_note(std::string_view profile, Course& course, Survey& survey) {
  using Step = linkbuilder::Continuation::Step;
  const auto stored = linkbuilder::stored_note(paths::unfinished, 0);
  if (!stored.why.empty()) survey.around.push_back({Problem::note_unread, stored.why});
  course.note_hidden = stored.error == EACCES;
  const auto& note = stored.note;
  const bool same_profile = note.line > 0 && note.profile == linkbuilder::digest_of(profile);
  if (same_profile) survey.lines_done = note.line;
  if (note.works.empty()) return;
  std::vector<Line> lines;
  store::for_each_definition(profile, [&](std::size_t line, const auto& each) {
    lines.push_back({line, each});
  });
  const auto all = store::definitions_after(0, profile);
  const auto to_come = store::definitions_after(survey.lines_done, profile);
  const std::vector<linkbuilder::Work> newest_first{note.works.rbegin(), note.works.rend()};
  for (const auto& work : newest_first) {
    survey.unfinished.push_back({work, linkbuilder::continuation_of(work, all, to_come)});
    const auto& unfinished = survey.unfinished.back();
    const auto step = unfinished.next.step;
    if (unfinished.next.waits()) {
      course.left.push_back(work);
    } else if (step != Step::forget && step != Step::forget_changed) {
      survey_rest(unfinished, lines, course);
    }
  }
}

/** Foretells a line with which an earlier run has done. */
Forecast foretell_done(model::BakDefFields definition) {
  auto outcome = is_as_it_should_be(definition) ? Outcome::stands : Outcome::none;
  if (is_marked(definition)) outcome = Outcome::dropped;
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

Forecast foretell_link(const Line& line, Course& course) {
  const auto& definition = line.definition;
  const auto first = course.first_lines.emplace(definition.to, line.number).first->second;
  if (course.resumed.contains(line.number)) return foretell_resumed(line.number, course);
  const bool left_alone =
      linkbuilder::touched_by(definition, course.left, course.files.mounts()) != nullptr;
  const bool alone = !course.all && course.changes.empty() && course.unfinished.empty() &&
                     first == line.number && !left_alone && linkbuilder::wants_link(definition);
  if (alone && is_as_it_should_be(definition)) {
    return {.definition = definition, .outcome = Outcome::stands};
  }
  auto forecast = left_alone ? foretell_left_alone(definition) : foretell(definition, course.files);
  if (first != line.number) add(forecast, Problem::same_path, std::to_string(first));
  depend_on(lines_before(forecast, course), forecast);
  remember(line.number, forecast, course);
  return forecast;
}

Forecast foretell_line(const Line& line, Course& course, const Survey& survey) {
  if (!is_symbolic(line.definition)) return foretell(line.definition, course.files);
  const bool done = line.number <= survey.lines_done && !course.resumed.contains(line.number);
  return done ? foretell_done(line.definition) : foretell_link(line, course);
}

/** Returns whether nothing is to be said of the source of a definition. */
bool needs_no_source(const Forecast& forecast) {
  const auto& definition = forecast.definition;
  const bool done = is_symbolic(definition) && forecast.outcome == Outcome::none;
  return done || is_marked(definition) || definition.from.empty();
}

void survey_definition(const Line& line, Course& course, Survey& survey) {
  auto forecast = foretell_line(line, course, survey);
  forecast.line = line.number;
  if (forecast.outcome == Outcome::stands && forecast.depends_on.empty()) ++survey.standing;
  const bool has_source = needs_no_source(forecast) || exists(target_of(forecast.definition));
  if (!has_source) course.missing.push_back({survey.definitions.size(), errno == EACCES});
  const bool kept = course.all || !has_source || !is_plain(forecast);
  if (kept) survey.definitions.push_back(std::move(forecast));
}

/** Surveys the lines, and returns the boot scripts. */
std::vector<Line> survey_lines(std::string_view profile, Course& course, Survey& survey) {
  WindowLoader window;
  std::vector<Line> scripts;
  std::size_t number = 0;
  for_each_piece(profile, '\n', [&](std::string_view text) {
    ++number;
    auto line = store::read_profile_line(text);
    window.load(text, line);
    if (!line.definition) return;
    Line definition{number, std::move(*line.definition)};
    if (line.kind != store::LineKind::file) return scripts.push_back(std::move(definition));
    survey_definition(definition, course, survey);
  });
  survey.window = window.end();
  return scripts;
}

void find_missing_source(bool hidden, Forecast& forecast) {
  const auto& from = forecast.definition.from;
  const auto outcome = forecast.outcome;
  const bool is_link =
      outcome == Outcome::stands || outcome == Outcome::made || outcome == Outcome::replaced;
  if (hidden && outcome != Outcome::unknown) return add(forecast, Problem::hidden, from);
  if (!hidden && is_link) return add(forecast, Problem::leads_nowhere, from);
  if (!hidden && outcome == Outcome::none) add(forecast, Problem::source_missing, from);
}

/** Tells of the lines that there is nothing at the source, unless another line may bring it. */
void find_missing_sources(const Course& course, Survey& survey) {
  for (const auto& [index, hidden] : course.missing) {
    auto& forecast = survey.definitions[index];
    if (course.changes.may_change(target_of(forecast.definition))) continue;
    find_missing_source(hidden, forecast);
  }
  if (!course.all && !course.missing.empty()) std::erase_if(survey.definitions, is_plain);
}

void survey_scripts(const std::vector<Line>& scripts, const Course& course,
                    std::vector<LineFinding>& findings) {
  for (const auto& [line, script] : scripts) {
    if (script.from.empty() || script.to.empty()) {
      findings.push_back({line, {Problem::value_missing}});
      continue;
    }
    if (exists(script.from)) continue;
    const auto problem = errno == EACCES ? Problem::hidden : Problem::source_missing;
    if (!course.changes.may_change(script.from)) findings.push_back({line, {problem, script.from}});
  }
}

bool is_problem(const Finding& finding) {
  return !is_notice(finding.problem);
}

bool is_wrong(const Forecast& forecast) {
  // A link that has been undone already is what its definition wants.
  const bool undone = forecast.reason == Reason::missing || forecast.reason == Reason::no_link;
  return std::ranges::any_of(forecast.findings, is_problem) || !forecast.depends_on.empty() ||
         forecast.deleted || (forecast.outcome == Outcome::left_alone && !undone);
}

bool changes(const Forecast& forecast) {
  return forecast.outcome != Outcome::none && forecast.outcome != Outcome::stands;
}

}  // namespace

std::size_t number_of_problems(const Survey& survey) {
  const auto number =
      std::ranges::count_if(survey.definitions, is_wrong) +
      std::ranges::count_if(survey.window.findings, is_problem, &LineFinding::finding) +
      std::ranges::count_if(survey.around, is_problem) +
      std::ranges::count_if(survey.unfinished, stays_unfinished);
  return static_cast<std::size_t>(number);
}

Verdict verdict_on(const Survey& survey) {
  if (number_of_problems(survey) > 0) return Verdict::wrong;
  const bool any = std::ranges::any_of(survey.definitions, changes) || !survey.unfinished.empty();
  return any ? Verdict::changes : Verdict::fine;
}

Survey survey_of(const std::string& path, std::string_view profile, bool all,
                 const FileSystems::Count& count) {
  Survey survey;
  FileSystems files{count, needed_files()};
  Course course{files, all};
  survey_note(profile, course, survey);
  const auto scripts = survey_lines(profile, course, survey);
  find_missing_sources(course, survey);
  survey_scripts(scripts, course, survey.window.findings);
  std::ranges::stable_sort(survey.window.findings, {}, &LineFinding::line);
  check_profile_file(path, profile, files.mounts(), survey.around);
  return survey;
}

}  // namespace varnholt::check
