// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a copy that was cut off from what somebody has changed since.
#include "linkbuilder/copies.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
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

namespace varnholt::linkbuilder {
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
  if (length < 0) return std::nullopt;
  Attributes found;
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

/** Returns whether a copy has the attributes of its original, if its file system can hold any. */
bool same_attributes(const Entry& one, const Entry& copy) {
  if (llistxattr(copy.path.c_str(), nullptr, 0) < 0) return errno == ENOTSUP;
  const auto attributes = attributes_of(one.path);
  const auto copied = attributes_of(copy.path);
  return attributes && attributes == copied;
}

std::int64_t nanoseconds_of(const timespec& time) {
  constexpr std::int64_t in_a_second = 1'000'000'000;
  return time.tv_sec * in_a_second + time.tv_nsec;
}

/** Returns whether a copy has the time of its original, as far as its file system can hold that. */
bool same_time(const Entry& one, const Entry& copy) {
  const auto time = nanoseconds_of(one.status.st_mtim);
  const auto copied = nanoseconds_of(copy.status.st_mtim);
  // File systems count in nanoseconds, tenths of microseconds, hundredths of seconds, or one or two
  // seconds.
  constexpr std::array<std::int64_t, 5> steps{1, 100, 10'000'000, 1'000'000'000, 2'000'000'000};
  return std::ranges::any_of(steps,
                             [&](std::int64_t step) { return copied == time - time % step; });
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
  return finished && same_attributes(rest, copy) && holds_same(rest, copy);
}

/** Returns whether a folder does not have the mode that cp(1) gives some folders for a while. */
bool has_final_mode(const Entry& copy, const Entry& original) {
  if (copy.kind() != S_IFDIR) return true;
  const mode_t mask = umask(0);
  umask(mask);
  constexpr mode_t written_by_others = S_IWGRP | S_IWOTH;
  const mode_t final = original.status.st_mode & ACCESSPERMS & ~mask;
  const mode_t interim = ((final & ~written_by_others) | S_IRWXU) & ~mask;
  return (copy.status.st_mode & ACCESSPERMS) != interim || interim == final;
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

/** Looks for what has come to a tree since a time, entry by entry. */
class Newcomers {
 public:
  Newcomers(const Entry& top, std::int64_t time) : m_top(top.status), m_time(time) {}

  /** Returns whether an entry can have been there before. */
  bool was_there(const Entry& entry) {
    const auto& status = entry.status;
    const auto changed = nanoseconds_of(status.st_ctim);
    const auto modified = nanoseconds_of(status.st_mtim);
    if (entry.kind() == S_IFDIR) {
      // A deletion in a folder sets both times, and moving the folder only one.
      return changed <= m_time || changed == modified;
    }
    // What is mounted there may have been mounted since.
    if (status.st_dev != m_top.st_dev) return false;
    if (status.st_nlink == 1 || changed <= m_time) return changed <= m_time;
    // The deletion of another link to the same file sets the time, too.
    ++m_links[status.st_ino];
    return modified <= m_time && m_links[status.st_ino] < status.st_nlink;
  }

 private:
  struct stat m_top;
  std::int64_t m_time;
  std::map<ino_t, nlink_t> m_links;
};

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

bool lacks_nothing(const fs::path& copy, const fs::path& original) {
  return all_alike(original, copy, holds_same) && all_alike(copy, original, has_final_mode);
}

bool is_untouched_since(const fs::path& path, std::int64_t time) {
  Newcomers newcomers{Entry{path}, time};
  std::vector<fs::path> left{path};
  while (!left.empty()) {
    const Entry entry{left.back()};
    left.pop_back();
    if (!entry.exists) continue;
    if (!newcomers.was_there(entry)) return false;
    if (entry.kind() != S_IFDIR) continue;
    const auto names = names_in(entry.path);
    if (!names) return false;
    for (const auto& name : *names) left.push_back(entry.path / name);
  }
  return true;
}

}  // namespace varnholt::linkbuilder
