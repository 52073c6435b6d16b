// SPDX-License-Identifier: GPL-3.0-or-later
// A thread's own view of the file systems, in which only some folders can be changed.
#include "files/read-only-view.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include <glib.h>

#include "base/descriptor.h"
#include "files/way.h"

namespace varnholt::files {
namespace {

/** A folder of the view that this thread had before. */
class Folder {
 public:
  explicit Folder(int entry)
      : m_entry(entry),
        m_path(content_of_link(AT_FDCWD, ("/proc/self/fd/" + std::to_string(entry)).c_str())) {
    struct statvfs status {};
    m_is_writable = fstatvfs(entry, &status) == 0 && (status.f_flag & ST_RDONLY) == 0;
  }

  /** Returns the same folder, opened anew in the present view, or nothing. */
  Descriptor here() const {
    auto again = open_without_links(m_path);
    struct stat before {};
    struct stat now {};
    const bool is_same = fstat(m_entry, &before) == 0 && fstat(again.number(), &now) == 0 &&
                         before.st_dev == now.st_dev && before.st_ino == now.st_ino;
    return is_same ? std::move(again) : Descriptor{};
  }

  /** Makes the folder writable as before, but not what is mounted below it. */
  bool make_writable() const {
    const auto folder = here();
    const Descriptor mount{open_tree(
        folder.number(), "", OPEN_TREE_CLONE | OPEN_TREE_CLOEXEC | AT_EMPTY_PATH | AT_RECURSIVE)};
    mount_attr attributes{};
    if (m_is_writable) attributes.attr_clr = MOUNT_ATTR_RDONLY;
    return mount_setattr(mount.number(), "", AT_EMPTY_PATH, &attributes, sizeof attributes) == 0 &&
           move_mount(mount.number(), "", folder.number(), "",
                      MOVE_MOUNT_F_EMPTY_PATH | MOVE_MOUNT_T_EMPTY_PATH) == 0 &&
           (m_path != "/" || (fchdir(mount.number()) == 0 && chroot(".") == 0));
  }

 private:
  int m_entry;
  std::string m_path;
  bool m_is_writable = false;
};

bool have_own_mounts() {
  // What somebody unmounts meanwhile goes from here too, and does not stay in use.
  return unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_SLAVE, nullptr) == 0;
}

bool make_all_read_only() {
  mount_attr attributes{};
  attributes.attr_set = MOUNT_ATTR_RDONLY;
  return mount_setattr(AT_FDCWD, "/", AT_RECURSIVE, &attributes, sizeof attributes) == 0;
}

gpointer try_out(gpointer /*data*/) {
  const Descriptor root{open("/", O_PATH | O_DIRECTORY | O_CLOEXEC)};
  return GINT_TO_POINTER(see_read_only_but({root.number()}));
}

}  // namespace

bool can_have_read_only_view() {
  auto* const thread = g_thread_try_new("mounts", try_out, nullptr, nullptr);
  return thread != nullptr && GPOINTER_TO_INT(g_thread_join(thread)) != 0;
}

bool see_read_only_but(const std::vector<int>& folders) {
  const Descriptor current{open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)};
  const Folder current_folder{current.number()};
  const std::vector<Folder> writable(folders.begin(), folders.end());
  if (!have_own_mounts() || !make_all_read_only() ||
      !std::ranges::all_of(writable, &Folder::make_writable)) {
    return false;
  }
  // A relative path begins in the view, and not below the mount that makes its folder writable. A
  // current folder that is gone or covered is no obstacle for the other paths.
  const auto again = current_folder.here();
  [[maybe_unused]] const int ignored = fchdir((again ? again : current).number());
  return true;
}

}  // namespace varnholt::files
