// SPDX-License-Identifier: GPL-3.0-or-later
// The process entry, apart from the rest so that other programs can link the rest.
#include "varnholt.h"

// The object type system starts by itself when its library is loaded.
int main(int argc, char** argv) {
  return main_main(argv, argc);
}
