// SPDX-License-Identifier: GPL-3.0-or-later
// The given texts of command lines. That shells read them as they are meant is tried on the inputs
// which are kept for the fuzzer.
#include "base/shell.h"

#include <gtest/gtest.h>

#include "store/root-rights.h"

TEST(Shell, WritesPlainTextsAsTheyAre) {
  EXPECT_EQ(varnholt::command_word("/usr/local/bin/a-b_c.1"), "/usr/local/bin/a-b_c.1");
  for (const auto* odd : {"", "/p q", "/it's", "/a=b", "~", "a=b/c"}) {
    EXPECT_EQ(varnholt::command_word(odd).front(), '\'') << odd;
  }
  EXPECT_EQ(varnholt::sudo_command("Secret 1%s!é", "/bin/mv -f \"/a\" \"/b\" ", true),
            "echo \"Secret 1%s!é\" |  sudo -S /bin/mv -f \"/a\" \"/b\" ");
}
