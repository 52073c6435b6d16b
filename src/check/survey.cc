// SPDX-License-Identifier: GPL-3.0-or-later
// Everything that can be told of a profile on this machine.
#include "check/survey.h"

#include <algorithm>
#include <cerrno>
#include <future>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "check/last-folder.h"
#include "check/surface.h"
#include "check/surroundings.h"
#include "check/ties.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/link-builder.h"
#include "linkbuilder/moves.h"
#include "store/profile.h"

namespace varnholt::check {
namespace {

bool is_left_alone(const UnfinishedWork& unfinished) {
  return unfinished.treatment.leaves_path_alone();
}

bool is_changed_by(const UnfinishedWork& unfinished) {
  using Kind = linkbuilder::Treatment::Kind;
  const auto& [kind, remedy, why, settled] = unfinished.treatment;
  // Another folder, or the link that is undone, makes a change for which there is no remedy here.
  if (kind == Kind::elsewhere || kind == Kind::undo_again) return true;
  return !remedy.removed.empty() || (remedy.then != linkbuilder::Remedy::Then::nothing &&
                                     remedy.then != linkbuilder::Remedy::Then::done &&
                                     remedy.then != linkbuilder::Remedy::Then::wait);
}

std::size_t number_of_lines(std::string_view profile) {
  return static_cast<std::size_t>(1 + std::ranges::count(profile, '\n'));
}

/** Returns where the source of a definition is; that of a link counts from the link. */
std::string target_of(const model::BakDefFields& definition) {
  const bool from_link = linkbuilder::wants_link(definition) && !definition.from.starts_with('/');
  return from_link ? folder_above(definition.to) + '/' + definition.from : definition.from;
}

/** A line at whose source there is nothing, or nothing that this user can see. */
struct Missing {
  std::size_t line = 0;
  bool hidden = false;
};

/** Returns these lines of all file definitions. */
std::vector<Missing> sources_missing_in(std::string_view profile) {
  std::vector<Missing> lines;
  LastFolder sources;
  std::size_t number = 0;
  for_each_piece(profile, '\n', [&](std::string_view text) {
    ++number;
    const auto definition = model::read_lnk_line(text);
    if (!definition || definition->has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) return;
    if (definition->from.empty() || sources.exists(target_of(*definition))) return;
    lines.push_back({number, errno == EACCES});
  });
  return lines;
}

/** Surveys a profile line by line. */
class Surveyor {
 public:
  Surveyor(std::string_view profile, bool all, Survey& survey, Ground& ground)
      : m_profile(profile),
        m_all(all),
        m_survey(survey),
        m_ground(ground),
        m_ties(ground.mounts()) {
    m_texts.reserve(number_of_lines(profile));
    m_lines.reserve(number_of_lines(profile));
  }

  void survey() {
    // Every definition takes two look-ups, and one of them can go on beside the rest.
    constexpr std::size_t few_lines = 500;
    const auto when = m_texts.capacity() > few_lines ? std::launch::async : std::launch::deferred;
    auto missing = std::async(when, sources_missing_in, m_profile);
    survey_unfinished();
    WindowLoader window;
    for_each_piece(m_profile, '\n', [&](std::string_view text) {
      m_texts.push_back(text);
      auto line = store::read_profile_line(text);
      window.load(text, line);
      if (!line.definition) return;
      if (line.kind == store::LineKind::file) return survey_definition(std::move(*line.definition));
      m_scripts.emplace_back(m_texts.size(), std::move(*line.definition));
    });
    m_survey.window = window.end();
    for (const auto& each : missing.get()) survey_target(each);
    for (const auto& [number, script] : m_scripts) survey_script(number, script);
    std::ranges::stable_sort(m_survey.window.findings, {}, &LineFinding::line);
  }

 private:
  void survey_unfinished() {
    const auto note = linkbuilder::stored_note(paths::unfinished, 0);
    if (!note.why.empty()) m_survey.around.push_back({Problem::note_unread, note.why});
    m_note_hidden = note.error == EACCES;
    const bool fixed = why_nothing_can_be_made(folder_above(paths::unfinished)).has_value();
    if (note.works.empty()) return;
    std::vector<model::BakDefFields> definitions;
    linkbuilder::apply_definitions(
        m_profile, [&](const model::BakDefFields& each) { definitions.push_back(each); });
    const std::vector<linkbuilder::Work> newest_first{note.works.rbegin(), note.works.rend()};
    for (const auto& work : newest_first) {
      const UnfinishedWork unfinished{work, linkbuilder::treatment_of(work, definitions)};
      m_survey.unfinished.push_back(unfinished);
      if (is_left_alone(unfinished)) m_left_alone.push_back(work);
      if (!is_changed_by(unfinished) && !fixed) continue;
      Footprint footprint;
      for (const auto& path : {work.path(), work.other, without_final_slash(work.from)}) {
        footprint.changed.push_back(linkbuilder::way_along(path).entries.back());
      }
      m_ties.add(0, footprint);
    }
  }

  void survey_definition(model::BakDefFields definition) {
    const auto turn = linkbuilder::turn_of(definition, m_left_alone, m_left_alone);
    const auto twin = turn == linkbuilder::Turn::none ? 0 : twin_of(definition);
    const bool alone = !m_all && m_ties.empty() && twin == 0 && turn == linkbuilder::Turn::build;
    if (alone && is_as_it_should_be(definition)) {
      ++m_survey.standing;
      return;
    }
    auto forecast = foretell(std::move(definition), turn, m_ground);
    forecast.line = m_texts.size();
    if (twin > 0) add(forecast, Problem::same_path, std::to_string(twin));
    if (turn != linkbuilder::Turn::none) find_ties(forecast);
    const bool stands = forecast.outcome == Outcome::stands;
    if (stands && forecast.ties.empty()) ++m_survey.standing;
    const bool plain = (stands || forecast.outcome == Outcome::none) && forecast.findings.empty() &&
                       forecast.ties.empty();
    if (m_all || !plain) m_survey.definitions.push_back(std::move(forecast));
  }

