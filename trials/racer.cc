// SPDX-License-Identifier: GPL-3.0-or-later
// Makes changes at the right moments, for led-astray, faster than a shell could.
// Usage: racer STEP...
//     hold PATH           locks a file or folder, before the first step and until it is killed
//     lease PATH          the same with a lease, for which who opens the file must wait
//     until EVENT PATH    waits until this happens to the entry of a folder: moved_from, moved_to,
//                         deleted, closed (after reading)
//     within MICROSECONDS waits for a random time that is not longer
//     exchange PATH PATH  lets two entries take each other's place
//     link CONTENT PATH   makes a symbolic link
//     again               begins once more with the first step
// Changes that fail are passed over. Says "ready" when it will miss no event, and "acted" after the
// first change that succeeded.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

using Words = std::span<char* const>;
using Step = std::function<void()>;

struct Event {
  int folder = -1;
  std::uint32_t kind = 0;
  std::string name{};
};

/** The events of all folders that are watched, in the order in which they come. */
class Events {
 public:
  /** Begins to gather events, and returns what to wait for. */
  Event watch(const std::string& kind, const std::filesystem::path& path) const {
    static const std::map<std::string, std::uint32_t> kinds{{"moved_from", IN_MOVED_FROM},
                                                            {"moved_to", IN_MOVED_TO},
                                                            {"deleted", IN_DELETE},
                                                            {"closed", IN_CLOSE_NOWRITE}};
    const auto mask = kinds.at(kind);
    const int folder = inotify_add_watch(m_queue, path.parent_path().c_str(), mask | IN_MASK_ADD);
    if (folder < 0) throw std::system_error{errno, std::generic_category(), path};
    return {folder, mask, path.filename()};
  }

  void wait_for(const Event& wanted) {
    while (true) {
      const Event event = next();
      if (event.folder == wanted.folder && (event.kind & wanted.kind) != 0 &&
          event.name == wanted.name) {
        return;
      }
    }
  }

 private:
  Event next() {
    if (m_at >= m_length) {
      m_length = read(m_queue, m_read.data(), m_read.size());
      m_at = 0;
    }
    const auto* const event = reinterpret_cast<const inotify_event*>(m_read.data() + m_at);
    m_at += static_cast<ssize_t>(sizeof *event + event->len);
    return {event->wd, event->mask, event->len > 0 ? static_cast<const char*>(event->name) : ""};
  }

  static constexpr std::size_t room = 4096;
  int m_queue = inotify_init1(IN_CLOEXEC);
  alignas(inotify_event) std::array<char, room> m_read{};
  ssize_t m_length = 0;
  ssize_t m_at = 0;
};

void say(const char* word) {
  std::puts(word);
  std::fflush(stdout);
}

void tell_change(int result) {
  static bool told = false;
  if (result == 0 && !told) say("acted");
  told = told || result == 0;
}

/** Waits without sleeping, because the kernel's sleep takes longer than many a step of a run. */
void wait_within(int microseconds) {
  static std::mt19937 random{std::random_device{}()};
  const std::chrono::microseconds time{std::uniform_int_distribution{0, microseconds}(random)};
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end) continue;
}

/** Reads the step that begins with the first word; the words that it takes go. */
Step take_step(Words& words, Events& events) {
  const std::string verb = words[0];
  const bool takes_two = verb == "until" || verb == "exchange" || verb == "link";
  const std::size_t taken = takes_two ? 3 : 2;
  if (words.size() < taken) throw std::invalid_argument{verb + " needs more words"};
  const char* const one = words[1];
  const char* const two = takes_two ? words[2] : "";
  words = words.subspan(taken);
  if (verb == "until") {
    return [&events, wanted = events.watch(one, two)] { events.wait_for(wanted); };
  }
  if (verb == "within") return [time = std::stoi(one)] { wait_within(time); };
  if (verb == "exchange") {
    return [=] { tell_change(renameat2(AT_FDCWD, one, AT_FDCWD, two, RENAME_EXCHANGE)); };
  }
  if (verb == "link") return [=] { tell_change(symlink(one, two)); };
  if (verb == "hold") {
    tell_change(flock(open(one, O_RDONLY | O_CLOEXEC), LOCK_EX));
  } else if (verb == "lease") {
    tell_change(fcntl(open(one, O_RDWR | O_CLOEXEC), F_SETLEASE, F_WRLCK));
  } else {
    throw std::invalid_argument{verb + " is no step"};
  }
  return [] {};
}

void race(Words words) {
  // The kernel asks for a lease by this signal.
  std::signal(SIGIO, SIG_IGN);
  const bool endless = std::string_view{words.back()} == "again";
  if (endless) words = words.first(words.size() - 1);
  Events events;
  std::vector<Step> steps;
  while (!words.empty()) steps.push_back(take_step(words, events));
  say("ready");
  while (true) {
    for (const auto& step : steps) step();
    if (!endless) pause();
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    race(Words{argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "racer: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
