// SPDX-License-Identifier: GPL-3.0-or-later
// What making or undoing the link of a definition takes.
#include "linkbuilder/decision.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

#include "base/glib-ptr.h"
#include "base/path.h"

namespace varnholt::linkbuilder {
namespace {

/** Decides by the kind of an entry that readlink(2) could not read. */
LinkDecision decide_by_kind(const char* path, int error) {
  struct stat status {};
  if (error == ENOENT || lstat(path, &status) != 0) return {LinkTask::make, ""};
  switch (status.st_mode & S_IFMT) {
    case S_IFLNK:
      return {LinkTask::unreadable, "", error};
    case S_IFDIR:
    case S_IFREG:
      return {LinkTask::adopt, ""};
    default:
      return {LinkTask::refuse, ""};
  }
}

}  // namespace

bool wants_link(const model::BakDefFields& definition) {
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic) &&
         !definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted);
}

bool wants_undoing(const model::BakDefFields& definition) {
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic) &&
         definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted);
}

LinkDecision decide_link(const model::BakDefFields& definition) {
  // Nearly every run finds nearly every link as it should be, and one call is enough to see that.
  std::array<char, PATH_MAX> content;  // NOLINT(*-member-init): clearing it takes as long again
  const char* const path = definition.to.c_str();
  const ssize_t length = readlink(path, content.data(), content.size());
  if (length < 0) return decide_by_kind(path, errno);
  LinkDecision decision{LinkTask::replace, {content.data(), static_cast<std::size_t>(length)}};
  if (definition.from == decision.content) decision.task = LinkTask::none;
  return decision;
}

std::optional<files::Link> foreign_link(const model::BakDefFields& definition, LinkTask task,
                                        const files::Place& place) {
  // Only an adoption has to do with what is at the source.
  if (place.foreign() || task != LinkTask::adopt) return place.foreign();
  const files::Place source{definition.from};
  return source.foreign();
}

UndoDecision decide_undo(const std::string& link) {
  if (!exists(link)) return {UndoTask::missing, ""};
  if (!is_link(link)) return {UndoTask::no_link, ""};
  ErrorPtr error;
  const auto content = take_text(g_file_read_link(link.c_str(), out(error)));
  if (!content) return {UndoTask::unreadable, "", error->message};
  if (!exists(content.get())) return {UndoTask::leads_nowhere, content.get()};
  return {link == "/" ? UndoTask::root : UndoTask::copy, content.get()};
}

std::optional<files::Link> foreign_link(const std::string& link, const std::string& content,
                                        const std::string& source) {
  const files::Place place{link};
  if (place.foreign()) return place.foreign();
  const auto [seen, owner] = place.link();
  // Somebody is exchanging it.
  if (seen != content) return files::Link{link, owner};
  return files::way_behind({link, content == source ? 0 : owner}, content).foreign;
}

}  // namespace varnholt::linkbuilder
