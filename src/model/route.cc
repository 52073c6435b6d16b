// SPDX-License-Identifier: GPL-3.0-or-later
// A static route as a plain value with its line, and the line about the default route.
#include "model/route.h"

#include "base/text.h"

namespace varnholt::model {
std::optional<RutDefFields> read_rut_add_line(std::string_view line) {
  const auto fields = fields_of(line, "rut,add");
  if (fields.size() != 2 + route_texts.size()) return std::nullopt;
  RutDefFields read;
  auto field = fields.begin() + 2;
  for (const auto text : route_texts) read.*text = *field++;
  return read;
}

std::string rut_add_line(const RutDefFields& route) {
  std::string line = "rut,add";
  for (const auto text : route_texts) line += ',' + route.*text;
  return line;
}

bool are_rivals(const RutDefFields& a, const RutDefFields& b) {
  return a.name == b.name || (a.addr == b.addr && a.mask == b.mask && a.gw == b.gw);
}

std::optional<bool> read_rut_del_line(std::string_view line) {
  if (line.find('\0') != std::string_view::npos) return std::nullopt;
  const auto fields = fields_of(line, "rut,del");
  return fields.size() != 3 || fields[2] == "yes";
}

std::string rut_del_line(bool del_def_rut) {
  return del_def_rut ? "rut,del,yes" : "rut,del,no";
}

}  // namespace varnholt::model
