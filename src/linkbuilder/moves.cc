// SPDX-License-Identifier: GPL-3.0-or-later
// Moves what stands at the path of a link out of the way, and onto the source.
#include "linkbuilder/moves.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <filesystem>
#include <system_error>

#include <glib.h>

#include "base/diagnostics.h"
#include "base/shell.h"
#include "linkbuilder/places.h"
#include "linkbuilder/stop-signals.h"
#include "model/file-test.h"

namespace fs = std::filesystem;

namespace varnholt::linkbuilder {
namespace {

/** The backup names begin with the number 0. */
constexpr int backup_names = 1000;

/**
 * Returns whether a path names a link and ends with a slash: rm would empty the folder behind the
 * link and keep the link.
 */
bool is_link_with_slash(const std::string& path) {
  return path.ends_with('/') && is_link(without_final_slashes(path));
}

/**
 * Returns whether a path that ends with a slash leads to another mount than that of its name, by a
 * link or a mount there. Its backup would lie inside, so mv(1) would copy all of it into itself,
 * for each backup name once more.
 */
bool leads_to_mount_with_slash(const std::string& path) {
  if (!path.ends_with('/') || without_final_slashes(path).empty()) return false;
  struct statx at {};
  struct statx above {};
  return statx(AT_FDCWD, path.c_str(), 0, STATX_MNT_ID, &at) == 0 &&
         statx(AT_FDCWD, folder_above(path).c_str(), 0, STATX_MNT_ID, &above) == 0 &&
         at.stx_mnt_id != above.stx_mnt_id;
}

}  // namespace

ino_t inode_at(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

std::string backup_name(const std::string& path, int number) {
  return (path + std::string{backup_mark}) + std::to_string(number);
}

bool renames_by_copy(const std::string& path) {
  struct statfs status {};
  return statfs(path.c_str(), &status) == 0 && status.f_type == OVERLAYFS_SUPER_MAGIC;
}

bool is_elsewhere(const std::string& path, const std::string& other) {
  struct stat one {};
  struct stat another {};
  return stat(folder_above(path).c_str(), &one) == 0 &&
         stat(folder_above(other).c_str(), &another) == 0 && one.st_dev != another.st_dev;
}

bool is_backup_name(std::string_view path) {
  const auto mark = path.rfind(backup_mark);
  if (!path.starts_with('/') || mark == std::string_view::npos) return false;
  const auto number = path.substr(mark + backup_mark.size());
  return !number.empty() && number.size() < std::to_string(backup_names).size() &&
         number.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string free_backup_name(const std::string& path) {
  for (int number = 0; number < backup_names; ++number) {
    auto name = backup_name(path, number);
    if (!is_there(name)) return name;
  }
  return {};
}

Clearing clearing_for(const std::string& from, const std::string& to) {
  if (!exists(to)) return Clearing::none;
  const bool refused = is_link_with_slash(to) || deletion_takes_away(to, from);
  return refused ? Clearing::refuse : Clearing::remove;
}

bool move_file(const char* from_fn, const char* to_fn, const std::function<bool()>& begin_move) {
  const std::string from = without_final_slash(from_fn);
  const std::string to = without_final_slash(to_fn);
  const auto move_failed = [&] {
    print_failure("move file  from  %s  to %s failed \n", from.c_str(), to.c_str());
    return false;
  };
  const auto clearing = clearing_for(from, to);
  if (clearing == Clearing::refuse) return move_failed();
  if (clearing == Clearing::remove) {
    // Anything that still exists after the removal would receive the data inside it.
    if (run_step("/bin/rm -rf " + path_argument(to)) != 0 || exists(to)) {
      print_failure("remove  file %s failed \n", to.c_str());
      return false;
    }
  }
  const auto command = "/bin/mv " + path_argument(from) + ' ' + path_argument(to);
  return begin_move() && run_step(command) == 0 ? true : move_failed();
}

}  // namespace varnholt::linkbuilder

char* main_backup_file(const char* filename) {
  g_return_val_if_fail(filename != NULL, nullptr);
  const int names = varnholt::linkbuilder::leads_to_mount_with_slash(filename)
                        ? 0
                        : varnholt::linkbuilder::backup_names;
  for (int number = 0; number < names; ++number) {
    const auto name = varnholt::linkbuilder::backup_name(filename, number);
    if (varnholt::is_there(name)) continue;
    const int status = varnholt::linkbuilder::run_step(
        "/bin/mv -f " + varnholt::path_argument(filename) + ' ' + varnholt::path_argument(name));
    if (status == 0) return g_strdup(name.c_str());
    varnholt::print_failure("rename from %s to  %s  failed ,return code  %d \n", filename,
                            name.c_str(), status);
  }
  varnholt::print_failure("can not  assign  a temp name for  %s \n", filename);
  return g_strdup("");
}

bool main_move_file_force(const char* from_fn, const char* to_fn) {
  g_return_val_if_fail(from_fn != NULL, false);
  g_return_val_if_fail(to_fn != NULL, false);
  return varnholt::linkbuilder::move_file(from_fn, to_fn, [] { return true; });
}
