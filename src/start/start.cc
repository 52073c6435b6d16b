// SPDX-License-Identifier: GPL-3.0-or-later
// The start of the program: the choice of its mode.
#include "start/start.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <string_view>
#include <system_error>

#include <glib.h>

#include "base/diagnostics.h"
#include "linkbuilder/link-builder.h"
#include "start/arguments.h"
#include "start/window-module.h"

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

/** Returns the path of the module with the window, by way of this program's own path. */
std::filesystem::path window_module() {
  std::error_code failed;
  auto beside = std::filesystem::read_symlink("/proc/self/exe", failed);
  beside += "-window.so";
  if (std::filesystem::exists(beside, failed)) return beside;
  return beside.parent_path() / VARNHOLT_MODULES / beside.filename();
}

void run_window_mode(int argc, char** argv) {
  // The toolkit's own modules find it as in a program that is linked with it. Nothing is unloaded.
  void* const module = dlopen(window_module().c_str(), RTLD_NOW | RTLD_GLOBAL);
  void* const entry = module == nullptr ? nullptr : dlsym(module, "varnholt_run_window_mode");
  if (entry == nullptr) {
    varnholt::print_failure("varnholt: the window cannot be loaded: %s\n", dlerror());
    return;
  }
  reinterpret_cast<decltype(&varnholt_run_window_mode)>(entry)(argc, argv);
}

}  // namespace

int main_main(char** argv, int argc) {
  g_return_val_if_fail(argv != NULL, 0);
  fill_standard_streams();
  if (means_link_builder(argv, argc)) {
    main_save_symbolic_dir();
  } else {
    run_window_mode(argc, argv);
  }
  return 0;
}
