// SPDX-License-Identifier: GPL-3.0-or-later
// The frame, the grid and the entries of the dialogs for a definition.
#include "ui/form.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "base/glib-ptr.h"
#include "base/signal.h"
#include "base/text.h"
#include "ui/prompts.h"

namespace varnholt::ui {
namespace {

constexpr auto* original_key = "varnholt-original";

using UriList = std::unique_ptr<char*, FreeWith<g_strfreev>>;
using TargetList = std::unique_ptr<GtkTargetList, FreeWith<gtk_target_list_unref>>;

/** A text that an entry cannot show, and the text that the entry shows instead. */
struct Original {
  std::string text;
  std::string seen;
};

/** Returns the path of the first file that was dropped, or null when it was not a file. */
TextPtr dropped_path(GtkSelectionData* dropped) {
  const UriList uris{gtk_selection_data_get_uris(dropped)};
  if (!uris || *uris == nullptr) return {};
  return take_text(g_filename_from_uri(*uris, nullptr, nullptr));
}

bool is_missing(const Field& field) {
  return field.value.empty() && !field.may_be_empty;
}

}  // namespace

void frame_form(GtkDialog* dialog, const char* title, GtkWindow* parent) {
  auto* const window = GTK_WINDOW(dialog);
  gtk_window_set_title(window, title);
  gtk_window_set_transient_for(window, parent);
  gtk_window_set_position(window, GTK_WIN_POS_CENTER_ON_PARENT);
  gtk_dialog_add_button(dialog, "取消(_C)", GTK_RESPONSE_CANCEL);
  gtk_dialog_add_button(dialog, "确定(_O)", GTK_RESPONSE_ACCEPT);
  gtk_dialog_set_default_response(dialog, GTK_RESPONSE_ACCEPT);
}

GtkTable* new_grid(guint rows, guint columns) {
  auto* const grid = GTK_TABLE(gtk_table_new(rows, columns, FALSE));
  gtk_table_set_col_spacings(grid, 3);
  return grid;
}

void attach_small(GtkTable* grid, GtkWidget* widget, guint column, guint row) {
  gtk_table_attach(grid, widget, column, column + 1, row, row + 1, GTK_SHRINK, GTK_SHRINK, 0, 0);
}

void attach_row(GtkTable* grid, guint row, GtkLabel* caption, GtkWidget* input) {
  attach_small(grid, GTK_WIDGET(caption), 0, row);
  constexpr auto wide = static_cast<GtkAttachOptions>(GTK_EXPAND | GTK_FILL);
  gtk_table_attach(grid, input, 1, 2, row, row + 1, wide, GTK_FILL, 0, 0);
  gtk_label_set_mnemonic_widget(caption, input);
}

void attach_row(GtkTable* grid, guint row, GtkLabel* caption, GtkEntry* entry) {
  attach_row(grid, row, caption, GTK_WIDGET(entry));
  gtk_entry_set_activates_default(entry, TRUE);
  // The width is in characters: the toolkit's usual width in pixels is too small for large fonts.
  gtk_entry_set_width_chars(entry, 18);
}

void set_entry_text(GtkEntry* entry, std::string_view text) {
  gtk_entry_set_text(entry, shown(text).c_str());
  auto original =
      std::make_unique<Original>(Original{std::string{text}, gtk_entry_get_text(entry)});
  if (original->text == original->seen) original.reset();
  g_object_set_data_full(G_OBJECT(entry), original_key, original.release(), [](gpointer data) {
    std::unique_ptr<Original>{static_cast<Original*>(data)};
  });
}

std::string entry_text(GtkEntry* entry) {
  const std::string_view seen = gtk_entry_get_text(entry);
  const auto* const original =
      static_cast<const Original*>(g_object_get_data(G_OBJECT(entry), original_key));
  const bool untouched = original != nullptr && original->seen == seen;
  return std::string{trimmed(untouched ? original->text : seen)};
}

void take_dropped_paths(GtkEntry* entry, std::function<void(const char* path)> take) {
  // A file manager also offers its files as a text; the entry takes the first kind that both name.
  const TargetList kinds{gtk_target_list_new(nullptr, 0)};
  gtk_target_list_add_uri_targets(kinds.get(), 0);
  gtk_target_list_add_text_targets(kinds.get(), 0);
  gtk_drag_dest_set_target_list(GTK_WIDGET(entry), kinds.get());
  connect(entry, "drag-data-received", entry,
          [take = std::move(take)](GtkEntry* hit, GdkDragContext* drag, int /*x*/, int /*y*/,
                                   GtkSelectionData* dropped, guint /*info*/, guint time) {
            const auto path = dropped_path(dropped);
            if (!path) return;
            take(path.get());
            gtk_drag_finish(drag, TRUE, FALSE, time);
            g_signal_stop_emission_by_name(hit, "drag-data-received");
          });
}

std::optional<Objection> objection_to_empty(std::span<const Field> fields) {
  const auto empty = std::ranges::find_if(fields, is_missing);
  if (empty == fields.end()) return std::nullopt;
  return Objection{empty->entry, empty->name + "不能为空"};
}

std::optional<Objection> objection_to_unfit(std::span<const Field> fields) {
  const auto unfit = std::ranges::find_if_not(fields, fits_field, &Field::value);
  if (unfit == fields.end()) return std::nullopt;
  return Objection{unfit->entry, unfit->name + "不能包含逗号或换行,也不能以空格结尾"};
}

GtkEntry* tell(const Objection& objection) {
  main_alter(objection.message.c_str(), GTK_BUTTONS_CLOSE);
  return objection.entry;
}

GtkEntry* first_to_fill(std::span<const Field> fields) {
  const auto empty = std::ranges::find_if(fields, is_missing);
  return (empty == fields.end() ? fields.begin() : empty)->entry;
}

int run_form(GtkDialog* dialog, GtkEntry* start) {
  gtk_widget_grab_focus(GTK_WIDGET(start));
  // A message is shown over the main window and leaves the keyboard there.
  gtk_window_present(GTK_WINDOW(dialog));
  return gtk_dialog_run(dialog);
}

}  // namespace varnholt::ui
