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
#include <string_view>
#include <utility>

#include "base/file.h"
#include "base/path.h"
#include "base/text.h"

namespace varnholt::files {
namespace {

/** The number of links that the kernel follows; see path_resolution(7). */
constexpr int most_links = 40;
/** With links an ordinary user can make a way that has more entries than memory would hold. */
constexpr std::size_t most_entries = PATH_MAX;
constexpr mode_t new_folder_mode = 0775;

/** Opens an entry to look at it. A folder is opened as one, so that it is mounted if need be. */
Descriptor open_entry(int folder, const char* name) {
  constexpr int as_it_is = O_PATH | O_NOFOLLOW | O_CLOEXEC;
  Descriptor entry{openat(folder, name, as_it_is | O_DIRECTORY)};
  if (entry || errno == ENOENT) return entry;
  return Descriptor{openat(folder, name, as_it_is)};
}

bool is_shared_folder(const struct stat& status) {
  constexpr mode_t others = S_IWGRP | S_IWOTH;
  return S_ISDIR(status.st_mode) && (status.st_uid != 0 || (status.st_mode & others) != 0);
}

/** Returns the rest of a path in its folder. A path of one name has no folder in its spelling. */
std::string name_in(const std::string& folder, const std::string& path) {
  return path.starts_with(folder) ? path.substr(folder.size()) : path;
}

/** An entry on the way, opened, and what fstat(2) says of it. */
struct Entry {
  Entry() = default;
  explicit Entry(Descriptor opened)
      : descriptor(std::move(opened)),
        is_there(descriptor && fstat(descriptor.number(), &status) == 0) {}

  Descriptor descriptor{};
  struct stat status {};
  bool is_there = false;
};

/** One walk along a path. */
class Walk {
 public:
  Walk(const std::string& path, Missing missing, const Link& behind = {}) : m_missing(missing) {
    if (path.empty() || path.size() >= PATH_MAX) {
      // Whoever goes up from an entry comes to the root at last.
      m_way.entries.push_back(path.empty() || path.starts_with('/') ? path : '/' + path);
      m_way.whole = false;
      return;
    }
    begin_at(path);
    if (behind.owner != 0) m_steps.push_back({{}, behind});
    add_names(path);
    while (!m_steps.empty() && is_sensible()) take_step();
    m_way.entries.push_back(m_path);
    if (!m_steps.empty()) m_way.whole = false;
    if (m_way.whole) m_way.end = std::move(m_at.descriptor);
  }

  Way take_way() { return std::move(m_way); }

 private:
  /** The next name, or the end of what a link leads to. */
  struct Step {
    std::string name;
    std::optional<Link> end_of{};

    bool is_end() const { return end_of.has_value(); }
  };

  void begin_at(const std::string& path) {
    const bool is_absolute = path.starts_with('/');
    m_path = is_absolute ? "/" : current_folder();
    m_way.entries.push_back(m_path);
    enter(Entry{Descriptor{open(is_absolute ? "/" : ".", O_PATH | O_DIRECTORY | O_CLOEXEC)}});
  }

  bool is_sensible() const { return m_links <= most_links && m_way.entries.size() < most_entries; }

  /** Puts the names of a path before the other steps; the next step is the last element. */
  void add_names(const std::string& path) {
    const auto names = split(path, '/');
    std::transform(names.rbegin(), names.rend(), std::back_inserter(m_steps),
                   [](std::string_view name) { return Step{std::string{name}}; });
    if (path.starts_with('/')) m_steps.push_back({"/"});
  }

  void take_step() {
    const Step step = std::move(m_steps.back());
    m_steps.pop_back();
    if (step.end_of) return end_link(*step.end_of);
    if (step.name.empty() || step.name == ".") return;
    if (step.name == "..") return go_up();
    if (step.name == "/") return begin_at(step.name);
    pass(step.name);
  }

