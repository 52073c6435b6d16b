// SPDX-License-Identifier: GPL-3.0-or-later
// Reads, runs and renews tests that are data.
#include "scenarios.h"

#include <cctype>
#include <cstring>
#include <fstream>
#include <regex>
#include <sstream>

#include "base/glib-ptr.h"

using varnholt::take_text;

namespace {

constexpr auto* title_mark = "=== ";

std::string content_of(const std::string& file) {
  std::stringstream text;
  text << std::ifstream{file}.rdbuf();
  return text.str();
}

}  // namespace

std::string Scenario::name() const {
  std::string name = title;
  for (char& letter : name) {
    if (std::isalnum(static_cast<unsigned char>(letter)) == 0) letter = '_';
  }
  return name;
}

void Scenario::expect(const std::string& came_out) const {
  if (came_out == text) return;
  if (g_getenv("VARNHOLT_RENEW") == nullptr) {
    EXPECT_EQ(text, came_out) << file << ':' << line;
    return;
  }
  auto whole = content_of(file);
  const auto front = title_mark + title + '\n';
  whole.replace(whole.find(front) + front.size(), text.size(), came_out);
  ASSERT_TRUE(std::ofstream{file} << whole) << file;
}

std::vector<Scenario> scenarios_of(const std::string& file) {
  const auto path = SCENARIOS "/" + file;
  std::istringstream lines{content_of(path)};
  std::vector<Scenario> scenarios;
  int number = 0;
  bool between = true;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    if (between && line.starts_with(title_mark)) {
      scenarios.push_back({path, number, line.substr(std::strlen(title_mark)), ""});
    } else if (!scenarios.empty()) {
      scenarios.back().text += line + '\n';
    }
    between = line.empty();
  }
  for (std::size_t index = 0; index + 1 < scenarios.size(); ++index) {
    scenarios[index].text.pop_back();
  }
  return scenarios;
}

void Transcript::say(std::string text) {
  text = std::regex_replace(text, std::regex{left_out}, "");
  // Only the bytes that a line of a text file cannot show are escaped.
  const bool valid = g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) != 0;
  std::string letters;
  for (int byte = 0x80; valid && byte <= 0xFF; ++byte) letters += static_cast<char>(byte);
  m_text += std::string{"  "} + take_text(g_strescape(text.c_str(), letters.c_str())).get() + '\n';
}

void Transcript::say_lines(const std::string& mark, const std::string& printed) {
  std::istringstream lines{printed};
  for (std::string line; std::getline(lines, line);) say(mark + line);
}

void Transcript::check(const Scenario& scenario) {
  std::istringstream lines{scenario.text};
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("  ")) continue;
    m_text += line + '\n';
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
  scenario.expect(m_text);
}
