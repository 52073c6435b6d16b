// SPDX-License-Identifier: GPL-3.0-or-later
// The common part of the dialogs for definitions and routes: their frame, a grid of captions and
// inputs, entries that keep what they cannot show and accept dropped files, and the entry that has
// the keyboard first.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace varnholt::ui {

/** Places a dialog over its parent, with a button to cancel and a default one to accept. */
void frame_form(GtkDialog* dialog, const char* title, GtkWindow* parent);

/** Creates a floating grid. Captions and buttons keep their size, inputs take the spare width. */
GtkTable* new_grid(guint rows, guint columns);
void attach_small(GtkTable* grid, GtkWidget* widget, guint column, guint row);

/**
 * Attaches a caption and its input as columns 0 and 1. The caption also names the input for screen
 * readers.
 */
void attach_row(GtkTable* grid, guint row, GtkLabel* caption, GtkWidget* input);

/** Does the same for an entry, in which Enter then presses the default button. */
void attach_row(GtkTable* grid, guint row, GtkLabel* caption, GtkEntry* entry);

/** Writes a text into an entry, which shows it as well as it can. */
void set_entry_text(GtkEntry* entry, std::string_view text);

/**
 * Returns the text of an entry without the white space at both ends: the text that was written into
 * it, byte for byte, as long as the user has not changed what the entry shows.
 */
std::string entry_text(GtkEntry* entry);

/**
 * Makes an entry accept a dropped file or folder, whose path is passed to `take`. When several are
 * dropped, the first one counts. A dropped text is inserted as usual.
 */
void take_dropped_paths(GtkEntry* entry, std::function<void(const char* path)> take);

/** An entry of a dialog, what messages call it, and its value. */
struct Field {
  GtkEntry* entry;
  std::string name;
  std::string value;
  bool may_be_empty = false;
};

/** What is wrong with a value, and the entry in which it can be put right. */
struct Objection {
  GtkEntry* entry;
  std::string message;
};

/** Returns an objection to the first field that is empty and must not be. */
std::optional<Objection> objection_to_empty(std::span<const Field> fields);

/** Returns an objection to the first field whose value the profile cannot keep. */
std::optional<Objection> objection_to_unfit(std::span<const Field> fields);

/** Shows an objection in a box, and returns the entry in which it can be put right. */
GtkEntry* tell(const Objection& objection);

/**
 * Returns the entry to fill in first: that of the first field that is empty and must not be, or the
 * first one of all.
 */
GtkEntry* first_to_fill(std::span<const Field> fields);

/** Runs a dialog, with the keyboard in an entry at first, and returns the response. */
int run_form(GtkDialog* dialog, GtkEntry* start);

}  // namespace varnholt::ui
