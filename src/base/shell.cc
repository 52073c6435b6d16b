// SPDX-License-Identifier: GPL-3.0-or-later
// Makes words of shell command lines and runs the lines.
#include "base/shell.h"

#include <cstdlib>

#include "base/diagnostics.h"

namespace varnholt {

std::string escaped_for_double_quotes(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char byte : text) {
    if (byte == '"' || byte == '`' || byte == '$' || byte == '\\') escaped += '\\';
    escaped += byte;
  }
  return escaped;
}

std::string path_argument(std::string_view path) {
  const char* const front = path.starts_with('-') ? "\"./" : "\"";
  return front + escaped_for_double_quotes(path) + '"';
}

int run_command(const std::string& command_line) {
  flush_progress();
  // NOLINTNEXTLINE(cert-env33-c): command lines are what the system is made of
  return std::system(command_line.c_str());
}

}  // namespace varnholt
