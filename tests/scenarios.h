// SPDX-License-Identifier: GPL-3.0-or-later
// Tests that are data: each scenario of a file becomes a test with its own name. A file may begin
// with a text for readers.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/** One scenario of a file: a title, and a text of steps and their expected results. */
struct Scenario {
  /** Returns the title as the name of a test. */
  std::string name() const;

  /**
   * Fails with a diff unless `came_out` equals the text. When VARNHOLT_RENEW is set in the
   * environment, `came_out` replaces the text in the file instead.
   */
  void expect(const std::string& came_out) const;

  std::string file;
  int line = 0;
  std::string title;
  /** All lines between the title and the empty line before the next one. */
  std::string text;
};

/** Returns the scenarios of a file in the folder of the tests. */
std::vector<Scenario> scenarios_of(const std::string& file);

/** Registers each scenario of a file as a test of `suite`, whose Fixture is constructed with it. */
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
 * A scenario that is a list of commands. Each is followed by its expected results, indented: what
 * the command says, then what the program prints to its output (>) and as errors (!). Texts may
 * contain escapes such as "\t" or "\377".
 */
class Transcript {
 public:
  /** Does what the rest of the command's line asks for, and says the results. */
  using Command = std::function<void(const std::string& arguments)>;
  std::map<std::string, Command> commands;
  /**
   * A text that differs from run to run, such as a folder's name; in commands "@" stands for it.
   */
  std::string left_out;

  void say(std::string text);

  /** Runs a scenario's commands and compares the results. */
  void check(const Scenario& scenario);

 private:
  void say_lines(const std::string& mark, const std::string& printed);

  std::string m_text;
};
