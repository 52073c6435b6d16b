// SPDX-License-Identifier: GPL-3.0-or-later
// The entry point of varnholt-check, separate from the rest so that other programs can link the
// rest.
#include "check/command-line.h"

int main(int argc, char** argv) {
  return varnholt::check::run_check(argc, argv);
}
