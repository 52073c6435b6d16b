// SPDX-License-Identifier: GPL-3.0-or-later
// The file definitions in the text of a profile, and the text without those that have been handled.
#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "model/definition.h"

namespace varnholt::store {

using Lines = std::set<std::string, std::less<>>;
using Definitions = std::vector<model::BakDefFields>;

/**
 * Calls `take` with each file definition of a profile and the number of its line, in the order of
 * the file. Returns the lines of those that are marked deleted: nothing is left to do for them.
 */
Lines for_each_definition(
    std::string_view profile,
    const std::function<void(std::size_t line, const model::BakDefFields&)>& take);

/** Returns the file definitions of a profile in the lines after this one, in their order. */
Definitions definitions_after(std::size_t line, std::string_view profile);

/**
 * Returns a profile without these lines. All others stay byte for byte, with line feeds between
 * them, but the empty ones at the very beginning are lost.
 */
std::string without_lines(std::string_view profile, const Lines& lines);

/**
 * Returns whether nothing of an older text would be missed beside a profile: its version is lower,
 * or all its lines stand at the beginning, but for definitions that are marked deleted.
 */
bool is_superseded(std::string_view older, std::string_view profile);

/** Returns a profile without the lines of the definitions that are marked deleted. */
std::string without_marked_lines(std::string_view profile);

}  // namespace varnholt::store