  void find_ties(Forecast& forecast) {
    auto& footprint = forecast.footprint;
    std::set<std::size_t> lines;
    if (!m_ties.empty()) {
      if (footprint.changed.empty()) footprint.passed = footprint.relied = looked_at(forecast);
      lines.merge(m_ties.ties_of(footprint));
    }
    // A note that only root can read may say anything, and a broken run does nothing more.
    const bool stands = forecast.outcome == Outcome::stands;
    if (m_note_hidden && !stands) lines.insert(0);
    if (m_breaking_line > 0 && !stands) lines.insert(m_breaking_line);
    forecast.ties.assign(lines.begin(), lines.end());
    forecast.sure = forecast.sure && forecast.ties.empty();
    const auto is_breaking = [](const Finding& each) {
      return each.problem == Problem::needed_by_run;
    };
    if (std::ranges::any_of(forecast.findings, is_breaking)) m_breaking_line = forecast.line;
    // A definition that certainly fails at once changes nothing, except for new folders.
    const bool keeps_all = forecast.outcome == Outcome::fails && forecast.remains == Remains::all;
    if (keeps_all && forecast.sure) footprint.changed.clear();
    m_ties.add(forecast.line, footprint);
  }

  /** Returns what a definition looks at of which nothing comes. */
  static std::vector<std::filesystem::path> looked_at(const Forecast& forecast) {
    auto entries = linkbuilder::way_along(forecast.definition.to).entries;
    if (forecast.outcome == Outcome::stands) return entries;
    // Whether a link leads anywhere decides about its undoing.
    const auto followed = forecast.definition.to + '/';
    for (const auto& path : {followed, forecast.content}) {
      const auto way = linkbuilder::way_along(path);
      entries.insert(entries.end(), way.entries.begin(), way.entries.end());
    }
    return entries;
  }

  /** Returns the earlier line of a link with the same path, or 0. */
  std::size_t twin_of(const model::BakDefFields& definition) {
    const auto line = m_texts.size();
    // The profile outlives the definition, and wherever the path stands in its line it is the same.
    const auto text = m_texts.back();
    const auto path = text.substr(text.find(definition.to), definition.to.size());
    const auto first = m_lines.emplace(path, line).first->second;
    return first == line ? 0 : first;
  }

  /** Tells of a line that there is nothing at its source, unless another line may bring it. */
  void survey_target(const Missing& missing) {
    const auto line = missing.line;
    auto definition = *model::read_lnk_line(m_texts[line - 1]);
    if (m_ties.may_change(target_of(definition))) return;
    auto at = std::ranges::lower_bound(m_survey.definitions, line, {}, &Forecast::line);
    if (at == m_survey.definitions.end() || at->line != line) {
      const auto outcome = linkbuilder::wants_link(definition) ? Outcome::stands : Outcome::none;
      at = m_survey.definitions.insert(at, Forecast{line, definition, outcome});
    }
    const bool is_link = at->outcome == Outcome::stands || at->outcome == Outcome::made ||
                         at->outcome == Outcome::replaced;
    if (missing.hidden) {
      if (at->outcome != Outcome::unknown) add(*at, Problem::hidden, definition.from);
      return;
    }
    if (is_link) add(*at, Problem::leads_nowhere, definition.from);
    if (at->outcome == Outcome::none) add(*at, Problem::source_missing, definition.from);
  }

  void survey_script(std::size_t number, const model::BakDefFields& script) {
    auto& findings = m_survey.window.findings;
    if (script.from.empty() || script.to.empty()) {
      findings.push_back({number, {Problem::value_missing}});
    } else if (!exists(script.from) && !m_ties.may_change(script.from)) {
      const auto problem = errno == EACCES ? Problem::hidden : Problem::source_missing;
      findings.push_back({number, {problem, script.from}});
    }
  }

  std::string_view m_profile;
  bool m_all;
  Survey& m_survey;
  Ground& m_ground;
  Ties m_ties;
  std::vector<linkbuilder::Work> m_left_alone;
  bool m_note_hidden = false;
  /** The last line that takes away what the run itself needs; 0 for none. */
  std::size_t m_breaking_line = 0;
  /** The text of each line so far. */
  std::vector<std::string_view> m_texts;
  std::vector<std::pair<std::size_t, model::BakDefFields>> m_scripts;
  /** The first line of a link for each path. */
  std::unordered_map<std::string_view, std::size_t> m_lines;
};

bool is_problem(const Finding& finding) {
  return !is_notice(finding.problem);
}

bool is_wrong(const Forecast& forecast) {
  // A link that has been undone already is what its definition wants.
  const bool undone = forecast.reason == Reason::missing || forecast.reason == Reason::no_link;
  return std::ranges::any_of(forecast.findings, is_problem) || !forecast.ties.empty() ||
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
      std::ranges::count_if(survey.unfinished, is_left_alone);
  return static_cast<std::size_t>(number);
}

Verdict verdict_on(const Survey& survey) {
  if (number_of_problems(survey) > 0) return Verdict::wrong;
  const bool any = std::ranges::any_of(survey.definitions, changes) || !survey.unfinished.empty();
  return any ? Verdict::changes : Verdict::fine;
}

Survey survey_of(const std::string& path, std::string_view profile, bool all,
                 const Ground::Count& count) {
  Survey survey;
  Ground ground{count};
  Surveyor{profile, all, survey, ground}.survey();
  look_around(path, profile, ground.mounts(), survey.around);
  return survey;
}

}  // namespace varnholt::check
