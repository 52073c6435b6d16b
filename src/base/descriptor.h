// SPDX-License-Identifier: GPL-3.0-or-later
// An owning file descriptor.
#pragma once

#include <unistd.h>

namespace varnholt {

/** Owns a file descriptor and closes it; -1 means that there is none. */
class Descriptor {
 public:
  explicit Descriptor(int number) noexcept : m_number(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (m_number >= 0) close(m_number);
  }

  explicit operator bool() const noexcept { return m_number >= 0; }
  int number() const noexcept { return m_number; }

 private:
  int m_number;
};

}  // namespace varnholt
