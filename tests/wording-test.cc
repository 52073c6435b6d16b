// SPDX-License-Identifier: GPL-3.0-or-later
// Tests how varnholt-check lays out what it tells, and what it counts at a path.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "check/wording.h"
#include "files/tree.h"
#include "scratch/scratch-paths.h"

namespace fs = std::filesystem;

TEST(Wording, EndsALineWhereNoWordIsTorn) {
  const auto lines = [](std::string_view text, std::size_t width) {
    return varnholt::check::wrapped(text, 2, width);
  };
  EXPECT_EQ(lines("ab cd", 7), "ab cd");
  EXPECT_EQ(lines("ab cd", 6), "ab\n  cd");
  EXPECT_EQ(lines("ab cdefgh ij", 6), "ab\n  cdefgh\n  ij");
  // Each space of a path is shown, and no line is wider for it.
  EXPECT_EQ(lines("ab   cd", 6), "ab\n    cd");
  // These characters take two columns each, and a full stop begins no line.
  EXPECT_EQ(lines("软链接。", 9), "软链\n  接。");
  EXPECT_EQ(lines("软链接。", 10), "软链接。");
  // An accent takes none.
  EXPECT_EQ(lines("e\u0301e\u0301 x", 6), "e\u0301e\u0301 x");
}

TEST(Wording, ShowsNoTerminalWhatItTakesForACommand) {
  EXPECT_EQ(varnholt::check::printable("/a b/\u00fc"), "/a b/\u00fc");
  EXPECT_EQ(varnholt::check::printable("\x1b[1m\xff\u200b"), "\\x1b[1m\\xff\\xe2\\x80\\x8b");
  EXPECT_EQ(varnholt::check::printable(""), "\"\"");
}

TEST(Tally, HoldsWhatIsAtThePathAndBelowIt) {
  const fs::path folder = fs::path{varnholt::scratch_folder()} / "tally";
  fs::create_directories(folder / "in" / "deeper");
  std::ofstream{folder / "in" / "file"} << "four";
  fs::create_hard_link(folder / "in" / "file", folder / "in" / "again");
  fs::create_symlink("in", folder / "link");
  ASSERT_EQ(mkfifo((folder / "in" / "fifo").c_str(), 0600), 0);
  const auto counted = [&folder](const char* name) {
    std::size_t calls = 0;
    const auto tally = varnholt::files::tally_of(folder / name, [&calls] { ++calls; });
    EXPECT_EQ(calls, tally.entries());
    EXPECT_EQ(tally.unreadable, 0);
    return std::to_string(tally.folders) + ' ' + std::to_string(tally.files) + ' ' +
           std::to_string(tally.bytes);
  };
  EXPECT_EQ(counted("in"), "2 3 8");
  EXPECT_EQ(counted("link"), "0 1 0");
  EXPECT_EQ(counted("link/"), "2 3 8");
  EXPECT_EQ(counted("in/file/"), "0 0 0");
  EXPECT_EQ(counted("missing"), "0 0 0");
  fs::remove_all(folder);
}
