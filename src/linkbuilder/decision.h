// SPDX-License-Identifier: GPL-3.0-or-later
// What making or undoing the link of a definition takes, given the entry at its path. Deciding
// changes nothing.
#pragma once

#include <optional>
#include <string>

#include "files/way.h"
#include "model/definition.h"

namespace varnholt::linkbuilder {

/** Returns whether a definition wants a link, that is, is symbolic and not marked deleted. */
bool wants_link(const model::BakDefFields& definition);

/** Returns whether a definition wants a link to be undone. */
bool wants_undoing(const model::BakDefFields& definition);

/** What making a link takes. */
enum class LinkTask {
  /** The link is there. */
  none,
  /** A link with another content is there and is replaced. */
  replace,
  /** Nothing is there, and the link is made. */
  make,
  /** A folder or a regular file is there; it is moved onto the source, and the link is made. */
  adopt,
  /** The content of the link that is there cannot be read. */
  unreadable,
  /** Something else is there, such as a device, and is left alone. */
  refuse,
};

struct LinkDecision {
  LinkTask task = LinkTask::make;
  /** The content of the link that is there. */
  std::string content;
  /** The errno with which readlink(2) failed, when the link is unreadable. */
  int error = 0;
};

/** Decides about a definition that wants a link. */
LinkDecision decide_link(const model::BakDefFields& definition);

/**
 * Returns the link that would lead root astray in this task at the place of the path, because an
 * ordinary user has made it and it does not lead to what belongs to that user; nullopt for none.
 */
std::optional<files::Link> foreign_link(const model::BakDefFields& definition, LinkTask task,
                                        const files::Place& place);

/** What undoing a link takes. */
enum class UndoTask {
  /** The link is replaced by a copy of what it leads to. */
  copy,
  /** Nothing is there, or a link that leads nowhere. */
  missing,
  /** No link is there. */
  no_link,
  /** The content of the link cannot be read. */
  unreadable,
  /** The content leads nowhere from the current folder, where the copy would be made. */
  leads_nowhere,
  /** The path is the root folder. */
  root,
};

struct UndoDecision {
  UndoTask task = UndoTask::copy;
  std::string content;
  /** What made the link unreadable. */
  std::string message{};
};

/** Decides about the link of a definition that is marked deleted. */
UndoDecision decide_undo(const std::string& link);

/**
 * Returns the same for the copy of what a link leads to. A link whose content is the `source` of
 * its definition leads where the operator has said, whoever has made the link.
 */
std::optional<files::Link> foreign_link(const std::string& link, const std::string& content,
                                        const std::string& source);

}  // namespace varnholt::linkbuilder
