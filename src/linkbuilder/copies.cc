// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a copy that was cut off from what somebody has changed since.
#include "linkbuilder/copies.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "base/descriptor.h"

namespace fs = std::filesystem;

namespace varnholt {
namespace {

/** A path and what lstat(2) says of it. */
struct Entry {
  explicit Entry(fs::path where)
      : path(std::move(where)), exists(lstat(path.c_str(), &status) == 0) {}
  mode_t kind() const { return status.st_mode & S_IFMT; }

  fs::path path;
  struct stat status {};
  bool exists;
};

using Alike = bool (*)(const Entry& one, const Entry& counterpart);

/** Returns whether one file is the beginning of the other, or the whole of it. */
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

/** Returns whether two entries of one kind hold the same, a file perhaps only its beginning. */
bool holds_same(const Entry& one, const Entry& other) {
  std::error_code error;
  switch (one.kind()) {
    case S_IFREG:
      return one.status.st_size <= other.status.st_size && begins_alike(one, other);
    case S_IFLNK:
      return fs::read_symlink(one.path, error) == fs::read_symlink(other.path, error) && !error;
    case S_IFCHR:
    case S_IFBLK:
      return one.status.st_rdev == other.status.st_rdev;
    default:
      return true;
  }
}

using Attributes = std::map<std::string, std::string, std::less<>>;

std::optional<Attributes> attributes_of(const fs::path& path) {
  std::string names(XATTR_LIST_MAX, '\0');
  const auto length = llistxattr(path.c_str(), names.data(), names.size());
  Attributes found;
  if (length < 0) return errno == ENOTSUP ? std::optional{found} : std::nullopt;
  for (std::string_view left{names.data(), static_cast<std::size_t>(length)}; !left.empty();) {
    const std::string name{left.substr(0, left.find('\0'))};
    std::string value(XATTR_SIZE_MAX, '\0');
    const auto size = lgetxattr(path.c_str(), name.c_str(), value.data(), value.size());
    if (size < 0) return std::nullopt;
    value.resize(static_cast<std::size_t>(size));
    found.emplace(name, std::move(value));
    left.remove_prefix(name.size() + 1);
  }
  return found;
}

/** Returns whether a copy has the time of its original, as far as its file system can hold that. */
bool same_time(const Entry& one, const Entry& copy) {
  const auto& time = one.status.st_mtim;
  const auto& copied = copy.status.st_mtim;
  return time.tv_sec == copied.tv_sec && (time.tv_nsec == copied.tv_nsec || copied.tv_nsec == 0);
}

/** Returns whether the time of a folder says that it is a finished copy. */
bool finished_folder(const Entry& rest, const Entry& copy) {
  // A folder gets its time at last; and the rest of one has changed by what was deleted in it.
  return same_time(rest, copy) || names_in(rest.path) != names_in(copy.path);
}

bool wholly_alike(const Entry& rest, const Entry& copy) {
  if (rest.status.st_uid != copy.status.st_uid || rest.status.st_gid != copy.status.st_gid ||
      rest.status.st_mode != copy.status.st_mode) {
    return false;
  }
  const bool finished = rest.kind() == S_IFDIR
                            ? finished_folder(rest, copy)
                            : rest.status.st_size == copy.status.st_size && same_time(rest, copy);
  const auto attributes = attributes_of(rest.path);
  return finished && attributes && attributes == attributes_of(copy.path) && holds_same(rest, copy);
}

/** Returns whether everything from `path` down is like its counterpart from `other` down. */
bool all_alike(const fs::path& path, const fs::path& other, Alike alike) {
  std::vector<std::pair<fs::path, fs::path>> left{{path, other}};
  while (!left.empty()) {
    const Entry one{left.back().first};
    const Entry counterpart{left.back().second};
    left.pop_back();
    if (!one.exists || !counterpart.exists || one.kind() != counterpart.kind() ||
        !alike(one, counterpart)) {
      return false;
    }
    if (one.kind() != S_IFDIR) continue;
    const auto names = names_in(one.path);
    if (!names) return false;
    for (const auto& name : *names) left.emplace_back(one.path / name, counterpart.path / name);
  }
  return true;
}

}  // namespace

std::optional<std::set<std::string>> names_in(const fs::path& folder) {
  std::error_code error;
  std::set<std::string> names;
  for (fs::directory_iterator at{folder, error}; !error && at != fs::directory_iterator{};
       at.increment(error)) {
    names.insert(at->path().filename());
  }
  if (error) return std::nullopt;
  return names;
}

bool is_part_of_copy(const fs::path& copy, const fs::path& original) {
  return all_alike(copy, original, holds_same);
}

bool is_rest_of_move(const fs::path& rest, const fs::path& copy) {
  return all_alike(rest, copy, wholly_alike);
}

bool is_untouched_since(const fs::path& path, std::int64_t time) {
  constexpr std::int64_t nanoseconds = 1'000'000'000;
  std::vector<fs::path> left{path};
  while (!left.empty()) {
    const Entry entry{left.back()};
    left.pop_back();
    if (!entry.exists) continue;
    if (entry.kind() == S_IFDIR) {
      const auto names = names_in(entry.path);
      if (!names) return false;
      for (const auto& name : *names) left.push_back(entry.path / name);
      continue;
    }
    // The deletion of another link to the same file counts as a change of its status.
    const auto& last = entry.status.st_nlink > 1 ? entry.status.st_mtim : entry.status.st_ctim;
    if (last.tv_sec * nanoseconds + last.tv_nsec > time) return false;
  }
  return true;
}

}  // namespace varnholt
