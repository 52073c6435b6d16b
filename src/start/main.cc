// SPDX-License-Identifier: GPL-3.0-or-later
// The entry point of the process, separate from the rest so that other programs can link the rest.
#include "start/start.h"

int main(int argc, char** argv) {
  return main_main(argv, argc);
}
