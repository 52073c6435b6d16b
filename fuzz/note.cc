// SPDX-License-Identifier: GPL-3.0-or-later
// Checks that the note of unfinished work is read only when every byte of it is as it was written,
// and that deciding about what it says never ends the program.
#include "linkbuilder/healing.h"
#include "target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes{reinterpret_cast<const char*>(data), size};
  const auto works = varnholt::read_note(bytes);
  if (!works) return 0;
  must_hold(varnholt::note_text(*works) == bytes, "written as it was read");
  must_hold(!varnholt::read_note(bytes.substr(0, size - 1)), "a part of a note is none");
  for (const auto& work : *works) {
    const auto remedy = varnholt::remedy_for(work, {});
    // Only what is whole elsewhere is ever removed.
    must_hold(!remedy || remedy->removed.empty() || remedy->removed != remedy->whole_at, "kept");
  }
  return 0;
}
