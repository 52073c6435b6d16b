// SPDX-License-Identifier: GPL-3.0-or-later
// The common part of the fuzz targets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <glib.h>

/** Ends the run, as a finding, when a condition that must hold does not hold. */
inline void must_hold(bool holds, const std::string& what) {
  if (!holds) g_error("does not hold: %s", what.c_str());
}

/** Checks one input. The fuzzer calls it, or replay.cc with each file of the corpus. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
