// SPDX-License-Identifier: GPL-3.0-or-later
// Texts that hold a password. Their memory is overwritten before it is freed, so that nobody finds
// them there, for example in a core file.
#pragma once

#include <cstring>
#include <memory>

#include <glib.h>

namespace varnholt {

/** Overwrites and frees a text that GLib or the toolkit allocated. */
struct WipeAndFree {
  void operator()(char* secret) const noexcept {
    explicit_bzero(secret, std::strlen(secret));
    g_free(secret);
  }
};
using SecretPtr = std::unique_ptr<char, WipeAndFree>;

}  // namespace varnholt
