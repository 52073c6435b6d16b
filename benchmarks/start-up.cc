// SPDX-License-Identifier: GPL-3.0-or-later
// Times the start of the program with an empty profile: in window mode until the window is on the
// screen, and as the link builder until it ends.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "measure.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t samples = 31;
constexpr std::chrono::microseconds pause{200};
constexpr std::chrono::seconds patience{20};

/** The windows on the screen, as the window manager lists them. */
class Screen {
 public:
  Screen() {
    if (m_display == nullptr) give_up("no display");
  }

  bool is_empty() const { return managed().empty(); }

  bool has_window() const {
    const auto windows = managed();
    XWindowAttributes attributes;
    return !windows.empty() &&
           XGetWindowAttributes(m_display.get(), windows.back(), &attributes) != 0 &&
           attributes.map_state == IsViewable;
  }

 private:
  std::vector<Window> managed() const {
    constexpr long most = 100;
    Atom type = 0;
    int format = 0;
    unsigned long number = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(m_display.get(), DefaultRootWindow(m_display.get()), m_list, 0, most, False,
                       XA_WINDOW, &type, &format, &number, &left, &data);
    const std::unique_ptr<unsigned char, decltype(&XFree)> owned{data, XFree};
    const auto* const first = reinterpret_cast<const Window*>(data);
    return {first, first + number};
  }

  std::unique_ptr<Display, decltype(&XCloseDisplay)> m_display{XOpenDisplay(nullptr),
                                                               XCloseDisplay};
  Atom m_list = XInternAtom(m_display.get(), "_NET_CLIENT_LIST", False);
};

template <typename Condition>
void wait_until(Condition condition) {
  const auto begin = Clock::now();
  while (!condition()) {
    if (Clock::now() - begin > patience) give_up("no window comes or goes");
    std::this_thread::sleep_for(pause);
  }
}

double time_window(const Command& command, const std::string& scratch) {
  const Screen screen;
  wait_until([&] { return screen.is_empty(); });
  const auto begin = Clock::now();
  const pid_t program = start(command, scratch);
  wait_until([&] { return screen.has_window(); });
  const double taken = milliseconds_since(begin);
  kill(program, SIGTERM);
  waitpid(program, nullptr, 0);
  return taken;
}

struct Rival {
  const char* name;
  Command command;
};

using Timer = double (*)(const Command& command, const std::string& scratch);

void compare(const char* title, Timer timer, const std::vector<Rival>& rivals,
             const std::string& scratch) {
  if (!is_wanted(title)) return;
  Figures figures;
  by_turns(rivals.size(), samples, [&](std::size_t who) {
    figures.add(title, rivals[who].name, timer(rivals[who].command, scratch));
  });
  figures.write(0);
}

}  // namespace

int main(int argc, char** argv) {
  read_arguments(argc, argv);
  const fs::path scratch = "/dev/shm/varnholt-start-up." + std::to_string(getpid());
  fs::create_directories(scratch / "etc");
  std::ofstream profile{scratch / "etc/.varnholt.ini"};
  profile.close();
  const auto program = built("scratch/varnholt-scratch");
  compare("Program: window on the screen", time_window,
          {{"varnholt", {program}}, {"bare window", {built("benchmarks/bare-window")}}}, scratch);
  compare("Program: link builder from start to end", run,
          {{"varnholt", {program, "--save_symlink"}},
           {"bare program", {built("benchmarks/bare-start")}}},
          scratch);
  fs::remove_all(scratch);
  return 0;
}
