// SPDX-License-Identifier: GPL-3.0-or-later
// Reads whole files as texts, brings changes to the disk, and logs unexpected errors of GLib.
#include "base/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <system_error>

#include "base/descriptor.h"
#include "base/path.h"

namespace varnholt {
namespace {

bool may_have_no_end(const char* path) {
  struct stat status {};
  return stat(path, &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

void sync_with(int (*sync)(int), const std::string& path) {
  const Descriptor opened{open(folder_above(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
  if (opened) sync(opened.number());
}

}  // namespace

FileText read_file(const char* path) {
  FileText file;
  if (may_have_no_end(path)) {
    g_set_error(out(file.error), G_FILE_ERROR, G_FILE_ERROR_NXIO, "%s is no regular file", path);
    return file;
  }
  g_file_get_contents(path, out(file.bytes), &file.length, out(file.error));
  return file;
}

bool file_holds(const char* path, std::string_view text) {
  constexpr std::size_t block_size = 1UL << 16U;
  const Descriptor file{may_have_no_end(path) ? -1 : open(path, O_RDONLY | O_CLOEXEC)};
  std::array<char, block_size> block;  // NOLINT(*-member-init): read fills it
  while (true) {
    const auto length = read(file.number(), block.data(), block.size());
    if (length <= 0) return length == 0 && text.empty();
    const std::string_view piece{block.data(), static_cast<std::size_t>(length)};
    if (!text.starts_with(piece)) return false;
    text.remove_prefix(piece.size());
  }
}

std::string current_folder() {
  std::error_code ignored;
  return std::filesystem::current_path(ignored);
}

std::string program_folder() {
  std::error_code unknown;
  return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path();
}

void sync_folder_above(const std::string& path) {
  sync_with(fsync, path);
}

void sync_file_system(const std::string& path) {
  sync_with(syncfs, path);
}

bool is_file_error(const GError& error) {
  return error.domain == G_FILE_ERROR;
}

void log_uncaught(const GError& error, const char* source, int line) {
  g_critical("file %s: line %d: uncaught error: %s", source, line, error.message);
}

}  // namespace varnholt
