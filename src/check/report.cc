// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a person the results of a survey.
#include "check/report.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include <glib/gi18n.h>

#include "base/path.h"
#include "check/wording.h"

namespace varnholt::check {
namespace {

/** How a sentence is meant; its colour depends on that. */
enum class Tone { plain, notice, alarm };

struct Sentence {
  std::string text;
  Tone tone = Tone::plain;
};

/** Returns how much there is; nothing when nobody has counted. */
std::string counted(const Tally& tally) {
  return tally.counted ? amount(tally) : std::string{};
}

std::string deletion_of(const Forecast& forecast) {
  const auto source = printable(forecast.definition.from);
  const auto amount = counted(*forecast.deleted);
  return amount.empty() ? filled(_("DELETED: what stands at %1 now."), {source})
                        : filled(_("DELETED: what stands at %1 now, %2."), {source, amount});
}

std::string adoption_of(const std::string& path, const std::string& source, const Tally& moved) {
  const auto amount = counted(moved);
  return amount.empty()
             ? filled(_("%1 becomes a link to %2; what stands there moves to the source."),
                      {path, source})
             : filled(_("%1 becomes a link to %2; moved to the source: %3."),
                      {path, source, amount});
}

std::string undoing_of(const std::string& path, const std::string& content, const Tally& copied) {
  const auto amount = counted(copied);
  return amount.empty()
             ? filled(_("The link %1 is undone by a copy of %2."), {path, content})
             : filled(_("The link %1 is undone by a copy of %2: %3."), {path, content, amount});
}

std::string reason_of(const Forecast& forecast) {
  const auto path = printable(forecast.definition.to);
  switch (forecast.reason) {
    case Reason::kind:
      return filled(_("%1 is left alone: it is no folder, file or link."), {path});
    case Reason::missing:
      return filled(_("%1 is not undone: nothing is there."), {path});
    case Reason::dangling:
      return filled(_("%1 is not undone: the link leads nowhere."), {path});
    case Reason::no_link:
      return filled(_("%1 is not undone: it is no link."), {path});
    case Reason::leads_nowhere:
      return filled(_("%1 is not undone: from here its content, %2, leads nowhere."),
                    {path, printable(forecast.content)});
    case Reason::unfinished:
      return filled(_("%1 is left alone, because of what an earlier run has left."), {path});
    default:
      return filled(_("%1 is left alone: the link cannot be read."), {path});
  }
}

std::string failure_of(const Forecast& forecast) {
  const auto& definition = forecast.definition;
  const auto path = printable(definition.to);
  if (definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) {
    return filled(_("FAILS: the link %1 is not undone."), {path});
  }
  return filled(_("FAILS: %1 does not become a link to %2."), {path, printable(definition.from)});
}

std::string what_comes(const Forecast& forecast) {
  const auto path = printable(forecast.definition.to);
  const auto source = printable(forecast.definition.from);
  const auto content = printable(forecast.content);
  switch (forecast.outcome) {
    case Outcome::none:
      return filled(_("%1 is to be a copy of %2."), {path, source});
    case Outcome::stands:
      return filled(_("%1 is a link to %2, as it should be."), {path, source});
    case Outcome::made:
      return filled(_("%1 is made, a link to %2."), {path, source});
    case Outcome::replaced:
      return filled(_("%1 becomes a link to %2; now it leads to %3."), {path, source, content});
    case Outcome::adopted:
      return adoption_of(path, source, *forecast.moved);
    case Outcome::copied:
      return undoing_of(path, content, *forecast.copied);
    case Outcome::left_alone:
      return reason_of(forecast);
    case Outcome::dropped:
      return filled(_("The definition of %1 leaves the profile."), {path});
    case Outcome::fails:
      return failure_of(forecast);
    case Outcome::unknown:
      return filled(_("What comes of %1 cannot be told."), {path});
  }
  return {};
}

std::string what_remains(const Forecast& forecast) {
  const auto backup = printable(forecast.backup);
  switch (forecast.remains) {
    case Remains::all:
      return _("Everything stays as it is.");
    case Remains::folders:
      return _("Folders above it are made, and everything else stays as it is.");
    case Remains::backup:
      return filled(_("What stands there is then called %1, until the next run."), {backup});
    case Remains::backup_only:
      return filled(_("What stands there is then called %1, until the next run; what stands at the "
                      "source is gone, or a part of it."),
                    {backup});
    case Remains::nothing:
      return _("Nothing stands there then.");
    case Remains::source:
      return filled(_("What was to be moved is at %1 then, until the next run."),
                    {printable(forecast.definition.from)});
  }
  return {};
}

std::string dependencies_of(const Forecast& forecast) {
  std::string lines;
  for (const auto line : forecast.depends_on) {
    if (line > 0) lines += (lines.empty() ? "" : _(", ")) + std::to_string(line);
  }
  if (forecast.depends_on.front() > 0) {
    return filled(ngettext("What comes of this line depends on what comes of line %1.",
                           "What comes of this line depends on what comes of lines %1.",
                           forecast.depends_on.size()),
                  {lines});
  }
  std::string left = _("What comes of this line depends on what an earlier run has left.");
  if (lines.empty()) return left;
  return filled(_("What comes of this line depends on what an earlier run has left, and on other "
                  "lines: %1."),
                {lines});
}

std::vector<Sentence> sentences_on(const Forecast& forecast) {
  const bool fails = forecast.outcome == Outcome::fails;
  std::vector<Sentence> sentences;
  // Without a source or a path there is only that to tell.
  const bool nameless = forecast.definition.from.empty() || forecast.definition.to.empty();
  if (!forecast.depends_on.empty()) {
    sentences.push_back({dependencies_of(forecast), Tone::notice});
    sentences.push_back({filled(_("As things are now: %1"), {what_comes(forecast)}),
                         fails ? Tone::alarm : Tone::plain});
  } else if (forecast.outcome != Outcome::none || !nameless) {
    sentences.push_back({what_comes(forecast), fails ? Tone::alarm : Tone::plain});
  }
  for (const auto& finding : forecast.findings) {
    sentences.push_back({text_of(finding), Tone::notice});
  }
  if (fails) sentences.push_back({what_remains(forecast)});
  if (forecast.deleted) sentences.push_back({deletion_of(forecast), Tone::alarm});
  if (forecast.outcome == Outcome::copied) {
    sentences.push_back({_("The copies belong to root and are new; links in them stay links.")});
  }
  if (forecast.definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted) &&
      forecast.outcome != Outcome::dropped && forecast.outcome != Outcome::copied) {
    sentences.push_back({_("The line leaves the profile.")});
  }
  return sentences;
}

std::string continuation_of(const UnfinishedWork& unfinished) {
  using Step = linkbuilder::Continuation::Step;
  const auto path = printable(unfinished.work.to);
  const auto source = printable(unfinished.work.from);
  switch (unfinished.next.step) {
    case Step::forget:
      return _("Nothing is left to do.");
    case Step::begin:
      return _("It begins anew.");
    case Step::move:
      return filled(_("The next run tries to move %1 on to %2, and to make the link."),
                    {printable(unfinished.work.backup), source});
    case Step::link:
      return filled(_("The data is at %1, and the next run tries to make the link."), {source});
    case Step::undo:
      return filled(_("The link %1 is made again, and undone once more."), {path});
    case Step::restore_link:
      return filled(_("The link %1 is made again."), {path});
    case Step::wait:
      return _("What it needs is missing, so it waits.");
    case Step::leave_changed:
    case Step::forget_changed:
      return _("It is left alone, because somebody has changed something since.");
    case Step::leave_unwanted:
      return _("It is left alone, because the profile asks for it no longer.");
  }
  return {};
}

std::vector<Sentence> sentences_on(const UnfinishedWork& unfinished) {
  const auto& [work, next] = unfinished;
  std::vector<Sentence> sentences{
      {filled(_("An earlier run did not finish %1."), {printable(work.to)}), Tone::notice}};
  if (!work.backup.empty() && is_there(work.backup)) {
    sentences.push_back(
        {filled(_("What stood there is called %1 now."), {printable(work.backup)})});
  }
  if (!next.removed.empty()) {
    sentences.push_back({filled(_("%1 is removed, as all of it is in %2."),
                                {printable(next.removed), printable(next.whole_at)})});
  }
  sentences.push_back({continuation_of(unfinished)});
  return sentences;
}

/** The kinds of outcomes of links in the summary, as far as there are any. */
std::string counts_of(const Survey& survey) {
  static constexpr std::array<std::pair<Outcome, const char*>, 8> kinds{
      {{Outcome::stands, N_("%1 in place")},
       {Outcome::made, N_("%1 to be made")},
       {Outcome::replaced, N_("%1 to be replaced")},
       {Outcome::adopted, N_("%1 to be moved")},
       {Outcome::copied, N_("%1 to be undone")},
       {Outcome::left_alone, N_("%1 left alone")},
       {Outcome::fails, N_("%1 failing")},
       {Outcome::unknown, N_("%1 unknown")}}};
  std::string counts;
  const auto count = [&counts](const char* text, std::uint64_t lines) {
    if (lines == 0) return;
    counts += (counts.empty() ? "" : _(", ")) + filled(_(text), {number(lines)});
  };
  std::map<Outcome, std::uint64_t> lines{{Outcome::stands, survey.standing}};
  std::uint64_t depending = 0;
  for (const auto& forecast : survey.definitions) {
    if (!forecast.depends_on.empty()) {
      ++depending;
    } else if (forecast.outcome != Outcome::stands) {
      ++lines[forecast.outcome];
    }
  }
  for (const auto& [outcome, text] : kinds) count(text, lines[outcome]);
  count(N_("%1 depending on others"), depending);
  return counts.empty() ? std::string{_("none")} : counts;
}

std::string summary_of(const Survey& survey) {
  const auto links = filled(_("Links: %1."), {counts_of(survey)});
  const auto problems = number_of_problems(survey);
  switch (verdict_on(survey)) {
    case Verdict::fine:
      return filled(_("%1 %2"), {links, _("Nothing would change, and nothing is wrong.")});
    case Verdict::changes:
      return filled(_("%1 %2"), {links, _("Something would change, and nothing is wrong.")});
    case Verdict::wrong:
      break;
  }
  const auto number_text = filled(
      ngettext("%1 thing to look at.", "%1 things to look at.", problems), {number(problems)});
  return filled(_("%1 %2"), {links, number_text});
}

class Report {
 public:
  Report(const Survey& survey, const ReportStyle& style) : m_survey(survey), m_style(style) {
    std::size_t last = 0;
    for (const auto& forecast : survey.definitions) last = std::max(last, forecast.line);
    for (const auto& each : survey.window.findings) last = std::max(last, each.line);
    m_digits = std::to_string(last).size();
  }

