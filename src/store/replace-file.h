// SPDX-License-Identifier: GPL-3.0-or-later
// Replacing a file as a whole by what is made of it.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>

#include "base/glib-ptr.h"

namespace varnholt {

/**
 * Puts what `rewritten` makes of a file in its place, with this mode and synced to the disk. A
 * reader sees the old text or the new one. Another text that somebody moves there at the same time
 * is rewritten too, so `rewritten` may be called several times. Returns why it failed, or none; the
 * file then stays as it was.
 */
ErrorPtr replace_file(const char* path, mode_t mode,
                      const std::function<std::string(std::string_view)>& rewritten);

}  // namespace varnholt
