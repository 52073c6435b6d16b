// SPDX-License-Identifier: GPL-3.0-or-later
// What the window makes of a profile: which lines its next save loses or changes.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "check/finding.h"
#include "store/profile.h"

namespace varnholt {

struct LineFinding {
  /** From 1. */
  std::size_t line = 0;
  Finding finding;
};

struct WindowView {
  std::vector<LineFinding> findings;
  /** The numbers of definitions that the next save writes in another order. */
  std::size_t reordered_files = 0;
  std::size_t reordered_scripts = 0;
};

/** Loads a profile line by line, as the tables of the window do. */
class WindowLoader {
 public:
  WindowLoader();
  WindowLoader(const WindowLoader&) = delete;
  WindowLoader& operator=(const WindowLoader&) = delete;
  ~WindowLoader();

  /** Loads the next line, which has this text and says this. */
  void load(std::string_view text, const ProfileLine& line);

  /** Returns what has come of all lines; nothing can be loaded after that. */
  WindowView end();

 private:
  class Tables;
  std::unique_ptr<Tables> m_tables;
};

}  // namespace varnholt
