// SPDX-License-Identifier: GPL-3.0-or-later
// An owning file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace varnholt {

/** Owns a file descriptor and closes it; -1 means that there is none. */
class Descriptor {
 public:
  explicit Descriptor(int number = -1) noexcept : m_number(number) {}
  Descriptor(Descriptor&& other) noexcept : m_number(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(m_number, other.m_number);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (m_number >= 0) close(m_number);
  }

  explicit operator bool() const noexcept { return m_number >= 0; }
  int number() const noexcept { return m_number; }
  /** Hands the descriptor over to the caller, who owns it from then on. */
  int release() noexcept { return std::exchange(m_number, -1); }

 private:
  int m_number;
};

}  // namespace varnholt
