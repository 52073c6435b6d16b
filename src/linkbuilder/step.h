// SPDX-License-Identifier: GPL-3.0-or-later
// One command of an operation, bound to the places that it is meant for.
#pragma once

#include <string>
#include <vector>

#include "base/descriptor.h"
#include "files/confinement.h"
#include "files/way.h"

namespace varnholt::linkbuilder {

/**
 * Says what a command is going to do, and then runs it. Where others than root can exchange a name
 * on the way to one of its paths, the command can do nothing else. Where it cannot be confined,
 * that is told once, and it runs all the same.
 */
class Step {
 public:
  /** The command moves an entry to another path. */
  void moves(const std::string& from, const std::string& to);
  /** The command removes the entry at a path. */
  void removes(const std::string& path);
  /** The command removes the entry at a path and makes another one there. */
  void replaces(const std::string& path);
  /** The command reads the entry at a path, and what is below it. */
  void reads(const std::string& path);

  /** Returns whether the command is run so that it can do nothing else. */
  bool is_confined() const;

  /**
   * Runs a command line as run_command() does. It is not run, and the result is -1, when a link on
   * the way to one of the paths would lead root astray; that is told on standard error. A stop
   * signal ends the process before or during the command, or when it has ended the command. One
   * that was sent to this process alone ends no command; SIGINT and SIGQUIT are lost then.
   */
  int run(const std::string& command_line) const;

 private:
  using To = files::Permission::To;
  int open_folder(const std::string& path);
  void allow_for_entry(const std::string& path, To to);
  void refuse(const std::string& path, const files::Link& link);

  std::vector<files::Place> m_places;
  std::vector<Descriptor> m_entries;
  std::vector<files::Permission> m_permissions;
  files::Work m_work = files::Work::rename;
  bool m_is_shared = false;
  bool m_is_refused = false;
};

/** Prints that a path is left alone because a link would lead root astray. */
void report_foreign_link(const std::string& path, const files::Link& link);

}  // namespace varnholt::linkbuilder
