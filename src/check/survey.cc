// SPDX-License-Identifier: GPL-3.0-or-later
// Surveys a profile on this machine.
#include "check/survey.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "base/file.h"
#include "base/paths.h"
#include "base/text.h"
#include "check/comparison.h"
#include "check/profile-file.h"
#include "check/progress.h"
#include "store/profile.h"

namespace varnholt::check {
namespace {

/** Returns what is wrong with a boot script, if anything is. */
std::optional<Finding> why_not_run(const model::BakDefFields& script, foresight::FileSystems& files,
                                   const foresight::Dependencies& changes) {
  const bool complete = !script.from.empty() && !script.to.empty();
  return complete ? why_no_source(script.from, files, changes)
                  : Finding{foresight::problems::value_missing};
}

bool is_problem(const Finding& finding) {
  return !finding.problem.is_notice();
}

bool is_wrong(const foresight::Forecast& forecast) {
  return std::ranges::any_of(forecast.findings, is_problem) || !forecast.depends_on.empty() ||
         forecast.deleted || forecast.is_neglected();
}

bool is_change(const foresight::Forecast& forecast) {
  return forecast.outcome != foresight::outcomes::none &&
         forecast.outcome != foresight::outcomes::stands;
}

}  // namespace

std::size_t number_of_problems(const Survey& survey) {
  const auto number =
      std::ranges::count_if(survey.run.definitions, is_wrong) +
      std::ranges::count_if(survey.window.findings, is_problem, &LineFinding::finding) +
      std::ranges::count_if(survey.around, is_problem) +
      std::ranges::count_if(survey.run.unfinished, &linkbuilder::Continuation::waits,
                            &foresight::UnfinishedWork::next);
  return static_cast<std::size_t>(number);
}

int status_of(const Survey& survey) {
  if (number_of_problems(survey) > 0) return 2;
  const bool any =
      std::ranges::any_of(survey.run.definitions, is_change) || !survey.run.unfinished.empty();
  return any ? 1 : 0;
}

Survey survey_of(const std::string& path, std::string_view profile, bool counts) {
  Survey survey;
  auto& [run, view, around] = survey;
  WindowLoader window;
  foresight::Lines files;
  foresight::Lines scripts;
  std::size_t number = 0;
  for_each_piece(profile, '\n', [&](std::string_view text) {
    ++number;
    auto line = store::read_profile_line(text);
    window.load(text, line);
    if (!line.definition) return;
    auto& page = line.kind == store::LineKind::file ? files : scripts;
    page.push_back({number, std::move(*line.definition)});
  });
  view = window.end();
  Progress progress;
  const auto advance = [&progress] { progress.advance(); };
  foresight::FileSystems machine{needed_files(), counts ? advance : std::function<void()>{}};
  foresight::Dependencies changes{machine};
  run = foretell_run(profile, std::move(files), machine, changes);
  if (run.why_no_note) around.push_back(*run.why_no_note);
  if (!view.answers_default_route) around.push_back({problems::default_route_open});
  const auto present = path == paths::profile ? FileText{} : read_file(paths::profile);
  if (present.bytes) compare_profiles(present.text(), profile, view.findings, around);
  for (const auto& [line, script] : scripts) {
    const auto why = why_not_run(script, machine, changes);
    if (why) view.findings.push_back({line, *why});
  }
  std::ranges::stable_sort(view.findings, {}, &LineFinding::line);
  check_profile_file(path, profile, machine, around);
  return survey;
}

}  // namespace varnholt::check
