// SPDX-License-Identifier: GPL-3.0-or-later
// One command of an operation, bound to the places that it is meant for.
#include "linkbuilder/step.h"

#include <unistd.h>

#include <utility>

#include "base/diagnostics.h"
#include "base/shell.h"
#include "files/mounts.h"
#include "linkbuilder/stop-signals.h"

namespace varnholt::linkbuilder {
namespace {

/** Tells once that commands are not confined here. */
void report_no_confinement() {
  static bool reported = false;
  if (std::exchange(reported, true)) return;
  print_failure(
      "commands cannot be fully confined here: nobody must exchange a folder on the way to a path "
      "or a source while this run is at work\n");
}

}  // namespace

void Step::moves(const std::string& from, const std::string& to) {
  m_permissions.push_back({open_folder(from), To::take});
  // What is renamed is not read, so that nobody can have root copy anything in its place.
  if (files::mv_copies(from, to)) m_work = files::Work::copy;
  allow_for_entry(from, m_work == files::Work::copy ? To::change : To::move);
  m_permissions.push_back({open_folder(to), To::put});
}

void Step::removes(const std::string& path) {
  m_permissions.push_back({open_folder(path), To::take});
  allow_for_entry(path, To::change);
}

void Step::replaces(const std::string& path) {
  m_work = files::Work::copy;
  m_permissions.push_back({open_folder(path), To::move});
}

void Step::reads(const std::string& path) {
  allow_for_entry(path, To::read);
}

bool Step::is_confined() const {
  return m_is_shared && !m_is_refused && files::can_confine(m_work);
}

int Step::run(const std::string& command_line) const {
  if (m_is_refused) return -1;
  if (m_is_shared && !files::can_confine(m_work)) report_no_confinement();
  const int status = interruptibly([&] {
    return m_is_shared ? files::run_confined(command_line, m_permissions, m_work)
                       : run_command(command_line);
  });
  end_if_stopped(status);
  if (status < 0) print_failure("a command could not be run, or its folders have been exchanged\n");
  return status;
}

int Step::open_folder(const std::string& path) {
  const auto& place = m_places.emplace_back(path);
  m_is_shared = m_is_shared || place.is_shared();
  if (place.is_refused()) refuse(path, *place.foreign());
  return place.folder();
}

void Step::allow_for_entry(const std::string& path, To to) {
  // With a slash at its end a path means what a link there leads to.
  auto way = files::way_along(path);
  if (way.foreign && geteuid() == 0) refuse(path, *way.foreign);
  m_is_shared = m_is_shared || way.shared;
  m_permissions.push_back({m_entries.emplace_back(std::move(way.end)).number(), to});
}

void Step::refuse(const std::string& path, const files::Link& link) {
  if (!m_is_refused) report_foreign_link(path, link);
  m_is_refused = true;
}

void report_foreign_link(const std::string& path, const files::Link& link) {
  print_failure(
      "%s is left alone, because %s, a link of user %u, does not lead to what belongs to that "
      "user\n",
      path.c_str(), link.path.c_str(), link.owner);
}

}  // namespace varnholt::linkbuilder
