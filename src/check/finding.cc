// SPDX-License-Identifier: GPL-3.0-or-later
// The problems that a check can find.
#include "check/finding.h"

#include <algorithm>
#include <iterator>

#include <glib/gi18n.h>

#include "check/wording.h"

namespace varnholt::check {
namespace {

/** How grave a problem is. */
enum class Weight {
  notice,
  problem,
  /** A problem with which nobody can tell what comes of a definition. */
  doubt,
  /** The same, but only because nobody has looked. */
  open,
};

struct Entry {
  std::string_view key;
  const char* text;
  Problem problem;
  Weight weight = Weight::problem;
};

constexpr Entry entries[] = {
    {"path-empty", N_("The path of the link is empty."), Problem::path_empty},
    {"path-ends-in-slash", N_("The path of the link ends with a slash."),
     Problem::path_ends_in_slash},
    {"path-ends-in-dots", N_("The path of the link ends with dots."), Problem::path_ends_in_dots},
    {"path-through-itself", N_("The path of the link leads through itself."),
     Problem::path_through_itself},
    {"path-mounted", N_("A file system is mounted at %1."), Problem::path_mounted},
    {"path-blocked", N_("%1 is in the way: it is no folder."), Problem::path_blocked},
    {"foreign-link",
     N_("Root does not follow %1, a link of an ordinary user to what is not that user's."),
     Problem::foreign_link},
    {"read-only", N_("The file system of %1 is read-only."), Problem::read_only},
    {"immutable", N_("An attribute of %1 forbids any change; see chattr(1)."), Problem::immutable},
    {"no-backup-name", N_("No backup name is free."), Problem::no_backup_name},
    {"name-too-long", N_("The path, or a name in it, is too long."), Problem::name_too_long},
    {"no-links", N_("The file system of %1 knows no symbolic links."), Problem::no_links},
    {"no-links-there",
     N_("The file system of %1 knows no symbolic links: what has moved is moved back."),
     Problem::no_links_there, Weight::doubt},
    {"source-empty", N_("The source is empty."), Problem::source_empty},
    {"source-ends-in-dots", N_("The source ends with dots."), Problem::source_dots},
    {"source-slashes", N_("The source ends with more than one slash."), Problem::source_slashes,
     Weight::doubt},
    {"source-folder-missing", N_("The folder above the source, %1, is missing."),
     Problem::source_folder_missing},
    {"source-in-path", N_("The source lies in what would be moved."), Problem::source_in_path},
    {"source-by-backup", N_("The source leads to the backup name, %1."), Problem::source_by_backup,
     Weight::doubt},
    {"source-dangling",
     N_("The source is a link that leads nowhere; no folder can take its place."),
     Problem::source_is_dangling},
    {"source-mounted", N_("A file system is mounted at %1, which would have to be deleted."),
     Problem::source_mounted},
    {"mounted-below", N_("A file system is mounted at %1, which would have to be moved."),
     Problem::mounted_below, Weight::doubt},
    {"overlap", N_("Deleting what stands at the source would take away what is to be moved."),
     Problem::overlap},
    {"same-place", N_("The source and the path are the same place."), Problem::same_place},
    {"no-room", N_("There is not enough room at %1."), Problem::no_room, Weight::doubt},
    {"copy-into-itself",
     N_("The link lies in what it leads to, %1, which cannot be copied into itself."),
     Problem::copy_into_itself},
    {"little-room", N_("Nobody can tell whether the room at %1 is enough."), Problem::little_room,
     Weight::doubt},
    {"room-uncounted", N_("Whether the room at %1 is enough has not been counted."),
     Problem::room_uncounted, Weight::open},
    {"path-through-missing", N_("The path leads through %1, which is missing."),
     Problem::path_through_missing, Weight::doubt},
    {"hidden", N_("What is at %1 can be seen only with root rights."), Problem::hidden,
     Weight::doubt},
    {"needed-by-run", N_("The run itself needs what is in %1."), Problem::needed_by_run,
     Weight::doubt},
    {"relative", N_("%1 counts from the folder in which the link builder will run."),
     Problem::relative, Weight::doubt},
    {"source-is-link",
     N_("The source is a link to %1: the link is deleted, and what it leads to stays."),
     Problem::source_is_link},
    {"leads-nowhere", N_("Nothing is at %1, so the link leads nowhere."), Problem::leads_nowhere},
    {"source-missing", N_("There is nothing at the source, %1."), Problem::source_missing},
    {"value-missing", N_("A value is missing."), Problem::value_missing},
    {"same-path", N_("Line %1 has the same path."), Problem::same_path},
    {"fields",
     N_("The window cannot read this line, which has %1 fields: it is gone after the next save."),
     Problem::fields},
    {"nul-byte",
     N_("The window cannot read this line, which holds a NUL byte: it is gone after the next "
        "save."),
     Problem::nul_byte},
    {"unknown-kind", N_("The window knows no such line: it is gone after the next save."),
     Problem::unknown_kind},
    {"own-source",
     N_("The window takes no line whose source is its target: it is gone after the next save."),
     Problem::own_source},
    {"route-name-taken",
     N_("Line %1 has a route of the same name: this one is gone after the next save."),
     Problem::route_name_taken},
    {"route-taken",
     N_("Line %1 has the same address, mask and gateway: this route is gone after the next "
        "save."),
     Problem::route_taken},
    {"answer-repeated",
     N_("Line %1 answers this too, and counts: this one is gone after the next save."),
     Problem::answer_repeated},
    {"other-operation",
     N_("The window reads the operation as \"%1\", and its next save writes that."),
     Problem::other_operation},
    {"other-answer", N_("The window reads the answer as \"%1\", and its next save writes that."),
     Problem::other_answer},
    {"other-value", N_("The window reads a value as \"%1\", and its next save writes that."),
     Problem::other_value},
    {"no-utf8", N_("This line is no UTF-8: it stays only as long as nobody edits it."),
     Problem::no_utf8, Weight::notice},
    {"owner", N_("The profile belongs to the user %1 and not to root."), Problem::owner},
    {"writable", N_("Others than root may write the profile."), Problem::writable},
    {"unsaved",
     N_("A save was not put into place: %1 is newer than the profile and says something else."),
     Problem::unsaved},
    {"no-script", N_("There is no backup script %1, so closing the window runs no link builder."),
     Problem::no_script, Weight::notice},
    {"profile-fixed",
     N_("Nothing can replace the profile %1: definitions that are marked deleted stay in it."),
     Problem::profile_fixed},
    {"note-unread",
     N_("What an earlier run has left unfinished is not known: its note cannot be read (%1)."),
     Problem::note_unread},
    {"leftover", N_("A run that was cut off has left %1; the next run looks after it."),
     Problem::leftover},
    {"command-missing", N_("The command %1 is missing."), Problem::command_missing},
};

const Entry& entry_of(Problem problem) {
  return *std::ranges::find(entries, problem, &Entry::problem);
}

}  // namespace

std::string_view key_of(Problem problem) {
  return entry_of(problem).key;
}

bool is_notice(Problem problem) {
  const auto weight = entry_of(problem).weight;
  return weight == Weight::notice || weight == Weight::open;
}

bool is_doubtful(Problem problem) {
  const auto weight = entry_of(problem).weight;
  return weight == Weight::doubt || weight == Weight::open;
}

std::string text_of(const Finding& finding) {
  // The reason comes from the reader of the note, and may have a translation.
  const bool is_reason = finding.problem == Problem::note_unread;
  const std::string about = is_reason ? _(finding.about.c_str()) : finding.about;
  return filled(_(entry_of(finding.problem).text), {printable(about)});
}

}  // namespace varnholt::check
