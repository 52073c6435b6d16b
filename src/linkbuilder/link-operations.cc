// SPDX-License-Identifier: GPL-3.0-or-later
// What one symbolic definition does to the file system.
#include "linkbuilder/link-operations.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "base/diagnostics.h"
#include "base/file.h"
#include "base/glib-ptr.h"
#include "base/shell.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/stop-signals.h"

namespace fs = std::filesystem;

namespace {

using varnholt::is_link;
using varnholt::is_there;
using varnholt::path_argument;
using varnholt::print_failure;
using varnholt::print_progress;
using varnholt::linkbuilder::run_step;
using varnholt::linkbuilder::Stage;
using varnholt::linkbuilder::Work;
using varnholt::model::BakDefFields;

constexpr mode_t new_folder_mode = 0775;

/** Prints the outcome of a call of symlink(2), and returns its result. */
int tell_link(const BakDefFields& definition, int result) {
  const char* const from = definition.from.c_str();
  const char* const to = definition.to.c_str();
  if (result == 0) {
    print_progress("symlink %s ok  , source dir is %s  target dir is %s .\n", to, from, to);
  } else {
    print_failure("symlink %s failed , the return code is %d .\n", to, result);
  }
  return result;
}

constexpr auto* already_a_link = "%s is  already a symlink ,the target is %s .\n";

/** Replaces the link at `to`, which holds `content`. */
void renew_link(const BakDefFields& definition, const std::string& content) {
  const char* const to = definition.to.c_str();
  const int result = std::remove(to);
  if (result == 0) {
    varnholt::linkbuilder::make_link(definition);
    return;
  }
  print_failure(already_a_link, to, content.c_str());
  print_failure("remove %s failed , the return code is %d .\n", to, result);
}

/**
 * Creates the folders above `path`, and only those: a run that is interrupted must leave nothing at
 * the path itself, or the next run would move it onto the source.
 */
void make_folders_above(const std::string& path) {
  g_mkdir_with_parents(varnholt::folder_above(path).c_str(), new_folder_mode);
}

/** Makes a link where nothing exists, and creates the folders above it that are missing. */
void build_fresh_link(const BakDefFields& definition) {
  const char* const from = definition.from.c_str();
  const char* const to = definition.to.c_str();
  print_progress("source file [%s] is not exists \n", to);
  int result = symlink(from, to);
  if (result != 0 && errno == ENOENT) {
    make_folders_above(definition.to);
    result = symlink(from, to);
  }
  tell_link(definition, result);
}

/** Returns a path as an absolute one without links above its last name; empty when it has none. */
std::string real_path(const std::string& path) {
  std::error_code error;
  const fs::path spelled = path;
  const auto folder = spelled.has_parent_path() ? spelled.parent_path() : ".";
  const auto real = fs::canonical(folder, error) / spelled.filename();
  return error ? std::string{} : real.string();
}

void tell_stale_note(const char* path) {
  print_failure("%s is left alone, because an older note says something else of it\n", path);
}

/** Moves the folder or file at `to` onto the source and makes the link in its place. */
void adopt_and_link(const BakDefFields& definition, ino_t inode,
                    varnholt::linkbuilder::Note& run_note) {
  const char* const from = definition.from.c_str();
  const char* const to = definition.to.c_str();
  const bool nothing_at_source = !varnholt::exists(from) && !is_link(definition.from);
  const auto expected = varnholt::linkbuilder::free_backup_name(definition.to);
  Work work{nothing_at_source ? Stage::move : Stage::aside, definition.from, definition.to,
            real_path(expected), inode};
  varnholt::linkbuilder::Note unwritten;
  auto& note = varnholt::linkbuilder::is_backup_name(work.other) ? run_note : unwritten;
  work.source_inode = varnholt::linkbuilder::inode_at(varnholt::without_final_slash(work.from));
  work.crosses = varnholt::linkbuilder::lies_elsewhere(work);
  if (!note.keep(work)) return tell_stale_note(to);
  const std::string backup = varnholt::take_text(main_backup_file(to)).get();
  if (backup.empty()) {
    // A command that was killed may have renamed it nevertheless; the next run will find it.
    if (!is_there(definition.to)) return;
    // The call of symlink(2) fails, and its message reports the failure.
    varnholt::linkbuilder::make_link(definition);
    return note.drop(work);
  }
  if (backup != expected) {
    const auto name = fs::path{backup}.filename();
    work.other = fs::path{work.other}.replace_filename(name);
    note.keep(work);
  }
  print_progress("move force  %s  to %s \n", backup.c_str(), from);
  const bool moved = varnholt::linkbuilder::move_file(backup.c_str(), from, [&] {
    if (work.stage == Stage::move) return true;
    work.stage = Stage::move;
    // The deletion must not come back after the note says that it is done.
    varnholt::sync_folder_above(work.from);
    return note.keep(work);
  });
  if (moved) varnholt::linkbuilder::link_adopted(work, note);
}

/** Replaces a link by a copy of what it leads to. */
void replace_by_copy(Work work, varnholt::linkbuilder::Note& note) {
  const auto link = path_argument(work.to);
  const std::string command =
      "/bin/rm -rf " + link + " && /bin/cp -r " + path_argument(work.other) + "  " + link + ' ';
  if (!note.keep(work)) return tell_stale_note(work.to.c_str());
  const int status = run_step(command);
  print_failure("execute  [%s]  return code %d \n", command.c_str(), status);
  if (status != 0) return;
  if (!is_link(work.to)) return note.drop(work);
  work.stage = Stage::undone;
  note.keep(work);
}

}  // namespace

