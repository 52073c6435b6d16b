// SPDX-License-Identifier: GPL-3.0-or-later
// The common part of the dialogs for definitions and routes: their frame, a grid of captions and
// inputs, entries that keep what they cannot show and accept dropped files, and the entry that has
// the keyboard first.
#pragma once

#include <gtk/gtk.h>

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
 * Makes an entry accept a dropped file or folder: its path replaces the text of the entry. When
 * several are dropped, the first one counts. A dropped text is inserted as usual.
 */
void take_dropped_paths(GtkEntry* entry);

/**
 * Runs a dialog and returns the response. The keyboard starts in the first entry whose value is
 * empty, or in the first entry of all.
 */
int run_form(GtkDialog* dialog, std::span<GtkEntry* const> entries,
             std::string (*value_of)(GtkEntry*));

/** Returns a message when a field of the profile cannot keep a text, or null when it can. */
const char* objection_to_field(std::string_view text);

}  // namespace varnholt::ui
