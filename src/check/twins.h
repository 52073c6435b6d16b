// SPDX-License-Identifier: GPL-3.0-or-later
// Finds lines that are about the same path.
#pragma once

#include <bit>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace varnholt {

/** A table of lines by hashes of their paths, for as many lines as it was made for. */
class Twins {
 public:
  explicit Twins(std::size_t lines) : m_slots(std::bit_ceil(2 * lines + 1)) {}

  /**
   * Adds a line with this path. Returns the number of an earlier line for whose number `is_same`
   * returns true, or 0 when there is none. It is asked only when the hashes are equal.
   */
  template <typename IsSame>
  std::size_t add(std::string_view path, std::size_t line, IsSame is_same) {
    const auto hash = std::hash<std::string_view>{}(path);
    auto at = hash & (m_slots.size() - 1);
    for (; m_slots[at].line != 0; at = (at + 1) & (m_slots.size() - 1)) {
      if (m_slots[at].hash == hash && is_same(m_slots[at].line)) return m_slots[at].line;
    }
    m_slots[at] = {hash, line};
    return 0;
  }

 private:
  struct Slot {
    std::size_t hash = 0;
    /** 0 in an empty slot. */
    std::size_t line = 0;
  };
  std::vector<Slot> m_slots;
};

}  // namespace varnholt
