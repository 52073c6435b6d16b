// SPDX-License-Identifier: GPL-3.0-or-later
// The start of the program: the choice of its mode.
#include "start/start.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include <glib.h>

#include "base/diagnostics.h"
#include "linkbuilder/link-builder.h"
#include "start/arguments.h"

namespace {

/** Opens closed standard streams, so that no file or socket opened later takes their place. */
void fill_standard_streams() {
  int null = open("/dev/null", O_RDWR);
  while (null >= 0 && null <= STDERR_FILENO) null = open("/dev/null", O_RDWR);
  if (null >= 0) close(null);
}

bool means_link_builder(char** argv, int argc) {
  // The values of the toolkit's options are in the charset of the locale. The link builder itself
  // prints English and compares bytes in every locale.
  std::setlocale(LC_CTYPE, "");
  const auto arguments = varnholt::start::without_toolkit_options({argv, argv + argc});
  std::setlocale(LC_CTYPE, "C");
  return std::ranges::count(arguments, std::string_view{"--save_symlink"}) > 0;
}

/** Replaces this process with the window's program. Returns only when that fails. */
void become_window(char** argv) {
  std::error_code failed;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", failed);
  const std::string name = self.filename().string() + "-window";
  for (const auto& folder : {self.parent_path(), self.parent_path() / VARNHOLT_PRIVATE_PROGRAMS}) {
    execv((folder / name).c_str(), argv);
    if (errno != ENOENT) break;
  }
  varnholt::print_failure("varnholt: the window's program, %s, cannot be started: %s\n",
                          name.c_str(), std::strerror(errno));
}

}  // namespace

int main_main(char** argv, int argc) {
  g_return_val_if_fail(argv != NULL, 0);
  fill_standard_streams();
  if (means_link_builder(argv, argc)) {
    main_save_symbolic_dir();
  } else {
    become_window(argv);
  }
  return 0;
}
