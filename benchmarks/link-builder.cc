// SPDX-License-Identifier: GPL-3.0-or-later
// Times the link builder, as a whole process, and other programs that do the same work. Every
// sample has a new tree on a tmpfs, the programs run in rotating order, and the work of each one is
// checked.
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "measure.h"

namespace fs = std::filesystem;

namespace {

constexpr int links_in_a_folder = 100;

/** The kind of the entries at the link paths before a run. */
enum class Start { nothing, links, files };

/**
 * One scratch tree with sources below store/ and link paths below target/. The sources are laid out
 * as a package of stow, so that every rival works on the same files.
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

struct Rival {
  const char* name;
  Command (*command)(const Tree& tree);
  /** Whether the program makes absolute links, as the profile asks for. */
  bool absolute_links = true;
};

constexpr Rival ours{"varnholt", [](const Tree& /*tree*/) -> Command {
                       return {built("scratch/varnholt-scratch"), "--save_symlink"};
                     }};
constexpr Rival bare_loop{"bare loop", [](const Tree& tree) -> Command {
                            return {built("benchmarks/bare-loop"), tree.profile()};
                          }};
constexpr Rival tmpfiles{"systemd-tmpfiles", [](const Tree& tree) -> Command {
                           return {"systemd-tmpfiles", "--create", tree.tmpfiles()};
                         }};
constexpr Rival stow{"stow",
                     [](const Tree& tree) -> Command {
                       return {"stow", "--no-folding",       "-d",     tree.root / "store",
                               "-t",   tree.root / "target", "package"};
                     },
                     false};

/** The companion, which is measured beside the run that it foretells. */
constexpr Rival companion{"varnholt", [](const Tree& /*tree*/) -> Command {
                            return {built("scratch/varnholt-check-scratch")};
                          }};
constexpr Rival run_itself{"the run itself", ours.command};
constexpr Rival stow_simulation{"stow -n",
                                [](const Tree& tree) -> Command {
                                  auto command = stow.command(tree);
                                  command.insert(command.begin() + 1, "-n");
                                  return command;
                                },
                                false};

struct Size {
  int definitions;
  std::size_t samples;
};

/** Times the rivals at one kind of work. */
void compare(const char* title, Start start, const std::vector<Rival>& rivals,
             const std::vector<Size>& sizes) {
  if (!is_wanted(title)) return;
  for (const auto& size : sizes) {
    Figures figures;
    by_turns(rivals.size(), size.samples, [&](std::size_t who) {
      const auto& rival = rivals[who];
      const Tree tree{size.definitions, start, rival.absolute_links};
      figures.add(title, rival.name, run(rival.command(tree), tree.root));
      tree.check(start);
    });
    figures.write(size.definitions);
  }
}

}  // namespace

int main(int argc, char** argv) {
  read_arguments(argc, argv);
  struct statfs file_system {};
  if (statfs("/dev/shm", &file_system) != 0 || file_system.f_type != TMPFS_MAGIC) {
    give_up("/dev/shm is no tmpfs; on a disk the journal would hide the programs");
  }
  const std::vector<Size> sizes{{1'000, 15}, {10'000, 9}, {100'000, 3}};
  // Adopting takes long, because three commands run for each file.
  std::vector<Size> adopted{{1'000, 5}, {10'000, 1}};
  if (arguments.full) adopted.push_back({100'000, 1});
  compare("Everything linked already", Start::links, {ours, tmpfiles}, {{10, 61}});
  compare("Links to make", Start::nothing, {ours, bare_loop, tmpfiles, stow}, sizes);
  compare("Everything linked already", Start::links, {ours, bare_loop, tmpfiles, stow}, sizes);
  compare("Check: everything linked already", Start::links,
          {companion, run_itself, stow_simulation}, {{10, 41}, {1'000, 41}, {10'000, 21}});
  compare("Files to adopt", Start::files, {ours, bare_loop}, adopted);
  return 0;
}
