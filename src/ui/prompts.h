// SPDX-License-Identifier: GPL-3.0-or-later
// What the program asks and tells its user beside the tables: the message box, and the question for
// a password. Both belong to the class Main but need no object of it. Texts are UTF-8.
#pragma once

#include <gtk/gtk.h>

#include "base/glib-ptr.h"

/** The window of window mode once it stands, the parent of every prompt; else none. */
inline varnholt::ObjectPtr<GtkWindow> main_s_main_window;

/** A new reference to the main window, which the caller releases; none while there is no window. */
GtkWindow* main_get_main_window();

/**
 * Shows a warning in a modal box with the given set of buttons until the user answers, and returns
 * the code of the answer, for example GTK_RESPONSE_YES. Without a main window it shows nothing and
 * the answer is GTK_RESPONSE_YES.
 */
int main_alter(const char* msg, GtkButtonsType buttons);

/**
 * Asks for a password in a modal dialog, with or without a main window. True when the user confirms
 * it; `result`, which may be missing, is then what was typed, without the white space at both ends.
 * Else it is "". It belongs to the caller, who wipes it (see varnholt::SecretPtr).
 */
bool main_inputdlg(char** result, const char* msg, const char* title);

namespace varnholt {

/** Shows a text as it stands in a modal box over the main window; returns the code of the answer.
 */
int show_message(GtkMessageType type, const char* msg, GtkButtonsType buttons);

}  // namespace varnholt
