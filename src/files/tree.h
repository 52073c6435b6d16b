// SPDX-License-Identifier: GPL-3.0-or-later
// Counts, compares and removes whatever is at a path and below it. Each folder is opened in the one
// above it and no link is followed, so that nobody can lead these functions elsewhere.
#pragma once

#include <cstdint>
#include <string>

namespace varnholt::files {

/**
 * Returns the number of entries from a path down, the entry at the path included; 0 when they
 * cannot be counted.
 */
std::uint64_t entries_at(const std::string& path);

/**
 * Returns whether `part` can be a part of a copy of `whole`: each of its entries has a counterpart
 * there, of the same kind, and each file begins as its counterpart does. All contents are compared,
 * because a part that turns out to be whole elsewhere is deleted. Whatever cannot be read makes the
 * answer false.
 */
bool is_part_of_copy(const std::string& part, const std::string& whole);

/**
 * Gives each link in a copy to the owner of its original: a link of root's is followed wherever it
 * leads, and cp(1) makes all of them root's. Returns whether that could be done.
 */
bool give_links_to_owners(const std::string& copy, const std::string& original);

/** Removes everything from a path down. Returns 0, or the errno of the first failure. */
int remove_tree(const std::string& path);

}  // namespace varnholt::files
