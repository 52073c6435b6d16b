// SPDX-License-Identifier: GPL-3.0-or-later
// The arguments as the program reads them without the toolkit, held against the toolkit's own way.
#include "start/arguments.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <clocale>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "base/glib-ptr.h"
#include "display-test.h"

namespace {

using Texts = std::vector<std::string>;
using Context = std::unique_ptr<GOptionContext, varnholt::FreeWith<g_option_context_free>>;

/** Returns a context with the toolkit's options, which does not initialise the toolkit. */
Context toolkit_context() {
  GOptionGroup* const toolkit = gtk_get_option_group(FALSE);
  g_option_group_set_parse_hooks(toolkit, nullptr, nullptr);
  Context context{g_option_context_new(nullptr)};
  g_option_context_set_main_group(context.get(), toolkit);
  g_option_context_set_ignore_unknown_options(context.get(), TRUE);
  g_option_context_set_help_enabled(context.get(), FALSE);
  return context;
}

std::vector<char*> pointers_to(Texts& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size());
  for (auto& text : texts) pointers.push_back(text.data());
  return pointers;
}

Texts as_the_toolkit_reads(Texts arguments) {
  auto pointers = pointers_to(arguments);
  auto count = static_cast<int>(pointers.size());
  pointers.push_back(nullptr);
  char** first = pointers.data();
  // The toolkit forgets the name of a display when another one is given.
  look_for_leaks(false);
  g_option_context_parse(toolkit_context().get(), &count, &first, nullptr);
  look_for_leaks(true);
  return {first, first + count};
}

Texts as_the_program_reads(Texts arguments) {
  const auto rest = varnholt::start::without_toolkit_options(pointers_to(arguments));
  return {rest.begin(), rest.end()};
}

TEST(Arguments, AreReadAsTheToolkitReadsThem) {
  const std::string locale = std::setlocale(LC_CTYPE, nullptr);
  ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
  std::vector<Texts> vectors{{},
                             {"--save_symlink"},
                             {"--nothing", "-x", "--save_symlink", "more"},
                             {"--", "--display", "--save_symlink"},
                             {"--display", "--save_symlink"},
                             {"--display", ":1", "--", "--sync", "--save_symlink"},
                             {"--screen", "none", "--name", "--save_symlink"},
                             {"--name", "中", "--display", "--save_symlink"},
                             {"--name", "\xff", "--display", "--save_symlink"},
                             {"--gtk-display", "--save_symlink"},
                             {"--g-name", "--save_symlink"},
                             {"--gtk-debug", "--save_symlink"},
                             {"--save_symlink", "--class"}};
  const auto help =
      varnholt::take_text(g_option_context_get_help(toolkit_context().get(), FALSE, nullptr));
  const std::string text = help.get();
  const std::regex option{"--[a-z-]+"};
  for (std::sregex_iterator it{text.begin(), text.end(), option}, end; it != end; ++it) {
    const auto name = it->str();
    vectors.insert(vectors.end(), {{name, "--save_symlink"},
                                   {name, "1", "--save_symlink"},
                                   {name + "=1", "--save_symlink"},
                                   {name + "x", "--save_symlink"},
                                   {name}});
  }
  EXPECT_GT(vectors.size(), 40U);
  for (const auto& words : vectors) {
    Texts arguments{"varnholt"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    SCOPED_TRACE(testing::PrintToString(arguments));
    EXPECT_EQ(as_the_program_reads(arguments), as_the_toolkit_reads(arguments));
  }
  std::setlocale(LC_CTYPE, locale.c_str());
}

}  // namespace