int varnholt::linkbuilder::make_link(const BakDefFields& definition) {
  return tell_link(definition, symlink(definition.from.c_str(), definition.to.c_str()));
}

void varnholt::linkbuilder::link_adopted(Work work, Note& note) {
  const BakDefFields definition{.from = work.from, .to = work.to};
  if (make_link(definition) == 0) return note.drop(work);
  const char* const from = work.from.c_str();
  const char* const to = work.to.c_str();
  work.stage = Stage::back;
  const bool moved_back = note.keep(work) && main_move_file_force(from, to);
  print_failure(
      "build symlink failed ,so  reback the file ,move  %s to %s (is already exists) ,and it "
      "reback is %s \n",
      from, to, moved_back ? "true" : "false");
  if (moved_back) note.drop(work);
}

void varnholt::linkbuilder::build_symlink(const BakDefFields& definition, Note& note) {
  if (!wants_link(definition)) return;
  const auto decision = decide_link(definition);
  switch (decision.task) {
    case LinkTask::none:
      print_progress(already_a_link, definition.to.c_str(), decision.content.c_str());
      return;
    case LinkTask::replace:
      return renew_link(definition, decision.content);
    case LinkTask::make:
      return build_fresh_link(definition);
    case LinkTask::adopt:
      return adopt_and_link(definition, decision.inode, note);
    case LinkTask::unreadable:
      print_failure("read_link failed , the error code  %d \n",
                    g_file_error_from_errno(decision.error));
      return;
    case LinkTask::refuse:
      print_failure("unknow file type,cat not  build symlink \n");
      return;
  }
}

void varnholt::linkbuilder::undo_symlink(const BakDefFields& definition, Note& note, Stage stage) {
  const char* const link = definition.to.c_str();
  const auto decision = decide_undo(definition.to);
  const char* const content = decision.content.c_str();
  switch (decision.task) {
    case UndoTask::copy:
      return replace_by_copy({stage, definition.from, definition.to, decision.content}, note);
    case UndoTask::missing:
      return print_failure("symlink %s is not exist \n", link);
    case UndoTask::no_link:
      return print_failure("file %s is not symlink \n", link);
    case UndoTask::unreadable:
      return print_failure("restore_del_symlink:read link failed ,message %s\n",
                           decision.message.c_str());
    case UndoTask::leads_nowhere:
      return print_failure("symlink target %s is not exist", content);
    case UndoTask::root:
      return print_failure("rm / is not be allow ,so return\n");
  }
}

void main_build_symlink(VhBakDefItem* v) {
  g_return_if_fail(v != NULL);
  varnholt::linkbuilder::Note unwritten;
  varnholt::linkbuilder::build_symlink(*v, unwritten);
}

int main_build_symlink_imp(VhBakDefItem* v) {
  g_return_val_if_fail(v != NULL, 0);
  return varnholt::linkbuilder::make_link(*v);
}

void main_restore_del_symlink(const char* link) {
  g_return_if_fail(link != NULL);
  varnholt::linkbuilder::Note unwritten;
  varnholt::model::BakDefFields definition;
  definition.to = link;
  varnholt::linkbuilder::undo_symlink(definition, unwritten);
}
