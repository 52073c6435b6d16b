// SPDX-License-Identifier: GPL-3.0-or-later
// Lets a person or the system end a run of the link builder without leaving a step half done that
// could be finished. The signals are SIGINT, SIGQUIT, SIGHUP and SIGTERM, unless the caller of the
// process has them ignored.
#pragma once

namespace varnholt::linkbuilder {

/**
 * From this call on, a stop signal no longer ends the process wherever it happens to be. It ends it
 * at the next call of end_if_stopped(), or at once where that does no harm.
 */
void catch_stop_signals();

/** Ends the process by a stop signal that has come, or by SIGINT or SIGQUIT of a wait status. */
void end_if_stopped(int wait_status = 0);

/** Sets whether a stop signal ends the process at once, as one that has come already does then. */
void set_interruptible(bool interruptible);

/** Calls a function, during which a stop signal ends the process at once. Returns its result. */
template <typename Call>
auto interruptibly(Call call) {
  set_interruptible(true);
  auto result = call();
  set_interruptible(false);
  return result;
}

}  // namespace varnholt::linkbuilder
