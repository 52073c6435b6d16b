// SPDX-License-Identifier: GPL-3.0-or-later
// Listens to the steps of a run and keeps the note on the disk.
#include "linkbuilder/journal.h"

#include <unistd.h>

#include <utility>

#include "base/diagnostics.h"
#include "base/file.h"
#include "base/path.h"
#include "files/mounts.h"
#include "files/path-state.h"
#include "files/tree.h"
#include "files/way.h"
#include "linkbuilder/backup-name.h"
#include "store/replace-file.h"

namespace varnholt::linkbuilder {
namespace {

/** Returns the number of entries that mv(1) must copy; 0 when it renames. */
std::uint64_t copied_entries(const std::string& from, const std::string& to) {
  return files::mv_copies(from, to) ? files::entries_at(from) : 0;
}

/** Waits until the changes of a finished work are on the disk. */
void sync_work(const Work& work) {
  if (work.stage == Stage::undo) return sync_file_system(work.to);
  // A copy has contents of its own.
  if (work.entries > 0) sync_file_system(work.from);
  sync_folder_above(work.from);
  sync_folder_above(work.to);
}

}  // namespace

Journal::Journal(const char* path, std::string_view profile) : m_path(path), m_profile(profile) {
  // The step that the new text of a note would have been about has not begun.
  store::remove_leftover(path, may_be_note);
  auto stored = stored_note(path, geteuid());
  m_stored = stored.is_there;
  if (!stored.why.empty()) {
    report("is left alone, and nothing is noted", stored.why.c_str());
    // Nobody knows what it is good for, so it is not replaced either.
    m_path = nullptr;
    return;
  }
  m_note = std::move(stored.note);
  if (m_note.line > 0 && m_note.profile != digest_of(profile)) m_note.line = 0;
  m_note.profile.clear();
}

bool Journal::about_to_set_aside(const model::BakDefFields& v) {
  Work work{.from = v.from, .to = v.to};
  work.backup = files::way_along(free_backup_name(v.to)).entries.back();
  work.inode = files::PathState{v.to}.inode();
  work.source_inode = files::PathState{without_final_slash(v.from)}.inode();
  // With nothing at the source nothing is deleted before the move.
  if (work.source_inode == 0) work.stage = Stage::move;
  return begin(std::move(work));
}

void Journal::has_set_aside(const std::string& backup) {
  if (!m_in_hand) return;
  auto& noted = m_note.works.back().backup;
  const auto name = last_name(backup);
  if (last_name(noted) == name) return;
  noted = folder_above(noted) + name;
  write();
}

bool Journal::about_to_move(const std::string& from, const std::string& to) {
  if (!m_in_hand) return true;
  Work work = m_note.works.back();
  const bool is_way_back = from == without_final_slash(work.from);
  work.stage = is_way_back ? Stage::back : Stage::move;
  // What was deleted there has given its inode away, perhaps to what comes next.
  if (!is_way_back) work.source_inode = files::PathState{to}.inode();
  // A mount may have come to the source since it began.
  work.mounts = work.present_mounts();
  work.entries = copied_entries(from, to);
  if (work == m_note.works.back()) return true;
  m_note.works.back() = std::move(work);
  // A deletion there must not come back after the note says that it is done.
  sync_folder_above(to);
  return write();
}

bool Journal::about_to_undo(const std::string& link, const std::string& content) {
  return begin({.stage = Stage::undo, .from = content, .to = link});
}

void Journal::done() {
  if (!m_in_hand) return;
  m_in_hand = false;
  m_to_sync = std::move(m_note.works.back());
  m_note.works.pop_back();
  // What mv(1) has copied is nowhere else now.
  if (m_to_sync->entries > 0) return sync_work(*std::exchange(m_to_sync, std::nullopt));
  // A copy that is a link itself must not be undone in its turn.
  if (m_to_sync->stage == Stage::undo) write();
}

void Journal::take_up(const Work& work) {
  forget(work);
  m_note.works.push_back(work);
  m_in_hand = true;
}

void Journal::forget(const Work& work) {
  std::erase(m_note.works, work);
}

void Journal::end() {
  m_note.line = 0;
  m_profile = {};
  m_note.profile.clear();
  if (m_stored) write();
}

bool Journal::begin(Work work) {
  m_in_hand = false;
  const bool is_absolute = work.from.starts_with('/') && work.to.starts_with('/');
  const bool can_be_read = work.stage == Stage::undo || is_backup_name(work.backup);
  if (m_path == nullptr || !is_absolute || !can_be_read) return true;
  work.mounts = work.present_mounts();
  if (!work.backup.empty()) work.entries = copied_entries(work.to, work.backup);
  m_note.works.push_back(std::move(work));
  m_in_hand = write();
  if (m_in_hand) return true;
  print_failure("%s is left alone, because an older note says something else of it\n",
                m_note.works.back().to.c_str());
  m_note.works.pop_back();
  return false;
}

bool Journal::write() {
  if (m_path == nullptr) return true;
  if (m_to_sync) sync_work(*std::exchange(m_to_sync, std::nullopt));
  if (m_note.line > 0 && m_note.profile.empty()) m_note.profile = digest_of(m_profile);
  if (m_note != Note{}) {
    constexpr mode_t own_mode = 0600;
    const auto error = store::write_file(m_path, own_mode, note_text(m_note));
    if (!error) {
      m_stored = true;
      return true;
    }
    report("cannot be written, and the run goes on without it", error->message);
  }
  // No note is better than one that says less than what has been done.
  if (unlink(m_path) == 0) sync_folder_above(m_path);
  m_stored = is_there(m_path);
  return !m_stored;
}

void Journal::report(const char* what, const char* why) {
  if (!m_reported) print_failure("the note of unfinished work %s %s: %s\n", m_path, what, why);
  m_reported = true;
}

}  // namespace varnholt::linkbuilder
