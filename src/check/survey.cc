// SPDX-License-Identifier: GPL-3.0-or-later
// Everything that can be told of a profile on this machine.
#include "check/survey.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "base/paths.h"
#include "base/text.h"
#include "check/surroundings.h"
#include "check/ties.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/moves.h"
#include "store/profile.h"

namespace varnholt {
namespace {

/** What the lines of a profile define for the machine. */
struct Lines {
  explicit Lines(std::string_view profile) {
    std::size_t number = 0;
    for_each_piece(profile, '\n', [&](std::string_view text) {
      ++number;
      auto line = read_profile_line(text);
      if (!line.definition) return;
      auto& kind = line.kind == LineKind::file ? files : scripts;
      kind.emplace_back(number, std::move(*line.definition));
    });
  }

  std::vector<BakDefFields> definitions() const {
    std::vector<BakDefFields> all;
    for (const auto& [number, definition] : files) all.push_back(definition);
    return all;
  }

  using Numbered = std::pair<std::size_t, BakDefFields>;
  std::vector<Numbered> files;
  std::vector<Numbered> scripts;
};

/** Returns whether the next run leaves the path of a work alone. */
bool is_left_alone(const UnfinishedWork& unfinished) {
  const auto& treatment = unfinished.treatment;
  switch (treatment.kind) {
    case Treatment::Kind::elsewhere:
    case Treatment::Kind::keep_copy:
      return true;
    case Treatment::Kind::leave_alone:
      return !treatment.settled;
    case Treatment::Kind::finish:
    case Treatment::Kind::undo_again:
      return treatment.remedy.then == Remedy::Then::wait;
    case Treatment::Kind::forget:
      return false;
  }
  return false;
}

bool is_changed_by(const UnfinishedWork& unfinished) {
  const auto& remedy = unfinished.treatment.remedy;
  return !remedy.removed.empty() ||
         (remedy.then != Remedy::Then::nothing && remedy.then != Remedy::Then::done &&
          remedy.then != Remedy::Then::wait);
}

/** Surveys definition after definition. */
class Surveyor {
 public:
  Surveyor(const Lines& lines, Survey& survey, Ground& ground)
      : m_lines(lines), m_survey(survey), m_ground(ground), m_ties(ground.mounts()) {}

  void survey() {
    survey_unfinished();
    for (const auto& [number, definition] : m_lines.files) survey_definition(number, definition);
    for (auto& forecast : m_survey.definitions) forget_what_will_come(forecast);
    for (const auto& [number, script] : m_lines.scripts) survey_script(number, script);
  }

 private:
  void survey_unfinished() {
    const auto note = stored_note(paths::unfinished, 0);
    if (!note.why.empty()) m_survey.around.push_back({Problem::note_unread, note.why});
    const auto definitions = m_lines.definitions();
    for (auto work = note.works.rbegin(); work != note.works.rend(); ++work) {
      const UnfinishedWork unfinished{*work, treatment_of(*work, definitions)};
      m_survey.unfinished.push_back(unfinished);
      if (is_left_alone(unfinished)) m_left_alone.push_back(*work);
      if (!is_changed_by(unfinished)) continue;
      Footprint footprint;
      for (const auto& path : {work->path(), work->other, without_final_slash(work->from)}) {
        footprint.changed.push_back(way_along(path).entries.back());
      }
      m_ties.add(0, footprint);
    }
  }

  void survey_definition(std::size_t number, const BakDefFields& definition) {
    auto forecast = foretell(definition, turn_of(definition, m_left_alone, m_left_alone), m_ground);
    forecast.line = number;
    find_twin(definition, forecast);
    auto& footprint = forecast.footprint;
    if (definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic) && !m_ties.empty()) {
      if (footprint.changed.empty()) footprint.passed = footprint.relied = looked_at(forecast);
      forecast.ties = m_ties.ties_of(footprint);
      forecast.sure = forecast.sure && forecast.ties.empty();
    }
    m_ties.add(number, footprint);
    m_survey.definitions.push_back(std::move(forecast));
  }

  /** Returns what a definition looks at of which nothing comes. */
  static std::vector<std::filesystem::path> looked_at(const Forecast& forecast) {
    auto entries = way_along(forecast.definition.to).entries;
    if (forecast.outcome == Outcome::stands) return entries;
    // Whether a link leads anywhere decides about its undoing.
    const auto followed = forecast.definition.to + '/';
    for (const auto& path : {followed, forecast.content, forecast.definition.from}) {
      const auto way = way_along(path);
      entries.insert(entries.end(), way.entries.begin(), way.entries.end());
    }
    return entries;
  }

  void find_twin(const BakDefFields& definition, Forecast& forecast) {
    if (!definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic)) return;
    const auto [twin, is_first] = m_paths.emplace(definition.to, forecast.line);
    if (!is_first) add(forecast, Problem::same_path, std::to_string(twin->second));
  }

  /** Takes back that something is missing when another line may bring it. */
  void forget_what_will_come(Forecast& forecast) {
    if (m_ties.empty() || forecast.findings.empty()) return;
    std::erase_if(forecast.findings, [&](const Finding& finding) {
      const bool missing =
          finding.problem == Problem::leads_nowhere || finding.problem == Problem::source_missing;
      return missing && m_ties.may_change(finding.about);
    });
  }

  void survey_script(std::size_t number, const BakDefFields& script) {
    auto& findings = m_survey.window.findings;
    if (script.from.empty() || script.to.empty()) {
      findings.push_back({number, {Problem::value_missing}});
    } else if (!exists(script.from) && !m_ties.may_change(script.from)) {
      findings.push_back({number, {Problem::source_missing, script.from}});
    }
  }

  const Lines& m_lines;
  Survey& m_survey;
  Ground& m_ground;
  Ties m_ties;
  std::vector<Work> m_left_alone;
  /** The lines of the links, by their paths. */
  std::unordered_map<std::string_view, std::size_t> m_paths;
};

bool is_wrong(const Forecast& forecast) {
  return !forecast.findings.empty() || !forecast.ties.empty() || forecast.deleted ||
         forecast.outcome == Outcome::left_alone;
}

bool changes(const Forecast& forecast) {
  return forecast.outcome != Outcome::none && forecast.outcome != Outcome::stands;
}

}  // namespace

std::size_t number_of_problems(const Survey& survey) {
  const auto is_problem = [](const Finding& finding) { return !is_notice(finding.problem); };
  const auto number =
      std::ranges::count_if(survey.definitions, is_wrong) +
      std::ranges::count_if(survey.window.findings, is_problem, &LineFinding::finding) +
      std::ranges::count_if(survey.around, is_problem) +
      std::ranges::count_if(survey.unfinished, is_left_alone);
  return static_cast<std::size_t>(number);
}

Verdict verdict_on(const Survey& survey) {
  if (number_of_problems(survey) > 0) return Verdict::wrong;
  const bool any = std::ranges::any_of(survey.definitions, changes) || !survey.unfinished.empty();
  return any ? Verdict::changes : Verdict::fine;
}

Survey survey_of(const std::string& path, std::string_view profile, const Ground::Count& count) {
  Survey survey;
  const Lines lines{profile};
  Ground ground{count, needed_files()};
  survey.window = window_view_of(profile);
  Surveyor{lines, survey, ground}.survey();
  std::ranges::stable_sort(survey.window.findings, {}, &LineFinding::line);
  look_around(path, profile, survey.around);
  return survey;
}

}  // namespace varnholt
