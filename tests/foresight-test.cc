// SPDX-License-Identifier: GPL-3.0-or-later
// Tests that the sure forecasts of varnholt-check come true: it makes them on random trees with
// random profiles, then the link builder runs, and its outcomes are compared with them.
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>
#include <vector>

#include <glib.h>

#include "check-document.h"
#include "private-root.h"

namespace fs = std::filesystem;

namespace {

/** The result of lstat(2) and the content of each path. */
using Snapshot = std::map<std::string, std::string>;

std::string seen(const fs::path& path, bool with_times) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return "nothing";
  std::ostringstream text;
  text << status.st_dev << ' ' << status.st_ino << ' ' << status.st_mode;
  // The size of a folder depends on its entries.
  if (!S_ISDIR(status.st_mode)) text << ' ' << status.st_size;
  if (S_ISLNK(status.st_mode)) text << ' ' << fs::read_symlink(path).native();
  if (S_ISREG(status.st_mode)) text << ' ' << std::ifstream{path}.rdbuf();
  if (with_times) {
    for (const auto& time : {status.st_mtim, status.st_ctim}) {
      text << ' ' << time.tv_sec << '.' << time.tv_nsec;
    }
  }
  return text.str();
}

Snapshot everything() {
  Snapshot snapshot;
  for (const auto* top : {"/w", "/etc", "/tmp"}) {
    snapshot[top] = seen(top, true);
    for (const auto& entry : fs::recursive_directory_iterator{top}) {
      snapshot[entry.path()] = seen(entry.path(), true);
    }
  }
  return snapshot;
}