  std::string text() {
    if (m_survey.lines_done > 0) {
      const auto line = std::to_string(m_survey.lines_done);
      tell("!",
           {{filled(_("An earlier run was cut off at line %1; the next one goes on from there."),
                    {line}),
             Tone::notice}});
    }
    for (const auto& unfinished : m_survey.unfinished) tell("!", sentences_on(unfinished));
    tell_lines();
    tell_order();
    for (const auto& finding : m_survey.around) {
      tell("*", {{text_of(finding), is_notice(finding.problem) ? Tone::plain : Tone::notice}});
    }
    return m_text;
  }

 private:
  /** Tells the lines in their order: of each one the forecast, and then the window's view. */
  void tell_lines() {
    auto at = m_survey.window.findings.begin();
    const auto end = m_survey.window.findings.end();
    const auto tell_window_until = [&](std::size_t line) {
      while (at != end && at->line < line) {
        const auto number = at->line;
        std::vector<Sentence> sentences;
        for (; at != end && at->line == number; ++at) sentences.push_back(sentence(*at));
        tell(std::to_string(number), sentences);
      }
    };
    for (const auto& forecast : m_survey.definitions) {
      tell_window_until(forecast.line);
      std::vector<Sentence> sentences;
      if (tells_of(forecast)) sentences = sentences_on(forecast);
      for (; at != end && at->line == forecast.line; ++at) sentences.push_back(sentence(*at));
      if (!sentences.empty()) tell(std::to_string(forecast.line), sentences);
    }
    tell_window_until(static_cast<std::size_t>(-1));
  }

