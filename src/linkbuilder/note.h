// SPDX-License-Identifier: GPL-3.0-or-later
// The note of a run of the link builder that is not finished: how far it has come in the profile,
// and which works on definitions are unfinished, so that a later run can go on. It is a small file
// of root beside the profile, /etc/.varnholt.unfinished.
#pragma once

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnholt::linkbuilder {

/** The step that the work on a definition has come to. */
enum class Stage {
  /** What is at the path gets its backup name, and then what is at the source is deleted. */
  aside,
  /** The backup moves to the source, at which nothing is left but a link that leads nowhere. */
  move,
  /** The data at the source moves back to the path, because the link could not be made. */
  back,
  /** The link is removed, and a copy of what it leads to is made in its place. */
  undo,
};

/** The work on one definition. Source and path are absolute, and as the definition spells them. */
struct Work {
  bool operator==(const Work& that) const = default;

  /** Returns the path of the definition, for an adoption without links above its last name. */
  std::string path() const;

  /** Returns the backup of an adoption by the way on which the path is spelled. */
  std::string spelled_backup() const;

  /** Returns where the file systems of the path and of the source are mounted now. */
  std::array<std::string, 2> present_mounts() const;

  Stage stage = Stage::aside;
  /** The source; when a link is undone, the content of the link. */
  std::string from;
  /** The path of the link. */
  std::string to;
  /**
   * The backup of an adoption, without links above its name, because the path may be spelled by way
   * of what is moved.
   */
  std::string backup{};
  /** The inode of what was at the path. */
  ino_t inode = 0;
  /** The inode of what was at the source before the step; 0 for nothing. */
  ino_t source_inode = 0;
  /** Where the file systems of the path and of the source were mounted before the step. */
  std::array<std::string, 2> mounts{};
  /**
   * The number of entries that move, when mv(1) must copy them; otherwise 0. It deletes none before
   * all are copied, so their number tells which of the two places holds everything.
   */
  std::uint64_t entries = 0;
};

struct Note {
  bool operator==(const Note& that) const = default;

  /** The digest of the profile that the run has read; empty once the pass is over. */
  std::string profile{};
  /** The number of the line up to which definitions need not be taken again. */
  std::size_t line = 0;
  /** The unfinished works, the newest one last. */
  std::vector<Work> works{};
};

/**
 * Returns the digest of a profile for a note. Definitions that are marked deleted do not count, so
 * that the rewritten profile has the same one.
 */
std::string digest_of(std::string_view profile);

/** Writes a note as bytes. */
std::string note_text(const Note& note);

/** Reads a note. Returns nullopt unless the bytes are, from end to end, what note_text() writes. */
std::optional<Note> read_note(std::string_view bytes);

/** Returns whether bytes may be the beginning of a note. */
bool may_be_note(std::string_view bytes);

/** A note on the disk. */
struct StoredNote {
  /** Empty when there is no note, or none that can be used. */
  Note note{};
  bool is_there = false;
  /** Why the note cannot be used; empty when it can, or when there is none. */
  std::string why{};
  /** The errno with which it could not be opened; 0 when it could, or when there is none. */
  int error = 0;
};

/** Reads a note, which counts only when nobody but this user may write it. Changes nothing. */
StoredNote stored_note(const char* path, uid_t owner);

}  // namespace varnholt::linkbuilder
