// SPDX-License-Identifier: GPL-3.0-or-later
// What tests of windows share: a window on the display, the user's hands, and answers to dialogs.
// The clicks and keys are real ones, which the X server delivers.
#pragma once

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

/** Gives each test the user's hands. Any warning of GLib ends a test. */
class DisplayTest : public testing::Test {
 public:
  /** Has all events processed that have come in so far. */
  static void settle();

 protected:
  DisplayTest();
  void SetUp() override;
  void TearDown() override;

  /** Waits until the window is on the screen and has the keyboard. */
  void await_window();

  /** Press and release the first button in the middle of a widget, or of a cell of a table. */
  static void click(GtkWidget* widget);
  static void click(GtkTreeView* view, int row, int column, int times = 1);

  /** Hands a widget what is dropped on it: files, or what else has an address. */
  static void drop(GtkWidget* widget, const std::string& uris);

  /**
   * Presses and releases keys by their X names, for example "Tab Shift_L+Tab Return". A word behind
   * "=" is typed, and one behind "^" is waited for as the end of what the dialog reads.
   */
  static void press(const std::string& keys);

  /** Closes the window as the window manager's button does. */
  void ask_to_close();

  /** Has the next dialog dealt with so. It fails the test when another one comes, or none. */
  void expect_dialog(std::function<void(GtkDialog*)> deal);

  /**
   * What a dialog reads: captions, "[text]" in an entry, "{chosen}", "[x] ticked", "<button>", with
   * ">" before what has the keyboard and "~" before what cannot be used.
   */
  static std::string text_of(GtkDialog* dialog);

  /**
   * Each widget in another, itself included, a line each: its type, what of it is not as the
   * toolkit makes it, and behind ":" the same for its place in the widget around it.
   */
  static std::vector<std::string> layout_of(GtkWidget* top);

  /** The first widget in another, itself included, for which it holds; null when there is none. */
  static GtkWidget* find(GtkWidget* top, const std::function<bool(GtkWidget*)>& holds);

  GtkWidget* window = nullptr;

 private:
  void look_for_dialog();

  std::deque<std::function<void(GtkDialog*)>> m_expected;
  guint m_looking = 0;
  gint64 m_deadline = 0;
  GtkWidget* m_dealt_with = nullptr;
};

/**
 * The rows of a table as the user reads them, one line each: texts as they stand, check boxes as
 * "[ ]" or "[x]", hidden ones as "-", with " | " between visible columns. The titles come first,
 * "~" behind that of a column which can be resized, "+" behind one which takes spare width.
 */
std::vector<std::string> table(GtkTreeView* view);
