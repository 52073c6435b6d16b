// SPDX-License-Identifier: GPL-3.0-or-later
// The message box and the question for a password.
#include "ui/prompts.h"

#include "base/text.h"
#include "ui/window-ptr.h"

namespace {

/**
 * Adds an entry for a password, with a caption above it that also names the entry for screen
 * readers.
 */
GtkEntry* add_password_entry(GtkDialog* dialog, const char* msg) {
  auto* const entry = GTK_ENTRY(gtk_entry_new());
  g_object_set(entry, "invisible-char-set", TRUE, "caps-lock-warning", TRUE, nullptr);
  gtk_entry_set_visibility(entry, FALSE);
  gtk_entry_set_invisible_char(entry, '*');
  gtk_entry_set_activates_default(entry, TRUE);
  GtkWidget* const caption = gtk_label_new(varnholt::shown(msg).c_str());
  gtk_label_set_mnemonic_widget(GTK_LABEL(caption), GTK_WIDGET(entry));
  GtkWidget* const table = gtk_table_new(2, 1, FALSE);
  gtk_table_attach_defaults(GTK_TABLE(table), caption, 0, 1, 0, 1);
  gtk_table_attach_defaults(GTK_TABLE(table), GTK_WIDGET(entry), 0, 1, 1, 2);
  gtk_widget_show_all(table);
  gtk_box_pack_start(GTK_BOX(gtk_dialog_get_content_area(dialog)), table, TRUE, TRUE, 0);
  return entry;
}

}  // namespace

GtkWindow* main_get_main_window() {
  return main_s_main_window ? varnholt::make_object(main_s_main_window.get()).release() : nullptr;
}

int main_alter(const char* msg, GtkButtonsType buttons) {
  g_return_val_if_fail(msg != NULL, 0);
  if (!main_s_main_window) return GTK_RESPONSE_YES;
  return varnholt::ui::show_message(GTK_MESSAGE_WARNING, msg, buttons);
}

int varnholt::ui::show_message(GtkMessageType type, const char* msg, GtkButtonsType buttons) {
  const auto parent = varnholt::take_object(main_get_main_window());
  const auto box = varnholt::ui::own_window<GtkDialog>(gtk_message_dialog_new(
      parent.get(), GTK_DIALOG_MODAL, type, buttons, "%s", varnholt::shown(msg).c_str()));
  // A path is one word and may be wider than the screen.
  gtk_container_foreach(
      GTK_CONTAINER(gtk_message_dialog_get_message_area(GTK_MESSAGE_DIALOG(box.get()))),
      [](GtkWidget* text, gpointer /*data*/) {
        gtk_label_set_line_wrap_mode(GTK_LABEL(text), PANGO_WRAP_WORD_CHAR);
      },
      nullptr);
  return gtk_dialog_run(box.get());
}

bool main_inputdlg(char** result, const char* msg, const char* title) {
  if (result != nullptr) *result = nullptr;
  g_return_val_if_fail(msg != NULL, false);
  if (result != nullptr) *result = varnholt::give_text("");
  const auto parent = varnholt::take_object(main_get_main_window());
  const auto dialog = varnholt::ui::own_window<GtkDialog>(
      gtk_dialog_new_with_buttons(title, parent.get(), GTK_DIALOG_MODAL, "确定",
                                  GTK_RESPONSE_ACCEPT, "取消", GTK_RESPONSE_CANCEL, nullptr));
  gtk_dialog_set_default_response(dialog.get(), GTK_RESPONSE_ACCEPT);
  GtkEntry* const entry = add_password_entry(dialog.get(), msg);
  const bool confirmed = gtk_dialog_run(dialog.get()) == GTK_RESPONSE_ACCEPT;
  if (confirmed && result != nullptr) {
    const auto nothing = varnholt::take_text(*result);
    *result = varnholt::give_text(varnholt::trimmed(gtk_entry_get_text(entry)));
  }
  return confirmed;
}
