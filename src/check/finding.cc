// SPDX-License-Identifier: GPL-3.0-or-later
// What is wrong, or will be.
#include "check/finding.h"

#include <algorithm>
#include <iterator>

#include <glib/gi18n.h>

#include "check/wording.h"

namespace varnholt {
namespace {

/** How grave a problem is. */
enum class Weight { notice, problem, doubt };

struct Entry {
  Problem problem;
  std::string_view key;
  const char* text;
  Weight weight = Weight::problem;
};

constexpr Entry entries[] = {
    {Problem::path_empty, "path-empty", N_("The path of the link is empty.")},
    {Problem::path_ends_in_slash, "path-ends-in-slash",
     N_("The path of the link ends with a slash.")},
    {Problem::path_ends_in_dots, "path-ends-in-dots", N_("The path of the link ends with dots.")},
    {Problem::path_through_itself, "path-through-itself",
     N_("The path of the link leads through itself.")},
    {Problem::path_mounted, "path-mounted", N_("A file system is mounted at %1.")},
    {Problem::path_blocked, "path-blocked", N_("%1 is in the way: it is no folder.")},
    {Problem::read_only, "read-only", N_("The file system of %1 is read-only.")},
    {Problem::immutable, "immutable", N_("An attribute of %1 forbids any change; see chattr(1).")},
    {Problem::no_backup_name, "no-backup-name", N_("No backup name is free.")},
    {Problem::name_too_long, "name-too-long", N_("The path, or a name in it, is too long.")},
    {Problem::no_links, "no-links", N_("The file system of %1 knows no symbolic links.")},
    {Problem::source_empty, "source-empty", N_("The source is empty.")},
    {Problem::source_dots, "source-ends-in-dots", N_("The source ends with dots.")},
    {Problem::source_slashes, "source-slashes", N_("The source ends with more than one slash."),
     Weight::doubt},
    {Problem::source_folder_missing, "source-folder-missing",
     N_("The folder above the source, %1, is missing.")},
    {Problem::source_in_path, "source-in-path", N_("The source lies in what would be moved.")},
    {Problem::source_by_backup, "source-by-backup", N_("The source leads to the backup name, %1."),
     Weight::doubt},
    {Problem::source_is_dangling, "source-dangling",
     N_("The source is a link that leads nowhere; no folder can take its place.")},
    {Problem::source_mounted, "source-mounted",
     N_("A file system is mounted at %1, which would have to be deleted.")},
    {Problem::mounted_below, "mounted-below",
     N_("A file system is mounted at %1, which would have to be moved."), Weight::doubt},
    {Problem::overlap, "overlap",
     N_("Deleting what stands at the source would take away what is to be moved.")},
    {Problem::same_place, "same-place", N_("The source and the path are the same place.")},
    {Problem::no_room, "no-room", N_("There is not enough room at %1.")},
    {Problem::copy_into_itself, "copy-into-itself",
     N_("The link lies in what it leads to, %1, which cannot be copied into itself.")},
    {Problem::little_room, "little-room", N_("Nobody can tell whether the room at %1 is enough."),
     Weight::doubt},
    {Problem::needed_by_run, "needed-by-run", N_("The run itself needs what is in %1."),
     Weight::doubt},
    {Problem::relative, "relative",
     N_("%1 counts from the folder in which the link builder will run."), Weight::doubt},
    {Problem::source_is_link, "source-is-link",
     N_("The source is a link to %1: the link is deleted, and what it leads to stays.")},
    {Problem::leads_nowhere, "leads-nowhere", N_("Nothing is at %1, so the link leads nowhere.")},
    {Problem::source_missing, "source-missing", N_("There is nothing at the source, %1.")},
    {Problem::value_missing, "value-missing", N_("A value is missing.")},
    {Problem::same_path, "same-path", N_("Line %1 has the same path.")},
    {Problem::fields, "fields",
     N_("The window cannot read this line, which has %1 fields: it is gone after the next save.")},
    {Problem::nul_byte, "nul-byte",
     N_("The window cannot read this line, which holds a NUL byte: it is gone after the next "
        "save.")},
    {Problem::unknown_kind, "unknown-kind",
     N_("The window knows no such line: it is gone after the next save.")},
    {Problem::own_source, "own-source",
     N_("The window takes no line whose source is its target: it is gone after the next save.")},
    {Problem::route_name_taken, "route-name-taken",
     N_("Line %1 has a route of the same name: this one is gone after the next save.")},
    {Problem::route_taken, "route-taken",
     N_("Line %1 has the same address, mask and gateway: this route is gone after the next "
        "save.")},
    {Problem::answer_repeated, "answer-repeated",
     N_("Line %1 answers this too, and counts: this one is gone after the next save.")},
    {Problem::other_operation, "other-operation",
     N_("The window reads the operation as \"%1\", and its next save writes that.")},
    {Problem::other_answer, "other-answer",
     N_("The window reads the answer as \"%1\", and its next save writes that.")},
    {Problem::no_utf8, "no-utf8",
     N_("This line is no UTF-8: it stays only as long as nobody edits it."), Weight::notice},
    {Problem::owner, "owner", N_("The profile belongs to the user %1 and not to root.")},
    {Problem::writable, "writable", N_("Others than root may write the profile.")},
    {Problem::unsaved, "unsaved",
     N_("A save was not put into place: %1 is newer than the profile and says something else.")},
    {Problem::no_script, "no-script",
     N_("There is no backup script %1, so closing the window runs no link builder."),
     Weight::notice},
    {Problem::profile_folder, "profile-folder",
     N_("The profile cannot be replaced: nothing can be written in %1.")},
    {Problem::note_unread, "note-unread",
     N_("What an earlier run has left unfinished is not known: its note cannot be read (%1).")},
    {Problem::leftover, "leftover",
     N_("A run that was cut off has left %1; the next run looks after it.")},
    {Problem::command_missing, "command-missing", N_("The command %1 is missing.")},
};

const Entry& entry_of(Problem problem) {
  return *std::ranges::find(entries, problem, &Entry::problem);
}

}  // namespace

std::string_view key_of(Problem problem) {
  return entry_of(problem).key;
}

bool is_notice(Problem problem) {
  return entry_of(problem).weight == Weight::notice;
}

bool is_doubtful(Problem problem) {
  return entry_of(problem).weight == Weight::doubt;
}

std::string text_of(const Finding& finding) {
  return filled(_(entry_of(finding.problem).text), {printable(finding.about)});
}

}  // namespace varnholt
