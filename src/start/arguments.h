// SPDX-License-Identifier: GPL-3.0-or-later
// The arguments of the program without those of the toolkit.
#pragma once

#include <vector>

namespace varnholt::start {

/**
 * Returns the arguments, of which the first is the program's own name, without the toolkit's
 * options and their values, as the toolkit itself would take them out; see gtk-options(7). All of
 * them stay when one of the toolkit's options is wrong. The locale's charset must be set, because
 * the toolkit refuses a value that is not in it.
 */
std::vector<char*> without_toolkit_options(const std::vector<char*>& arguments);

}  // namespace varnholt::start
