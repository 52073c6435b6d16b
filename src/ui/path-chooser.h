// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog in which the user chooses a file or a folder.
#pragma once

#include <string>

#include "base/glib-ptr.h"

namespace varnholt::ui {

/**
 * Lets the user choose a folder, or a file when `folder` is false, in a dialog over the main window
 * that starts at the path `start`. The chosen folder is the one that the dialog displays. Returns
 * null when the user chooses nothing.
 */
TextPtr choose_path(const std::string& start, bool folder);

}  // namespace varnholt::ui
