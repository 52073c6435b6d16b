// SPDX-License-Identifier: GPL-3.0-or-later
// One command of an operation, bound to the places that it is meant for.
#include "linkbuilder/step.h"

#include <fcntl.h>

#include "base/diagnostics.h"
#include "base/shell.h"
#include "linkbuilder/stop-signals.h"

namespace varnholt::linkbuilder {
namespace {

using To = files::Permission::To;

/** Tells once that commands are not confined here. */
void report_no_confinement() {
  static bool reported = false;
  if (!reported) {
    print_failure(
        "this kernel cannot confine commands: nobody must exchange a folder on the way to a path "
        "or a source while this run is at work\n");
  }
  reported = true;
}

}  // namespace

void Step::moves(const std::string& path) {
  const auto& place = open_place(path);
  m_permissions.push_back({place.folder(), To::take});
  allow_for_entry(place, To::change);
}

void Step::removes(const std::string& path) {
  m_permissions.push_back({open_place(path).folder(), To::take});
}

void Step::makes(const std::string& path) {
  m_permissions.push_back({open_place(path).folder(), To::put});
}

void Step::reads(const std::string& path) {
  allow_for_entry(open_place(path), To::read);
}

int Step::run(const std::string& command_line) const {
  if (m_is_refused) return -1;
  const bool is_confined = m_is_shared && files::can_confine();
  if (m_is_shared && !is_confined) report_no_confinement();
  return run_interruptibly([&] {
    return is_confined ? files::run_confined(command_line, m_permissions)
                       : run_command(command_line);
  });
}

const files::Place& Step::open_place(const std::string& path) {
  const auto& place = m_places.emplace_back(path);
  m_is_shared = m_is_shared || place.is_shared();
  if (place.is_refused()) {
    m_is_refused = true;
    report_foreign_link(path, *place.foreign());
  }
  return place;
}

void Step::allow_for_entry(const files::Place& place, To to) {
  const auto& entry =
      m_entries.emplace_back(openat(place.folder(), place.name(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  m_permissions.push_back({entry.number(), to});
}

void report_foreign_link(const std::string& path, const files::Link& link) {
  print_failure(
      "%s is left alone, because %s, a link of user %u, does not lead to what belongs to that "
      "user\n",
      path.c_str(), link.path.c_str(), link.owner);
}

}  // namespace varnholt::linkbuilder
