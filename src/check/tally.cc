// SPDX-License-Identifier: GPL-3.0-or-later
// Counts the entries at a path.
#include "check/tally.h"

#include <fts.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include <glib/gi18n.h>

#include "base/glib-ptr.h"
#include "check/wording.h"

namespace varnholt::check {
namespace {

constexpr auto* clear_line = "\r\033[K";

void add(const FTSENT& entry, Tally& tally) {
  // The unit of st_blocks; see stat(3type).
  constexpr std::uint64_t block = 512;
  const auto& status = *entry.fts_statp;
  switch (entry.fts_info) {
    case FTS_DP:
      return;
    case FTS_DNR:
      // It has been counted as a folder before.
      ++tally.unreadable;
      return;
    case FTS_DC:
      // By way of a mount it is one of the folders above it, and fts(3) does not enter it again.
      ++tally.folders;
      ++tally.unreadable;
      return;
    case FTS_NS:
    case FTS_ERR:
      // At the top this is a path with nothing there.
      if (entry.fts_level > FTS_ROOTLEVEL) ++tally.unreadable;
      return;
    default:
      ++(entry.fts_info == FTS_D ? tally.folders : tally.files);
      if (S_ISREG(status.st_mode)) tally.bytes += static_cast<std::uint64_t>(status.st_size);
      tally.disk_bytes += static_cast<std::uint64_t>(status.st_blocks) * block;
  }
}

}  // namespace

Counter::~Counter() {
  if (m_shown) std::fputs(clear_line, stderr);
}

Tally Counter::count(const std::string& path) {
  const auto [known, is_new] = m_counted.try_emplace(path);
  auto& tally = known->second;
  if (!is_new) return tally;
  std::string top = path;
  const std::array<char*, 2> tops{top.data(), nullptr};
  const std::unique_ptr<FTS, FreeWith<fts_close>> walk{
      fts_open(tops.data(), FTS_PHYSICAL, nullptr)};
  if (!walk) return tally;
  while (const FTSENT* const entry = fts_read(walk.get())) {
    add(*entry, tally);
    show_progress();
  }
  // fts(3) ends early where a path is longer than it can tell.
  if (errno != 0) ++tally.unreadable;
  return tally;
}

void Counter::show_progress() {
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
