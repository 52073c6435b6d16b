// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a command line with the rights to change only what it is meant for.
#include "files/confinement.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include <glib.h>

#include "base/descriptor.h"
#include "base/shell.h"
#include "files/read-only-view.h"

namespace varnholt::files {
namespace {

/** The first version that can allow a move to another folder. */
constexpr long version_with_moves = 2;
constexpr long version_with_truncation = 3;
/** Debian 12's header does not know the name yet. */
constexpr std::uint64_t truncation = 1ULL << 14U;

constexpr std::uint64_t reading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t taking =
    LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_REFER;
constexpr std::uint64_t putting = LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                  LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK |
                                  LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_BLOCK |
                                  LANDLOCK_ACCESS_FS_MAKE_SYM | LANDLOCK_ACCESS_FS_WRITE_FILE |
                                  LANDLOCK_ACCESS_FS_REFER | truncation;
constexpr std::uint64_t of_files =
    LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | truncation;

/** What a shell and the commands read before they begin. */
constexpr std::array programs{"/usr",      "/bin",
                              "/sbin",     "/lib",
                              "/lib64",    "/etc/ld.so.cache",
                              "/dev/null", "/proc/filesystems"};

long landlock_version() {
  return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

std::uint64_t rights_to(Permission::To what) {
  switch (what) {
    case Permission::To::read:
      return reading;
    case Permission::To::take:
      return taking;
    case Permission::To::put:
      return putting;
    case Permission::To::move:
      return taking | putting;
    case Permission::To::change:
      break;
  }
  return reading | taking | putting;
}

/** The rules for one command. */
class Ruleset {
 public:
  Ruleset() {
    if (landlock_version() < version_with_truncation) m_handled &= ~truncation;
    const landlock_ruleset_attr handled{.handled_access_fs = m_handled};
    m_rules = Descriptor{
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0))};
    for (const char* const path : programs) {
      const Descriptor program{open(path, O_PATH | O_CLOEXEC)};
      allow(program.number(), reading);
    }
  }

  void allow(int entry, std::uint64_t rights) const {
    struct stat status {};
    if (fstat(entry, &status) != 0) return;
    if (!S_ISDIR(status.st_mode)) rights &= of_files;
    const landlock_path_beneath_attr rule{.allowed_access = rights & m_handled, .parent_fd = entry};
    syscall(SYS_landlock_add_rule, m_rules.number(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
  }

  /** Binds this thread for good, and what it starts. */
  bool bind_thread() const {
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           syscall(SYS_landlock_restrict_self, m_rules.number(), 0) == 0;
  }

 private:
  std::uint64_t m_handled = reading | taking | putting;
  Descriptor m_rules;
};

/** Returns the folders in which a command makes or removes something. */
std::vector<int> changed_folders(const std::vector<Permission>& permissions) {
  std::vector<int> folders;
  for (const auto& each : permissions) {
    const bool is_folder = each.to != Permission::To::read && each.to != Permission::To::change;
    if (is_folder && each.entry >= 0) folders.push_back(each.entry);
  }
  return folders;
}

struct Command {
  const std::string& line;
  const std::vector<Permission>& permissions;
  Work work = Work::rename;
  int status = -1;

  bool bind_thread() const {
    if (work == Work::copy && can_confine(work) &&
        !see_read_only_but(changed_folders(permissions))) {
      return false;
    }
    if (!can_confine(Work::rename)) return true;
    Ruleset rules;
    for (const auto& each : permissions) rules.allow(each.entry, rights_to(each.to));
    return rules.bind_thread();
  }
};

gpointer run_bound(gpointer data) {
  auto& command = *static_cast<Command*>(data);
  if (command.bind_thread()) command.status = run_command(command.line);
  return nullptr;
}

}  // namespace

bool can_confine(Work work) {
  static const bool can_rename = landlock_version() >= version_with_moves;
  if (work == Work::rename || !can_rename) return can_rename;
  static const bool can_copy = can_have_read_only_view();
  return can_copy;
}

int run_confined(const std::string& command_line, const std::vector<Permission>& permissions,
                 Work work) {
  Command command{command_line, permissions, work};
  // The rules bind a thread until its end.
  if (auto* const thread = g_thread_try_new("command", run_bound, &command, nullptr)) {
    g_thread_join(thread);
  }
  return command.status;
}

}  // namespace varnholt::files