/** Plants trees and writes profiles, the same for the same seed. */
class World {
 public:
  explicit World(unsigned seed) : m_random(seed) {
    for (const auto* folder : {"/etc", "/tmp", "/w"}) fs::create_directories(folder);
    ::mount("none", "/w", "tmpfs", 0, nullptr);
    // Definitions that hang together are rare, so each line has a place of its own, as a rule.
    const int lines = 1 + number(4);
    for (int area = 0; area < lines; ++area) {
      fs::create_directories(folder_of(area));
      for (int entry = 2 + number(6); entry > 0; --entry) plant(area);
    }
    m_profile = "version,1\n";
    for (int line = 0; line < lines; ++line) m_profile += line_for(line) + '\n';
    for (int area = 0; area < lines; ++area) {
      for (int mounts = number(3); mounts > 0 && chance(30); --mounts) mount_something(area);
    }
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World() {
    // The run may have moved folders in which something is mounted.
    umount2("/w", MNT_DETACH);
    fs::remove("/etc/.varnholt.unfinished");
  }

  const std::string& profile() const { return m_profile; }

  /** Makes folders that may have been missing. */
  void repair() {
    std::error_code ignored;
    for (int area = 0; area < 4; ++area) fs::create_directories(any_path(area, 3), ignored);
  }

 private:
  int number(int below) { return std::uniform_int_distribution{0, below - 1}(m_random); }
  bool chance(int percent) { return number(100) < percent; }
  template <std::size_t Size>
  const char* one_of(const char* const (&words)[Size]) {
    return words[static_cast<std::size_t>(number(Size))];
  }

  static std::string folder_of(int area) { return "/w/" + std::to_string(area); }

  std::string any_name() {
    static constexpr const char* names[] = {"a",    "b",       "c",  "s", "t",      "x y",
                                            "\xff", "q\"$`\\", "-f", "ü", "b.bak_0"};
    return one_of(names);
  }

  std::string any_path(int area, int depth) {
    if (chance(8)) area = number(4);
    std::string path = folder_of(area);
    for (int names = 1 + number(depth); names > 0; --names) {
      path += chance(4) ? "/../" : chance(2) ? "/zz/../" : chance(3) ? "//" : "/";
      path += any_name();
    }
    return chance(2) ? path + "/../" + path.substr(path.rfind('/') + 1) : path;
  }

  void write_file(const fs::path& path) {
    // Opening a FIFO would wait for ever.
    if (seen(path, false) != "nothing") return;
    std::ofstream{path} << std::string(static_cast<std::size_t>(number(9)), 'x');
  }

  /** Returns, as a rule, a path at which something has been planted. */
  std::string known_path(int area, int depth, int percent) {
    auto& planted = m_planted[chance(20) ? number(4) : area];
    if (planted.empty() || !chance(percent)) return any_path(area, depth);
    auto path = planted[static_cast<std::size_t>(number(static_cast<int>(planted.size())))];
    if (chance(15)) path += '/' + any_name();
    return path;
  }

  void plant(int area) {
    std::error_code ignored;
    const fs::path path = any_path(area, 3);
    fs::create_directories(path.parent_path(), ignored);
    if (ignored) return;
    m_planted[area].push_back(path);
    const int kind = number(10);
    if (kind < 4) {
      fs::create_directories(path, ignored);
      write_file(path / any_name());
    } else if (kind < 6) {
      write_file(path);
    } else if (kind < 9) {
      const auto content = chance(20) ? any_name() : known_path(area, 2, 70);
      fs::create_symlink(content, path, ignored);
      m_links[area].push_back(path);
    } else if (chance(30)) {
      mkfifo(path.c_str(), 0644);
    }
  }

  void mount_something(int area) {
    const auto point = known_path(area, 2, 90);
    std::error_code ignored;
    if (!fs::is_directory(fs::symlink_status(point, ignored))) return;
    const bool bind = chance(40);
    const auto from = known_path(area, 1, 90);
    const int result = bind ? ::mount(from.c_str(), point.c_str(), nullptr, MS_BIND, nullptr)
                            : ::mount("none", point.c_str(), "tmpfs", 0,
                                      chance(30) ? "size=8k,nr_inodes=4" : "size=1m");
    if (result != 0) return;
    if (!bind) std::ofstream{point + "/in"} << "mounted";
    if (!chance(30)) return;
    ::mount("none", point.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr);
  }

  std::string line_for(int area) {
    static constexpr const char* operations[] = {"symbolic", "symbolic", "symbolic",
                                                 "symbolic|deleted", "update"};
    auto source = known_path(area, 2, 50);
    auto path = known_path(area, 3, 70);
    const std::string_view operation = one_of(operations);
    if (operation != "symbolic" && chance(70) && !m_links[area].empty()) path = m_links[area][0];
    if (chance(8)) source += chance(40) ? "//" : "/";
    if (chance(1)) path += '/';
    if (chance(3)) source = any_name();
    if (chance(10)) {
      // The link is there already.
      std::error_code ignored;
      fs::remove_all(path, ignored);
      fs::create_symlink(source, path, ignored);
    }
    return "lnk,dir," + source + ',' + path + ',' + std::string{operation};
  }

  std::mt19937 m_random;
  /** The paths that have been planted in each area. */
  std::map<int, std::vector<std::string>> m_planted;
  std::map<int, std::vector<std::string>> m_links;
  std::string m_profile;
};

void store(const std::string& profile) {
  std::ofstream{::profile} << profile;
}

bool is_link(const Json& forecast) {
  return text_in(forecast, "operation") == "symbolic";
}

bool has_problem(const Json& forecast, const std::string& problem) {
  return std::ranges::any_of(forecast.at("findings"),
                             [&](const Json& finding) { return finding.at("problem") == problem; });
}

/** Returns how much is at a path, in the words of a tally. */
std::string amount_at(const fs::path& path) {
  int folders = 0;
  int files = 0;
  std::uintmax_t bytes = 0;
  const auto count = [&](const fs::path& entry) {
    const auto status = fs::symlink_status(entry);
    if (fs::is_directory(status)) {
      ++folders;
    } else {
      ++files;
    }
    if (fs::is_regular_file(status)) bytes += fs::file_size(entry);
  };
  std::error_code error;
  if (!fs::exists(fs::symlink_status(path, error))) return "";
  count(path);
  if (fs::is_directory(fs::symlink_status(path))) {
    for (const auto& entry : fs::recursive_directory_iterator{path}) count(entry.path());
  }
  return std::to_string(folders) + ' ' + std::to_string(files) + ' ' + std::to_string(bytes);
}

/** Returns an amount in a forecast; empty when it has none. */
std::string amount_in(const Json& forecast, const char* member) {
  if (!forecast.contains(member)) return "";
  const auto& tally = forecast.at(member);
  return tally.at("folders").dump() + ' ' + tally.at("files").dump() + ' ' +
         tally.at("bytes").dump();
}

/** Returns whether an amount in a forecast is this one, or not all of it could be counted. */
bool is_amount(const Json& forecast, const char* member, const std::string& amount) {
  const bool partly = forecast.contains(member) && forecast.at(member).at("unreadable") > 0;
  return partly || amount_in(forecast, member) == amount;
}

std::string without_slash(std::string path) {
  if (path.ends_with('/')) path.pop_back();
  return path;
}

/** How a definition's places looked before the run. */
struct Before {
  Before(const Json& forecast, const Json& unfinished)
      : path(seen(text_in(forecast, "path"), false)),
        source(seen(without_slash(text_in(forecast, "source")), false)),
        aside(path) {
    const auto at_source = without_slash(text_in(forecast, "source"));
    std::error_code ignored;
    if (!fs::is_symlink(fs::symlink_status(at_source, ignored))) lost = amount_at(at_source);
    for (int number = 0; backup.empty(); ++number) {
      const auto name = text_in(forecast, "path") + ".bak_" + std::to_string(number);
      if (seen(name, false) == "nothing") backup = name;
    }
    // The path may be spelled by way of itself.
    const auto folder = fs::canonical(fs::path{backup}.parent_path(), ignored);
    if (!ignored) backup = folder / fs::path{backup}.filename();
    for (const auto& work : unfinished) {
      const bool fits = text_in(work, "path") == text_in(forecast, "path") &&
                        text_in(work, "source") == text_in(forecast, "source") &&
                        text_in(work, "next") == "move";
      if (!fits) continue;
      backup = text_in(work, "backup");
      aside = seen(backup, false);
      // The part that is removed before is in the backup, too, which moves.
      if (work.contains("removed")) lost.clear();
    }
  }
  std::string path;
  std::string source;
  /** The amount that an adoption deletes at the source; empty when a link is there. */
  std::string lost;
  /** The backup name, and the entry that has this name once the work begins. */
  std::string backup;
  std::string aside;
};

bool is_link_to(const std::string& path, const std::string& content) {
  std::error_code error;
  return fs::read_symlink(path, error).native() == content && !error;
}

bool failed_as_foretold(const Json& forecast, const Before& before) {
  const auto remains = text_in(forecast, "remains");
  const auto path = seen(text_in(forecast, "path"), false);
  const auto source = seen(without_slash(text_in(forecast, "source")), false);
  // Where nothing would have moved, the source is none of its business.
  const bool same_source = source == before.source || !forecast.contains("moved");
  if (remains == "all" || remains == "folders") return path == before.path && same_source;
  if (remains == "nothing") return path == "nothing" || path != before.path;
  // What has the backup name now was also the source, or on the way to it.
  const bool in_path = source == "nothing" && (has_problem(forecast, "source-in-path") ||
                                               has_problem(forecast, "path-through-itself"));
  if (remains == "source") return path == "nothing" && source != "nothing";
  const bool aside = path == "nothing" && seen(before.backup, false) == before.aside;
  return aside && (remains == "backup-only" || in_path || source == before.source);
}

bool came_true(const Json& forecast, const Before& before) {
  const auto path = text_in(forecast, "path");
  const auto source = text_in(forecast, "source");
  const auto outcome = text_in(forecast, "outcome");
  if (outcome == "made" || outcome == "replaced") return is_link_to(path, source);
  if (outcome == "adopted") {
    return is_link_to(path, source) && seen(before.backup, false) == "nothing" &&
           is_amount(forecast, "moved", amount_at(without_slash(source))) &&
           is_amount(forecast, "deleted", before.lost);
  }
  if (outcome == "copied") {
    return !is_link_to(path, text_in(forecast, "content")) &&
           is_amount(forecast, "copied", amount_at(path));
  }
  if (outcome == "fails") return failed_as_foretold(forecast, before);
  return seen(path, false) == before.path;
}

/** The results of many pairs of runs. */
struct Score {
  int links = 0;
  int tied = 0;
  int doubtful = 0;
  std::map<std::string, int> outcomes;
  std::string fault;
};

/** Plays one pair of runs, or the beginning of one, on a world that its seed determines. */
class Pair {
 public:
  /** The world of a `used` pair has seen a run before, and repairs since. */
  Pair(unsigned seed, bool used) : m_world(seed), m_used(used) {
    if (!used) return;
    store(m_world.profile());
    run_link_builder();
    m_world.repair();
  }

