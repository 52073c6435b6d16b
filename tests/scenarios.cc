// SPDX-License-Identifier: GPL-3.0-or-later
// Tests that are data: reading and running them.
#include "scenarios.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>

#include "base/glib-ptr.h"

using varnholt::take_text;

std::vector<std::string> pieces(std::string text, const std::string& mark) {
  std::vector<std::string> found;
  for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
    text.erase(0, at + mark.size());
    found.push_back(text.substr(0, text.find(mark)));
  }
  return found;
}

std::vector<std::string> scenarios_of(const std::string& file) {
  std::stringstream text;
  text << std::ifstream{file}.rdbuf();
  auto scenarios = pieces(text.str(), "\n\n=== ");
  scenarios.at(scenarios.size() - 1).pop_back();
  return scenarios;
}

void Transcript::say(std::string text) {
  text = std::regex_replace(text, std::regex{left_out}, "");
  // Only what a line of a text file cannot show is escaped.
  const bool valid = g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) != 0;
  std::string letters;
  for (int byte = 0x80; valid && byte <= 0xFF; ++byte) letters += static_cast<char>(byte);
  m_text += std::string{"\n  "} + take_text(g_strescape(text.c_str(), letters.c_str())).get();
}

void Transcript::say_lines(const std::string& mark, const std::string& printed) {
  std::istringstream lines{printed};
  for (std::string line; std::getline(lines, line);) say(mark + line);
}

void Transcript::check(const std::string& scenario) {
  std::istringstream lines{scenario};
  std::getline(lines, m_text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("  ")) continue;
    m_text += '\n' + line;
    const auto space = line.find(' ');
    const auto command = commands.find(line.substr(0, space));
    ASSERT_NE(command, commands.end()) << line;
    auto arguments = space == std::string::npos ? "" : line.substr(space + 1);
    arguments = std::regex_replace(arguments, std::regex{"@"}, left_out);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    command->second(take_text(g_strcompress(arguments.c_str())).get());
    say_lines("> ", testing::internal::GetCapturedStdout());
    say_lines("! ", testing::internal::GetCapturedStderr());
  }
  EXPECT_TRUE(m_text == scenario) << "It came out so:\n" << m_text;
}
