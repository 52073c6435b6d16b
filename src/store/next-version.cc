// SPDX-License-Identifier: GPL-3.0-or-later
// Writes the next version of the profile.
#include "store/next-version.h"

#include <sys/stat.h>

#include "base/diagnostics.h"
#include "base/file.h"
#include "base/paths.h"
#include "store/profile.h"

namespace varnholt::store {
namespace {

NextVersion report_unreadable(int code) {
  print_failure("open file [%s] failed : %d", paths::profile, code);
  return NextVersion::not_written;
}

NextVersion write(const std::string& text, int stored_version) {
  // The highest number of 32 bits is followed by the lowest one.
  const auto version = static_cast<int>(static_cast<unsigned>(stored_version) + 1U);
  const auto profile = "version," + std::to_string(version) + '\n' + text;
  ErrorPtr error;
  // It waits for the password in a folder of everybody, and every window reads it afterwards.
  const mode_t usual = umask(S_IWGRP | S_IWOTH);
  constexpr auto flags = static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT |
                                                            G_FILE_SET_CONTENTS_ONLY_EXISTING);
  const bool is_written = g_file_set_contents_full(paths::temporary_profile, profile.data(),
                                                   static_cast<gssize>(profile.size()), flags,
                                                   profile_mode, out(error)) != 0;
  umask(usual);
  if (is_written) return NextVersion::written;
  if (!error) {
    print_failure("write file [%s] failed\n", paths::temporary_profile);
  } else if (is_file_error(*error)) {
    print_failure("set contents [%s] failed : %d\n", paths::profile, error->code);
  } else {
    print_failure("save file [%s] failed : %s \n", paths::temporary_profile, error->message);
  }
  return NextVersion::not_written;
}

}  // namespace

NextVersion write_next_version(const std::string& text, std::optional<int> unread) {
  if (!vh_FileTests(paths::profile, VH_FILE_TEST_TYPE_EXISTS)) return write(text, 0);
  if (unread) return report_unreadable(*unread);
  const auto profile = read_file(paths::profile);
  if (!profile.error) {
    std::string stored{profile.text()};
    const int version = main_get_cur_version(&stored);
    if (stored != text) return write(text, version);
    print_progress("The content is same.\n");
    return NextVersion::not_written;
  }
  if (is_file_error(*profile.error)) return report_unreadable(profile.error->code);
  log_uncaught(*profile.error, "varnholt", __LINE__);
  return NextVersion::unknown;
}

}  // namespace varnholt::store
