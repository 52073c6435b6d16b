// SPDX-License-Identifier: GPL-3.0-or-later
// Commands that need root rights: run as they are when this process has them, else through sudo(8).
#pragma once

#include <string>
#include <utility>

#include "base/secret.h"

namespace varnholt {

/** The right to run commands as root, for as long as it is held. */
class RootRights {
 public:
  /** The rights of this process, which runs as root. */
  RootRights() = default;
  /** The rights that sudo gives the user for a password. */
  explicit RootRights(SecretPtr password) : m_password(std::move(password)) {}

  /**
   * Runs a command line and returns its wait status, as run_command() does. sudo reads the password
   * as a line from a pipe, so it stands in no argument list, where every user could see it; the
   * pipe is also the command's standard input.
   */
  int run(const std::string& command) const;

 private:
  SecretPtr m_password;
};

}  // namespace varnholt
