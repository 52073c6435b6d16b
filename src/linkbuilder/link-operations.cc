// SPDX-License-Identifier: GPL-3.0-or-later
// What one symbolic definition does to the file system.
#include "linkbuilder/link-operations.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/diagnostics.h"
#include "base/glib-ptr.h"
#include "base/shell.h"
#include "linkbuilder/places.h"

namespace fs = std::filesystem;

namespace {

using varnholt::BakDefFields;
using varnholt::path_argument;
using varnholt::print_failure;
using varnholt::print_progress;
using varnholt::run_command;

constexpr int backup_names = 1000;
constexpr mode_t new_folder_mode = 0775;

/** The content of a symbolic link, or the errno with which readlink(2) failed. */
struct LinkContent {
  std::optional<std::string> text;
  int error = 0;
};

LinkContent link_content(const char* path) {
  std::array<char, PATH_MAX> content{};
  const ssize_t length = readlink(path, content.data(), content.size());
  if (length < 0) return {std::nullopt, errno};
  return {std::string{content.data(), static_cast<std::size_t>(length)}, 0};
}

/** Returns the status of a path itself; a link is not followed. */
fs::file_status status_of(const std::string& path) {
  std::error_code ignored;
  return fs::symlink_status(path, ignored);
}

bool exists(const char* path) {
  return vh_FileTests(path, VH_FILE_TEST_TYPE_EXISTS);
}

std::string without_final_slash(std::string_view path) {
  if (path.ends_with('/')) path.remove_suffix(1);
  return std::string{path};
}

/**
 * Returns whether a path names a link and ends with a slash: rm would empty the folder behind the
 * link and keep the link.
 */
bool is_link_with_slash(const std::string& path) {
  return path.ends_with('/') &&
         fs::is_symlink(status_of(path.substr(0, 1 + path.find_last_not_of('/'))));
}

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

int make_link(const BakDefFields& definition) {
  return tell_link(definition, symlink(definition.from.c_str(), definition.to.c_str()));
}

/** Replaces the link at `to`, which holds `content`, unless it is already the wanted one. */
void renew_link(const BakDefFields& definition, const std::string& content) {
  constexpr auto* told_format = "%s is  already a symlink ,the target is %s .\n";
  const char* const to = definition.to.c_str();
  if (definition.from == content) {
    print_progress(told_format, to, content.c_str());
    return;
  }
  const int result = std::remove(to);
  if (result == 0) {
    make_link(definition);
    return;
  }
  print_failure(told_format, to, content.c_str());
  print_failure("remove %s failed , the return code is %d .\n", to, result);
}

/**
 * Creates the folders above `path`, and only those: a run that is interrupted must leave nothing at
 * the path itself, or the next run would move it onto the source.
 */
void make_folders_above(const std::string& path) {
  const auto end = path.find_last_not_of('/');
  const auto last_name = path.rfind('/', end);
  if (end == std::string::npos || last_name == std::string::npos) return;
  g_mkdir_with_parents(path.substr(0, last_name + 1).c_str(), new_folder_mode);
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

/** Moves the folder or file at `to` onto the source and makes the link in its place. */
void adopt_and_link(const BakDefFields& definition) {
  const char* const from = definition.from.c_str();
  const char* const to = definition.to.c_str();
  const std::string backup = varnholt::take_text(main_backup_file(to)).get();
  // Without a backup the call of symlink(2) fails, and its message reports the failure.
  const bool moved = !backup.empty();
  if (moved) {
    print_progress("move force  %s  to %s \n", backup.c_str(), from);
    if (!main_move_file_force(backup.c_str(), from)) return;
  }
  if (make_link(definition) == 0 || !moved) return;
  const bool moved_back = main_move_file_force(from, to);
  print_failure(
      "build symlink failed ,so  reback the file ,move  %s to %s (is already exists) ,and it "
      "reback is %s \n",
      from, to, moved_back ? "true" : "false");
}

}  // namespace

void varnholt::build_symlink(const BakDefFields& definition) {
  if (!definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic) ||
      definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) {
    return;
  }
  // Nearly every run finds nearly every link as it should be, and one call is enough to see that.
  const char* const to = definition.to.c_str();
  const auto content = link_content(to);
  if (content.text) {
    renew_link(definition, *content.text);
    return;
  }
  const auto status = content.error == ENOENT ? fs::file_status{} : status_of(definition.to);
  if (fs::is_symlink(status)) {
    print_failure("read_link failed , the error code  %d \n",
                  g_file_error_from_errno(content.error));
  } else if (!fs::exists(status)) {
    build_fresh_link(definition);
  } else if (fs::is_directory(status) || fs::is_regular_file(status)) {
    adopt_and_link(definition);
  } else {
    print_failure("unknow file type,cat not  build symlink \n");
  }
}

