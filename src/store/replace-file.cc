// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces files as a whole.
#include "store/replace-file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "base/descriptor.h"
#include "base/file.h"

namespace varnholt::store {
namespace {

ErrorPtr system_error(const char* path) {
  const int code = errno;
  return ErrorPtr{
      g_error_new(G_FILE_ERROR, g_file_error_from_errno(code), "%s: %s", path, g_strerror(code))};
}

/** Returns whether a file can be read and holds this text. */
bool holds(const char* path, std::string_view text) {
  const auto file = read_file(path);
  return !file.error && file.text() == text;
}

/** A new file beside another one. It is removed in the end, unless it was moved away. */
class Neighbour {
 public:
  Neighbour(const char* other, mode_t mode)
      : m_path(next_to(other)),
        m_made(open(path(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600)),
        m_mode(mode) {}
  Neighbour(const Neighbour&) = delete;
  Neighbour& operator=(const Neighbour&) = delete;
  ~Neighbour() {
    if (m_made) unlink(path());
  }

  const char* path() const { return m_path.c_str(); }
  /** Leaves the file there in the end. */
  void keep() { m_path.clear(); }

  ErrorPtr write(const std::string& text) const {
    // GLib keeps the mode of an existing file, and the umask does not change it.
    if (!m_made || fchmod(m_made.number(), m_mode) != 0) return system_error(path());
    ErrorPtr error;
    g_file_set_contents_full(path(), text.data(), static_cast<gssize>(text.size()),
                             G_FILE_SET_CONTENTS_DURABLE, static_cast<int>(m_mode), out(error));
    return error;
  }

  ErrorPtr exchange_with(const char* other) const {
    const int result = renameat2(AT_FDCWD, path(), AT_FDCWD, other, RENAME_EXCHANGE);
    return result == 0 ? ErrorPtr{} : system_error(path());
  }

  ErrorPtr move_to(const char* other) {
    if (rename(path(), other) != 0) return system_error(other);
    keep();
    return {};
  }

 private:
  std::string m_path;
  Descriptor m_made;
  mode_t m_mode;
};

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
    if (!holds(path, found.text())) continue;
    if (auto error = neighbour.exchange_with(path)) {
      // Some file systems cannot exchange two files.
      if (error->code != G_FILE_ERROR_INVAL || neighbour.move_to(path)) return error;
    } else if (!holds(neighbour.path(), found.text())) {
      // Somebody was quicker. That text goes back before it is rewritten in its turn.
      if (auto failed = neighbour.exchange_with(path)) {
        neighbour.keep();
        return failed;
      }
      // A still newer text that this has displaced goes back too.
      if (!holds(neighbour.path(), next)) neighbour.exchange_with(path);
      continue;
    }
    sync_folder_above(path);
    return {};
  }
}

std::string remove_leftover(const char* path,
                            const std::function<bool(std::string_view)>& is_needless) {
  auto leftover = next_to(path);
  if (access(leftover.c_str(), F_OK) != 0) return {};
  const auto file = read_file(leftover.c_str());
  const bool removed = !file.error && is_needless(file.text()) && unlink(leftover.c_str()) == 0;
  return removed ? std::string{} : leftover;
}

}  // namespace varnholt::store
