// SPDX-License-Identifier: GPL-3.0-or-later
// Goes the way along a path as the kernel does.
#include "files/way.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <iterator>
#include <system_error>
#include <utility>

#include "base/path.h"

namespace fs = std::filesystem;

namespace varnholt::files {
namespace {

/** The number of links that the kernel follows; see path_resolution(7). */
constexpr int most_links = 40;
/** With links an ordinary user can make a way that has more entries than memory would hold. */
constexpr std::size_t most_entries = PATH_MAX;
constexpr mode_t new_folder_mode = 0775;

/** Opens an entry to look at it. A folder is opened as one, so that it is mounted if need be. */
Descriptor open_entry(const Descriptor& folder, const char* name) {
  constexpr int as_it_is = O_PATH | O_NOFOLLOW | O_CLOEXEC;
  Descriptor entry{openat(folder.number(), name, as_it_is | O_DIRECTORY)};
  if (entry || errno == ENOENT) return entry;
  return Descriptor{openat(folder.number(), name, as_it_is)};
}

/** Opens a folder when no link is on the way to it: one call is enough for most of them. */
Descriptor open_without_links(const std::string& folder) {
  open_how how{};
  how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
  how.resolve = RESOLVE_NO_SYMLINKS;
  return Descriptor{
      static_cast<int>(syscall(SYS_openat2, AT_FDCWD, folder.c_str(), &how, sizeof how))};
}

std::string content_of(const Descriptor& link) {
  std::array<char, PATH_MAX> content;  // NOLINT(*-member-init): readlinkat fills it
  const auto length = readlinkat(link.number(), "", content.data(), content.size());
  return {content.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

/** One walk along a path. */
class Walk {
 public:
  Walk(const fs::path& path, Missing missing, const Link& behind = {}) : m_missing(missing) {
    if (path.empty() || path.native().size() >= PATH_MAX) {
      m_way.entries.push_back(path);
      m_way.whole = false;
      return;
    }
    begin_at(path);
    if (behind.owner != 0) m_steps.push_back({{}, behind});
    add_names(path);
    while (!m_steps.empty() && is_sensible()) take_step();
    m_way.entries.push_back(m_path);
    if (!m_steps.empty()) m_way.whole = false;
    if (m_way.whole) m_way.end = std::move(m_at);
  }

  Way take_way() { return std::move(m_way); }

 private:
  /** The next name, or the end of what a link leads to. */
  struct Step {
    fs::path name;
    std::optional<Link> end_of{};

    bool is_end() const { return end_of.has_value(); }
  };

  void begin_at(const fs::path& path) {
    std::error_code unknown;
    m_path = path.is_absolute() ? "/" : fs::current_path(unknown);
    m_way.entries.push_back(m_path);
    enter(Descriptor{open(path.is_absolute() ? "/" : ".", O_PATH | O_DIRECTORY | O_CLOEXEC)});
  }

  bool is_sensible() const { return m_links <= most_links && m_way.entries.size() < most_entries; }

  /** Puts the names of a path before the other steps; the next step is the last element. */
  void add_names(const fs::path& path) {
    const std::vector<fs::path> names{path.begin(), path.end()};
    std::transform(names.rbegin(), names.rend(), std::back_inserter(m_steps),
                   [](const fs::path& name) { return Step{name}; });
  }

  void take_step() {
    const Step step = std::move(m_steps.back());
    m_steps.pop_back();
    if (step.end_of) return end_link(*step.end_of);
    if (step.name.empty() || step.name == ".") return;
    if (step.name == "..") return go_up();
    if (step.name.is_absolute()) return begin_at(step.name);
    pass(step.name);
  }

  void go_up() {
    m_path = m_path.parent_path();
    enter(Descriptor{openat(m_at.number(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC)});
  }

  void pass(const fs::path& name) {
    auto entry = look_up(name.c_str());
    auto path = m_path / name;
    m_way.entries.push_back(path);
    struct stat status {};
    m_way.whole = m_way.whole && entry && fstat(entry.number(), &status) == 0;
    // A link with a slash after it, which gives an empty name, means what the link leads to.
    if (S_ISLNK(status.st_mode) && !m_steps.empty()) {
      return follow({path, status.st_uid}, content_of(entry));
    }
    m_path = std::move(path);
    enter(std::move(entry));
  }

  Descriptor look_up(const char* name) {
    auto entry = open_entry(m_at, name);
    const bool is_made = !entry && errno == ENOENT && may_make() &&
                         mkdirat(m_at.number(), name, new_folder_mode) == 0;
    return is_made ? open_entry(m_at, name) : std::move(entry);
  }

  /** Like mkdir(2), this makes nothing at the end of a link; nor where a foreign one has led. */
  bool may_make() const {
    return m_missing == Missing::make && (geteuid() != 0 || !m_way.foreign) &&
           std::ranges::none_of(m_steps, &Step::is_end);
  }

  void follow(const Link& link, const fs::path& content) {
    ++m_links;
    m_steps.push_back({{}, link});
    add_names(content);
  }

  /** The way has come to where a link leads. */
  void end_link(const Link& link) {
    if (link.owner != 0 && !m_way.foreign && m_owner != link.owner) m_way.foreign = link;
  }

  /** Goes on from an entry, which is none when it is not there. */
  void enter(Descriptor entry) {
    struct stat status {};
    m_at = std::move(entry);
    const bool is_there = m_at && fstat(m_at.number(), &status) == 0;
    m_owner = is_there ? std::optional{status.st_uid} : std::nullopt;
    if (S_ISDIR(status.st_mode)) {
      constexpr mode_t others = S_IWGRP | S_IWOTH;
      m_way.shared = m_way.shared || status.st_uid != 0 || (status.st_mode & others) != 0;
    }
  }

  Missing m_missing;
  Way m_way;
  std::vector<Step> m_steps;
  fs::path m_path;
  Descriptor m_at;
  /** The owner of the entry that the walk has come to; none when it is not there. */
  std::optional<uid_t> m_owner;
  int m_links = 0;
};

}  // namespace

Way way_along(const fs::path& path, Missing missing) {
  return Walk{path, missing}.take_way();
}

Way way_behind(const Link& link, const fs::path& content) {
  return Walk{content / "", Missing::leave, link}.take_way();
}

Place::Place(const std::string& path, Missing missing)
    : m_path(folder_above(path)), m_name(path), m_folder(open_without_links(m_path)) {
  // A path of one name has no folder in its spelling.
  if (path.starts_with(m_path)) m_name.erase(0, m_path.size());
  if (m_folder) return;
  auto way = way_along(m_path, missing);
  m_folder = std::move(way.end);
  m_foreign = std::move(way.foreign);
}

bool Place::is_refused() const {
  return m_foreign && geteuid() == 0;
}

bool Place::is_shared() const {
  // What others can exchange does not change the way to where they can do so.
  return way_along(m_path).shared;
}

}  // namespace varnholt::files
