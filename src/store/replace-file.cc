// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces a file as a whole by a rewritten one.
#include "store/replace-file.h"

#include <fcntl.h>
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

  ErrorPtr write(const std::string& text, mode_t mode) const {
    // GLib keeps the mode of an existing file, and the umask does not change it.
    if (!m_made || fchmod(m_made.number(), mode) != 0) return system_error(path());
    ErrorPtr error;
    g_file_set_contents_full(path(), text.data(), static_cast<gssize>(text.size()),
                             G_FILE_SET_CONTENTS_DURABLE, static_cast<int>(mode), out(error));
    return error;
  }

  /** Exchanges the two files; where a file system cannot do that, the other file is replaced. */
  ErrorPtr exchange_with(const char* other) const {
    const bool done = renameat2(AT_FDCWD, path(), AT_FDCWD, other, RENAME_EXCHANGE) == 0 ||
                      (errno == EINVAL && rename(path(), other) == 0);
    if (!done) return system_error(other);
    const TextPtr folder = take_text(g_path_get_dirname(other));
    if (const Descriptor opened{open(folder.get(), O_RDONLY | O_CLOEXEC)}) fsync(opened.number());
    return {};
  }

 private:
  std::string m_path;
  Descriptor m_made;
};

}  // namespace

ErrorPtr replace_file(const char* path, mode_t mode,
                      const std::function<std::string(std::string_view)>& rewritten) {
  while (true) {
    auto found = read_file(path);
    if (found.error) return std::move(found.error);
    const std::string next = rewritten(found.text());
    const Neighbour neighbour{path};
    if (auto error = neighbour.write(next, mode)) return error;
    if (auto error = neighbour.exchange_with(path)) return error;
    const auto displaced = read_file(neighbour.path());
    const bool none = displaced.error && displaced.error->code == G_FILE_ERROR_NOENT;
    if (none || (!displaced.error && displaced.text() == found.text())) return {};
    // Somebody has moved another text there, which goes back before it is rewritten in its turn. A
    // still newer one that this displaces goes back too.
    if (auto error = neighbour.exchange_with(path)) return error;
    if (read_file(neighbour.path()).text() != next) neighbour.exchange_with(path);
  }
}

}  // namespace varnholt
