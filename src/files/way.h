// SPDX-License-Identifier: GPL-3.0-or-later
// Goes the way along a path as the kernel does, through symbolic links, and looks at whose they
// are. Each entry is opened once and looked at by its descriptor, so that nobody can exchange it
// between two looks.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/descriptor.h"

namespace varnholt::files {

/** A symbolic link, and the user who has made it. */
struct Link {
  std::string path;
  uid_t owner = 0;
};

/** Where a path leads on the kernel's way along it; see path_resolution(7). */
struct Way {
  /**
   * The entries that are passed, both links and what they lead to, as paths without a link above
   * their last name. The last entry is where the path ends, which may be a link. From the first
   * entry on that is not there, the rest follows as it is spelled.
   */
  std::vector<std::string> entries;
  /** Whether all entries are there, and are as many as a sensible path has. */
  bool whole = true;
  /** The entry at which the path ends, opened with O_PATH; none unless the way is whole. */
  Descriptor end;
  /**
   * The first link that root must not follow: an ordinary user has made it, and it does not lead to
   * what belongs to that user. So nobody can lead root to the property of somebody else.
   */
  std::optional<Link> foreign;
  /** Whether others than root can exchange an entry on the way. */
  bool shared = false;
};

/**
 * Returns the content of a link in an open folder, or of an opened link for the name ""; empty when
 * it cannot be read.
 */
std::string content_of_link(int folder, const char* name);

/** Opens a folder with O_PATH when no link is on the way to it; if not, the descriptor is none. */
Descriptor open_without_links(const std::string& folder);

/** What is done about folders that are missing on a way. */
enum class Missing { leave, make };

/**
 * Goes the way along a path. A link at its end is followed when a slash comes after it. Folders
 * that are missing are made with mode 0775, reduced by the umask, when the caller wants that.
 */
Way way_along(const std::string& path, Missing missing = Missing::leave);

/** Goes the way that a link leads whose content is this path, to its very end. */
Way way_behind(const Link& link, const std::string& content);

/** The folder above a path, for root's own system calls and as the bounds of its commands. */
class Place {
 public:
  /** No place: it has no folder. */
  Place() = default;
  /** Goes the way to the folder above `path`. */
  explicit Place(const std::string& path, Missing missing = Missing::leave);

  /** Becomes the place of another path. A folder that is spelled alike is not opened again. */
  void become(const std::string& path);

  /** Returns the folder for calls as unlinkat(2); -1, with which they fail, when it has none. */
  int folder() const { return is_refused() ? -1 : m_folder.number(); }
  /** Returns the rest of the path as it is spelled, with its slashes. */
  const char* name() const { return m_name.c_str(); }
  /** Returns the first link on the way that root must not follow, if there is one. */
  const std::optional<Link>& foreign() const { return m_foreign; }
  /** Returns whether this process is root, and would be led astray. */
  bool is_refused() const;
  /** Returns whether others than root can exchange the path, or a folder on the way to it. */
  bool is_shared() const;
  /** Returns the content and the owner of the link at the path, from one look; empty for none. */
  std::pair<std::string, uid_t> link() const;

 private:
  /** The folder as it is spelled. */
  std::string m_path{};
  std::string m_name{};
  Descriptor m_folder{};
  std::optional<Link> m_foreign{};
};

}  // namespace varnholt::files
