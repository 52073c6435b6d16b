// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces a file as a whole by a rewritten one.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>

#include "base/glib-ptr.h"

namespace varnholt {

/**
 * Replaces a file by what `rewritten` returns for its text, with this mode and synced to the disk.
 * A reader sees either the old text or the new one. When somebody moves another text there at the
 * same time, that text is rewritten too, so `rewritten` may be called several times. Returns null,
 * or the error; the file then holds the newest text as it was.
 */
ErrorPtr replace_file(const char* path, mode_t mode,
                      const std::function<std::string(std::string_view)>& rewritten);

}  // namespace varnholt
