// SPDX-License-Identifier: GPL-3.0-or-later
// The note of unfinished work.
#include "linkbuilder/note.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <span>
#include <system_error>

#include <glib/gi18n.h>

#include "base/descriptor.h"
#include "base/diagnostics.h"
#include "base/file.h"
#include "base/text.h"
#include "store/replace-file.h"

namespace varnholt::linkbuilder {
namespace {

// A path may hold any byte but NUL, so that one ends each field.
constexpr char field_end = '\0';
constexpr std::string_view first_field = "varnholt 1";
constexpr std::string_view last_field = "end";
constexpr std::array<std::string_view, 6> stage_words{"aside", "move",  "back",
                                                      "undo",  "again", "undone"};
constexpr std::array<std::string_view, 2> crossing_words{"near", "far"};
constexpr std::size_t fields_of_work = 9;
constexpr std::int64_t nanoseconds_of_microsecond = 1000;

template <typename Number>
Number number_in(std::string_view text) {
  Number number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/** Reads the fields of one work; what does not fit is not written as the same again. */
std::optional<Work> read_work(std::span<const std::string_view> field) {
  const auto* const word = std::ranges::find(stage_words, field[0]);
  if (word == stage_words.end()) return std::nullopt;
  Work work{static_cast<Stage>(word - stage_words.begin()),
            std::string{field[1]},
            std::string{field[2]},
            std::string{field[3]},
            number_in<ino_t>(field[4]),
            number_in<ino_t>(field[5]),
            field[6] == crossing_words[1],
            std::string{field[7]},
            number_in<std::int64_t>(field[8])};
  // Only what this program itself moves aside may be taken for that.
  return work.undoes() || is_backup_name(work.other) ? std::optional{work} : std::nullopt;
}

/** Returns why nobody but this user can have written a file; null when nobody can. */
const char* distrust(int descriptor, uid_t owner) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return g_strerror(errno);
  if (!S_ISREG(status.st_mode)) return N_("it is no regular file");
  if (status.st_uid != owner) return N_("it belongs to another user");
  return (status.st_mode & (S_IWGRP | S_IWOTH)) != 0 ? N_("other users may write it") : nullptr;
}

/** Returns whether what a work has moved to the source was renamed, so that it is no copy. */
bool was_renamed(const Work& work) {
  return inode_at(work.from) == work.inode && !lies_elsewhere(work);
}

/** Waits until what has come of a work is on the disk. */
void sync_work(const Work& work) {
  if (work.undoes()) return sync_file_system(work.to);
  was_renamed(work) ? sync_folder_above(work.from) : sync_file_system(work.from);
  sync_folder_above(work.to);
}

}  // namespace

bool lies_elsewhere(const Work& work) {
  return is_elsewhere(without_final_slash(work.from), work.other);
}

std::string note_text(const std::vector<Work>& works) {
  std::string text;
  const auto add = [&text](std::string_view field) { (text += field) += field_end; };
  add(first_field);
  for (const auto& work : works) {
    add(stage_words.at(static_cast<std::size_t>(work.stage)));
    for (const auto& field : {work.from, work.to, work.other, std::to_string(work.inode),
                              std::to_string(work.source_inode)}) {
      add(field);
    }
    add(crossing_words.at(work.crosses ? 1 : 0));
    add(work.folder);
    add(std::to_string(work.time));
  }
  add(last_field);
  return text;
}

std::optional<std::vector<Work>> read_note(std::string_view bytes) {
  const auto fields = split(bytes, field_end);
  std::vector<Work> works;
  for (std::size_t at = 1; at + fields_of_work < fields.size(); at += fields_of_work) {
    auto work = read_work(std::span{fields}.subspan(at, fields_of_work));
    if (!work) return std::nullopt;
    works.push_back(std::move(*work));
  }
  return note_text(works) == bytes ? std::optional{std::move(works)} : std::nullopt;
}

StoredNote stored_note(const char* path, uid_t owner) {
  const Descriptor file{open(path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)};
  if (!file) return errno == ENOENT ? StoredNote{} : StoredNote{{}, g_strerror(errno), errno};
  if (const char* const why = distrust(file.number(), owner)) return {{}, why};
  const auto bytes = read_file(path);
  auto works = bytes.error ? std::nullopt : read_note(bytes.text());
  return works ? StoredNote{std::move(*works), ""} : StoredNote{{}, N_("it is damaged")};
}

Note::Note(const char* path) : m_path(path) {
  // The step that it would have told of has not begun.
  store::remove_leftover(path, [](std::string_view /*text*/) { return true; });
  auto stored = stored_note(path, geteuid());
  if (stored.why.empty()) {
    m_works = std::move(stored.works);
    m_stored = m_works;
    return;
  }
  tell("is left alone, and nothing is noted", stored.why.c_str());
  // Nobody knows what it is good for, so it is not replaced either.
  m_path = nullptr;
}

bool Note::keep(const Work& work) {
  const auto same = [&](const Work& known) { return known.same_definition(work); };
  std::erase_if(m_works, same);
  m_works.push_back(work);
  m_works.back().folder = current_folder();
  m_works.back().time = g_get_real_time() * nanoseconds_of_microsecond;
  write();
  return std::ranges::none_of(
      m_stored, [&](const Work& stored) { return same(stored) && stored != m_works.back(); });
}

void Note::drop(const Work& work) {
  const auto same = [&](const Work& known) { return known.same_definition(work); };
  if (std::ranges::none_of(m_works, same)) return;
  if (m_path != nullptr) sync_work(work);
  std::erase_if(m_works, same);
  write();
}

void Note::write() {
  if (m_path == nullptr) return;
  if (!m_works.empty()) {
    constexpr mode_t own_mode = 0600;
    const auto error = store::write_file(m_path, own_mode, note_text(m_works));
    if (!error) {
      m_stored = m_works;
      return;
    }
    tell("cannot be written, and the run goes on without it", error->message);
  }
  // No note is better than one that says less than what has been done.
  if (unlink(m_path) == 0 || errno == ENOENT) m_stored.clear();
}

void Note::tell(const char* what, const char* why) {
  if (!m_told) print_failure("the note of unfinished work %s %s: %s\n", m_path, what, why);
  m_told = true;
}

}  // namespace varnholt::linkbuilder
