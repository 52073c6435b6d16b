// SPDX-License-Identifier: GPL-3.0-or-later
// Texts that hold a password: their memory is overwritten before it is given back, so that nobody
// finds them there, in a core file for example.
#pragma once

#include <cstring>
#include <memory>
#include <string>

#include <glib.h>

namespace varnholt {

/** Overwrites and frees a text that GLib or the toolkit handed out. */
struct WipeAndFree {
  void operator()(char* secret) const noexcept {
    explicit_bzero(secret, std::strlen(secret));
    g_free(secret);
  }
};
using SecretPtr = std::unique_ptr<char, WipeAndFree>;

/** An allocator whose memory is overwritten when it is given back. */
template <typename T>
struct WipingAllocator {
  using value_type = T;

  T* allocate(std::size_t count) { return std::allocator<T>{}.allocate(count); }
  void deallocate(T* memory, std::size_t count) noexcept {
    explicit_bzero(memory, count * sizeof(T));
    std::allocator<T>{}.deallocate(memory, count);
  }
  bool operator==(const WipingAllocator&) const = default;
};

/** A text of more than 15 bytes, as command lines are: a shorter one needs no memory to wipe. */
using SecretText = std::basic_string<char, std::char_traits<char>, WipingAllocator<char>>;

}  // namespace varnholt
