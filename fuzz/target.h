// SPDX-License-Identifier: GPL-3.0-or-later
// What the fuzz targets share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/diagnostics.h"

/** Ends the run, as a finding, when something that must hold does not. */
inline void must_hold(bool holds, const std::string& what) {
  if (holds) return;
  varnholt::print_failure("does not hold: %s\n", what.c_str());
  std::abort();
}

/** One input. Declared by libFuzzer, and called by replay.cc with a file of the corpus. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
