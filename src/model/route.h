// SPDX-License-Identifier: GPL-3.0-or-later
// A static route as a plain value with its line, and the line about the default route.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace varnholt::model {

/** The contents of a route. No text is interpreted, and any text may be empty. */
struct RutDefFields {
  std::string name;
  /** The address of the network segment, its mask and its gateway are the route's main contents. */
  std::string addr;
  std::string mask;
  std::string gw;
  /** The number of hops. */
  std::string jup;
  /** The network interface. */
  std::string nic;
};

/** The texts of a route in the order of its line. */
inline constexpr std::array route_texts{&RutDefFields::name, &RutDefFields::addr,
                                        &RutDefFields::mask, &RutDefFields::gw,
                                        &RutDefFields::jup,  &RutDefFields::nic};

/**
 * Reads a "rut,add" line as vh_rut_def_item_scanf_string() does. Returns nullopt when the line does
 * not fit or contains a NUL byte.
 */
std::optional<RutDefFields> read_rut_add_line(std::string_view line);

/** Returns the line of a route, without a line end. */
std::string rut_add_line(const RutDefFields& route);

/** Returns whether no table accepts both routes, as they share their name or main contents. */
bool are_rivals(const RutDefFields& a, const RutDefFields& b);

/**
 * Returns whether a "rut,del" line asks to delete the default route. A line that does not fit asks
 * for it too. Returns nullopt when the line contains a NUL byte.
 */
std::optional<bool> read_rut_del_line(std::string_view line);
std::string rut_del_line(bool del_def_rut);

}  // namespace varnholt::model
