// SPDX-License-Identifier: GPL-3.0-or-later
// Times the link builder as a whole process beside other programs that do the same work, on trees
// of its own on a tmpfs: a new tree for every sample, the rivals in rotating order, the work of
// each one checked.
// Usage: link-builder-benchmark VARNHOLT-SCRATCH BARE-LOOP [WORDS OF A TITLE]
#include <fcntl.h>
#include <linux/magic.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "measure.h"

namespace fs = std::filesystem;

namespace {

constexpr int samples = 9;
constexpr int growth_samples = 3;
constexpr int sampled_once = 1'000'000;
constexpr int links_in_a_folder = 100;

/** What stands at the link paths before a run. */
enum class Start { nothing, links, files };

/**
 * One scratch tree: sources below store/, link paths below target/. The sources are laid out as a
 * package of stow, so that every rival works on the same files.
 */
class Tree {
 public:
  Tree(int links, Start start, bool absolute_links) : m_links(links) {
    fs::create_directories(root / "etc");
    for (int link = 0; link < links; ++link) {
      if (link % links_in_a_folder == 0) {
        fs::create_directories(source(link).parent_path());
        fs::create_directories(target(link).parent_path());
      }
      std::ofstream{source(link)} << link;
      if (start == Start::files) std::ofstream{target(link)} << "target " << link;
      if (start != Start::links) continue;
      const fs::path up = absolute_links ? root : fs::path{"../.."};
      fs::create_symlink(up / source(link).lexically_relative(root), target(link));
    }
    write_profile();
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  ~Tree() { fs::remove_all(root); }

  void check(Start start) const {
    for (int link = 0; link < m_links; ++link) {
      if (!fs::is_symlink(target(link)) || !fs::equivalent(target(link), source(link))) {
        give_up(target(link).string() + " is no link to its source");
      }
      if (start == Start::files && fs::file_size(source(link)) < sizeof "target") {
        give_up(source(link).string() + " is not the adopted file");
      }
    }
  }

  fs::path profile() const { return root / "etc/.varnholt.ini"; }
  fs::path tmpfiles() const { return root / "tmpfiles.conf"; }

  const fs::path root = fs::path{"/dev/shm"} / ("varnholt-benchmark." + std::to_string(getpid()));

 private:
  static fs::path place(int link) {
    return fs::path{"d" + std::to_string(link / links_in_a_folder)} / ("f" + std::to_string(link));
  }
  fs::path source(int link) const { return root / "store/package" / place(link); }
  fs::path target(int link) const { return root / "target" / place(link); }

  void write_profile() const {
    std::ofstream lines{profile()};
    std::ofstream rules{tmpfiles()};
    lines << "version,1\n";
    for (int link = 0; link < m_links; ++link) {
      lines << "lnk,file," << source(link).native() << ',' << target(link).native()
            << ",symbolic\n";
      rules << "L " << target(link).native() << " - - - - " << source(link).native() << '\n';
    }
  }

  int m_links;
};

struct Cost {
  double seconds;
  long peak_kib;
};

/** Runs a command to its end, its output thrown away. */
Cost run(std::vector<std::string> words, const fs::path& scratch) {
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (auto& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  std::string scratch_variable = "VARNHOLT_SCRATCH=" + scratch.native();
  std::string path_variable = "PATH=/usr/bin:/bin";
  char* const environment[] = {scratch_variable.data(), path_variable.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
  }
  const auto begin = std::chrono::steady_clock::now();
  pid_t child = 0;
  if (posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environment) != 0) {
    give_up("cannot run " + words[0]);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
  posix_spawn_file_actions_destroy(&actions);
  if (status != 0) give_up(words[0] + " failed");
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-union-access): the libc's own way to lay it out
  return {taken.count(), usage.ru_maxrss};
}

struct Rival {
  std::string name;
  std::vector<std::string> (*command)(const Tree& tree);
  /** Whether it makes absolute links, as the profile asks for. */
  bool absolute_links;
  /** What varnholt is to be, as a share of this rival's time. */
  double aim;
};

/** The programs under test, from the command line. */
const char* varnholt = nullptr;
const char* bare_loop = nullptr;
Rival ours() {
  return {"varnholt",
          [](const Tree& /*tree*/) -> std::vector<std::string> {
            return {varnholt, "--save_symlink"};
          },
          true, 1};
}

Rival bare(double aim) {
  return {"bare C loop",
          [](const Tree& tree) -> std::vector<std::string> {
            return {bare_loop, tree.profile()};
          },
          true, aim};
}

Rival tmpfiles(double aim) {
  return {"systemd-tmpfiles --create",
          [](const Tree& tree) -> std::vector<std::string> {
            return {"systemd-tmpfiles", "--create", tree.tmpfiles()};
          },
          true, aim};
}

Rival stow(double aim) {
  return {"stow --no-folding",
          [](const Tree& tree) -> std::vector<std::string> {
            return {"stow", "--no-folding",       "-d",     tree.root / "store",
                    "-t",   tree.root / "target", "package"};
          },
          false, aim};
}

/** Times varnholt, the first one, and its rivals on one case and prints a row for each. */
void compare(const char* title, int links, Start start, const std::vector<Rival>& rivals) {
  if (!is_wanted(title)) return;
  std::vector<std::vector<double>> seconds(rivals.size());
  for (int sample = 0; sample < samples; ++sample) {
    for (std::size_t turn = 0; turn < rivals.size(); ++turn) {
      const auto who = (turn + static_cast<std::size_t>(sample)) % rivals.size();
      const Tree tree{links, start, rivals[who].absolute_links};
      seconds[who].push_back(run(rivals[who].command(tree), tree.root).seconds);
      tree.check(start);
    }
  }
  std::printf("\n%s: %d definitions, median of %d\n", title, links, samples);
  for (std::size_t who = 0; who < rivals.size(); ++who) {
    std::printf("  %-26s %9.1f ms", rivals[who].name.c_str(), 1000 * median(seconds[who]));
    if (who > 0) {
      std::printf("   varnholt takes %.2f times that, aim at most %.2f",
                  median(seconds[0]) / median(seconds[who]), rivals[who].aim);
    }
    std::printf("\n");
  }
}

/** Prints how time and memory grow with the profile. */
void show_growth(const char* title, Start start) {
  if (!is_wanted(title)) return;
  std::printf("\n%s: varnholt alone, median of %d, one run at %d\n", title, growth_samples,
              sampled_once);
  long first_peak = 0;
  for (const int links : {0, 1'000, 10'000, 100'000, sampled_once}) {
    std::vector<double> seconds;
    std::vector<double> peaks;
    std::uintmax_t size = 0;
    const int runs = links < sampled_once ? growth_samples : 1;
    for (int sample = 0; sample < runs; ++sample) {
      const Tree tree{links, start, true};
      size = fs::file_size(tree.profile());
      const Cost cost = run(ours().command(tree), tree.root);
      tree.check(start);
      seconds.push_back(cost.seconds);
      peaks.push_back(static_cast<double>(cost.peak_kib));
    }
    const auto peak = static_cast<long>(median(peaks));
    if (links == 0) first_peak = peak;
    std::printf("  %9d definitions %10.1f ms", links, 1000 * median(seconds));
    if (links > 0) {
      std::printf("  %6.2f us each   %7ld KiB beyond the start, %.2f times the profile",
                  1e6 * median(seconds) / links, peak - first_peak,
                  1024.0 * static_cast<double>(peak - first_peak) / static_cast<double>(size));
    }
    std::printf("\n");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) give_up("usage: link-builder-benchmark VARNHOLT-SCRATCH BARE-LOOP [TITLE]");
  if (argc > 3) wanted = argv[3];
  varnholt = argv[1];
  bare_loop = argv[2];
  struct statfs file_system {};
  if (statfs("/dev/shm", &file_system) != 0 || file_system.f_type != TMPFS_MAGIC) {
    give_up("/dev/shm is no tmpfs; on a disk the journal would hide the programs");
  }
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  compare("Links to make, nothing in the way", 10'000, Start::nothing,
          {ours(), bare(1.5), tmpfiles(1 / 2.0), stow(1 / 2.0)});
  compare("Everything linked already", 10'000, Start::links,
          {ours(), bare(2), tmpfiles(1 / 5.0), stow(1 / 5.0)});
  compare("Files at the link paths", 300, Start::files, {ours(), bare(1.05)});
  show_growth("Growth, links to make", Start::nothing);
  show_growth("Growth, everything linked already", Start::links);
  return 0;
}
