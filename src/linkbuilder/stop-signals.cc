// SPDX-License-Identifier: GPL-3.0-or-later
// Lets a person or the system end a run of the link builder.
#include "linkbuilder/stop-signals.h"

#include <sys/wait.h>

#include <array>
#include <csignal>

#include "base/diagnostics.h"

namespace varnholt::linkbuilder {
namespace {

constexpr std::array<int, 4> stop_signals{SIGINT, SIGQUIT, SIGHUP, SIGTERM};

bool caught = false;
/** The signal that has come; 0 when none has. */
volatile std::sig_atomic_t came = 0;
volatile std::sig_atomic_t at_once = 0;

void end_by(int signal) {
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void on_signal(int signal) {
  came = signal;
  if (at_once != 0) end_by(signal);
}

}  // namespace

void catch_stop_signals() {
  caught = true;
  for (const int signal : stop_signals) {
    if (std::signal(signal, on_signal) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

void end_if_stopped(int wait_status) {
  // While it waits for a command, system(3) ignores these two.
  const int signal = WIFSIGNALED(wait_status) ? WTERMSIG(wait_status) : 0;
  if (caught && (signal == SIGINT || signal == SIGQUIT)) came = signal;
  if (came == 0) return;
  print_failure("stopped by signal %d: the next run goes on from here\n", static_cast<int>(came));
  end_by(came);
}

void set_interruptible(bool interruptible) {
  flush_progress();
  at_once = interruptible ? 1 : 0;
  if (interruptible) end_if_stopped();
}

}  // namespace varnholt::linkbuilder
