// SPDX-License-Identifier: GPL-3.0-or-later
// Runs commands that need root rights: directly when this process has them, otherwise through
// sudo(8).
#pragma once

#include <string>
#include <utility>

#include "base/secret.h"

namespace varnholt::store {

/** The right to run commands as root, for as long as this object lives. */
class RootRights {
 public:
  /** The rights of this process, which runs as root. */
  RootRights() = default;
  /** The rights that sudo(8) gives the user in return for a password. */
  explicit RootRights(SecretPtr password) : m_password(std::move(password)) {}

  /**
   * Runs a command line and returns its wait status, as run_command() does. sudo reads the password
   * as a line from a pipe, so that it is in no argument list, where every user could see it. The
   * pipe is also the command's standard input.
   */
  int run(const std::string& command) const;

 private:
  SecretPtr m_password;
};

}  // namespace varnholt::store
