// SPDX-License-Identifier: GPL-3.0-or-later
// Tells which of two places holds everything, after a command that was to copy one to the other was
// cut off. No link is followed.
#pragma once

#include <cstdint>
#include <filesystem>

namespace varnholt::linkbuilder {

/**
 * Returns the number of entries from a path down, the entry at the path included; 0 when they
 * cannot be counted.
 */
std::uint64_t entries_at(const std::filesystem::path& path);

/**
 * Returns whether `part` can be a part of a copy of `whole`: each of its entries has a counterpart
 * there, of the same kind, and each file begins as its counterpart does. All contents are compared,
 * because a part that turns out to be whole elsewhere is deleted. Whatever cannot be read makes the
 * answer false.
 */
bool is_part_of_copy(const std::filesystem::path& part, const std::filesystem::path& whole);

}  // namespace varnholt::linkbuilder
