// SPDX-License-Identifier: GPL-3.0-or-later
// The link builder as a whole: the installed program on real trees.
#include <algorithm>
#include <map>
#include <regex>
#include <sstream>

#include "private-root.h"
#include "scenarios.h"

class LinkBuilder : public PrivateRoot {
 public:
  explicit LinkBuilder(Scenario scenario) : m_scenario(std::move(scenario)) {}

  void TestBody() override {
    std::map<std::string, std::string> part;
    std::vector<std::string> names;
    std::istringstream lines{m_scenario.text};
    for (std::string line; std::getline(lines, line);) {
      line.starts_with("--- ") ? names.push_back(line.substr(4))
                               : void(part[names.back()] += line + '\n');
    }
    shell(part["first"]);
    plant(part["before"]);
    if (part.contains("profile")) write(profile, part["profile"]);
    // A line waits on the input, as a password may.
    const auto run = part.insert({"run", "echo secret | dev/varnholt --save_symlink"}).first;
    // Newer commands give their name without the folder.
    part["says"] = std::regex_replace(shell(run->second), std::regex{"/bin/(mv|rm|cp): "}, "$1: ");
    part["after"] = tree();
    if (part["after"].empty()) part.erase("after");
    part["kept"] = read(profile);
    if (part["kept"] == part["profile"]) part.erase("kept");
    for (const auto* name : {"says", "after", "kept"}) {
      if (std::ranges::count(names, name) == 0) names.emplace_back(name);
    }
    std::string came_out;
    for (const auto& name : names) {
      if (part.contains(name)) came_out += "--- " + name + '\n' + part[name];
    }
    m_scenario.expect(came_out);
  }

 private:
  Scenario m_scenario;
};

static const bool registered =
    register_scenarios<LinkBuilder>("LinkBuilder", "link-builder.scenarios");
