// SPDX-License-Identifier: GPL-3.0-or-later
// Gives each test a machine of its own.
#include "private-root.h"

#include <glib.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <utility>

#include "base/glib-ptr.h"
#include "scratch/scratch-paths.h"

namespace fs = std::filesystem;

/** Gives this process mounts of its own. Returns 0, or the error number of the failure. */
static int enter_own_mounts() {
  if (!enter_namespaces(CLONE_NEWNS)) return errno;
  return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 ? 0 : errno;
}

bool enter_namespaces(int kinds) {
  const uid_t user = getuid();
  const gid_t group = getgid();
  if (user != 0) kinds |= CLONE_NEWUSER;
  if (unshare(kinds) != 0) return false;
  if (user != 0) {
    std::ofstream{"/proc/self/setgroups"} << "deny";
    std::ofstream{"/proc/self/gid_map"} << "0 " << group << " 1";
    std::ofstream{"/proc/self/uid_map"} << "0 " << user << " 1";
  }
  if (getuid() == 0) return true;
  errno = EPERM;
  return false;
}

bool knows_user(uid_t user) {
  std::ifstream map{"/proc/self/uid_map"};
  uid_t first = 0;
  uid_t outside = 0;
  uid_t count = 0;
  while (map >> first >> outside >> count) {
    if (user >= first && user - first < count) return true;
  }
  return false;
}

CommandResult result_of(std::vector<const char*> words) {
  words.push_back(nullptr);
  varnholt::TextPtr printed;
  int status = -1;
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the words are not written to
  auto* const argv = const_cast<char**>(words.data());
  EXPECT_TRUE(g_spawn_sync("/", argv, nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr,
                           varnholt::out(printed), nullptr, &status, nullptr));
  return {printed.get(), status};
}

std::string output_of(std::vector<const char*> words) {
  const auto result = result_of(std::move(words));
  EXPECT_EQ(result.status, 0) << result.output;
  return result.output;
}

void PrivateRoot::SetUp() {
  static const int error = enter_own_mounts();
  if (error != 0) GTEST_SKIP() << "no mount namespace of one's own here: " << g_strerror(error);
  root = varnholt::scratch_folder() + "/root";
  fs::create_directory(root);
  ASSERT_EQ(mount("none", root.c_str(), "tmpfs", 0, "mode=755"), 0);
  constexpr auto* furnish =
      "set -e; cd \"$1\"; mkdir usr proc dev run; ln -s usr/bin usr/lib usr/lib64 ."
      "; touch dev/null dev/varnholt dev/varnholt-window.so dev/varnholt-check"
      "; mount --rbind /proc proc; mount --bind -o ro /usr usr; mount --bind /dev/null dev/null"
      "; mount --bind -o ro \"$2\" dev/varnholt; mount --bind -o ro \"$3\" dev/varnholt-check"
      "; mount --bind -o ro \"$2-window.so\" dev/varnholt-window.so; echo furnished";
  ASSERT_EQ(output_of({"sh", "-c", furnish, "sh", root.c_str(), VARNHOLT_PROGRAM,
                       VARNHOLT_CHECK_PROGRAM}),
            "furnished\n");
}

void PrivateRoot::TearDown() {
  if (!root.empty()) umount2(root.c_str(), MNT_DETACH);
}

std::string PrivateRoot::shell(const std::string& command) const {
  const std::string script = "exec 2>&1; export LC_ALL=C; " + command;
  return output_of({"/usr/sbin/chroot", root.c_str(), "sh", "-c", script.c_str()});
}

void PrivateRoot::enter() const {
  ASSERT_EQ(chroot(root.c_str()), 0);
  fs::current_path("/");
}

void PrivateRoot::write(const std::string& path, const std::string& text) const {
  const fs::path file = root.native() + '/' + path;
  fs::create_directories(file.parent_path());
  ASSERT_TRUE(std::ofstream{file} << text) << path;
}

std::string PrivateRoot::read(const std::string& path) const {
  return shell("cat " + path + " 2>/dev/null || :");
}

void PrivateRoot::plant(const std::string& listing) const {
  write("listing", listing);
  shell(R"(set -f; while IFS= read -r line; do
      path=${line%%: *}; path=${path%% -> *}; path=./${path%|}
      mkdir -p "${path%/*}"
      case $line in
        *' -> '*) ln -s -- "${line#* -> }" "$path";;
        *': '*) printf %s "${line#*: }" >"$path";;
        *'|') mkfifo "$path";;
      esac
    done <listing; rm listing)");
}

std::string PrivateRoot::tree() const {
  return shell(
      R"(find . -regex './\(usr\|proc\|dev\|run\|bin\|lib\|lib64\|etc/.varnholt.ini\)' -prune \
    -o -path ./etc/.varnholt.unfinished -printf '%P\n' -o -type l -printf '%P -> %l\n' -o -type f -printf '%P: ' -exec cat {} \; -printf '\n' \
    -o -type p -printf '%P|\n' -o -type d -empty -printf '%P/\n' | sort)");
}
