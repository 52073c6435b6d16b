// SPDX-License-Identifier: GPL-3.0-or-later
// The problems that can be found with a definition and with a run.
#pragma once

#include <string>
#include <string_view>

#include <glib/gi18n.h>

namespace varnholt::foresight {

/** How grave a problem is. */
enum class Weight {
  /** Nothing fails, and nothing gets lost. */
  notice,
  problem,
  /** A problem with which nobody can tell what comes of a definition. */
  doubt,
  /** The same, but only because nobody has looked. */
  open,
};

struct Problem {
  bool operator==(const Problem& that) const { return word == that.word; }
  bool is_notice() const { return weight == Weight::notice || weight == Weight::open; }
  bool is_doubtful() const { return weight == Weight::doubt || weight == Weight::open; }

  /** The name for programs, which never changes. */
  std::string_view word;
  /** A sentence, in which %1 is the subject. */
  const char* text;
  Weight weight = Weight::problem;
};

/** A problem of a profile or of the machine. */
struct Finding {
  Problem problem;
  /** A path, a number or a word, as the text of the problem wants it. */
  std::string about{};
};

namespace problems {

// Problems that make the work on a link fail.
constexpr Problem path_empty{"path-empty", N_("The path of the link is empty.")};
constexpr Problem path_ends_in_slash{"path-ends-in-slash",
                                     N_("The path of the link ends with a slash.")};
constexpr Problem path_ends_in_dots{"path-ends-in-dots",
                                    N_("The path of the link ends with dots.")};
constexpr Problem path_through_itself{"path-through-itself",
                                      N_("The path of the link leads through itself.")};
constexpr Problem path_mounted{"path-mounted", N_("A file system is mounted at %1.")};
constexpr Problem path_blocked{"path-blocked", N_("%1 is in the way: it is no folder.")};
constexpr Problem foreign_link{
    "foreign-link",
    N_("Root does not follow %1, a link of an ordinary user to what is not that user's.")};
constexpr Problem read_only{"read-only", N_("The file system of %1 is read-only.")};
constexpr Problem immutable{"immutable",
                            N_("An attribute of %1 forbids any change; see chattr(1).")};
constexpr Problem no_backup_name{"no-backup-name", N_("No backup name is free.")};
constexpr Problem name_too_long{"name-too-long", N_("The path, or a name in it, is too long.")};
constexpr Problem no_links{"no-links", N_("The file system of %1 knows no symbolic links.")};
constexpr Problem no_links_there{
    "no-links-there",
    N_("The file system of %1 knows no symbolic links: what has moved is moved back."),
    Weight::doubt};
constexpr Problem source_empty{"source-empty", N_("The source is empty.")};
constexpr Problem source_dots{"source-ends-in-dots", N_("The source ends with dots.")};
constexpr Problem source_slashes{"source-slashes", N_("The source ends with more than one slash."),
                                 Weight::doubt};
constexpr Problem source_folder_missing{"source-folder-missing",
                                        N_("The folder above the source, %1, is missing.")};
constexpr Problem source_in_path{"source-in-path", N_("The source lies in what would be moved.")};
constexpr Problem source_by_backup{"source-by-backup",
                                   N_("The source leads to the backup name, %1."), Weight::doubt};
constexpr Problem source_is_dangling{
    "source-dangling",
    N_("The source is a link that leads nowhere; no folder can take its place.")};
constexpr Problem source_mounted{
    "source-mounted", N_("A file system is mounted at %1, which would have to be deleted.")};
constexpr Problem mounted_below{"mounted-below",
                                N_("A file system is mounted at %1, which would have to be moved."),
                                Weight::doubt};
constexpr Problem overlap{
    "overlap", N_("Deleting what stands at the source would take away what is to be moved, or the "
                  "way to one of the two.")};
constexpr Problem same_place{"same-place", N_("The source and the path are the same place.")};
constexpr Problem no_room{"no-room", N_("There is not enough room at %1."), Weight::doubt};
constexpr Problem copy_into_itself{
    "copy-into-itself",
    N_("The link lies in what it leads to, %1, which cannot be copied into itself."),
    Weight::doubt};

// With these it may work, but perhaps not as it was meant.
constexpr Problem little_room{
    "little-room", N_("Nobody can tell whether the room at %1 is enough."), Weight::doubt};
constexpr Problem room_uncounted{
    "room-uncounted", N_("Whether the room at %1 is enough has not been counted."), Weight::open};
constexpr Problem path_through_missing{
    "path-through-missing", N_("The path leads through %1, which is missing."), Weight::doubt};
constexpr Problem too_deep{"too-deep", N_("The way along %1 is too long to be looked at."),
                           Weight::doubt};
constexpr Problem hidden{"hidden", N_("This user cannot see what is at %1."), Weight::doubt};
constexpr Problem needed_by_run{"needed-by-run", N_("The run itself needs what is in %1."),
                                Weight::doubt};
constexpr Problem relative{
    "relative", N_("%1 counts from the folder in which the link builder will run."), Weight::doubt};
constexpr Problem source_is_link{
    "source-is-link",
    N_("The source is a link to %1: the link is deleted, and what it leads to stays.")};
constexpr Problem leads_nowhere{"leads-nowhere",
                                N_("Nothing is at %1, so the link leads nowhere.")};
constexpr Problem source_missing{"source-missing", N_("There is nothing at the source, %1.")};
constexpr Problem value_missing{"value-missing", N_("A value is missing.")};
constexpr Problem same_path{"same-path", N_("Line %1 has the same path.")};
constexpr Problem note_unread{
    "note-unread",
    N_("What an earlier run has left unfinished is not known: its note cannot be read (%1).")};

}  // namespace problems

}  // namespace varnholt::foresight
