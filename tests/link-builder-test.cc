// SPDX-License-Identifier: GPL-3.0-or-later
// The link builder as a whole, the installed program on real trees; and its move, called alone.
#include <unistd.h>

#include <algorithm>
#include <regex>
#include <sstream>

#include "linkbuilder/link-operations.h"
#include "private-root.h"
#include "scenarios.h"

namespace {

/** The parts of a scenario in their order, each begun by "--- " and its name. */
class Parts {
 public:
  explicit Parts(const std::string& text) {
    std::istringstream lines{text};
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with(mark)) {
        m_parts.emplace_back(line.substr(mark.size()), "");
      } else {
        m_parts.back().second += line + '\n';
      }
    }
  }

  bool has(std::string_view name) { return std::ranges::count(m_parts, name, &Part::first) > 0; }

  /** The text of a part, which is added, empty, when there is none. */
  std::string& operator[](std::string_view name) {
    const auto found = std::ranges::find(m_parts, name, &Part::first);
    return found == m_parts.end() ? m_parts.emplace_back(name, "").second : found->second;
  }

  std::string text() const {
    std::string text;
    for (const auto& [name, part] : m_parts) {
      if (!part.empty() || name == "says") text += std::string{mark} + name + '\n' + part;
    }
    return text;
  }

 private:
  using Part = std::pair<std::string, std::string>;
  static constexpr std::string_view mark = "--- ";

  std::vector<Part> m_parts;
};

}  // namespace

class LinkBuilder : public PrivateRoot {
 public:
  explicit LinkBuilder(Scenario scenario) : m_scenario(std::move(scenario)) {}

  void TestBody() override {
    Parts part{m_scenario.text};
    if (part.has("first")) shell(part["first"]);
    if (part.has("before")) plant(part["before"]);
    if (part.has("profile")) write(profile, part["profile"]);
    // A line waits on the input, as a password may.
    const auto run = part.has("run") ? part["run"] : "echo secret | dev/varnholt --save_symlink";
    // Newer commands give their name without the folder.
    part["says"] = std::regex_replace(shell(run), std::regex{"/bin/(mv|rm|cp): "}, "$1: ");
    part["after"] = tree();
    const auto kept = read(profile);
    if (part.has("kept") || !part.has("profile") || kept != part["profile"]) part["kept"] = kept;
    m_scenario.expect(part.text());
  }

 private:
  Scenario m_scenario;
};

static const bool registered =
    register_scenarios<LinkBuilder>("LinkBuilder", "link-builder.scenarios");

using Move = PrivateRoot;

TEST_F(Move, DeletesALinkButNotWhatIsReachedThroughIt) {
  const struct {
    const char* before;
    const char* from;
    const char* to;
    bool moved;
    const char* after;
  } cases[] = {
      {"l -> none\nt: gone\n", "l", "t", true, "t -> none\n"},
      {"l -> t/x\nt/x: gone\n", "l", "t", true, "t -> t/x\n"},
      {"s/f: kept\nt -> s\n", "s", "t", true, "t/f: kept\n"},
      {"s/f: kept\nt -> s\n", "s/", "t/", true, "t/f: kept\n"},
      {"s: kept\nt -> none\n", "s", "t", true, "t: kept\n"},
      {"s/f: kept\ns/l -> f\n", "s", "s/l", false, "s/f: kept\ns/l -> f\n"},
      {"d/f: kept\nl -> d\n", "l/f", "l", false, "d/f: kept\nl -> d\n"},
      {"d/f: kept\nl -> d\ns: kept\n", "s", "l//", false, "d/f: kept\nl -> d\ns: kept\n"},
      {"d/s/f: kept\nl -> d/s\n", "l/.", "d", false, "d/s/f: kept\nl -> d/s\n"},
      {"none/", "s", "t", false, "none/\n"},
  };
  for (const auto& [before, from, to, moved, after] : cases) {
    SCOPED_TRACE(std::string{before} + from + " to " + to);
    TearDown();
    ASSERT_NO_FATAL_FAILURE(SetUp());
    plant(before);
    ASSERT_EQ(chdir(root.c_str()), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(main_move_file_force(from, to), moved);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(tree(), after);
    ASSERT_EQ(chdir("/"), 0);
  }
}
