// SPDX-License-Identifier: GPL-3.0-or-later
// Writes the next version of the profile to a temporary file, before it is moved into place with
// root rights.
#pragma once

#include <optional>
#include <string>

namespace varnholt::store {

enum class NextVersion {
  /** The temporary file holds the next version. */
  written,
  /** The stored profile is up to date or must be left alone, or the file cannot be written. */
  not_written,
  /** The stored profile cannot be read for an unexpected reason: the save must end. */
  unknown,
};

/**
 * Writes the temporary file as a whole, with a version line and `text`, when the stored profile has
 * other contents or is missing. `unread` is the GFileError code with which reading the stored
 * profile failed when the definitions were loaded: `text` then lacks its contents, and the stored
 * profile is left alone as long as it exists. Prints to standard output that nothing has changed,
 * and failures to standard error.
 */
NextVersion write_next_version(const std::string& text, std::optional<int> unread);

}  // namespace varnholt::store
