// SPDX-License-Identifier: GPL-3.0-or-later
// Commands that need root rights.
#include "store/root-rights.h"

#include <array>
#include <cstring>
#include <string>
#include <utility>

#include "base/glib-ptr.h"
#include "base/shell.h"

namespace varnholt {
namespace {

/** What system(3) runs. */
constexpr auto* system_shell = "/bin/sh";
constexpr std::string_view not_plain = "\"$`\\";

bool is_echo_option(std::string_view word) {
  return word.size() > 1 && word.starts_with('-') &&
         word.find_first_not_of("neE", 1) == std::string_view::npos;
}

}  // namespace

bool echo_reads_escapes(const char* shell) {
  // NOLINTBEGIN(cppcoreguidelines-pro-type-const-cast): the words are not written to
  std::array<char*, 4> words{const_cast<char*>(shell), const_cast<char*>("-c"),
                             const_cast<char*>(R"(echo '\\')"), nullptr};
  // NOLINTEND(cppcoreguidelines-pro-type-const-cast)
  TextPtr printed;
  g_spawn_sync(nullptr, words.data(), nullptr, GSpawnFlags{}, nullptr, nullptr, out(printed),
               nullptr, nullptr, nullptr);
  return printed && std::string_view{printed.get()} == "\\\n";
}

SecretText sudo_command(std::string_view password, std::string_view command, bool reads_escapes) {
  constexpr std::size_t longest_escape = 6;
  constexpr std::size_t frame = 40;
  SecretText line;
  // Growing would leave copies behind.
  line.reserve(frame + longest_escape * password.size() + command.size());
  line = "echo \"";
  for (const char byte : password) {
    if (not_plain.find(byte) == std::string_view::npos) {
      line += byte;
      continue;
    }
    // A backslash before the character would not do: in some charsets a shell takes it for the
    // second half of the character in front of it.
    line += "\"'";
    line += byte;
    if (byte == '\\' && reads_escapes) line += byte;
    line += "'\"";
  }
  if (is_echo_option(password)) line += '\n';
  line += "\" |  sudo -S ";
  line += command;
  return line;
}

RootRights::RootRights(SecretPtr password)
    : m_password(std::move(password)),
      m_reads_escapes(std::strchr(m_password.get(), '\\') != nullptr &&
                      echo_reads_escapes(system_shell)) {}

int RootRights::run(const std::string& command) const {
  if (!m_password) return run_command(command);
  return run_command(sudo_command(m_password.get(), command, m_reads_escapes).c_str());
}

}  // namespace varnholt