  /** Returns the lines whose forecasts must be tried once more, each as the last of its profile. */
  std::vector<std::size_t> play(Score& score) {
    std::vector<std::size_t> again;
    const auto document = play_until(m_world.profile());
    const auto& definitions = document.at("definitions");
    for (const auto& forecast : definitions) {
      if (!m_used) count(forecast, score);
      for (const auto& line : forecast.at("depends-on")) again.push_back(line);
    }
    for (std::size_t index = 0; index < definitions.size(); ++index) {
      const auto& forecast = definitions[index];
      const std::size_t line = forecast.at("line");
      if (std::ranges::count(again, line) > 0) continue;
      // A later line may have changed the place of this one.
      if (!holds(forecast, m_before[index], score)) again.push_back(line);
    }
    if (!m_fault.empty()) score.fault = m_fault;
    return again;
  }

  void play_last(std::size_t line, Score& score) {
    std::size_t end = 0;
    for (std::size_t each = 0; each < line; ++each) end = m_world.profile().find('\n', end) + 1;
    const auto document = play_until(m_world.profile().substr(0, end));
    const auto& forecast = document.at("definitions").back();
    const bool same_line = forecast.at("line") == line;
    if (!same_line || !holds(forecast, m_before.back(), score)) {
      m_fault = "line " + std::to_string(line) + " came out otherwise\n" + m_log;
    }
    score.fault = m_fault;
  }

