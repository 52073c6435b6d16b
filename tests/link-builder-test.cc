// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the link builder as a whole: the program itself runs on real trees.
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
    std::istringstream lines{m_scenario.text};
    std::string name;
    for (std::string line; std::getline(lines, line);) {
      line.starts_with("--- ") ? void(name = line.substr(4)) : void(part[name] += line + '\n');
    }
    shell(part["first"]);
    plant(part["before"]);
    if (!part["profile"].empty()) write(profile, part["profile"]);
    // A line waits on the input, as a password may.
    const auto run =
        part.contains("run") ? part["run"] : "echo secret | dev/varnholt --save_symlink";
    // Newer commands give their name without the folder.
    part["says"] = std::regex_replace(shell(run), std::regex{"/bin/(mv|rm|cp): "}, "$1: ");
    part["after"] = tree();
    part["kept"] = read(profile);
    const bool changed = part["kept"] != part["profile"];
    std::string came_out;
    for (const std::string_view each :
         {"first", "before", "profile", "run", "says", "after", "kept"}) {
      const auto& text = part[std::string{each}];
      const bool told = each == "kept" ? changed : each == "says" || !text.empty();
      if (told) ((came_out += "--- ") += each) += '\n' + text;
    }
    m_scenario.expect(came_out);
  }

 private:
  Scenario m_scenario;
};

static const bool registered =
    register_scenarios<LinkBuilder>("LinkBuilder", "link-builder.scenarios");
