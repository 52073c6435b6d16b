// SPDX-License-Identifier: GPL-3.0-or-later
// The profile as a whole text: what each of its lines says, how all definitions are written, and
// its version.
#pragma once

#include <string>
#include <string_view>

#include "model/bak-model.h"

namespace varnholt {

/** What a line is about. */
enum class LineKind { file, script, route, default_route, other };

/** The beginning of a line decides its kind. The version line is an other one. */
LineKind kind_of_line(std::string_view line);

/** The profile of three lists without its version line, each line ended by a line feed. */
std::string profile_text(const VhBakDefItemList& files, const VhRutDefItemList& routes,
                         const VhBakDefItemList& scripts);

}  // namespace varnholt

/**
 * The version in the first line of a profile, which is taken out of `cont`. When that line names no
 * version or has no line end, the result is 0 and `cont` stays as it was. A missing text logs a
 * critical warning, and the result is 0.
 */
int main_get_cur_version(std::string* cont);

/**
 * Where `character` first stands in `text`, counted in characters; -1 when it stands nowhere. This
 * exists for other callers. A missing text logs a critical warning, and the result is 0.
 */
int main_string_index_of(const char* text, gunichar character);
