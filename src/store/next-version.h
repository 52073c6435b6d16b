// SPDX-License-Identifier: GPL-3.0-or-later
// The next version of the profile, which is written to a temporary file before root moves it into
// place.
#pragma once

#include <optional>
#include <string>

namespace varnholt {

enum class NextVersion {
  /** The temporary file holds it. */
  written,
  /** The stored profile needs none or must be left alone, or the file cannot be written. */
  not_written,
  /** The stored profile cannot be read for a reason that nobody foresaw: the save must end. */
  unknown,
};

/**
 * Writes the temporary file as a whole, with `text` and a version line, when the stored profile
 * says something else or is missing. `unread` is the GFileError code with which the stored profile
 * could not be read when the definitions were loaded: `text` does not hold what it says, so it is
 * left alone for as long as it is there. Tells on standard output that nothing has changed, and
 * failures on standard error.
 */
NextVersion write_next_version(const std::string& text, std::optional<int> unread);

}  // namespace varnholt
