// SPDX-License-Identifier: GPL-3.0-or-later
// The entry of the module that holds the window, called by the program that has loaded it.
#include <gtk/gtk.h>

#include <clocale>
#include <csignal>

#include "app/varnholt.h"
#include "base/diagnostics.h"
#include "base/glib-ptr.h"
#include "start/window-module.h"

void varnholt_run_window_mode(int argc, char** argv) {
  // If this signal were ignored, the wait status of a command would be lost.
  std::signal(SIGCHLD, SIG_DFL);
  std::setlocale(LC_ALL, "");
  if (!gtk_init_check(&argc, &argv)) {
    varnholt::print_failure("varnholt: the window needs a display, and none can be opened\n");
    return;
  }
  main_s_exe_path = varnholt::take_text(g_strdup(argv[0]));
  // Neither a broken message pipe nor a file size limit may destroy the user's work. The toolkit
  // ignores the first signal, and the commands would inherit that; they do not inherit a handler.
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, [](int /*signal*/) {});
  main_run_window();
}
