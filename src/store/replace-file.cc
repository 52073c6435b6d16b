// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces a file as a whole by a rewritten one.
#include "store/replace-file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "base/descriptor.h"
#include "base/file.h"

namespace varnholt {
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

/** A temporary file beside another one, for as long as this object lives. */
class Neighbour {
 public:
  explicit Neighbour(const std::string& path)
      : m_path(path + ".XXXXXX"), m_made(g_mkstemp_full(m_path.data(), O_RDWR | O_CLOEXEC, 0600)) {}
  Neighbour(const Neighbour&) = delete;
  Neighbour& operator=(const Neighbour&) = delete;
  ~Neighbour() {
    if (m_made) unlink(path());
  }

  const char* path() const { return m_path.c_str(); }
  /** Leaves the file there in the end. */
  void keep() { m_path.clear(); }

  ErrorPtr write(const std::string& text, mode_t mode) const {
    // GLib keeps the mode of an existing file, and the umask does not change it.
    if (!m_made || fchmod(m_made.number(), mode) != 0) return system_error(path());
    ErrorPtr error;
    g_file_set_contents_full(path(), text.data(), static_cast<gssize>(text.size()),
                             G_FILE_SET_CONTENTS_DURABLE, static_cast<int>(mode), out(error));
    return error;
  }

  ErrorPtr exchange_with(const char* other) const {
    const int result = renameat2(AT_FDCWD, path(), AT_FDCWD, other, RENAME_EXCHANGE);
    return result == 0 ? ErrorPtr{} : system_error(path());
  }

 private:
  std::string m_path;
  Descriptor m_made;
};

}  // namespace

ErrorPtr replace_file(const char* path, mode_t mode,
                      const std::function<std::string(std::string_view)>& rewritten) {
  const TextPtr name = take_text(g_path_get_dirname(path));
  const Descriptor folder{open(name.get(), O_RDONLY | O_CLOEXEC)};
  // Two programs that replace the file wait for each other here.
  flock(folder.number(), LOCK_EX);
  while (true) {
    auto found = read_file(path);
    if (found.error) return std::move(found.error);
    const std::string next = rewritten(found.text());
    Neighbour neighbour{path};
    if (auto error = neighbour.write(next, mode)) return error;
    // Writing takes its time, and somebody may have moved another text there.
    if (!holds(path, found.text())) continue;
    if (auto error = neighbour.exchange_with(path)) {
      // Some file systems cannot exchange two files.
      if (error->code != G_FILE_ERROR_INVAL || rename(neighbour.path(), path) != 0) return error;
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
    fsync(folder.number());
    return {};
  }
}

}  // namespace varnholt