  static Sentence sentence(const LineFinding& each) {
    return {text_of(each.finding), is_notice(each.finding.problem) ? Tone::plain : Tone::notice};
  }

  bool tells_of(const Forecast& forecast) const {
    const bool quiet = forecast.outcome == Outcome::none || forecast.outcome == Outcome::stands;
    return !quiet || !forecast.findings.empty() || !forecast.depends_on.empty() ||
           (m_style.all && forecast.outcome == Outcome::stands);
  }

  void tell_order() {
    const auto& window = m_survey.window;
    if (window.reordered_files == 0 && window.reordered_scripts == 0) return;
    tell("*", {{_("The next save of the window writes the definitions in another order.")}});
  }

  void tell(const std::string& label, const std::vector<Sentence>& sentences) {
    const auto indent = m_digits + 2;
    m_text += std::string(m_digits - std::min(m_digits, label.size()), ' ') + label + "  ";
    bool first = true;
    for (const auto& [text, tone] : sentences) {
      if (!first) m_text += std::string(indent, ' ');
      first = false;
      m_text += coloured(wrapped(text, indent, m_style.width), tone) + '\n';
    }
  }

  std::string coloured(const std::string& text, Tone tone) const {
    if (!m_style.colour || tone == Tone::plain) return text;
    return (tone == Tone::alarm ? "\033[1;31m" : "\033[35m") + text + "\033[0m";
  }

  const Survey& m_survey;
  const ReportStyle& m_style;
  std::size_t m_digits = 1;
  std::string m_text;
};

}  // namespace

std::string report_on(const Survey& survey, const ReportStyle& style) {
  const auto details = style.summary_only ? std::string{} : Report{survey, style}.text();
  return details + (details.empty() ? "" : "\n") + summary_of(survey) + '\n';
}

}  // namespace varnholt::check
