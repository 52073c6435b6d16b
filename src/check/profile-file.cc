// SPDX-License-Identifier: GPL-3.0-or-later
// Findings about the file of a profile, and about the other files that a run needs.
#include "check/profile-file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <tuple>

#include "base/file.h"
#include "base/path.h"
#include "base/paths.h"
#include "store/profile.h"
#include "store/replace-file.h"

namespace varnholt::check {
namespace {

constexpr std::array commands{"/bin/sh", "/bin/mv", "/bin/rm", "/bin/cp"};

bool is_newer(const struct stat& one, const struct stat& other) {
  return std::tie(one.st_mtim.tv_sec, one.st_mtim.tv_nsec) >
         std::tie(other.st_mtim.tv_sec, other.st_mtim.tv_nsec);
}

void check_owner_and_mode(foresight::FileSystems& files, std::vector<Finding>& findings) {
  const char* const path = paths::profile;
  struct stat status {};
  if (stat(path, &status) != 0) return;
  if (status.st_uid != 0) findings.push_back({problems::owner, std::to_string(status.st_uid)});
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) findings.push_back({problems::writable, path});
  if (foresight::why_it_must_stay(path) || files.mounts().is_mount_point(files.end_of(path))) {
    findings.push_back({problems::profile_fixed, path});
  }
}

/** Looks for a save of this user that was written, but never moved into place. */
void look_for_save(std::string_view profile, std::vector<Finding>& findings) {
  struct stat saved {};
  struct stat stored {};
  const bool own = lstat(paths::temporary_profile, &saved) == 0 && S_ISREG(saved.st_mode) &&
                   saved.st_uid == geteuid();
  if (!own || (stat(paths::profile, &stored) == 0 && !is_newer(saved, stored))) return;
  const auto file = read_file(paths::temporary_profile);
  if (file.error) return;
  std::string text{file.text()};
  std::string stored_text{profile};
  main_get_cur_version(&text);
  main_get_cur_version(&stored_text);
  if (text != stored_text) findings.push_back({problems::unsaved, paths::temporary_profile});
}

}  // namespace

std::vector<std::string> needed_files() {
  std::vector<std::string> files{paths::profile, paths::unfinished, paths::backup_script,
                                 program_folder() + "/varnholt"};
  files.insert(files.end(), commands.begin(), commands.end());
  return files;
}

void check_profile_file(const std::string& path, std::string_view profile,
                        foresight::FileSystems& files, std::vector<Finding>& findings) {
  if (path == paths::profile) {
    check_owner_and_mode(files, findings);
    look_for_save(profile, findings);
    const auto next = store::next_to(paths::profile);
    if (is_there(next)) findings.push_back({problems::leftover, next});
  }
  if (!exists(paths::backup_script)) {
    findings.push_back({problems::no_script, paths::backup_script});
  }
  for (const auto* const command : commands) {
    if (!exists(command)) findings.push_back({problems::command_missing, command});
  }
}

}  // namespace varnholt::check