 private:
  static std::string run_link_builder() {
    return result_of({"/bin/sh", "-c", "/dev/varnholt --save_symlink 2>&1"}).output;
  }

  static void count(const Json& forecast, Score& score) {
    if (!is_link(forecast)) return;
    ++score.links;
    if (!forecast.at("depends-on").empty()) {
      ++score.tied;
    } else if (!forecast.at("sure")) {
      ++score.doubtful;
    }
  }

  static bool holds(const Json& forecast, const Before& before, Score& score) {
    if (!is_link(forecast) || !forecast.at("sure")) return true;
    const bool came = came_true(forecast, before);
    if (came) ++score.outcomes[text_in(forecast, "outcome") + ' ' + text_in(forecast, "remains")];
    return came;
  }

  Json play_until(const std::string& profile) {
    store(profile);
    const auto snapshot = everything();
    const auto check = result_of({"/dev/varnholt-check", "--json"});
    auto document = read_document(check.output);
    m_log = profile + look(snapshot) + check.output;
    m_fault = faults_of(document);
    if (document.is_discarded()) throw std::runtime_error{m_fault + m_log};
    const int status = WEXITSTATUS(check.status);
    if (document.at("status") != status) m_fault += "another status\n";
    if (everything() != snapshot) m_fault += "the companion has changed something\n";
    if (!m_fault.empty()) m_fault += m_log;
    const auto& unfinished = document.at("unfinished");
    for (const auto& forecast : document.at("definitions")) {
      m_before.emplace_back(forecast, unfinished);
    }
    m_log += run_link_builder();
    m_log += look(everything());
    return document;
  }

  static std::string look(const Snapshot& snapshot) {
    std::string listing;
    for (const auto& [path, what] : snapshot) (((listing += path) += "  ") += what) += '\n';
    return listing;
  }

  World m_world;
  bool m_used;
  std::vector<Before> m_before;
  std::string m_log;
  std::string m_fault;
};

void play_pair(unsigned seed, bool used, Score& score) {
  const auto again = Pair{seed, used}.play(score);
  for (const auto line : again) {
    if (line > 0 && score.fault.empty()) Pair{seed, used}.play_last(line, score);
  }
}

}  // namespace

class Foresight : public PrivateRoot {};

TEST_F(Foresight, ComesTrue) {
  const char* const asked = g_getenv("VARNHOLT_PAIRS");
  const char* const begin = g_getenv("VARNHOLT_FIRST_PAIR");
  const unsigned first = begin == nullptr ? 1 : static_cast<unsigned>(std::stoul(begin));
  const unsigned pairs = asked == nullptr ? 200 : static_cast<unsigned>(std::stoul(asked));
  std::cout.flush();
  const pid_t child = fork();
  if (child == 0) {
    enter();
    Score score;
    unsigned seed = first;
    while (seed < first + pairs && score.fault.empty()) {
      play_pair(seed, seed % 4 == 0, score);
      ++seed;
    }
    std::cout << score.links << " links, " << score.tied << " tied, " << score.doubtful
              << " doubtful\n";
    for (const auto& [outcome, number] : score.outcomes) {
      std::cout << outcome << ": " << number << '\n';
    }
    if (!score.fault.empty()) std::cout << "seed " << seed - 1 << ": " << score.fault << '\n';
    const bool good = score.fault.empty() && 5 * score.tied < score.links;
    std::cout.flush();
    _exit(good ? 0 : 1);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}
