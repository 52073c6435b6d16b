// SPDX-License-Identifier: GPL-3.0-or-later
// Commands that need root rights: run as they are when this process has them, else through sudo(8).
#pragma once

#include <string>
#include <string_view>

#include "base/secret.h"

namespace varnholt {

/**
 * Whether the echo of the shell at a path reads "\\" as one backslash, as that of dash does. That
 * of bash reads it as two.
 */
bool echo_reads_escapes(const char* shell);

/**
 * The command line that hands `password` to sudo, byte for byte and as a line, and has it run
 * `command`. A line feed follows a password that echo would take for an option.
 */
SecretText sudo_command(std::string_view password, std::string_view command, bool reads_escapes);

/** The right to run commands as root, for as long as it is held. */
class RootRights {
 public:
  /** Those of this process, which runs as root. */
  RootRights() = default;
  /** Those that sudo gives the user for a password. */
  explicit RootRights(SecretPtr password);

  /** Runs a command line and returns its wait status, as run_command() does. */
  int run(const std::string& command) const;

 private:
  SecretPtr m_password;
  bool m_reads_escapes = false;
};

}  // namespace varnholt
