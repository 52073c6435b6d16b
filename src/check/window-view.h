// SPDX-License-Identifier: GPL-3.0-or-later
// What the window makes of a profile: which lines its next save loses or changes.
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/glib-ptr.h"
#include "check/problems.h"
#include "model/bak-model.h"
#include "store/profile.h"

namespace varnholt::check {

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
  /** Whether a line answers whether the default route is to be deleted. */
  bool answers_default_route = false;
};

/** Loads a profile line by line, as the tables of the window do. */
class WindowLoader {
 public:
  /** Loads the next line, which has this text and says this. */
  void load(std::string_view text, const store::ProfileLine& line);

  /** Returns what has come of all lines; nothing can be loaded after that. */
  WindowView end();

 private:
  void find(const Problem& problem, const std::string& about = "");
  void load_answer(bool deletes_default_route, std::string_view text);
  void load_definition(const store::ProfileLine& line, std::string_view text);
  void load_route(const model::RutDefFields& route);

  WindowView m_view;
  std::size_t m_line = 0;
  /** The lines of the definitions of each page, in the order of its table. */
  std::deque<std::size_t> m_files;
  std::deque<std::size_t> m_scripts;
  /** The lines that answer whether the default route is to be deleted, and the last answer. */
  std::vector<std::size_t> m_answers;
  bool m_deletes_default_route = false;
  ObjectPtr<VhRutDefItemList> m_routes = take_object(vh_rut_def_item_list_new());
  std::map<const VhRutDefItem*, std::size_t> m_route_lines;
};

}  // namespace varnholt::check
