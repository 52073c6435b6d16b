// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a person the results of a survey.
#include "check/report.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <vector>

#include <glib/gi18n.h>

#include "base/path.h"
#include "check/wording.h"

namespace varnholt::check {
namespace {

namespace outcomes = foresight::outcomes;

/** How a sentence is meant; its colour depends on that. */
enum class Tone { plain, notice, alarm };

struct Sentence {
  std::string text;
  Tone tone = Tone::plain;
};
using Sentences = std::vector<Sentence>;

Sentence sentence_on(const Finding& finding) {
  const auto text = text_of(finding) + " [" + std::string{finding.problem.word} + ']';
  return {text, finding.problem.is_notice() ? Tone::plain : Tone::notice};
}

/** Returns the amount of what moves or is copied, when there is any. */
const std::optional<files::Tally>& amount_in(const foresight::Forecast& forecast) {
  return forecast.moved ? forecast.moved : forecast.copied;
}

/** Returns a text on a forecast, as the comment on Phrase tells. */
std::string told(const char* text, const foresight::Forecast& forecast) {
  const auto& tally = amount_in(forecast);
  return filled(_(text), {printable(forecast.definition.to), printable(forecast.definition.from),
                          printable(forecast.content), tally ? amount(*tally) : "",
                          printable(forecast.backup)});
}

std::string what_comes(const foresight::Forecast& forecast) {
  const auto& outcome = forecast.outcome;
  if (outcome == outcomes::left_alone) return told(forecast.reason.text, forecast);
  if (outcome == outcomes::fails && foresight::is_marked(forecast.definition)) {
    return told(N_("FAILS: the link %1 is not undone."), forecast);
  }
  const bool uncounted = outcome.uncounted != nullptr && !amount_in(forecast)->counted;
  return told(uncounted ? outcome.uncounted : outcome.text, forecast);
}

std::string deletion_of(const foresight::Forecast& forecast) {
  const auto source = printable(forecast.definition.from);
  if (!forecast.deleted->counted) return filled(_("DELETED: what stands at %1 now."), {source});
  return filled(_("DELETED: what stands at %1 now, %2."), {source, amount(*forecast.deleted)});
}

/** Returns the parts of an enumeration as one text. */
std::string joined(const std::vector<std::string>& parts) {
  std::string whole;
  for (const auto& part : parts) whole += (whole.empty() ? "" : _(", ")) + part;
  return whole;
}

std::string dependencies_of(const foresight::Forecast& forecast) {
  const bool on_rest = forecast.depends_on.front() == 0;
  std::vector<std::string> lines;
  std::transform(forecast.depends_on.begin() + (on_rest ? 1 : 0), forecast.depends_on.end(),
                 std::back_inserter(lines), [](std::size_t line) { return std::to_string(line); });
  if (!on_rest) {
    return filled(
        ngettext("What comes of this line depends on what comes of line %1.",
                 "What comes of this line depends on what comes of lines %1.", lines.size()),
        {joined(lines)});
  }
  if (lines.empty()) return _("What comes of this line depends on what an earlier run has left.");
  return filled(_("What comes of this line depends on what an earlier run has left, and on other "
                  "lines: %1."),
                {joined(lines)});
}

Sentences sentences_on(const foresight::Forecast& forecast) {
  const auto& definition = forecast.definition;
  const auto& outcome = forecast.outcome;
  const auto tone = outcome == outcomes::fails ? Tone::alarm
                    : forecast.is_neglected()  ? Tone::notice
                                               : Tone::plain;
  Sentences sentences;
  // Without a source or a path there is only that to tell.
  const bool nameless = definition.from.empty() || definition.to.empty();
  if (!forecast.depends_on.empty()) {
    sentences.push_back({dependencies_of(forecast), Tone::notice});
    sentences.push_back({filled(_("As things are now: %1"), {what_comes(forecast)}), tone});
  } else if (outcome != outcomes::none || !nameless) {
    sentences.push_back({what_comes(forecast), tone});
  }
  for (const auto& finding : forecast.findings) {
    sentences.push_back(sentence_on(finding));
  }
  if (outcome == outcomes::fails) sentences.push_back({told(forecast.remains.text, forecast)});
  if (forecast.deleted) sentences.push_back({deletion_of(forecast), Tone::alarm});
  if (outcome == outcomes::copied) {
    sentences.push_back({_("The copies belong to root and are new; links in them stay links.")});
  } else if (foresight::is_marked(definition) && outcome != outcomes::dropped) {
    sentences.push_back({_("The line leaves the profile.")});
  }
  return sentences;
}

Sentences sentences_on(const foresight::UnfinishedWork& unfinished) {
  const auto& [work, next, outlook] = unfinished;
  const auto path = printable(work.to);
  const auto backup = printable(work.backup);
  const auto tone = next.waits() ? Tone::notice : Tone::plain;
  Sentences sentences{{filled(_("An earlier run did not finish %1."), {path}), tone}};
  if (!work.backup.empty() && is_there(work.backup)) {
    sentences.push_back({filled(_("What stood there is called %1 now."), {backup})});
  }
  if (!next.removed.empty()) {
    sentences.push_back({filled(_("%1 is removed, as all of it is in %2."),
                                {printable(next.removed), printable(next.whole_at)})});
  }
  sentences.push_back({filled(_(outlook.text), {path, printable(work.from), backup})});
  return sentences;
}

/** The outcomes of links in the summary, as far as there are any. */
std::string counts_of(const Survey& survey) {
  std::vector<std::string> counts;
  const auto count = [&](const char* text, const auto& holds) {
    const auto links = std::ranges::count_if(survey.run.definitions, holds);
    if (links > 0) counts.push_back(filled(_(text), {number(static_cast<std::size_t>(links))}));
  };
  for (const auto& each :
       {outcomes::stands, outcomes::made, outcomes::replaced, outcomes::adopted, outcomes::copied,
        outcomes::left_alone, outcomes::fails, outcomes::unknown}) {
    count(each.count, [&each](const foresight::Forecast& forecast) {
      return forecast.outcome == each && forecast.depends_on.empty();
    });
  }
  count(N_("%1 depending on others"),
        [](const foresight::Forecast& forecast) { return !forecast.depends_on.empty(); });
  return counts.empty() ? _("none") : joined(counts);
}

std::string summary_of(const Survey& survey) {
  const auto links = filled(_("Links: %1."), {counts_of(survey)});
  const auto problems = number_of_problems(survey);
  if (problems > 0) {
    const auto* const text = ngettext("%1 thing to look at.", "%1 things to look at.", problems);
    return filled(_("%1 %2"), {links, filled(text, {number(problems)})});
  }
  const auto* const text = status_of(survey) == 0
                               ? _("Nothing would change, and nothing is wrong.")
                               : _("Something would change, and nothing is wrong.");
  return filled(_("%1 %2"), {links, text});
}

/** Returns what is told of each line: of its forecast, and then what the window makes of it. */
std::map<std::size_t, Sentences> sentences_by_line(const Survey& survey, bool all) {
  std::map<std::size_t, Sentences> lines;
  for (const auto& forecast : survey.run.definitions) {
    const bool stands = forecast.outcome == outcomes::stands;
    const bool quiet = forecast.outcome == outcomes::none || (stands && !all);
    if (!quiet || !forecast.findings.empty() || !forecast.depends_on.empty()) {
      lines.emplace(forecast.line, sentences_on(forecast));
    } else if (all) {
      lines[forecast.line];
    }
  }
  for (const auto& [line, finding] : survey.window.findings) {
    lines[line].push_back(sentence_on(finding));
  }
  return lines;
}

std::string laid_out(const Sentence& sentence, std::size_t indent, const ReportStyle& style) {
  const auto* const mark = sentence.tone == Tone::plain ? "" : "! ";
  auto text = wrapped(mark + sentence.text, indent, style.width);
  if (!style.colour || sentence.tone == Tone::plain) return text;
  return (sentence.tone == Tone::alarm ? "\033[1;31m" : "\033[35m") + text + "\033[0m";
}

std::string details_of(const Survey& survey, const ReportStyle& style) {
  const auto& run = survey.run;
  const auto lines = sentences_by_line(survey, style.all);
  const auto digits = lines.empty() ? 1 : std::to_string(lines.rbegin()->first).size();
  std::string text;
  const auto tell = [&](const std::string& label, const Sentences& sentences) {
    auto head = std::string(digits - label.size(), ' ') + label + "  ";
    for (const auto& sentence : sentences) {
      text += head + laid_out(sentence, head.size(), style) + '\n';
      head.assign(head.size(), ' ');
    }
  };
  if (run.lines_done > 0) {
    const auto* const sentence =
        _("An earlier run was cut off at line %1; the next one goes on from there.");
    tell("*", {{filled(sentence, {std::to_string(run.lines_done)})}});
  }
  for (const auto& unfinished : run.unfinished) tell("*", sentences_on(unfinished));
  for (const auto& [line, sentences] : lines) tell(std::to_string(line), sentences);
  if (survey.window.reordered_files > 0 || survey.window.reordered_scripts > 0) {
    tell("*", {{_("The next save of the window writes the definitions in another order.")}});
  }
  for (const auto& finding : survey.around) tell("*", {sentence_on(finding)});
  return text;
}

}  // namespace

std::string report_on(const Survey& survey, const ReportStyle& style) {
  const auto details = style.summary_only ? std::string{} : details_of(survey, style);
  return details + (details.empty() ? "" : "\n") + summary_of(survey) + '\n';
}

}  // namespace varnholt::check
