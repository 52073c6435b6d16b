// SPDX-License-Identifier: GPL-3.0-or-later
// Counts, compares and removes whatever is at a path and below it.
#include "files/tree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>
#include <string_view>
#include <vector>

#include "base/descriptor.h"
#include "base/glib-ptr.h"
#include "base/path.h"
#include "files/way.h"

namespace varnholt::files {
namespace {

/** No deeper folder can be named by a path, and each level takes some of the stack. */
constexpr int deepest = PATH_MAX / 2;

/** An entry in an open folder, and what fstatat(2) says of it. */
struct Entry {
  Entry(int in, const char* called, const Entry* listed = nullptr)
      : folder(in),
        name(called),
        above(listed),
        depth(listed == nullptr ? 0 : listed->depth + 1),
        is_there(fstatat(in, called, &status, AT_SYMLINK_NOFOLLOW) == 0) {}
  explicit Entry(const Place& place) : Entry(place.folder(), place.name()) {}

  mode_t kind() const { return status.st_mode & S_IFMT; }
  /** Returns whether this is, by way of a mount, one of the folders above it. */
  bool is_in_itself() const {
    const auto* each = above;
    while (each != nullptr &&
           (each->status.st_ino != status.st_ino || each->status.st_dev != status.st_dev)) {
      each = each->above;
    }
    return each != nullptr;
  }
  /** Opens the entry for reading. It may have become another one since, but not a link. */
  int open(int flags = 0) const {
    // A FIFO would keep the run waiting for its other end.
    return openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | flags);
  }

  int folder;
  const char* name;
  /** The folder in whose listing this is; null for none. */
  const Entry* above;
  int depth;
  struct stat status {};
  bool is_there;
};

/** A folder, and the names of its entries. */
class Listing {
 public:
  explicit Listing(const Entry& folder)
      : m_of(folder), m_folder(opened(folder)), m_error(m_folder ? 0 : errno) {
    if (folder.depth >= deepest) m_error = ELOOP;
    if (m_error == 0) read_names();
  }

  /** Returns 0 when all names could be read, or an errno. */
  int error() const { return m_error; }
  const std::vector<std::string>& names() const { return m_names; }
  Entry entry(const std::string& name) const { return {number(), name.c_str(), &m_of}; }

 private:
  static DIR* opened(const Entry& folder) {
    Descriptor number{folder.open(O_DIRECTORY)};
    DIR* const listed = number ? fdopendir(number.number()) : nullptr;
    if (listed != nullptr) number.release();
    return listed;
  }

  int number() const { return dirfd(m_folder.get()); }

  void read_names() {
    errno = 0;
    while (const auto* const next = readdir(m_folder.get())) {
      const std::string_view name = next->d_name;
      if (name != "." && name != "..") m_names.emplace_back(name);
    }
    m_error = errno;
  }

  const Entry& m_of;
  std::unique_ptr<DIR, FreeWith<closedir>> m_folder;
  int m_error;
  std::vector<std::string> m_names;
};

/** Returns a path to what a path means, which a slash at its end makes what a link leads to. */
std::string behind_slash(const std::string& path) {
  return path.ends_with('/') ? path + '.' : path;
}

/** Reads as much as there is at a position, up to the size of the block; false on a failure. */
bool read_block(const Descriptor& file, std::vector<char>& block, off_t at) {
  const auto length = pread(file.number(), block.data(), block.size(), at);
  return length == static_cast<ssize_t>(block.size());
}

/** Returns where the next data of a file is, from a position on; its size when only a hole is. */
off_t next_data(const Descriptor& file, off_t at, off_t size) {
  const off_t data = lseek(file.number(), at, SEEK_DATA);
  return data < 0 ? size : data;
}

bool is_regular(const Descriptor& file) {
  struct stat status {};
  return fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode);
}

/** Returns whether a file is the beginning of another one, or the whole of it. */
bool begins_alike(const Entry& shorter, const Entry& longer) {
  constexpr off_t largest_block = 1L << 18;
  const Descriptor first{shorter.open()};
  const Descriptor second{longer.open()};
  if (!is_regular(first) || !is_regular(second)) return false;
  const off_t size = shorter.status.st_size;
  std::vector<char> one;
  std::vector<char> other;
  for (off_t at = 0; at < size; at += static_cast<off_t>(one.size())) {
    // A hole may be far larger than any disk.
    at = std::min({size, next_data(first, at, size), next_data(second, at, size)});
    one.resize(static_cast<std::size_t>(std::min(largest_block, size - at)));
    other.resize(one.size());
    if (!read_block(first, one, at) || !read_block(second, other, at) || one != other) return false;
  }
  return true;
}

