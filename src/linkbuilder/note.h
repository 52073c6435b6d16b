// SPDX-License-Identifier: GPL-3.0-or-later
// The note of unfinished work: what a run of the link builder is about to do with a definition, so
// that a later run can finish it after a cut or a failure. It is a small file of root beside the
// profile, which is there only while something is unfinished.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "linkbuilder/moves.h"
#include "model/definition.h"

namespace varnholt::linkbuilder {

/** How far the work on a definition has come. The words in the note are those of the names. */
enum class Stage {
  /** What stands at the path gets its backup name, and then what stands at the source goes. */
  aside,
  /** What has the backup name moves to the source, where nothing stands. */
  move,
  /** What is at the source moves back to the path, because the link could not be made. */
  back,
  /** The link is removed, and a copy of what it leads to is made in its place. */
  undo,
  /** That copy has failed, and the line that asked for it has left the profile. */
  again,
  /** That copy is whole, but it is a link itself, which must not be undone in its turn. */
  undone,
};

/** The unfinished work on one definition. Paths are as the definition spells them. */
struct Work {
  bool undoes() const { return stage >= Stage::undo; }
  bool has_backup() const { return stage <= Stage::move; }
  /** Returns whether both are about the same definition. */
  bool same_definition(const Work& that) const {
    return from == that.from && to == that.to && undoes() == that.undoes();
  }
  bool operator==(const Work& that) const = default;

  /** Returns the path at which the backup stood. */
  std::string path_of_backup() const { return other.substr(0, other.rfind(backup_mark)); }
  /** Returns the path of the definition, for an adoption without links above its last name. */
  std::string path() const { return undoes() ? to : path_of_backup(); }

  Stage stage = Stage::aside;
  std::string from;
  std::string to;
  /**
   * The backup, as an absolute path without links above its name, because the path may be spelled
   * by way of what is moved; or the content of the link that is undone.
   */
  std::string other{};
  /** The inode of what stood at the path; of what a failed copy has left there, 0 for nothing. */
  ino_t inode = 0;
  /** The inode of what stood at the source; 0 for nothing. */
  ino_t source_inode = 0;
  /** Whether the source was on another file system than the path. */
  bool crosses = false;
  /** The folder from which relative paths count. */
  std::string folder{};
  /** When this was noted, in nanoseconds since the epoch; see Note::keep(). */
  std::int64_t time = 0;
};

/** Returns whether the source of an adoption is now on another file system than its path. */
bool lies_elsewhere(const Work& work);

/** Writes works as the bytes of a note. */
std::string note_text(const std::vector<Work>& works);

/** Reads a note. Returns nullopt unless the bytes are, from end to end, what note_text() writes. */
std::optional<std::vector<Work>> read_note(std::string_view bytes);

/** What stands in a note on the disk. */
struct StoredNote {
  std::vector<Work> works;
  /** Why what stands there cannot be used; empty when it can, or when there is no note. */
  std::string why;
  /** The errno with which it could not be opened; 0 when it could, or when there is none. */
  int error = 0;
};

/** Reads a note, which counts only when nobody but this user may write it. Changes nothing. */
StoredNote stored_note(const char* path, uid_t owner);

/**
 * The note on the disk. It is replaced as a whole and synced at each change. When it cannot be read
 * or written, or another user may write it, that is told on standard error, and the work goes on
 * without it.
 */
class Note {
 public:
  /** A note that is written nowhere. */
  Note() = default;
  /** Reads the note at `path`, which need not be there. The string must outlive this object. */
  explicit Note(const char* path);

  /** The unfinished works, the newest one last. */
  const std::vector<Work>& works() const { return m_works; }

  /**
   * Adds a work as the newest one, in the place of an earlier one on the same definition, with the
   * current folder and time. Returns false when an older note on the disk says something else of
   * this definition and can be neither replaced nor removed: what the work tells of must not begin
   * then, or a later run would misjudge what it finds.
   */
  bool keep(const Work& work);

  /** Removes the work on this definition, after what has come of it is on the disk. */
  void drop(const Work& work);

 private:
  void write();
  void tell(const char* what, const char* why);

  const char* m_path = nullptr;
  std::vector<Work> m_works;
  /** What the note on the disk says. */
  std::vector<Work> m_stored;
  bool m_told = false;
};

}  // namespace varnholt::linkbuilder
