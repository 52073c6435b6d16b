// SPDX-License-Identifier: GPL-3.0-or-later
// Shows on a terminal how far a long count has come.
#include "check/progress.h"

#include <unistd.h>

#include <cstdio>

#include <glib/gi18n.h>

#include "check/wording.h"

namespace varnholt::check {
namespace {

constexpr auto* clear_line = "\r\033[K";

}  // namespace

Progress::~Progress() {
  if (m_shown) std::fputs(clear_line, stderr);
}

void Progress::advance() {
  constexpr std::uint64_t entries_between_looks = 256;
  if (++m_entries % entries_between_looks != 0 || Clock::now() < m_next) return;
  if (isatty(STDERR_FILENO) == 0) return;
  m_next = Clock::now() + std::chrono::milliseconds{200};
  m_shown = true;
  const auto text = filled(_("counting… %1 files"), {number(m_entries)});
  std::fprintf(stderr, "%s%s", clear_line, text.c_str());
  std::fflush(stderr);
}

}  // namespace varnholt::check
