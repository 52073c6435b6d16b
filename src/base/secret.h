// SPDX-License-Identifier: GPL-3.0-or-later
// Texts that hold a password: their memory is overwritten before it is given back, so that nobody
// finds them there, in a core file for example.
#pragma once

#include <cstring>
#include <memory>

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

}  // namespace varnholt
