// SPDX-License-Identifier: GPL-3.0-or-later
// Everything that can be told of a profile on this machine.
#include "check/survey.h"

#include <algorithm>
#include <cerrno>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/path.h"
#include "base/paths.h"
#include "base/text.h"
#include "check/surface.h"
#include "check/surroundings.h"
#include "check/ties.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/definitions.h"
#include "store/profile.h"

namespace varnholt::check {
namespace {

bool is_left_alone(const UnfinishedWork& unfinished) {
  return unfinished.next.waits();
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
  std::size_t number = 0;
  for_each_piece(profile, '\n', [&](std::string_view text) {
    ++number;
    const auto definition = model::read_lnk_line(text);
    if (!definition || definition->has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) return;
    if (definition->from.empty() || exists(target_of(*definition))) return;
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
    for (const auto& each : sources_missing_in(m_profile)) survey_target(each);
    for (const auto& [number, script] : m_scripts) survey_script(number, script);
    std::ranges::stable_sort(m_survey.window.findings, {}, &LineFinding::line);
  }

 private:
  void survey_unfinished() {
    const auto stored = linkbuilder::stored_note(paths::unfinished, 0);
    if (!stored.why.empty()) m_survey.around.push_back({Problem::note_unread, stored.why});
    m_note_hidden = stored.error == EACCES;
    const auto& note = stored.note;
    if (note.line > 0 && note.profile == linkbuilder::digest_of(m_profile)) {
      m_survey.lines_done = note.line;
    }
    if (note.works.empty()) return;
    linkbuilder::Definitions all;
    linkbuilder::Definitions to_come;
    linkbuilder::for_each_definition(m_profile, [&](std::size_t line, const auto& each) {
      all.push_back(each);
      if (line > m_survey.lines_done) to_come.push_back(each);
    });
    const std::vector<linkbuilder::Work> newest_first{note.works.rbegin(), note.works.rend()};
    for (const auto& work : newest_first) {
      const UnfinishedWork unfinished{work, linkbuilder::continuation_of(work, all, to_come)};
      m_survey.unfinished.push_back(unfinished);
      (is_left_alone(unfinished) ? m_left_alone : m_resumed).push_back(work);
    }
  }

  bool touches(const model::BakDefFields& definition,
               const std::vector<linkbuilder::Work>& works) const {
    return linkbuilder::touched_by(definition, works, m_ground.mounts()) != nullptr;
  }

  void survey_definition(model::BakDefFields definition) {
    const bool symbolic = definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic);
    if (symbolic && m_texts.size() <= m_survey.lines_done) return;
    const bool left_alone = symbolic && touches(definition, m_left_alone);
    const bool resumed = symbolic && touches(definition, m_resumed);
    const auto twin = symbolic ? twin_of(definition) : 0;
    const bool alone = !m_all && m_ties.empty() && twin == 0 && !left_alone && !resumed &&
                       linkbuilder::wants_link(definition);
    if (alone && is_as_it_should_be(definition)) {
      ++m_survey.standing;
      return;
    }
    auto forecast = foretell(std::move(definition), left_alone, m_ground);
    forecast.line = m_texts.size();
    if (twin > 0) add(forecast, Problem::same_path, std::to_string(twin));
    if (symbolic) find_ties(forecast, resumed);
    const bool stands = forecast.outcome == Outcome::stands;
    if (stands && forecast.ties.empty()) ++m_survey.standing;
    const bool plain = (stands || forecast.outcome == Outcome::none) && forecast.findings.empty() &&
                       forecast.ties.empty();
    if (m_all || !plain) m_survey.definitions.push_back(std::move(forecast));
  }

  void find_ties(Forecast& forecast, bool resumed) {
    auto& footprint = forecast.footprint;
    std::set<std::size_t> lines;
    if (!m_ties.empty()) {
      if (footprint.changed.empty()) footprint.passed = footprint.relied = looked_at(forecast);
      lines.merge(m_ties.ties_of(footprint));
    }
    if (resumed) lines.insert(0);
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
  /** The works with which the run goes on. */
  std::vector<linkbuilder::Work> m_resumed;
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
