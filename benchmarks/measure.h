// SPDX-License-Identifier: GPL-3.0-or-later
// What the benchmarks share: their arguments, turns, figures, and processes.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

[[noreturn]] inline void give_up(const std::string& why) {
  std::fprintf(stderr, "benchmark: %s\n", why.c_str());
  std::exit(1);
}

/** The arguments of a benchmark: BUILD-FOLDER [full | WORDS OF A TITLE]. */
struct Arguments {
  /** The stream for the figures; what the program under test prints is discarded. */
  std::FILE* figures = nullptr;
  std::string build_folder;
  /** Whether to run what takes very long too. */
  bool full = false;
  /** Figures are written only when these words are in their title. */
  std::string wanted;
};
inline Arguments arguments;

inline void read_arguments(int argc, char** argv) {
  if (argc < 2) give_up("usage: BENCHMARK BUILD-FOLDER [full | WORDS OF A TITLE]");
  arguments.build_folder = argv[1];
  const std::string last = argc > 2 ? argv[2] : "";
  arguments.full = last == "full";
  if (!arguments.full) arguments.wanted = last;
  arguments.figures = fdopen(dup(STDOUT_FILENO), "w");
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (arguments.figures == nullptr || dup2(nowhere, STDOUT_FILENO) < 0) {
    give_up("cannot part the outputs");
  }
  std::setvbuf(arguments.figures, nullptr, _IOLBF, 0);
}

inline bool is_wanted(std::string_view title) {
  return title.find(arguments.wanted) != std::string_view::npos;
}

using Clock = std::chrono::steady_clock;

inline double milliseconds_since(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/** The times of all programs at some kinds of work, all with the same number of definitions. */
class Figures {
 public:
  void add(const std::string& title, const std::string& who, double milliseconds) {
    const auto same = [&](const Row& row) { return row.title == title && row.who == who; };
    auto row = std::find_if(m_rows.begin(), m_rows.end(), same);
    if (row == m_rows.end()) row = m_rows.insert(row, {title, who, {}});
    row->times.push_back(milliseconds);
  }

  /** Writes the medians, one per line, for write-page. */
  void write(int definitions) const {
    for (const auto& [title, who, times] : m_rows) {
      if (!is_wanted(title)) continue;
      std::fprintf(arguments.figures, "%s\t%d\t%s\t%.4f\t%zu\n", title.c_str(), definitions,
                   who.c_str(), median(times), times.size());
    }
  }

 private:
  struct Row {
    std::string title;
    std::string who;
    std::vector<double> times;
  };
  std::vector<Row> m_rows;
};

/** Calls `work` with the index of each rival, `samples` times; each time another rival is first. */
template <typename Work>
void by_turns(std::size_t rivals, std::size_t samples, Work work) {
  for (std::size_t sample = 0; sample < samples; ++sample) {
    for (std::size_t turn = 0; turn < rivals; ++turn) work((turn + sample) % rivals);
  }
}

using Command = std::vector<std::string>;

/** Returns the path of a program of the build. */
inline std::string built(const char* path) {
  return arguments.build_folder + '/' + path;
}

/** Starts a command with the scratch folder in place of the root, and discards its output. */
inline pid_t start(Command words, const std::string& scratch) {
  setenv("VARNHOLT_SCRATCH", scratch.c_str(), 1);
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (auto& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
  }
  pid_t child = 0;
  if (posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ) != 0) {
    give_up("cannot run " + words[0]);
  }
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

/** Runs a command to its end and returns how long that took, in milliseconds. */
inline double run(const Command& words, const std::string& scratch) {
  const auto begin = Clock::now();
  int status = 0;
  waitpid(start(words, scratch), &status, 0);
  const double taken = milliseconds_since(begin);
  if (status != 0) give_up(words[0] + " failed");
  return taken;
}
