// SPDX-License-Identifier: GPL-3.0-or-later
// What the two dialogs for a definition share: their frame, a grid of captions and inputs, entries
// that keep what they cannot show and take dropped files, and which entry has the keyboard first.
#pragma once

#include <gtk/gtk.h>

#include <span>
#include <string>
#include <string_view>

namespace varnholt {

/** Puts a dialog over its parent, and gives it the buttons to cancel and, by default, to accept. */
void frame_form(GtkDialog* dialog, const char* title, GtkWindow* parent);

/** A new grid, floating. Captions and buttons keep their size, inputs take the spare width. */
GtkTable* new_grid(guint rows, guint columns);
void attach_small(GtkTable* grid, GtkWidget* widget, guint column, guint row);

/** Attaches a caption and the input it names, also to those who cannot see, as columns 0 and 1. */
void attach_row(GtkTable* grid, guint row, GtkLabel* caption, GtkWidget* input);

/** Attaches the same for an entry, in which Enter then stands for the default button. */
void attach_row(GtkTable* grid, guint row, GtkLabel* caption, GtkEntry* entry);

/** Writes a text into an entry, which shows it as well as it can. */
void set_entry_text(GtkEntry* entry, std::string_view text);

/**
 * The text of an entry without the white space at both ends: as it was written into it, byte for
 * byte, as long as the user has not changed what he sees.
 */
std::string entry_text(GtkEntry* entry);

/**
 * Has an entry take the path of a file or folder that is dropped on it, of several the first, in
 * place of its text. A dropped text goes into the text as ever.
 */
void take_dropped_paths(GtkEntry* entry);

/**
 * Runs a dialog from the first entry on whose value is empty, or from the first of all; returns the
 * response.
 */
int run_form(GtkDialog* dialog, std::span<GtkEntry* const> entries,
             std::string (*value_of)(GtkEntry*));

/** What to tell the user when a line of the profile would not give a text back; none when it would.
 */
const char* objection_to_field(std::string_view text);

}  // namespace varnholt
