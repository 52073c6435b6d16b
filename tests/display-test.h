// SPDX-License-Identifier: GPL-3.0-or-later
// What the window tests share: a window on the display, the clicks and keys of a user, and answers
// to dialogs. The clicks and keys are real: the X server delivers them.
#pragma once

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

/** Lets each test act as the user. Any warning of GLib aborts the tests. */
class DisplayTest : public testing::Test {
 public:
  /** Processes all events that have arrived so far. */
  static void settle();

 protected:
  DisplayTest();
  void SetUp() override;
  void TearDown() override;

  /** Waits until the window is on the screen and has the keyboard. */
  void await_window();

  /** Presses and releases the first button in the middle of a widget, or of a cell of a table. */
  static void click(GtkWidget* widget);
  static void click(GtkTreeView* view, int row, int column, int times = 1);

  /** Drops files, or whatever else has an address, on a widget. */
  static void drop(GtkWidget* widget, const std::string& uris);

  /**
   * Presses and releases keys by their X names, for example "Tab Shift_L+Tab Return". A word after
   * "=" is typed. For a word after "^" it waits until the text of the dialog ends with that word.
   */
  static void press(const std::string& keys);

  /** Closes the window as the window manager's button does. */
  void ask_to_close();

  /** Lets `deal` handle the next dialog. The test fails when another dialog appears, or none. */
  void expect_dialog(std::function<void(GtkDialog*)> deal);

  /**
   * Returns the texts of a dialog: captions, "[text]" in an entry, "{chosen}", "[x] ticked",
   * "<button>", with ">" before the widget that has the keyboard and "~" before one that cannot be
   * used.
   */
  static std::string text_of(GtkDialog* dialog);

  /**
   * Returns a line for each widget in another, itself included: its type, its properties that
   * differ from the toolkit's defaults, and after ":" those of its place in the widget around it.
   */
  static std::vector<std::string> layout_of(GtkWidget* top);

  /** Returns the first widget in `top`, itself included, for which `holds` is true, or null. */
  static GtkWidget* find(GtkWidget* top, const std::function<bool(GtkWidget*)>& holds);

  GtkWidget* window = nullptr;

 private:
  void look_for_dialog();

  std::deque<std::function<void(GtkDialog*)>> m_expected;
  guint m_looking = 0;
  gint64 m_deadline = 0;
  GtkWidget* m_dealt_with = nullptr;
};

/** Turns the search for leaks off, where there is one, for what the toolkit does not free. */
void look_for_leaks(bool on);

/**
 * Returns the rows of a table as the user reads them, one line each: texts as they are, check boxes
 * as "[ ]" or "[x]", hidden ones as "-", with " | " between visible columns. The titles come first,
 * with "~" after that of a column that can be resized and "+" after one that takes spare width.
 */
std::vector<std::string> table(GtkTreeView* view);
