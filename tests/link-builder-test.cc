// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the link builder as a whole, and the reports of varnholt-check about it: the programs
// themselves run on real trees.
#include <map>
#include <regex>
#include <sstream>

#include <glib.h>

#include "check-document.h"
#include "private-root.h"
#include "scenarios.h"
#include "scratch/scratch-paths.h"

class LinkBuilder : public PrivateRoot {
 public:
  explicit LinkBuilder(Scenario scenario, std::string usual_run = "")
      : m_scenario(std::move(scenario)), m_usual_run(std::move(usual_run)) {
    // A line waits on the input, as a password may.
    if (m_usual_run.empty()) m_usual_run = "echo secret | dev/varnholt --save_symlink";
  }

  void TestBody() override {
    if (const auto user = unknown_user(); !user.empty()) {
      GTEST_SKIP() << "no user " << user << " in the namespace of an ordinary user";
    }
    std::map<std::string, std::string> part;
    std::istringstream lines{m_scenario.text};
    std::string name;
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("--- ")) {
        name = line.substr(4);
      } else {
        part[name] += line + '\n';
      }
    }
    shell(part["first"]);
    plant(part["before"]);
    if (!part["profile"].empty()) write(profile, part["profile"]);
    check_document();
    const auto run = part.contains("run") ? part["run"] : m_usual_run;
    // Newer commands give their name without the folder.
    part["says"] = std::regex_replace(shell(run), std::regex{"/bin/(mv|rm|cp): "}, "$1: ");
    part["after"] = tree();
    part["kept"] = read(profile);
    const bool changed = part["kept"] != part["profile"];
    std::string came_out;
    for (const std::string_view each :
         {"first", "before", "profile", "run", "says", "after", "kept"}) {
      const auto& text = part[std::string{each}];
      const bool shown = each == "kept" ? changed : each == "says" || !text.empty();
      if (shown) ((came_out += "--- ") += each) += '\n' + text;
    }
    m_scenario.expect(came_out);
  }

 private:
  /** Returns the user that the scenario needs and the namespace lacks; empty when it lacks none. */
  std::string unknown_user() const {
    const std::regex other_user{R"((?:chown|--reuid) (\d+)(?!.*\|\|))"};
    for (std::sregex_iterator at{m_scenario.text.begin(), m_scenario.text.end(), other_user}, end;
         at != end; ++at) {
      if (!knows_user(static_cast<uid_t>(std::stoul(at->str(1))))) return at->str(1);
    }
    return "";
  }

  /** Checks, for each scenario, the document that programs get. */
  void check_document() const {
    const auto text = shell("dev/varnholt-check --json; [ $? -lt 3 ] || echo unreadable");
    const bool read = !text.ends_with("unreadable\n");
    EXPECT_EQ(read ? faults_of(read_document(text)) : "", "") << text;
  }

  Scenario m_scenario;
  std::string m_usual_run;
};

/** A scenario of varnholt-check. The tree afterwards shows that it has changed nothing. */
class Check : public LinkBuilder {
 public:
  explicit Check(Scenario scenario)
      : LinkBuilder(std::move(scenario), "dev/varnholt-check; echo status $?") {}
};

TEST(Texts, AreInTheLanguageOfTheUser) {
  const auto check = [](const char* language) {
    const std::string command =
        "printf 'lnk,dir,/nowhere,/nowhere/b,symbolic\\n' >$VARNHOLT_SCRATCH/p"
        "; LC_ALL=C.UTF-8 LANGUAGE=" +
        std::string{language} + " \"$0\" $VARNHOLT_SCRATCH/p || :";
    return output_of({"sh", "-c", command.c_str(), VARNHOLT_CHECK_SCRATCH_PROGRAM});
  };
  g_setenv("VARNHOLT_SCRATCH", varnholt::scratch_folder().c_str(), TRUE);
  EXPECT_NE(check("zh_CN").find("链接"), std::string::npos);
  EXPECT_NE(check("de").find("Links: 1 to be made."), std::string::npos);
}

static const bool registered =
    register_scenarios<LinkBuilder>("LinkBuilder", "link-builder.scenarios") &&
    register_scenarios<Check>("Check", "check.scenarios");
