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

/** The unit of st_blocks; see stat(3type). */
constexpr std::uint64_t block = 512;

void count_file(const struct stat& status, Tally& tally) {
  ++tally.files;
  if (S_ISREG(status.st_mode)) tally.bytes += static_cast<std::uint64_t>(status.st_size);
  tally.disk_bytes += static_cast<std::uint64_t>(status.st_blocks) * block;
}

void count(const FTSENT& entry, Tally& tally) {
  switch (entry.fts_info) {
    case FTS_D:
      ++tally.folders;
      tally.disk_bytes += static_cast<std::uint64_t>(entry.fts_statp->st_blocks) * block;
      return;
    case FTS_DP:
      return;
    case FTS_DNR:
      // It has been counted as a folder before.
      ++tally.unreadable;
      return;
    case FTS_NS:
    case FTS_ERR:
      // At the top this is a path with nothing there.
      if (entry.fts_level > FTS_ROOTLEVEL) ++tally.unreadable;
      return;
    default:
      return count_file(*entry.fts_statp, tally);
  }
}

}  // namespace

Tally& Tally::operator+=(const Tally& that) {
  folders += that.folders;
  files += that.files;
  bytes += that.bytes;
  disk_bytes += that.disk_bytes;
  unreadable += that.unreadable;
  return *this;
}

Progress::Progress()
    : m_terminal(isatty(STDERR_FILENO) != 0), m_next(Clock::now() + std::chrono::seconds{1}) {}

Progress::~Progress() {
  if (m_shown) std::fputs(clear_line, stderr);
}

void Progress::step() {
  constexpr std::uint64_t files_between_looks = 256;
  ++m_files;
  if (!m_terminal || m_files % files_between_looks != 0 || Clock::now() < m_next) return;
  m_next = Clock::now() + std::chrono::milliseconds{200};
  m_shown = true;
  const auto text = filled(_("counting… %1 files"), {number(m_files)});
  std::fprintf(stderr, "%s%s", clear_line, text.c_str());
  std::fflush(stderr);
}

Tally tally_of(const std::string& path, Progress& progress) {
  Tally tally;
  std::string top = path;
  const std::array<char*, 2> tops{top.data(), nullptr};
  const std::unique_ptr<FTS, FreeWith<fts_close>> walk{
      fts_open(tops.data(), FTS_PHYSICAL, nullptr)};
  if (!walk) return tally;
  while (const FTSENT* const entry = fts_read(walk.get())) {
    count(*entry, tally);
    progress.step();
  }
  // fts(3) ends early where a path is longer than it can tell.
  if (errno != 0) ++tally.unreadable;
  return tally;
}

}  // namespace varnholt::check
