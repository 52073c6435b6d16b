// SPDX-License-Identifier: GPL-3.0-or-later
// Checks the words of command lines: each shell returns exactly the bytes that were put in.
#include <array>

#include "base/glib-ptr.h"
#include "base/shell.h"
#include "target.h"

namespace {

/** Returns what a shell prints for a command line. */
std::string printed_by(const char* shell, const std::string& command) {
  std::array<const char*, 4> words{shell, "-c", command.c_str(), nullptr};
  // If the quoting of a word ever fails, the shell finds no command to run.
  std::array<const char*, 2> environment{"PATH=/nonexistent", nullptr};
  varnholt::TextPtr printed;
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the words are not written to
  g_spawn_sync(nullptr, const_cast<char**>(words.data()), const_cast<char**>(environment.data()),
               // This avoids a copy of this large process for each shell.
               G_SPAWN_LEAVE_DESCRIPTORS_OPEN, nullptr, nullptr, varnholt::out(printed), nullptr,
               nullptr, nullptr);
  return printed ? printed.get() : "";
}

void check_in(const char* shell, const std::string& text) {
  const std::string path = text.starts_with('-') ? "./" + text : text;
  std::string command = "printf '%s:' " + varnholt::path_argument(text);
  std::string expected = path + ':';
  // A path with "=" is made absolute for sudo, which changes the text.
  if (text.find('=') == std::string::npos) {
    command += ' ' + varnholt::command_word(text);
    expected += path + ':';
  }
  must_hold(printed_by(shell, command) == expected, shell + (": " + command));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text{reinterpret_cast<const char*>(data), size};
  text.resize(text.find('\0') == std::string::npos ? size : text.find('\0'));
  check_in("/bin/dash", text);
  check_in("/bin/bash", text);
  return 0;
}
