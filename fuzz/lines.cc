// SPDX-License-Identifier: GPL-3.0-or-later
// Checks that a line which was read and written is read again, and then written in the same way.
#include "model/definition.h"
#include "model/route.h"
#include "target.h"

namespace {

void check(std::string_view line, auto read, auto written) {
  const auto says = read(line);
  if (!says) return;
  const auto text = written(*says);
  const auto back = read(text);
  must_hold(back.has_value(), "not read back: " + text);
  // An unknown operation is written as an update, which has more fields once it is read again.
  const auto again = written(*back);
  must_hold(again == text || again == text + ",true,0", "written in two ways: " + text);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view line{reinterpret_cast<const char*>(data), size};
  check(line, varnholt::read_lnk_line, varnholt::lnk_line);
  check(line, varnholt::read_shl_line, varnholt::shl_line);
  check(line, varnholt::read_rut_add_line, varnholt::rut_add_line);
  check(line, varnholt::read_rut_del_line, varnholt::rut_del_line);
  return 0;
}
