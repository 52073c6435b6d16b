// SPDX-License-Identifier: GPL-3.0-or-later
// A thread's own view of the file systems, in which only some folders can be changed.
#pragma once

#include <vector>

namespace varnholt::files {

/** Returns whether this process may give a thread such a view; see mount_namespaces(7). */
bool can_have_read_only_view();

/**
 * Lets this thread, and what it starts, change nothing but these opened folders and what is below
 * them on the same mount, until the thread's end; other descriptors of the process keep their
 * rights. Between such a folder and anything else rename(2) does not work. Returns false when that
 * cannot be done, or when a folder is not where it was opened any more.
 */
bool see_read_only_but(const std::vector<int>& folders);

}  // namespace varnholt::files
