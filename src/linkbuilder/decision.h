// SPDX-License-Identifier: GPL-3.0-or-later
// What is to be done with a symbolic definition, given what stands at its path. Deciding changes
// nothing.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "linkbuilder/note.h"
#include "model/definition.h"

namespace varnholt::linkbuilder {

/** What a run does with a definition. */
enum class Turn {
  /** Nothing: it is no link. */
  none,
  build,
  undo,
  /** Nothing: what is unfinished at its path cannot be finished by this run. */
  left_alone,
  /** Nothing: a copy at its path may not be whole, and would replace its original. */
  half_copied,
};

/**
 * Decides what comes of a definition, given the works that this run leaves alone and those that are
 * noted now.
 */
Turn turn_of(const model::BakDefFields& definition, const std::vector<Work>& left_alone,
             const std::vector<Work>& noted);

/** Returns whether a definition wants a link, that is, is symbolic and not marked deleted. */
bool wants_link(const model::BakDefFields& definition);

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
  /** The inode of what is adopted. */
  ino_t inode = 0;
};

/** Reads the content of a link as readlink(2) does. */
using ReadLink = ssize_t (*)(const std::string& path, char* content, std::size_t size);
ssize_t read_link(const std::string& path, char* content, std::size_t size);

/** Decides about a definition that is not marked deleted. */
LinkDecision decide_link(const model::BakDefFields& definition, ReadLink read = read_link);

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

}  // namespace varnholt::linkbuilder
