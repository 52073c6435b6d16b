// SPDX-License-Identifier: GPL-3.0-or-later
// The file definitions in the text of a profile, and the text without those that have been handled.
#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "model/definition.h"

namespace varnholt::linkbuilder {

using Lines = std::set<std::string, std::less<>>;

/**
 * Calls `take` with each file definition of a profile and the number of its line, in the order of
 * the file. Returns the lines of those that are marked deleted: nothing is left to do for them.
 */
Lines for_each_definition(
    std::string_view profile,
    const std::function<void(std::size_t line, const model::BakDefFields&)>& take);

/** Returns a profile without these lines; all others stay as kept_lines() keeps them. */
std::string without_lines(std::string_view profile, const Lines& lines);

}  // namespace varnholt::linkbuilder
