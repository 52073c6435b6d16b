// SPDX-License-Identifier: GPL-3.0-or-later
// Connects C++ functions to the signals of objects.
#pragma once

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

#include <glib-object.h>

namespace varnholt {

/** Returns whether a handler's argument or result of type T can be a value of a signal's type. */
template <typename T>
bool stands_for(GType type) {
  const GType kind = G_TYPE_FUNDAMENTAL(type);
  if (std::is_void_v<T>) return kind == G_TYPE_NONE;
  if (std::is_same_v<T, int>) return kind == G_TYPE_INT || kind == G_TYPE_BOOLEAN;
  if (std::is_same_v<T, guint>) return kind == G_TYPE_UINT;
  if (std::is_enum_v<T>) return kind == G_TYPE_ENUM;
  if (std::is_same_v<T, const char*>) return kind == G_TYPE_STRING;
  return std::is_pointer_v<T> &&
         (kind == G_TYPE_OBJECT || kind == G_TYPE_BOXED || kind == G_TYPE_PARAM);
}

/** Deduces the arguments of a handler, and calls it in the way that the object system expects. */
template <typename Call>
struct SignalCall;

template <typename Handler, typename Result, typename Sender, typename... Arguments>
struct SignalCall<Result (Handler::*)(Sender*, Arguments...) const> {
  // An exception would unwind through the toolkit and leave its references wrong.
  static Result call(Sender* sender, Arguments... arguments, gpointer handler) noexcept {
    return (*static_cast<const Handler*>(handler))(sender, arguments...);
  }

  static bool fits(const GSignalQuery& signal) {
    const std::span types{signal.param_types, signal.n_params};
    const std::array<bool (*)(GType), sizeof...(Arguments)> checks{stands_for<Arguments>...};
    return stands_for<Result>(signal.return_type) &&
           std::ranges::equal(checks, types, [](auto* check, GType type) {
             return check(type & ~G_SIGNAL_TYPE_STATIC_SCOPE);
           });
  }
};

/**
 * Calls `handler` whenever `sender` emits `signal`, as long as `owner` lives; `owner` stays alive
 * during a call. The handler is a lambda that takes the sender and the signal's arguments; it is
 * destroyed with the connection. The program ends when the number or the kinds of its arguments, or
 * the kind of its result, differ from those of the signal.
 */
template <typename Handler>
void connect(gpointer sender, const char* signal, gpointer owner, Handler handler) {
  using Call = SignalCall<decltype(&Handler::operator())>;
  GSignalQuery query{};
  g_signal_query(g_signal_lookup(signal, G_OBJECT_TYPE(sender)), &query);
  if (!Call::fits(query)) g_error("wrong arguments for \"%s\"", signal);
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
