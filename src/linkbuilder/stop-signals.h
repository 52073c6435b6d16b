// SPDX-License-Identifier: GPL-3.0-or-later
// Lets a person or the system end a run of the link builder without leaving a step half done that
// could be finished. The signals are SIGINT, SIGQUIT, SIGHUP and SIGTERM, unless the caller of the
// process has them ignored.
#pragma once

#include <functional>

namespace varnholt::linkbuilder {

/**
 * From this call on, a stop signal no longer ends the process wherever it happens to be. It ends it
 * at the next call of end_if_stopped(), or at once where a scope says that this does no harm.
 */
void catch_stop_signals();

/** Ends the process by the stop signal that has come, if one has. */
void end_if_stopped();

/** As long as this object lives, a stop signal ends the process at once. */
class InterruptibleScope {
 public:
  InterruptibleScope();
  InterruptibleScope(const InterruptibleScope&) = delete;
  InterruptibleScope& operator=(const InterruptibleScope&) = delete;
  ~InterruptibleScope();
};

/**
 * Calls a function that runs a command, and returns the wait status that it returns. A stop signal
 * ends the process before or during the command; so does one that has ended the command only.
 */
int run_interruptibly(const std::function<int()>& run);

}  // namespace varnholt::linkbuilder