  void go_up() {
    // A folder that has been removed has no path any more.
    const auto slash = m_path.rfind('/');
    m_path.resize(slash == std::string::npos ? 0 : std::max<std::size_t>(slash, 1));
    enter(Entry{Descriptor{openat(folder(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC)}});
  }

  void pass(const std::string& name) {
    Entry entry{look_up(name.c_str())};
    auto path = m_path == "/" ? m_path + name : m_path + '/' + name;
    m_way.entries.push_back(path);
    m_way.whole = m_way.whole && entry.is_there;
    // A link with a slash after it, which gives an empty name, means what the link leads to.
    if (S_ISLNK(entry.status.st_mode) && !m_steps.empty()) {
      return follow({path, entry.status.st_uid}, content_of_link(entry.descriptor.number(), ""));
    }
    m_path = std::move(path);
    enter(std::move(entry));
  }

  Descriptor look_up(const char* name) {
    auto entry = open_entry(folder(), name);
    const bool is_made =
        !entry && errno == ENOENT && may_make() && mkdirat(folder(), name, new_folder_mode) == 0;
    return is_made ? open_entry(folder(), name) : std::move(entry);
  }

  int folder() const { return m_at.descriptor.number(); }

  /** Like mkdir(2), this makes nothing at the end of a link; nor where a foreign one has led. */
  bool may_make() const {
    return m_missing == Missing::make && (geteuid() != 0 || !m_way.foreign) &&
           std::ranges::none_of(m_steps, &Step::is_end);
  }

  void follow(const Link& link, const std::string& content) {
    ++m_links;
    m_steps.push_back({{}, link});
    add_names(content);
  }

  /** The way has come to where a link leads. */
  void end_link(const Link& link) {
    const bool belongs_to_maker = m_at.is_there && m_at.status.st_uid == link.owner;
    if (link.owner != 0 && !m_way.foreign && !belongs_to_maker) m_way.foreign = link;
  }

  /** Goes on from an entry, which is none when it is not there. */
  void enter(Entry entry) {
    m_at = std::move(entry);
    m_way.shared = m_way.shared || is_shared_folder(m_at.status);
  }

  Missing m_missing;
  Way m_way;
  std::vector<Step> m_steps;
  std::string m_path;
  /** The entry that the walk has come to. */
  Entry m_at;
  int m_links = 0;
};

}  // namespace

std::string content_of_link(int folder, const char* name) {
  std::array<char, PATH_MAX> content;  // NOLINT(*-member-init): readlinkat fills it
  const auto length = readlinkat(folder, name, content.data(), content.size());
  return {content.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

Descriptor open_without_links(const std::string& folder) {
  open_how how{};
  how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
  how.resolve = RESOLVE_NO_SYMLINKS;
  return Descriptor{
      static_cast<int>(syscall(SYS_openat2, AT_FDCWD, folder.c_str(), &how, sizeof how))};
}

Way way_along(const std::string& path, Missing missing) {
  return Walk{path, missing}.take_way();
}

Way way_behind(const Link& link, const std::string& content) {
  return Walk{content + '/', Missing::leave, link}.take_way();
}

Place::Place(const std::string& path, Missing missing)
    : m_path(folder_above(path)),
      m_name(name_in(m_path, path)),
      // One call is enough for most folders.
      m_folder(open_without_links(m_path)) {
  if (m_folder) return;
  auto way = way_along(m_path, missing);
  m_folder = std::move(way.end);
  m_foreign = std::move(way.foreign);
}

void Place::become(const std::string& path) {
  if (!m_folder || folder_above(path) != m_path) {
    *this = Place{path};
  } else {
    m_name = name_in(m_path, path);
  }
}

bool Place::is_refused() const {
  return m_foreign && geteuid() == 0;
}

std::pair<std::string, uid_t> Place::link() const {
  const Entry entry{open_entry(folder(), name())};
  if (!S_ISLNK(entry.status.st_mode)) return {};
  return {content_of_link(entry.descriptor.number(), ""), entry.status.st_uid};
}

bool Place::is_shared() const {
  // What others can exchange does not change the way to where they can do so.
  return way_along(m_path).shared;
}

}  // namespace varnholt::files
