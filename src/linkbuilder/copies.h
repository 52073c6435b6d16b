// SPDX-License-Identifier: GPL-3.0-or-later
// Tells a copy that was cut off from what somebody has changed since. mv(1) between file systems
// first copies everything and then deletes; cp(1) only copies. Either may have been ended anywhere.
// All contents are compared, because what turns out to be whole elsewhere is deleted. No link is
// followed. Whatever cannot be read makes the answer false.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

namespace varnholt::linkbuilder {

/** Returns the names in a folder, or nullopt when it is none or cannot be read. */
std::optional<std::set<std::string>> names_in(const std::filesystem::path& folder);

/**
 * Returns whether `copy` can be what a copying command had made of `original` when it was cut off:
 * each entry has its counterpart there, of the same kind, and each file begins as that one does.
 */
bool is_part_of_copy(const std::filesystem::path& copy, const std::filesystem::path& original);

/**
 * Returns whether `rest` can be what a moving command had not yet deleted when it was cut off, so
 * that `copy` is whole: each entry has its counterpart there, with the same kind, content, owner,
 * mode, time of change and extended attributes.
 */
bool is_rest_of_move(const std::filesystem::path& rest, const std::filesystem::path& copy);

/**
 * Returns whether `copy`, which is a part of a copy, is all that cp(1) makes of `original`. It
 * gives some folders their mode at last.
 */
bool lacks_nothing(const std::filesystem::path& copy, const std::filesystem::path& original);

/**
 * Returns whether nothing from `path` down has come or changed since a time, in nanoseconds since
 * the epoch, except by a deletion. Nothing at all at the path is an answer of true, too.
 */
bool is_untouched_since(const std::filesystem::path& path, std::int64_t time);

}  // namespace varnholt::linkbuilder
