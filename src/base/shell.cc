// SPDX-License-Identifier: GPL-3.0-or-later
// Makes words of shell command lines and runs the lines.
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
  // "=" and "~" are left out: as a first word they would be read as an assignment or a home folder.
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
  // In single quotes no charset can take a quoting character for half of another one.
  return take_text(g_shell_quote(word.c_str())).get();
}

int run_command(const std::string& command_line) {
  flush_progress();
  // NOLINTNEXTLINE(cert-env33-c): command lines are what the system is made of
  return std::system(command_line.c_str());
}

}  // namespace varnholt
