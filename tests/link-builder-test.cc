// SPDX-License-Identifier: GPL-3.0-or-later
// The link builder as a whole: the installed program on real trees.
#include <map>

#include "base/glib-ptr.h"
#include "linkbuilder/link-operations.h"
#include "private-root.h"
#include "scenarios.h"
#include "scratch/scratch-paths.h"

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
    EXPECT_EQ(shell(run->second), part["says"]);
    EXPECT_EQ(tree(), part["after"]);
    EXPECT_EQ(read(profile), part[part.contains("kept") ? "kept" : "profile"]);
  }
}

TEST(LinkOperations, TakeItems) {
  const auto& folder = varnholt::scratch_folder();
  const auto link = folder + "/new";
  const auto item = varnholt::take_object(vh_bak_def_item_new("/s", link.c_str(), 12, 0));
  main_build_symlink(item.get());
  EXPECT_FALSE(std::filesystem::is_symlink(link));
  item->op = VH_FILE_OPERATION_TYPE_FOT_Symbolic;
  main_build_symlink(item.get());
  EXPECT_EQ(std::filesystem::read_symlink(link), "/s");
  EXPECT_EQ(main_build_symlink_imp(item.get()), -1);
}