/** Returns whether an entry can be a copy of another one, a file perhaps only its beginning. */
bool can_be_copy(const Entry& copy, const Entry& original) {
  if (!copy.is_there || !original.is_there || copy.kind() != original.kind()) return false;
  switch (copy.kind()) {
    case S_IFREG:
      return copy.status.st_size <= original.status.st_size && begins_alike(copy, original);
    case S_IFLNK:
      return content_of_link(copy.folder, copy.name) ==
             content_of_link(original.folder, original.name);
    case S_IFCHR:
    case S_IFBLK:
      return copy.status.st_rdev == original.status.st_rdev;
    default:
      return true;
  }
}

// NOLINTBEGIN(misc-no-recursion): no listing is deeper than `deepest`

/** Adds everything from an entry down to a tally. */
void add(const Entry& entry, Tally& tally, const std::function<void()>& next) {
  if (!entry.is_there) {
    ++tally.unreadable;
    return;
  }
  next();
  // The unit of st_blocks; see stat(3type).
  constexpr std::uint64_t block = 512;
  tally.disk_bytes += static_cast<std::uint64_t>(entry.status.st_blocks) * block;
  if (entry.kind() == S_IFREG) tally.bytes += static_cast<std::uint64_t>(entry.status.st_size);
  ++(entry.kind() == S_IFDIR ? tally.folders : tally.files);
  if (entry.kind() != S_IFDIR) return;
  if (entry.is_in_itself()) {
    ++tally.unreadable;
    return;
  }
  const Listing inside{entry};
  if (inside.error() != 0) ++tally.unreadable;
  for (const auto& name : inside.names()) add(inside.entry(name), tally, next);
}

bool is_part(const Entry& part, const Entry& whole) {
  if (!can_be_copy(part, whole)) return false;
  if (part.kind() != S_IFDIR) return true;
  const Listing inside{part};
  const Descriptor counterparts{whole.open(O_DIRECTORY)};
  return inside.error() == 0 && std::ranges::all_of(inside.names(), [&](const auto& name) {
           return is_part(inside.entry(name), {counterparts.number(), name.c_str()});
         });
}

/**
 * Gives each link in a copy to the owner of its original, or of the folder where that is missing.
 * Returns whether that could be done.
 */
bool give_links(const Entry& copy, const Entry& original, uid_t owner_of_folder) {
  if (copy.kind() == S_IFLNK) {
    const uid_t owner = original.kind() == S_IFLNK ? original.status.st_uid : owner_of_folder;
    constexpr auto same_group = static_cast<gid_t>(-1);
    return fchownat(copy.folder, copy.name, owner, same_group, AT_SYMLINK_NOFOLLOW) == 0;
  }
  if (copy.kind() != S_IFDIR) return true;
  const Listing inside{copy};
  const Descriptor counterparts{original.open(O_DIRECTORY)};
  const uid_t owner = original.is_there ? original.status.st_uid : owner_of_folder;
  bool all_given = inside.error() == 0;
  for (const auto& name : inside.names()) {
    const Entry counterpart{counterparts.number(), name.c_str()};
    all_given = give_links(inside.entry(name), counterpart, owner) && all_given;
  }
  return all_given;
}

int remove_from(const Entry& entry) {
  if (!entry.is_there) return 0;
  int how = 0;
  if (entry.kind() == S_IFDIR) {
    how = AT_REMOVEDIR;
    const Listing inside{entry};
    int error = inside.error();
    for (const auto& name : inside.names()) {
      if (error == 0) error = remove_from(inside.entry(name));
    }
    if (error != 0) return error;
  }
  return unlinkat(entry.folder, entry.name, how) == 0 ? 0 : errno;
}

// NOLINTEND(misc-no-recursion)

}  // namespace

Tally tally_of(const std::string& path, const std::function<void()>& next) {
  const Place place{behind_slash(path)};
  const Entry top{place};
  Tally tally;
  if (top.is_there) add(top, tally, next);
  return tally;
}

std::uint64_t entries_at(const std::string& path) {
  const auto tally = tally_of(without_final_slashes(path));
  return tally.unreadable == 0 ? tally.entries() : 0;
}

bool is_part_of_copy(const std::string& part, const std::string& whole) {
  const Place place{without_final_slashes(part)};
  const Place place_of_whole{without_final_slashes(whole)};
  return is_part(Entry{place}, Entry{place_of_whole});
}

bool give_links_to_owners(const std::string& copy, const std::string& original) {
  const Place place{without_final_slashes(copy)};
  const Place place_of_original{behind_slash(original)};
  const Entry top{place_of_original};
  return give_links(Entry{place}, top, top.status.st_uid);
}

int remove_tree(const std::string& path) {
  const Place place{without_final_slashes(path)};
  return place.is_refused() ? EPERM : remove_from(Entry{place});
}

}  // namespace varnholt::files
