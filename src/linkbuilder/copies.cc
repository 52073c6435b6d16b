// SPDX-License-Identifier: GPL-3.0-or-later
// Tells which of two places holds everything.
#include "linkbuilder/copies.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

#include "base/descriptor.h"

namespace fs = std::filesystem;

namespace varnholt::linkbuilder {
namespace {

/** A path and what lstat(2) says of it. */
struct Entry {
  explicit Entry(fs::path where)
      : path(std::move(where)), is_there(lstat(path.c_str(), &status) == 0) {}
  mode_t kind() const { return status.st_mode & S_IFMT; }

  fs::path path;
  struct stat status {};
  bool is_there;
};

/** Calls `take` with the name of each entry in a folder. Returns false when it cannot be read. */
template <typename Take>
bool for_each_name(const fs::path& folder, Take take) {
  std::error_code error;
  for (fs::directory_iterator at{folder, error}; !error && at != fs::directory_iterator{};
       at.increment(error)) {
    take(at->path().filename());
  }
  return !error;
}

/** Returns whether a file is the beginning of another one, or the whole of it. */
bool begins_alike(const Entry& shorter, const Entry& longer) {
  constexpr std::size_t largest_block = 1U << 18U;
  const auto block = std::min(largest_block, static_cast<std::size_t>(shorter.status.st_size));
  std::vector<char> one(block);
  std::vector<char> other(block);
  const Descriptor first{open(shorter.path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW)};
  const Descriptor second{open(longer.path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW)};
  for (off_t at = 0; at < shorter.status.st_size;) {
    const auto length = pread(first.number(), one.data(), block, at);
    if (length <= 0) return false;
    const auto size = static_cast<std::size_t>(length);
    if (pread(second.number(), other.data(), size, at) != length ||
        !std::equal(one.begin(), one.begin() + length, other.begin())) {
      return false;
    }
    at += length;
  }
  return true;
}

/** Returns whether an entry can be a copy of another one, a file perhaps only its beginning. */
bool can_be_copy(const Entry& copy, const Entry& original) {
  if (!copy.is_there || !original.is_there || copy.kind() != original.kind()) return false;
  std::error_code error;
  switch (copy.kind()) {
    case S_IFREG:
      return copy.status.st_size <= original.status.st_size && begins_alike(copy, original);
    case S_IFLNK:
      return fs::read_symlink(copy.path, error) == fs::read_symlink(original.path, error) && !error;
    case S_IFCHR:
    case S_IFBLK:
      return copy.status.st_rdev == original.status.st_rdev;
    default:
      return true;
  }
}

}  // namespace

std::uint64_t entries_at(const fs::path& path) {
  std::uint64_t entries = 0;
  std::vector<fs::path> left{path};
  while (!left.empty()) {
    const Entry entry{std::move(left.back())};
    left.pop_back();
    if (!entry.is_there) return 0;
    ++entries;
    if (entry.kind() != S_IFDIR) continue;
    const auto add = [&](const fs::path& name) { left.push_back(entry.path / name); };
    if (!for_each_name(entry.path, add)) return 0;
  }
  return entries;
}

bool is_part_of_copy(const fs::path& part, const fs::path& whole) {
  std::vector<std::pair<fs::path, fs::path>> left{{part, whole}};
  while (!left.empty()) {
    const Entry copy{std::move(left.back().first)};
    const Entry original{std::move(left.back().second)};
    left.pop_back();
    if (!can_be_copy(copy, original)) return false;
    if (copy.kind() != S_IFDIR) continue;
    const auto add = [&](const fs::path& name) {
      left.emplace_back(copy.path / name, original.path / name);
    };
    if (!for_each_name(copy.path, add)) return false;
  }
  return true;
}

}  // namespace varnholt::linkbuilder
