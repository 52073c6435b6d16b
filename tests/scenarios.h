// SPDX-License-Identifier: GPL-3.0-or-later
// Tests that are data: files of scenarios, each with a title. A file may begin with a text for
// readers.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

/** What stands behind each `mark`. */
std::vector<std::string> pieces(std::string text, const std::string& mark);

/** The scenarios of a file, each from its title to the empty line before the next. */
std::vector<std::string> scenarios_of(const std::string& file);

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
  /** A text that differs from run to run, such as a folder's name; in commands "@" stands for it.
   */
  std::string left_out;

  void say(std::string text);

  /** Runs a scenario's commands and compares what came of them. */
  void check(const std::string& scenario);

 private:
  void say_lines(const std::string& mark, const std::string& printed);

  std::string m_text;
};
