// SPDX-License-Identifier: GPL-3.0-or-later
// The profile as a whole text: the kinds of its lines, how all definitions are written, and its
// version.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

#include "model/bak-model.h"

namespace varnholt::store {

/** Every user's window reads the profile, and only its owner writes it. */
constexpr mode_t profile_mode = 0644;

/** The kind of a line, which its beginning decides. The version line is `other`. */
enum class LineKind { file, script, route, default_route, other };

/** The contents of a line. A member is empty for a line of another kind, or an unreadable one. */
struct ProfileLine {
  LineKind kind = LineKind::other;
  /** A file definition or a boot script. */
  std::optional<model::BakDefFields> definition{};
  std::optional<model::RutDefFields> route{};
  std::optional<bool> deletes_default_route{};
};
ProfileLine read_profile_line(std::string_view line);

/** Returns the profile of three lists without its version line; each line ends with a line feed. */
std::string profile_text(const VhBakDefItemList& files, const VhRutDefItemList& routes,
                         const VhBakDefItemList& scripts);

}  // namespace varnholt::store

/**
 * Returns the version in the first line of a profile and removes that line from `cont`. Returns 0
 * and leaves `cont` unchanged when the line does not contain "version" or has no line end. Returns
 * 0 with a critical warning when `cont` is null.
 */
int main_get_cur_version(std::string* cont);

/**
 * Returns where `character` first occurs in `text`, counted in characters, or -1 when it does not
 * occur. Returns 0 with a critical warning when `text` is null. This exists for other callers.
 */
int main_string_index_of(const char* text, gunichar character);
