// SPDX-License-Identifier: GPL-3.0-or-later
// What the next run of the link builder makes of one definition, as things are now.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/tree.h"
#include "foresight/file-systems.h"
#include "foresight/finding.h"
#include "linkbuilder/unfinished.h"
#include "model/definition.h"

namespace varnholt::foresight {

/**
 * What can be told of a definition. In its sentence %1 is the path, %2 the source, %3 the content
 * of the link that stands there, %4 the amount of what moves or is copied, and %5 the backup name.
 */
struct Phrase {
  bool operator==(const Phrase& that) const { return word == that.word; }

  /** The word for programs, which never changes. */
  std::string_view word{};
  const char* text = nullptr;
  /** The part of the summary that tells of how many links this holds; null for none. */
  const char* count = nullptr;
  /** The sentence when nobody has counted; null when it is the same one. */
  const char* uncounted = nullptr;
};

/** What comes of a definition. */
namespace outcomes {

/** The link builder has nothing to do with it. */
constexpr Phrase none{"none", N_("%1 is to be a copy of %2.")};
constexpr Phrase stands{"stands", N_("%1 is a link to %2, as it should be."), N_("%1 in place")};
constexpr Phrase made{"made", N_("%1 is made, a link to %2."), N_("%1 to be made")};
constexpr Phrase replaced{"replaced", N_("%1 becomes a link to %2; now it leads to %3."),
                          N_("%1 to be replaced")};
constexpr Phrase adopted{"adopted", N_("%1 becomes a link to %2; moved to the source: %4."),
                         N_("%1 to be moved"),
                         N_("%1 becomes a link to %2; what stands there moves to the source.")};
constexpr Phrase copied{"copied", N_("The link %1 is undone by a copy of %3: %4."),
                        N_("%1 to be undone"), N_("The link %1 is undone by a copy of %3.")};
/** A reason has the sentence. */
constexpr Phrase left_alone{"left-alone", "", N_("%1 left alone")};
/** Only the line, which is marked deleted, leaves the profile. */
constexpr Phrase dropped{"dropped", N_("The definition of %1 leaves the profile.")};
constexpr Phrase fails{"fails", N_("FAILS: %1 does not become a link to %2."), N_("%1 failing")};
/** Nobody but root can see enough to tell. */
constexpr Phrase unknown{"unknown", N_("What comes of %1 cannot be told."), N_("%1 unknown")};

}  // namespace outcomes

/** What a failure leaves behind. */
namespace remains {

constexpr Phrase all{"all", N_("Everything stays as it is.")};
constexpr Phrase folders{"folders",
                         N_("Folders above it are made, and everything else stays as it is.")};
constexpr Phrase backup{"backup", N_("What stands there is then called %5, until the next run.")};
constexpr Phrase backup_only{
    "backup-only", N_("What stands there is then called %5, until the next run; what stands at the "
                      "source is gone, or a part of it.")};
constexpr Phrase nothing{"nothing", N_("Nothing stands there then.")};
constexpr Phrase source{"source", N_("What was to be moved is at %2 then, until the next run.")};

}  // namespace remains

/** Why a definition is left alone. */
namespace reasons {

constexpr Phrase kind{"kind", N_("%1 is left alone: it is no folder, file or link.")};
constexpr Phrase unreadable{"unreadable", N_("%1 is left alone: the link cannot be read.")};
constexpr Phrase missing{"missing", N_("%1 is not undone: nothing is there.")};
constexpr Phrase dangling{"dangling", N_("%1 is not undone: the link leads nowhere.")};
constexpr Phrase no_link{"no-link", N_("%1 is not undone: it is no link.")};
constexpr Phrase leads_nowhere{"leads-nowhere",
                               N_("%1 is not undone: from here its content, %3, leads nowhere.")};
constexpr Phrase unfinished{"unfinished",
                            N_("%1 is left alone, because of what an earlier run has left.")};

}  // namespace reasons

/** Where a definition looks beside the way to its path. No path has links above its name. */
struct Footprint {
  /** Adds the entries on a way to those that are relied on. */
  void rely_on(const std::vector<std::string>& way);

  /** The entries that must be there, or be missing, as they are now, beside those that change. */
  std::vector<std::string> relied{};
  /** The entries that matter with everything in them. */
  std::vector<std::string> whole{};
  /** The entries that are made, moved or deleted. */
  std::vector<std::string> changed{};
  /** The folders that are made above a link. */
  std::vector<std::string> made{};
};

struct Forecast {
  /** Adds a finding. A doubtful one makes the forecast unsure. */
  void add(const Finding& finding);

  /** Adds the finding with which the work on the definition fails. */
  void fail(const Finding& why, const Phrase& what_remains);

  /** Returns whether a definition is left alone for which something would have to be done. */
  bool is_neglected() const;

  /** The number of the line in the profile, from 1. */
  std::size_t line = 0;
  model::BakDefFields definition{};
  Phrase outcome = outcomes::none;
  /** What remains of a failure. */
  Phrase remains = remains::all;
  /** Why the definition is left alone. */
  Phrase reason{};
  /** The backup name in an adoption. */
  std::string backup{};
  /** The content of the link that stands there. */
  std::string content{};
  /** The folder or file that moves to the source. */
  std::optional<files::Tally> moved{};
  /** The earlier source, which is deleted. */
  std::optional<files::Tally> deleted{};
  /** The copy in the place of the link. */
  std::optional<files::Tally> copied{};
  std::vector<Finding> findings{};
  /** The lines on which the outcome depends; 0 stands for the unfinished work of earlier runs. */
  std::vector<std::size_t> depends_on{};
  /** Whether the forecast comes true as long as nobody else changes anything. */
  bool sure = true;
  /** Empty for a definition of which nothing comes. */
  Footprint footprint{};
};

/** Returns whether a definition is marked deleted. */
bool is_marked(const model::BakDefFields& definition);

/** Foretells what comes of a definition, without regard to those before it. */
Forecast foretell(model::BakDefFields definition, FileSystems& files);

/** Foretells a definition that the run leaves alone because of an unfinished work. */
Forecast foretell_left_alone(model::BakDefFields definition, FileSystems& files);

/** Foretells what comes of a definition when the run goes on with its unfinished work. */
Forecast foretell_rest(model::BakDefFields definition, const linkbuilder::Work& work,
                       const linkbuilder::Continuation& next, FileSystems& files);

/**
 * Completes the forecast of an adoption from its first step on, or from the second one when
 * everything that moves has this backup name already. `clears_source` says that whatever is at the
 * source is a part of it and is removed before.
 */
void foretell_adoption(Forecast& forecast, FileSystems& files, const std::string& backup = "",
                       bool clears_source = false);

}  // namespace varnholt::foresight
