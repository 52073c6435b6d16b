// SPDX-License-Identifier: GPL-3.0-or-later
// What one symbolic definition does to the file system.
#include "linkbuilder/link-operations.h"

#include <fcntl.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <utility>

#include "base/diagnostics.h"
#include "base/glib-ptr.h"
#include "base/path.h"
#include "base/shell.h"
#include "files/path-state.h"
#include "files/tree.h"
#include "files/way.h"
#include "linkbuilder/backup-name.h"
#include "linkbuilder/decision.h"
#include "linkbuilder/guards.h"
#include "linkbuilder/operations.h"
#include "linkbuilder/step.h"

namespace varnholt::linkbuilder {
namespace {

constexpr auto* already_a_link = "%s is  already a symlink ,the target is %s .\n";

/** Prints the outcome of a call of symlink(2), and returns its result. */
int report_link(const model::BakDefFields& v, int result) {
  const char* const to = v.to.c_str();
  if (result == 0) {
    print_progress("symlink %s ok  , source dir is %s  target dir is %s .\n", to, v.from.c_str(),
                   to);
  } else {
    print_failure("symlink %s failed , the return code is %d .\n", to, result);
  }
  return result;
}

/** Returns whether a link would lead root astray on the way to a path, and says so. */
bool is_led_astray(const std::optional<files::Link>& foreign, const std::string& path) {
  if (!foreign || geteuid() != 0) return false;
  report_foreign_link(path, *foreign);
  return true;
}

/** Removes the link that has been seen, unless somebody has put something else in its place. */
int remove_link(const files::Place& place, const std::string& content) {
  const bool is_same = place.link().first == content;
  return is_same ? unlinkat(place.folder(), place.name(), 0) : -1;
}

void replace_link(const model::BakDefFields& v, const std::string& content,
                  const files::Place& place) {
  const char* const to = v.to.c_str();
  const int result = remove_link(place, content);
  if (result == 0) {
    build_symlink_imp(v);
    return;
  }
  print_failure(already_a_link, to, content.c_str());
  print_failure("remove %s failed , the return code is %d .\n", to, result);
}

/**
 * Makes a link at which nothing is in the way, and the folders above it when they are missing.
 * Nothing is made at the path itself, where a run that is cut off would leave it.
 */
void build_fresh_link(const model::BakDefFields& v, const files::Place& place) {
  int result = symlinkat(v.from.c_str(), place.folder(), place.name());
  if (result != 0 && place.folder() < 0) {
    const files::Place made{v.to, files::Missing::make};
    result = symlinkat(v.from.c_str(), made.folder(), made.name());
    // By way of ".." one of the folders may be the path itself.
    if (result != 0) unlinkat(made.folder(), made.name(), AT_REMOVEDIR);
  }
  report_link(v, result);
}

bool move_entry(const std::string& from, const std::string& to) {
  Step step;
  step.moves(from, to);
  // A file replaces a link that leads nowhere, but a confined command may remove no name there.
  const files::PathState goal{to};
  if (goal.is_link() && step.is_confined() && !is_folder(from)) {
    remove_link(files::Place{to}, goal.content);
  }
  return step.run("/bin/mv " + path_argument(from) + ' ' + path_argument(to)) == 0;
}

}  // namespace

void build_symlink(const model::BakDefFields& v, Journal& journal, files::Place& fresh) {
  auto place = std::exchange(fresh, {});
  // 1. Other definitions want no link.
  if (!wants_link(v)) return;
  // 2. A link is there already: the one that is wanted, or another one, which is replaced.
  const auto decision = decide_link(v);
  if (decision.task == LinkTask::unreadable) {
    return print_failure("read_link failed , the error code  %d \n",
                         g_file_error_from_errno(decision.error));
  }
  if (decision.task == LinkTask::none) {
    return print_progress(already_a_link, v.to.c_str(), decision.content.c_str());
  }
  if (decision.task != LinkTask::make) place = {};
  place.become(v.to);
  if (is_led_astray(foreign_link(v, decision.task, place), v.to)) return;
  if (decision.task == LinkTask::replace) return replace_link(v, decision.content, place);
  // 3. Devices, FIFOs and sockets stay.
  if (decision.task == LinkTask::refuse) {
    return print_failure("unknow file type,cat not  build symlink \n");
  }
  // 4. Nothing is there: only folders may be missing, and nothing moves.
  if (decision.task == LinkTask::make) {
    print_progress("source file [%s] is not exists \n", v.to.c_str());
    build_fresh_link(v, place);
    fresh = std::move(place);
    return;
  }
  // 5. A folder or a file is set aside, and then moves to the source.
  if (!journal.about_to_set_aside(v)) return;
  const auto backup = backup_file(v.to);
  if (!backup.empty()) return move_and_link(v, backup, journal);
  // A command that was killed may have renamed it nevertheless; the next run will find it.
  if (!is_there(v.to)) return;
  // 6. and 8. The call of symlink(2) fails, and its message reports the failure.
  build_symlink_imp(v);
  journal.done();
}

void move_and_link(const model::BakDefFields& v, const std::string& backup, Journal& journal) {
  // 5. goes on.
  journal.has_set_aside(backup);
  if (is_link(backup)) {
    return print_failure("%s is left alone, because somebody has made it a link\n", backup.c_str());
  }
  print_progress("move force  %s  to %s \n", backup.c_str(), v.from.c_str());
  if (move_file_force(backup, v.from, journal)) link_or_move_back(v, journal);
}

void link_or_move_back(const model::BakDefFields& v, Journal& journal) {
  // 6. The link takes the place of what has moved.
  if (build_symlink_imp(v) == 0) return journal.done();
  // 7. Without a link, everything moves back.
  const bool moved_back = move_file_force(v.from, v.to, journal);
  print_failure(
      "build symlink failed ,so  reback the file ,move  %s to %s (is already exists) ,and it "
      "reback is %s \n",
      v.from.c_str(), v.to.c_str(), moved_back ? "true" : "false");
  if (moved_back) journal.done();
}

int build_symlink_imp(const model::BakDefFields& v) {
  const files::Place place{v.to};
  return report_link(v, symlinkat(v.from.c_str(), place.folder(), place.name()));
}

std::string backup_file(const std::string& filename) {
  const int names = leads_to_mount_with_slash(filename) ? 0 : backup_names;
  for (int number = 0; number < names; ++number) {
    auto name = backup_name(filename, number);
    if (is_there(name)) continue;
    Step step;
    step.moves(filename, name);
    const int status =
        step.run("/bin/mv -f " + path_argument(filename) + ' ' + path_argument(name));
    if (status == 0) return name;
    print_failure("rename from %s to  %s  failed ,return code  %d \n", filename.c_str(),
                  name.c_str(), status);
    // No other name helps a command that is not run.
    if (status < 0) break;
  }
  print_failure("can not  assign  a temp name for  %s \n", filename.c_str());
  return {};
}

bool move_file_force(const std::string& from_fn, const std::string& to_fn, Journal& journal) {
  const auto from = without_final_slash(from_fn);
  const auto to = without_final_slash(to_fn);
  const auto clearing = clearing_for(from, to);
  if (clearing == Clearing::remove) {
    Step step;
    step.removes(to);
    // Anything that still exists after the removal would receive the data inside it.
    if (step.run("/bin/rm -rf " + path_argument(to)) != 0 || exists(to)) {
      print_failure("remove  file %s failed \n", to.c_str());
      return false;
    }
  }
  const bool moved =
      clearing != Clearing::refuse && journal.about_to_move(from, to) && move_entry(from, to);
  if (!moved) print_failure("move file  from  %s  to %s failed \n", from.c_str(), to.c_str());
  return moved;
}

void restore_del_symlink(const std::string& link, const std::string& source, Journal& journal) {
  const auto decision = decide_undo(link);
  const char* const content = decision.content.c_str();
  switch (decision.task) {
    case UndoTask::missing:
      return print_failure("symlink %s is not exist \n", link.c_str());
    case UndoTask::no_link:
      return print_failure("file %s is not symlink \n", link.c_str());
    case UndoTask::unreadable:
      return print_failure("restore_del_symlink:read link failed ,message %s\n",
                           decision.message.c_str());
    case UndoTask::leads_nowhere:
      return print_failure("symlink target %s is not exist", content);
    case UndoTask::root:
      return print_failure("rm / is not be allow ,so return\n");
    case UndoTask::copy:
      break;
  }
  if (is_led_astray(foreign_link(link, decision.content, source), link)) return;
  if (!journal.about_to_undo(link, decision.content)) return;
  Step step;
  step.replaces(link);
  step.reads(decision.content);
  const auto copy = path_argument(link);
  const std::string command =
      "/bin/rm -rf " + copy + " && /bin/cp -r " + path_argument(content) + "  " + copy + ' ';
  const int status = step.run(command);
  print_failure("execute  [%s]  return code %d \n", command.c_str(), status);
  if (status != 0) return;
  if (!files::give_links_to_owners(link, decision.content)) {
    print_failure("links in %s belong to root now, whoever has made them\n", link.c_str());
  }
  journal.done();
}

}  // namespace varnholt::linkbuilder

using varnholt::linkbuilder::Journal;

void main_build_symlink(VhBakDefItem* v) {
  g_return_if_fail(v != NULL);
  Journal unwritten;
  varnholt::files::Place fresh;
  varnholt::linkbuilder::build_symlink(*v, unwritten, fresh);
}

int main_build_symlink_imp(VhBakDefItem* v) {
  g_return_val_if_fail(v != NULL, 0);
  return varnholt::linkbuilder::build_symlink_imp(*v);
}

char* main_backup_file(const char* filename) {
  g_return_val_if_fail(filename != NULL, nullptr);
  return varnholt::give_text(varnholt::linkbuilder::backup_file(filename));
}

bool main_move_file_force(const char* from_fn, const char* to_fn) {
  g_return_val_if_fail(from_fn != NULL, false);
  g_return_val_if_fail(to_fn != NULL, false);
  Journal unwritten;
  return varnholt::linkbuilder::move_file_force(from_fn, to_fn, unwritten);
}

void main_restore_del_symlink(const char* link) {
  g_return_if_fail(link != NULL);
  Journal unwritten;
  varnholt::linkbuilder::restore_del_symlink(link, {}, unwritten);
}
