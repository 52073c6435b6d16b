// SPDX-License-Identifier: GPL-3.0-or-later
// Connecting C++ functions to the signals of objects, with their types kept.
#pragma once

#include <memory>
#include <utility>

#include <glib-object.h>

namespace varnholt {

/** Finds the arguments of a handler, and calls it as the object system wants to. */
template <typename Call>
struct SignalCall;

template <typename Handler, typename Result, typename... Arguments>
struct SignalCall<Result (Handler::*)(Arguments...) const> {
  // An exception would unwind through the toolkit and leave its references wrong.
  static Result call(Arguments... arguments, gpointer handler) noexcept {
    return (*static_cast<const Handler*>(handler))(arguments...);
  }
};

/**
 * Calls `handler`, a lambda that names the sender and the signal's arguments, whenever `sender`
 * emits `signal`, for as long as `owner` lives; `owner` stays alive during a call. The lambda goes
 * with the connection.
 */
template <typename Handler>
void connect(gpointer sender, const char* signal, gpointer owner, Handler handler) {
  using Call = SignalCall<decltype(&Handler::operator())>;
  auto lambda = std::make_unique<Handler>(std::move(handler));
  GClosure* const closure =
      g_cclosure_new(reinterpret_cast<GCallback>(&Call::call), lambda.release(),
                     [](gpointer ended, GClosure* /*closure*/) {
                       std::unique_ptr<Handler>{static_cast<Handler*>(ended)};
                     });
  g_object_watch_closure(static_cast<GObject*>(owner), closure);
  g_signal_connect_closure(sender, signal, closure, FALSE);
}

}  // namespace varnholt
