// SPDX-License-Identifier: GPL-3.0-or-later
// Shell command lines, as real shells read them.
#include "base/shell.h"

#include "private-root.h"
#include "store/root-rights.h"

using varnholt::command_word;
using varnholt::path_argument;

TEST(Shell, HandsOnEveryByteOfAPath) {
  std::string path = "/p";
  for (int byte = 1; byte < 256; ++byte) path += static_cast<char>(byte);
  path += R"($(false) ${HOME} `id` \" && ;|*?~!)";
  for (const auto& [given, received] : {std::pair{path, path}, {"-rf", "./-rf"}, {"", ""}}) {
    for (const char* const shell : {"dash", "bash"}) {
      for (const auto& word : {path_argument(given), command_word(given)}) {
        const std::string command = "printf %s:%s " + word + " end";
        EXPECT_EQ(output_of({shell, "-c", command.c_str()}), received + ":end") << shell;
      }
    }
  }
  EXPECT_EQ(path_argument("/data_bak/a b/é"), "\"/data_bak/a b/é\"");
  EXPECT_EQ(command_word("/usr/local/bin/a-b_c.1"), "/usr/local/bin/a-b_c.1");
  for (const auto* odd : {"/p q", "/it's", "/a=b", "~", "a=b/c"}) {
    EXPECT_EQ(command_word(odd).front(), '\'') << odd;
  }
}

TEST(RootRights, HandThePasswordOnByteForByte) {
  using varnholt::sudo_command;
  EXPECT_EQ(sudo_command("Secret 1%s!é", "/bin/mv -f \"/a\" \"/b\" ", true),
            "echo \"Secret 1%s!é\" |  sudo -S /bin/mv -f \"/a\" \"/b\" ");
  EXPECT_EQ(sudo_command("", "x", false), "echo \"\" |  sudo -S x");
  std::string every_byte;
  for (int byte = 1; byte < 256; ++byte) every_byte += static_cast<char>(byte);
  for (const char* const shell : {"/bin/dash", "/bin/bash"}) {
    const bool reads_escapes = varnholt::echo_reads_escapes(shell);
    for (const std::string& password : {every_byte, std::string{R"(\n\\c\0101)"}, std::string{"-n"},
                                        std::string{"-neE"}, std::string{"é\"$x`id`'\\"}}) {
      // Another sudo, which shows what it reads.
      const auto line =
          "sudo() { cat; }; " + std::string{sudo_command(password, "x", reads_escapes)};
      const auto read = output_of({shell, "-c", line.c_str()});
      EXPECT_EQ(read.substr(0, password.size() + 1), password + '\n') << shell;
    }
  }
}
