// SPDX-License-Identifier: GPL-3.0-or-later
// A problem of a profile or of the machine, and its subject.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace varnholt::check {

enum class Problem {
  // These make the work on a link fail.
  path_empty,
  path_ends_in_slash,
  path_ends_in_dots,
  path_through_itself,
  path_mounted,
  path_blocked,
  foreign_link,
  read_only,
  immutable,
  no_backup_name,
  name_too_long,
  no_links,
  no_links_there,
  source_empty,
  source_dots,
  source_folder_missing,
  source_in_path,
  source_by_backup,
  source_is_dangling,
  source_slashes,
  source_mounted,
  mounted_below,
  overlap,
  same_place,
  no_room,
  copy_into_itself,
  // With these it may work, but perhaps not as it was meant.
  little_room,
  room_uncounted,
  path_through_missing,
  hidden,
  needed_by_run,
  relative,
  source_is_link,
  leads_nowhere,
  source_missing,
  value_missing,
  same_path,
  // What the window makes of a line.
  fields,
  nul_byte,
  unknown_kind,
  own_source,
  route_name_taken,
  route_taken,
  answer_repeated,
  other_operation,
  other_answer,
  other_value,
  no_utf8,
  // In the file of the profile, and in the files beside it.
  owner,
  writable,
  unsaved,
  no_script,
  profile_fixed,
  note_unread,
  leftover,
  command_missing,
};

struct Finding {
  Problem problem;
  /** A path, a number or a word, as the text of the problem wants it. */
  std::string about{};
};

/** Returns the word for a problem that the documents for programs use; it never changes. */
std::string_view key_of(Problem problem);

/** Returns whether a problem only informs: nothing fails, and nothing gets lost. */
bool is_notice(Problem problem);

/** Returns whether nobody can tell what comes of a definition with this problem. */
bool is_doubtful(Problem problem);

/** Returns a sentence on a finding in the user's language. */
std::string text_of(const Finding& finding);

}  // namespace varnholt::check
