// SPDX-License-Identifier: GPL-3.0-or-later
// Tests that are data: files of scenarios, each a test with a name of its own. A file may begin
// with a text for readers.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/** One scenario of a file: a title, and what is to come of what is done. */
struct Scenario {
  /** The title as the name of a test. */
  std::string name() const;

  /**
   * Fails with a diff unless `came_out` is the text. With VARNHOLT_RENEW in the environment it
   * takes the place of the text in the file instead.
   */
  void expect(const std::string& came_out) const;

  std::string file;
  int line = 0;
  std::string title;
  /** All lines between the title and the empty line before the next one. */
  std::string text;
};

/** The scenarios of a file in the folder of the tests. */
std::vector<Scenario> scenarios_of(const std::string& file);

/** Makes a test of `suite` of each scenario of a file. Its Fixture is constructed with a scenario.
 */
template <typename Fixture>
bool register_scenarios(const char* suite, const char* file) noexcept {
  for (const auto& scenario : scenarios_of(file)) {
    testing::RegisterTest(suite, scenario.name().c_str(), nullptr, nullptr, scenario.file.c_str(),
                          scenario.line,
                          [scenario] { return std::make_unique<Fixture>(scenario).release(); });
  }
  return true;
}

/**
 * A scenario that is a list of commands, each followed, indented, by what is to come of it: what
 * the command says, then what the program prints, to its output (>) and as errors (!). Texts may
 * have escapes such as "\t" or "\377".
 */
class Transcript {
 public:
  /** Does the rest of the command's line and says what came of it. */
  using Command = std::function<void(const std::string& arguments)>;
  std::map<std::string, Command> commands;
  /**
   * A text that differs from run to run, such as a folder's name; in commands "@" stands for it.
   */
  std::string left_out;

  void say(std::string text);

  /** Runs a scenario's commands and compares what came of them. */
  void check(const Scenario& scenario);

 private:
  void say_lines(const std::string& mark, const std::string& printed);

  std::string m_text;
};
