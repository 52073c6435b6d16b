// SPDX-License-Identifier: GPL-3.0-or-later
// What is to be done with a symbolic definition.
#include "linkbuilder/decision.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include "base/glib-ptr.h"
#include "linkbuilder/moves.h"

namespace varnholt::linkbuilder {
namespace {

/** Decides by what lstat(2) says of a path that readlink(2) could not read. */
LinkDecision decide_by_kind(const char* path, int error) {
  struct stat status {};
  if (error == ENOENT || lstat(path, &status) != 0) return {LinkTask::make, "", 0, 0};
  switch (status.st_mode & S_IFMT) {
    case S_IFLNK:
      return {LinkTask::unreadable, "", error, 0};
    case S_IFDIR:
    case S_IFREG:
      return {LinkTask::adopt, "", 0, status.st_ino};
    default:
      return {LinkTask::refuse, "", 0, 0};
  }
}

}  // namespace

Turn turn_of(const model::BakDefFields& definition, const std::vector<Work>& left_alone,
             const std::vector<Work>& noted) {
  if (!definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic)) return Turn::none;
  const auto same_path = [&](const Work& work) { return work.to == definition.to; };
  if (std::ranges::any_of(left_alone, same_path)) return Turn::left_alone;
  if (definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted)) return Turn::undo;
  const bool half_copied = std::ranges::any_of(noted, [&](const Work& work) {
    return work.undoes() && work.stage != Stage::undone && same_path(work);
  });
  return half_copied ? Turn::half_copied : Turn::build;
}

bool wants_link(const model::BakDefFields& definition) {
  return definition.has(VH_FILE_OPERATION_TYPE_FOT_Symbolic) &&
         !definition.has(VH_FILE_OPERATION_TYPE_FOT_Deleted);
}

ssize_t read_link(const std::string& path, char* content, std::size_t size) {
  return readlink(path.c_str(), content, size);
}

LinkDecision decide_link(const model::BakDefFields& definition, ReadLink read) {
  // Nearly every run finds nearly every link as it should be, and one call is enough to see that.
  std::array<char, PATH_MAX> content;  // NOLINT(*-member-init): clearing it takes as long again
  const ssize_t length = read(definition.to, content.data(), content.size());
  if (length < 0) return decide_by_kind(definition.to.c_str(), errno);
  LinkDecision decision{
      LinkTask::replace, {content.data(), static_cast<std::size_t>(length)}, 0, 0};
  if (definition.from == decision.content) decision.task = LinkTask::none;
  return decision;
}

UndoDecision decide_undo(const std::string& link) {
  if (!exists(link)) return {UndoTask::missing, ""};
  struct stat status {};
  if (lstat(link.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) {
    return {UndoTask::no_link, ""};
  }
  ErrorPtr error;
  const auto content = take_text(g_file_read_link(link.c_str(), out(error)));
  if (!content) return {UndoTask::unreadable, "", error->message};
  if (!exists(content.get())) return {UndoTask::leads_nowhere, content.get()};
  return {link == "/" ? UndoTask::root : UndoTask::copy, content.get()};
}

}  // namespace varnholt::linkbuilder
