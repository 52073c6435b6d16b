// SPDX-License-Identifier: GPL-3.0-or-later
// What no eye sees of the prompts: the name of the entry, and what memory keeps of a password.
#include "ui/prompts.h"

#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "display-test.h"

using varnholt::SecretPtr;

namespace {

/** Whether this process has a text in writable memory. The text comes reversed, so it is not us. */
bool remembers(const std::string& reversed) {
  constexpr std::size_t largest = std::size_t{1} << 28U;
  bool found = false;
  std::ifstream maps{"/proc/self/maps"};
  for (std::string line; std::getline(maps, line);) {
    std::size_t end = 0;
    const std::size_t from = std::stoul(line, &end, 16);
    const std::size_t to = std::stoul(line.substr(end + 1), nullptr, 16);
    if (line.find(" rw") == std::string::npos || to - from > largest) continue;
    std::vector<char> bytes(to - from);
    const iovec here{bytes.data(), bytes.size()};
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the address comes as a text
    const iovec there{reinterpret_cast<void*>(from), bytes.size()};
    if (process_vm_readv(getpid(), &here, 1, &there, 1, 0) < 0) continue;
    const auto at = std::search(bytes.begin(), bytes.end(), reversed.rbegin(), reversed.rend());
    found = found || at != bytes.end();
    explicit_bzero(bytes.data(), bytes.size());  // or the next search finds what this one read
  }
  return found;
}

}  // namespace

TEST_F(DisplayTest, PasswordLeavesNoTraceInMemory) {
  expect_dialog([](GtkDialog* dialog) {
    auto* const content = GTK_WIDGET(gtk_dialog_get_content_area(dialog));
    auto* const caption = find(content, [](GtkWidget* widget) { return GTK_IS_LABEL(widget); });
    EXPECT_EQ(gtk_label_get_mnemonic_widget(GTK_LABEL(caption)),
              gtk_window_get_focus(GTK_WINDOW(dialog)));
    gboolean warns = FALSE;
    g_object_get(gtk_window_get_focus(GTK_WINDOW(dialog)), "caps-lock-warning", &warns, nullptr);
    EXPECT_TRUE(warns);
    for (char letter = 'a'; letter <= 'z'; ++letter) press(std::string{letter});
    press("1 2 3 4 Return");
  });
  char* result = nullptr;
  ASSERT_TRUE(main_inputdlg(&result, "msg", "title"));
  SecretPtr secret{result};
  // The first words of what was freed are overwritten in any case, so the end tells.
  const std::string end = "4321zyxwvu";
  EXPECT_TRUE(remembers(end));
  secret = nullptr;
  EXPECT_FALSE(remembers(end));
}
