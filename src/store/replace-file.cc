// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces files as a whole.
#include "store/replace-file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "base/descriptor.h"
#include "base/file.h"

namespace varnholt::store {
namespace {

constexpr mode_t own_mode = 0600;

ErrorPtr system_error(const char* path, int code = errno) {
  return ErrorPtr{
      g_error_new(G_FILE_ERROR, g_file_error_from_errno(code), "%s: %s", path, g_strerror(code))};
}

/** Makes a system call again as long as signals interrupt it, and returns its result. */
template <typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/** Writes a text; returns false, with the reason in errno, when not all of it could be written. */
bool write_all(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const auto written =
        uninterrupted([&] { return ::write(descriptor, text.data(), text.size()); });
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/** Creates a file beside another one and sets its path: a name that is taken stays as it is. */
int create_beside(const char* other, std::string& path) {
  path = next_to(other);
  const int created = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, own_mode);
  if (created >= 0 || errno != EEXIST) return created;
  path += ".XXXXXX";
  return mkostemp(path.data(), O_CLOEXEC);
}

/** A new file beside another one. It is removed in the end, unless it was moved away. */
class Neighbour {
 public:
  Neighbour(const char* other, mode_t mode)
      : m_made(create_beside(other, m_path)), m_error(m_made ? 0 : errno), m_mode(mode) {}
  Neighbour(const Neighbour&) = delete;
  Neighbour& operator=(const Neighbour&) = delete;
  ~Neighbour() {
    if (m_made && !m_stays) unlink(path());
  }

  const char* path() const { return m_path.c_str(); }
  /** Leaves the file there in the end. */
  void keep() { m_stays = true; }

  /** Writes the text to the disk; the umask does not change the mode of the file. */
  ErrorPtr write(std::string_view text) const {
    if (!m_made) return system_error(path(), m_error);
    const int file = m_made.number();
    const bool written = write_all(file, text) && fchmod(file, m_mode) == 0 &&
                         uninterrupted([file] { return fsync(file); }) == 0;
    return written ? ErrorPtr{} : system_error(path());
  }

  ErrorPtr exchange_with(const char* other) const {
    const int result = renameat2(AT_FDCWD, path(), AT_FDCWD, other, RENAME_EXCHANGE);
    return result == 0 ? ErrorPtr{} : system_error(path());
  }

  /** Does the same for a text that must not be lost, and leaves it here when that fails. */
  ErrorPtr put_back(const char* other) {
    auto error = exchange_with(other);
    if (error) keep();
    return error;
  }

  ErrorPtr move_to(const char* other) {
    if (rename(path(), other) != 0) return system_error(other);
    // Another file may get the name from now on.
    keep();
    return {};
  }

 private:
  std::string m_path;
  Descriptor m_made;
  /** Why there is no file. */
  int m_error;
  mode_t m_mode;
  bool m_stays = false;
};

/** Returns whether one of these functions may have made a file: nobody else has a part in it. */
bool may_be_own(const struct stat& status) {
  return S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_nlink == 1;
}

}  // namespace

std::string next_to(const char* path) {
  return std::string{path} + ".next";
}

ErrorPtr write_file(const char* path, mode_t mode, const std::string& text) {
  Neighbour neighbour{path, mode};
  if (auto error = neighbour.write(text)) return error;
  if (auto error = neighbour.move_to(path)) return error;
  sync_folder_above(path);
  return {};
}

ErrorPtr replace_file(const char* path, mode_t mode,
                      const std::function<std::string(std::string_view)>& rewritten) {
  while (true) {
    auto found = read_file(path);
    if (found.error) return std::move(found.error);
    const std::string next = rewritten(found.text());
    Neighbour neighbour{path, mode};
    if (auto error = neighbour.write(next)) return error;
    // Writing takes its time, and somebody may have moved another text there.
    if (!file_holds(path, found.text())) continue;
    if (auto error = neighbour.exchange_with(path)) {
      // Some file systems cannot exchange two files.
      if (error->code != G_FILE_ERROR_INVAL) return error;
      if (auto failed = neighbour.move_to(path)) return failed;
    } else if (!file_holds(neighbour.path(), found.text())) {
      // Somebody was quicker. That text goes back before it is rewritten in its turn.
      auto failed = neighbour.put_back(path);
      // A still newer text that this has displaced goes back too.
      if (!failed && !file_holds(neighbour.path(), next)) failed = neighbour.put_back(path);
      if (failed) return failed;
      continue;
    }
    sync_folder_above(path);
    return {};
  }
}

std::string remove_leftover(const char* path,
                            const std::function<bool(std::string_view)>& is_needless) {
  auto leftover = next_to(path);
  struct stat status {};
  if (lstat(leftover.c_str(), &status) != 0) return {};
  if (!may_be_own(status)) return leftover;
  const auto file = read_file(leftover.c_str());
  const bool removed = !file.error && is_needless(file.text()) && unlink(leftover.c_str()) == 0;
  return removed ? std::string{} : leftover;
}

}  // namespace varnholt::store
