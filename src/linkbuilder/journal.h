// SPDX-License-Identifier: GPL-3.0-or-later
// Listens to the steps of a run and keeps the note on the disk, so that a later run can go on after
// a cut or a failure.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "linkbuilder/note.h"
#include "model/definition.h"

namespace varnholt::linkbuilder {

/**
 * An operation says what it is about to do before it does it, and when nothing is left to do. The
 * note is replaced as a whole and synced before a step that it is about begins; what a finished
 * work has changed is on the disk before the note forgets the work. When the note cannot be read or
 * written, that is told on standard error, and the run goes on without it.
 *
 * An answer of false means: an older note stays on the disk, can be neither replaced nor removed,
 * and would let a later run misjudge the outcome. The step must not be made.
 *
 * Works with relative paths are not noted, because a later run may begin in another folder.
 */
class Journal {
 public:
  /** A journal that writes nothing. */
  Journal() = default;
  /**
   * Reads the note at `path`, which need not be there, for a run over `profile`. Both must outlive
   * this object.
   */
  Journal(const char* path, std::string_view profile);

  /**
   * Returns the number of the line up to which the definitions of this profile need not be taken
   * again. Before the first line begins, that is what an earlier run has done.
   */
  std::size_t lines_done() const { return m_note.line; }

  /** Returns the unfinished works, the newest one last. */
  const std::vector<Work>& unfinished() const { return m_note.works; }

  /** The definition in this line is next. */
  void begin_line(std::size_t line) { m_note.line = line; }

  /** The folder or file at the path is about to get its backup name. */
  bool about_to_set_aside(const model::BakDefFields& v);

  /** It has this backup name now. */
  void has_set_aside(const std::string& backup);

  /** The backup is about to move to the source, which has been cleared, or the source back. */
  bool about_to_move(const std::string& from, const std::string& to);

  /** The link is about to be replaced by a copy of its content. */
  bool about_to_undo(const std::string& link, const std::string& content);

  /** Nothing is left to do for the work in hand. */
  void done();

  /** Takes an earlier work in hand, with which the run goes on. */
  void take_up(const Work& work);

  /** Forgets a work. The note on the disk follows with the next step, or at the end. */
  void forget(const Work& work);

  /** The pass is over, so that the next run is to take all lines. */
  void end();

 private:
  bool begin(Work work);
  bool write();
  void report(const char* what, const char* why);

  const char* m_path = nullptr;
  std::string_view m_profile;
  Note m_note;
  /** Whether the newest work is in hand. */
  bool m_in_hand = false;
  /** A finished work whose changes may not be on the disk yet. */
  std::optional<Work> m_to_sync;
  /** Whether there is a note on the disk. */
  bool m_stored = false;
  bool m_reported = false;
};

}  // namespace varnholt::linkbuilder
