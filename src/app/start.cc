// SPDX-License-Identifier: GPL-3.0-or-later
// The start of the program: its arguments and the choice of its mode.
#include <fcntl.h>
#include <gtk/gtk.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <memory>
#include <string_view>
#include <vector>

#include "app/varnholt.h"
#include "base/diagnostics.h"
#include "base/glib-ptr.h"
#include "linkbuilder/link-builder.h"

namespace {

/**
 * Returns the arguments without the toolkit's own options. The toolkit itself is not initialised:
 * the link builder runs as root and needs neither a display nor modules that the environment names.
 */
std::vector<char*> own_arguments(const std::vector<char*>& arguments) {
  // The parse hooks of the toolkit's options would initialise it.
  GOptionGroup* const toolkit = gtk_get_option_group(FALSE);
  g_option_group_set_parse_hooks(toolkit, nullptr, nullptr);
  const std::unique_ptr<GOptionContext, varnholt::FreeWith<g_option_context_free>> context{
      g_option_context_new(nullptr)};
  g_option_context_set_main_group(context.get(), toolkit);
  g_option_context_set_ignore_unknown_options(context.get(), TRUE);
  g_option_context_set_help_enabled(context.get(), FALSE);

  auto own = arguments;
  auto count = static_cast<int>(own.size());
  own.push_back(nullptr);
  char** first = own.data();
  // A bad toolkit option leaves the arguments as they are; in window mode the toolkit reports it.
  g_option_context_parse(context.get(), &count, &first, nullptr);
  own.resize(static_cast<std::size_t>(count));
  return own;
}

/** Opens closed standard streams, so that no file or socket opened later takes their place. */
void fill_standard_streams() {
  int null = open("/dev/null", O_RDWR);
  while (null >= 0 && null <= STDERR_FILENO) null = open("/dev/null", O_RDWR);
  if (null >= 0) close(null);
}

void run_window_mode(int argc, char** argv) {
  // If this signal were ignored, the wait status of a command would be lost.
  std::signal(SIGCHLD, SIG_DFL);
  std::setlocale(LC_ALL, "");
  if (!gtk_init_check(&argc, &argv)) {
    varnholt::print_failure("varnholt: the window needs a display, and none can be opened\n");
    return;
  }
  // Neither a broken message pipe nor a file size limit may destroy the user's work. The toolkit
  // ignores the first signal, and the commands would inherit that; they do not inherit a handler.
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, [](int /*signal*/) {});
  main_run_window();
}

}  // namespace

int main_main(char** argv, int argc) {
  g_return_val_if_fail(argv != NULL, 0);
  fill_standard_streams();
  // The link builder prints English and compares bytes in every locale.
  gtk_disable_setlocale();
  const auto arguments = own_arguments({argv, argv + argc});
  main_s_exe_path = varnholt::take_text(g_strdup(arguments.empty() ? nullptr : arguments[0]));
  const bool link_builder = std::ranges::count(arguments, std::string_view{"--save_symlink"}) > 0;
  if (link_builder) {
    main_save_symbolic_dir();
  } else {
    run_window_mode(argc, argv);
  }
  return 0;
}
