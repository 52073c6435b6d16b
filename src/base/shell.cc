// SPDX-License-Identifier: GPL-3.0-or-later
// Builds the words of shell command lines, and runs command lines.
#include "base/shell.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "base/diagnostics.h"
#include "base/glib-ptr.h"

namespace varnholt {

std::string path_argument(std::string_view path) {
  std::string argument = path.starts_with('-') ? "\"./" : "\"";
  for (const char byte : path) {
    if (byte == '"' || byte == '`' || byte == '$' || byte == '\\') argument += '\\';
    argument += byte;
  }
  return argument + '"';
}

std::string command_word(std::string_view path) {
  // "=" and "~" are left out: in a first word they mean an assignment or a home folder.
  constexpr std::string_view plain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-+,:@%";
  std::string word{path.starts_with('-') ? "./" : ""};
  word += path;
  // sudo reads "a=b/program" as an assignment too.
  if (word.find('=') != std::string::npos) {
    std::error_code failed;
    const auto absolute = std::filesystem::absolute(word, failed);
    if (!failed) word = absolute;
  }
  if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) return word;
  // Inside single quotes no charset can read a quoting character as half of another character.
  return take_text(g_shell_quote(word.c_str())).get();
}

int run_command(const std::string& command_line) {
  flush_progress();
  // NOLINTNEXTLINE(cert-env33-c): the program acts on the system by command lines
  return std::system(command_line.c_str());
}

}  // namespace varnholt
