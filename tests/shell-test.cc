// SPDX-License-Identifier: GPL-3.0-or-later
// Shell command lines, as real shells read them.
#include "base/shell.h"

#include "private-root.h"

using varnholt::path_argument;

TEST(Shell, HandsOnEveryByteOfAPath) {
  std::string path = "/p";
  for (int byte = 1; byte < 256; ++byte) path += static_cast<char>(byte);
  path += R"($(false) ${HOME} `id` \\" && ;|*?~!)";
  for (const auto& [given, received] : {std::pair{path, path}, {"-rf", "./-rf"}, {"", ""}}) {
    for (const char* const shell : {"dash", "bash"}) {
      const std::string command = "printf %s:%s " + path_argument(given) + " end";
      EXPECT_EQ(output_of({shell, "-c", command.c_str()}), received + ":end") << shell;
    }
  }
  EXPECT_EQ(path_argument("/data_bak/a b/é"), "\"/data_bak/a b/é\"");
}
