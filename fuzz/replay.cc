// SPDX-License-Identifier: GPL-3.0-or-later
// Stands in for the fuzzer where it is missing: calls a target with each file of a folder.
#include <filesystem>

#include "base/file.h"
#include "target.h"

int main(int /*argc*/, char** argv) {
  for (const auto& entry : std::filesystem::directory_iterator{argv[1]}) {
    const auto file = varnholt::read_file(entry.path().c_str());
    must_hold(!file.error, entry.path());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(file.text().data()), file.length);
  }
}
