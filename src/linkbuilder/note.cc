// SPDX-License-Identifier: GPL-3.0-or-later
// The note of a run of the link builder that is not finished.
#include "linkbuilder/note.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <span>

#include <glib/gi18n.h>

#include "base/descriptor.h"
#include "base/file.h"
#include "base/glib-ptr.h"
#include "base/path.h"
#include "base/text.h"
#include "files/mounts.h"
#include "linkbuilder/backup-name.h"
#include "store/definitions.h"

namespace varnholt::linkbuilder {
namespace {

// A path may hold any byte but NUL, so that one ends each field.
constexpr char field_end = '\0';
constexpr std::string_view first_word = "varnholt ";
constexpr std::string_view format = "varnholt 3";
constexpr std::string_view last_field = "end";
constexpr std::array<std::pair<Stage, std::string_view>, 4> stage_words{{
    {Stage::aside, "aside"},
    {Stage::move, "move"},
    {Stage::back, "back"},
    {Stage::undo, "undo"},
}};
constexpr std::size_t fields_of_head = 3;
constexpr std::size_t fields_of_work = 9;

template <typename Number>
Number number_in(std::string_view text) {
  Number number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/** Reads the fields of one work; what does not fit is not written as the same again. */
std::optional<Work> read_work(std::span<const std::string_view> field) {
  const auto* const word =
      std::ranges::find(stage_words, field[0], &std::pair<Stage, std::string_view>::second);
  if (word == stage_words.end()) return std::nullopt;
  Work work{.stage = word->first,
            .from = std::string{field[1]},
            .to = std::string{field[2]},
            .backup = std::string{field[3]},
            .inode = number_in<ino_t>(field[4]),
            .source_inode = number_in<ino_t>(field[5]),
            .mounts = {std::string{field[6]}, std::string{field[7]}},
            .entries = number_in<std::uint64_t>(field[8])};
  // Only what this program itself sets aside may be taken for that.
  const bool fits = work.stage == Stage::undo ? work.backup.empty() : is_backup_name(work.backup);
  return fits ? std::optional{work} : std::nullopt;
}

std::string_view word_for(Stage stage) {
  return std::ranges::find(stage_words, stage, &std::pair<Stage, std::string_view>::first)->second;
}

/** Returns why others than this user can have written a file; null when nobody else can. */
const char* distrust(int descriptor, uid_t owner) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return g_strerror(errno);
  if (!S_ISREG(status.st_mode)) return N_("it is no regular file");
  if (status.st_uid != owner) return N_("it belongs to another user");
  return (status.st_mode & (S_IWGRP | S_IWOTH)) != 0 ? N_("other users may write it") : nullptr;
}

}  // namespace

std::string Work::path() const {
  return stage == Stage::undo ? to : path_of_backup(backup);
}

std::string Work::spelled_backup() const {
  return to + backup.substr(path().size());
}

std::array<std::string, 2> Work::present_mounts() const {
  // What is undone is copied from its original, which may be a mount itself.
  const auto source = stage == Stage::undo ? from + '/' : folder_above(without_final_slash(from));
  return {files::mount_point_of(folder_above(to)), files::mount_point_of(source)};
}

std::string digest_of(std::string_view profile) {
  const auto rewritten = store::without_marked_lines(profile);
  return take_text(g_compute_checksum_for_data(G_CHECKSUM_SHA256,
                                               reinterpret_cast<const guchar*>(rewritten.data()),
                                               rewritten.size()))
      .get();
}

std::string note_text(const Note& note) {
  std::string text;
  const auto add = [&text](std::string_view field) { (text += field) += field_end; };
  add(format);
  add(note.profile);
  add(std::to_string(note.line));
  for (const auto& work : note.works) {
    add(word_for(work.stage));
    for (const auto& field : {work.from, work.to, work.backup}) add(field);
    add(std::to_string(work.inode));
    add(std::to_string(work.source_inode));
    for (const auto& mount : work.mounts) add(mount);
    add(std::to_string(work.entries));
  }
  add(last_field);
  return text;
}

std::optional<Note> read_note(std::string_view bytes) {
  const auto fields = split(bytes, field_end);
  if (fields.size() < fields_of_head) return std::nullopt;
  Note note{std::string{fields[1]}, number_in<std::size_t>(fields[2]), {}};
  for (auto at = fields_of_head; at + fields_of_work < fields.size(); at += fields_of_work) {
    auto work = read_work(std::span{fields}.subspan(at, fields_of_work));
    if (!work) return std::nullopt;
    note.works.push_back(std::move(*work));
  }
  return note_text(note) == bytes ? std::optional{std::move(note)} : std::nullopt;
}

bool may_be_note(std::string_view bytes) {
  return format.starts_with(bytes.substr(0, bytes.find(field_end)));
}

StoredNote stored_note(const char* path, uid_t owner) {
  const Descriptor file{open(path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)};
  if (!file && errno == ENOENT) return {};
  const int error = file ? 0 : errno;
  if (!file) return {{}, true, g_strerror(error), error};
  if (const char* const why = distrust(file.number(), owner)) return {{}, true, why};
  const auto bytes = read_file(path);
  auto note = bytes.error ? std::nullopt : read_note(bytes.text());
  if (note) return {std::move(*note), true};
  const bool is_other = bytes.text().starts_with(first_word) && !may_be_note(bytes.text());
  return {{}, true, is_other ? N_("it is of another version") : N_("it is damaged")};
}

}  // namespace varnholt::linkbuilder
