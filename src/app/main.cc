// SPDX-License-Identifier: GPL-3.0-or-later
// The entry point of the window's program. It is started in the place of the program that the user
// has called, with the same arguments, and keeps that one's name.
#include <gtk/gtk.h>
#include <sys/prctl.h>

#include <clocale>
#include <csignal>

#include "app/varnholt.h"
#include "base/diagnostics.h"
#include "base/glib-ptr.h"

int main(int argc, char** argv) {
  // If this signal were ignored, the wait status of a command would be lost.
  std::signal(SIGCHLD, SIG_DFL);
  std::setlocale(LC_ALL, "");
  if (!gtk_init_check(&argc, &argv)) {
    varnholt::print_failure("varnholt: the window needs a display, and none can be opened\n");
    return 0;
  }
  main_s_exe_path = varnholt::take_text(g_strdup(argv[0]));
  if (g_get_prgname() != nullptr) prctl(PR_SET_NAME, g_get_prgname());
  // Neither a broken message pipe nor a file size limit may destroy the user's work. The toolkit
  // ignores the first signal, and the commands would inherit that; they do not inherit a handler.
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, [](int /*signal*/) {});
  main_run_window();
  return 0;
}
