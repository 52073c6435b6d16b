// SPDX-License-Identifier: GPL-3.0-or-later
// Owning pointers for texts, errors and objects of GLib and the toolkit. Elsewhere a raw pointer is
// borrowed, unless a comment says that the caller owns it.
#pragma once

#include <memory>
#include <string_view>

#include <glib-object.h>

namespace varnholt {

/** A deleter that calls the function `Free`. */
template <auto Free>
struct FreeWith {
  template <typename T>
  void operator()(T* owned) const noexcept {
    Free(owned);
  }
};

using TextPtr = std::unique_ptr<char, FreeWith<g_free>>;
using ErrorPtr = std::unique_ptr<GError, FreeWith<g_error_free>>;
template <typename T>
using ObjectPtr = std::unique_ptr<T, FreeWith<g_object_unref>>;

/** Takes over a text that the caller owns. */
inline TextPtr take_text(char* text) noexcept {
  return TextPtr{text};
}

/** Returns a copy of a text to a caller of the object system, who owns it. */
inline char* give_text(std::string_view text) {
  // The address of an empty view may be null.
  return g_strndup(text.empty() ? "" : text.data(), text.size());
}

/** Takes over a reference that the caller owns. */
template <typename T>
ObjectPtr<T> take_object(T* object) noexcept {
  return ObjectPtr<T>{object};
}

/** Adds a reference to an object that someone else owns. */
template <typename T>
ObjectPtr<T> make_object(T* object) noexcept {
  return ObjectPtr<T>{static_cast<T*>(g_object_ref(object))};
}

/** Takes ownership of a new widget, which nobody owns yet, and returns it with its own type. */
template <typename T>
ObjectPtr<T> sink_object(gpointer floating) noexcept {
  return ObjectPtr<T>{static_cast<T*>(g_object_ref_sink(floating))};
}

/** Lends an owning pointer to an out parameter for the duration of one call. */
template <typename Owner>
class OutArgument {
 public:
  explicit OutArgument(Owner& owner) noexcept : m_owner(owner) {}
  OutArgument(const OutArgument&) = delete;
  OutArgument& operator=(const OutArgument&) = delete;
  ~OutArgument() { m_owner.reset(m_given); }
  // NOLINTNEXTLINE(google-explicit-constructor): the object is the argument itself
  operator typename Owner::pointer *() && noexcept { return &m_given; }

 private:
  Owner& m_owner;
  typename Owner::pointer m_given = nullptr;
};

/** Lends `owner`, as in `g_file_get_contents(path, out(text), &length, out(error))`. */
template <typename Owner>
OutArgument<Owner> out(Owner& owner) noexcept {
  return OutArgument<Owner>{owner};
}

}  // namespace varnholt
