// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog in which the user chooses a file or a folder.
#include "ui/path-chooser.h"

#include <gtk/gtk.h>

#include "base/diagnostics.h"
#include "base/path.h"
#include "base/signal.h"
#include "ui/prompts.h"
#include "ui/window-ptr.h"

namespace varnholt::ui {
namespace {

/** Starts a chooser at the path, or at the nearest folder above it that exists. */
void point_at(GtkFileChooser* chooser, std::string path, bool folder) {
  if (!path.starts_with('/')) path = "/";
  if (!folder && !is_folder(path) && exists(path)) {
    gtk_file_chooser_set_filename(chooser, path.c_str());
    return;
  }
  while (!is_folder(path) && path != "/") path = take_text(g_path_get_dirname(path.c_str())).get();
  gtk_file_chooser_set_current_folder(chooser, path.c_str());
}

WindowPtr<GtkDialog> new_chooser(const std::string& start, bool folder) {
  // The toolkit keeps its list of recent files in this folder, and warns when it cannot.
  g_mkdir_with_parents(g_get_user_data_dir(), 0700);
  const auto parent = take_object(main_get_main_window());
  auto dialog = own_window<GtkDialog>(gtk_file_chooser_dialog_new(
      "选择文件夹", parent.get(),
      folder ? GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER : GTK_FILE_CHOOSER_ACTION_OPEN, "取消",
      GTK_RESPONSE_CANCEL, "确定", GTK_RESPONSE_ACCEPT, nullptr));
  gtk_dialog_set_default_response(dialog.get(), GTK_RESPONSE_ACCEPT);
  auto* const chooser = GTK_FILE_CHOOSER(dialog.get());
  gtk_file_chooser_set_local_only(chooser, TRUE);
  gtk_file_chooser_set_select_multiple(chooser, FALSE);
  // If this were set earlier, the chooser would go back to the setting of the last time.
  connect(chooser, "map", chooser,
          [](GtkFileChooser* mapped) { gtk_file_chooser_set_show_hidden(mapped, TRUE); });
  point_at(chooser, start, folder);
  return dialog;
}

}  // namespace

TextPtr choose_path(const std::string& start, bool folder) {
  if (folder) print_progress("select folder \n");
  const auto dialog = new_chooser(start, folder);
  if (gtk_dialog_run(dialog.get()) != GTK_RESPONSE_ACCEPT) return {};
  auto* const chooser = GTK_FILE_CHOOSER(dialog.get());
  // There is no current folder while the recently used files are displayed.
  if (folder) return take_text(gtk_file_chooser_get_current_folder(chooser));
  print_progress("enter  file \n");
  return take_text(gtk_file_chooser_get_filename(chooser));
}

}  // namespace varnholt::ui
