// SPDX-License-Identifier: GPL-3.0-or-later
// The message box and the question for a password. Both belong to the class Main but need no object
// of it. Texts are UTF-8.
#pragma once

#include <gtk/gtk.h>

#include "base/glib-ptr.h"

/** The main window, which is the parent of every prompt; null while there is no window. */
inline varnholt::ObjectPtr<GtkWindow> main_s_main_window;

/** Returns a new reference to the main window, which the caller releases, or null. */
GtkWindow* main_get_main_window();

/**
 * Shows a warning in a modal box with the given set of buttons until the user answers, and returns
 * the code of the answer, for example GTK_RESPONSE_YES. Without a main window it shows nothing and
 * returns GTK_RESPONSE_YES.
 */
int main_alter(const char* msg, GtkButtonsType buttons);

/**
 * Asks for a password in a modal dialog, with or without a main window. Returns true when the user
 * confirms it. `result`, which may be null, is then set to the password, without the white space
 * at both ends, and otherwise to "". The caller owns it and wipes it (see varnholt::SecretPtr). For
 * a null `msg` it is set to null, with a critical warning.
 */
bool main_inputdlg(char** result, const char* msg, const char* title);

namespace varnholt::ui {

/** Shows a text as it is in a modal box over the main window; returns the code of the answer. */
int show_message(GtkMessageType type, const char* msg, GtkButtonsType buttons);

}  // namespace varnholt::ui
