// SPDX-License-Identifier: GPL-3.0-or-later
// Replacing a file as a whole by what is made of it.
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
  ErrorPtr error;
  g_set_error(out(error), G_FILE_ERROR, g_file_error_from_errno(code), "%s: %s", path,
              g_strerror(code));
  return error;
}

/** A file beside another one, for as long as it lives. */
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
    // A file that is there keeps its mode, on which the umask has no influence then.
    if (!m_made || fchmod(m_made.number(), mode) != 0) return system_error(path());
    ErrorPtr error;
    g_file_set_contents_full(path(), text.data(), static_cast<gssize>(text.size()),
                             G_FILE_SET_CONTENTS_DURABLE, static_cast<int>(mode), out(error));
    return error;
  }

  /** Has the two files change their places; where a file system cannot do that, the other goes. */
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
  auto found = read_file(path);
  if (found.error) return std::move(found.error);
  std::string expected{found.text()};
  std::string next = rewritten(expected);
  while (true) {
    const Neighbour neighbour{path};
    if (auto error = neighbour.write(next, mode)) return error;
    if (auto error = neighbour.exchange_with(path)) return error;
    auto displaced = read_file(neighbour.path());
    if (displaced.error) {
      if (displaced.error->code == G_FILE_ERROR_NOENT) return {};
      if (auto error = neighbour.exchange_with(path)) return error;
      return std::move(displaced.error);
    }
    if (displaced.text() == expected) return {};
    expected = std::exchange(next, rewritten(displaced.text()));
  }
}

}  // namespace varnholt