void main_build_symlink(VhBakDefItem* v) {
  g_return_if_fail(v != NULL);
  varnholt::build_symlink(*v);
}

int main_build_symlink_imp(VhBakDefItem* v) {
  g_return_val_if_fail(v != NULL, 0);
  return make_link(*v);
}

char* main_backup_file(const char* filename) {
  g_return_val_if_fail(filename != NULL, nullptr);
  for (int number = 0; number < backup_names; ++number) {
    const std::string name = std::string{filename} + ".bak_" + std::to_string(number);
    if (fs::exists(status_of(name))) continue;
    const int status =
        run_command("/bin/mv -f " + path_argument(filename) + ' ' + path_argument(name));
    if (status == 0) return g_strdup(name.c_str());
    print_failure("rename from %s to  %s  failed ,return code  %d \n", filename, name.c_str(),
                  status);
  }
  print_failure("can not  assign  a temp name for  %s \n", filename);
  return g_strdup("");
}

bool main_move_file_force(const char* from_fn, const char* to_fn) {
  g_return_val_if_fail(from_fn != NULL, false);
  g_return_val_if_fail(to_fn != NULL, false);
  const std::string from = without_final_slash(from_fn);
  const std::string to = without_final_slash(to_fn);
  const auto move_failed = [&] {
    print_failure("move file  from  %s  to %s failed \n", from.c_str(), to.c_str());
    return false;
  };
  if (exists(to.c_str())) {
    if (is_link_with_slash(to) || varnholt::deletion_takes_away(to, from)) return move_failed();
    // Anything that still exists after the removal would receive the data inside it.
    if (run_command("/bin/rm -rf " + path_argument(to)) != 0 || exists(to.c_str())) {
      print_failure("remove  file %s failed \n", to.c_str());
      return false;
    }
  }
  if (run_command("/bin/mv " + path_argument(from) + ' ' + path_argument(to)) != 0) {
    return move_failed();
  }
  return true;
}

void main_restore_del_symlink(const char* link) {
  g_return_if_fail(link != NULL);
  if (!exists(link)) {
    print_failure("symlink %s is not exist \n", link);
    return;
  }
  if (!fs::is_symlink(status_of(link))) {
    print_failure("file %s is not symlink \n", link);
    return;
  }
  varnholt::ErrorPtr error;
  const varnholt::TextPtr content =
      varnholt::take_text(g_file_read_link(link, varnholt::out(error)));
  if (!content) {
    print_failure("restore_del_symlink:read link failed ,message %s\n", error->message);
    return;
  }
  if (!exists(content.get())) {
    print_failure("symlink target %s is not exist", content.get());
    return;
  }
  if (std::string_view{link} == "/") {
    print_failure("rm / is not be allow ,so return\n");
    return;
  }
  const std::string command = "/bin/rm -rf " + path_argument(link) + " && /bin/cp -r " +
                              path_argument(content.get()) + "  " + path_argument(link) + ' ';
  const int status = run_command(command);
  print_failure("execute  [%s]  return code %d \n", command.c_str(), status);
}
