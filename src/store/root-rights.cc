// SPDX-License-Identifier: GPL-3.0-or-later
// Runs commands that need root rights.
#include "store/root-rights.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstring>

#include "base/descriptor.h"
#include "base/shell.h"

namespace varnholt::store {
namespace {

/** Replaces standard input by a pipe that holds one line, for as long as this object lives. */
class LineAsInput {
 public:
  explicit LineAsInput(const char* line) {
    std::array<int, 2> ends{-1, -1};
    if (!m_usual || pipe2(ends.data(), O_CLOEXEC) != 0) return;
    const Descriptor read_end{ends[0]};
    const Descriptor write_end{ends[1]};
    // Nobody reads yet, so a write must not block when the pipe has no room for the line.
    fcntl(write_end.number(), F_SETFL, O_NONBLOCK);
    const auto length = static_cast<ssize_t>(std::strlen(line));
    m_holds = write(write_end.number(), line, static_cast<std::size_t>(length)) == length &&
              write(write_end.number(), "\n", 1) == 1 &&
              dup2(read_end.number(), STDIN_FILENO) == STDIN_FILENO;
  }
  LineAsInput(const LineAsInput&) = delete;
  LineAsInput& operator=(const LineAsInput&) = delete;
  ~LineAsInput() {
    if (m_holds) dup2(m_usual.number(), STDIN_FILENO);
  }

  explicit operator bool() const { return m_holds; }

 private:
  Descriptor m_usual{fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)};
  bool m_holds = false;
};

}  // namespace

int RootRights::run(const std::string& command) const {
  if (!m_password) return run_command(command);
  const LineAsInput password{m_password.get()};
  return password ? run_command("sudo -S " + command) : -1;
}

}  // namespace varnholt::store
