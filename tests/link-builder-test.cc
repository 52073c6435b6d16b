// SPDX-License-Identifier: GPL-3.0-or-later
// The link builder as a whole: the installed program on real trees.
#include <map>
#include <regex>

#include "private-root.h"
#include "scenarios.h"

using LinkBuilder = PrivateRoot;

TEST_F(LinkBuilder, DoesWhatTheScenariosTell) {
  const auto scenarios = scenarios_of(SCENARIOS "/link-builder.scenarios");
  for (const auto& scenario : scenarios) {
    SCOPED_TRACE(scenario.substr(0, scenario.find('\n')));
    std::map<std::string, std::string> part;
    for (const auto& section : pieces(scenario, "\n--- ")) {
      const auto name = section.substr(0, section.find('\n'));
      part[name] = section == name ? "" : section.substr(name.size() + 1) + '\n';
    }
    TearDown();
    ASSERT_NO_FATAL_FAILURE(SetUp());
    shell(part["first"]);
    plant(part["before"]);
    if (part.contains("profile")) write(profile, part["profile"]);
    // A line waits on the input, as a password may.
    const auto run = part.insert({"run", "echo secret | dev/varnholt --save_symlink"}).first;
    // Newer commands give their name without the folder.
    EXPECT_EQ(std::regex_replace(shell(run->second), std::regex{"/bin/(mv|rm|cp): "}, "$1: "),
              part["says"]);
    EXPECT_EQ(tree(), part["after"]);
    EXPECT_EQ(read(profile), part[part.contains("kept") ? "kept" : "profile"]);
  }
}
