// SPDX-License-Identifier: GPL-3.0-or-later
// The class Main, which ties the parts of the program together: the window, the commands of its
// buttons, and the profile that it loads and saves. Operations of the class that need no object of
// it are declared elsewhere: its link operations in linkbuilder/, its prompts in ui/prompts.h, and
// those on texts in store/profile.h.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "base/glib-ptr.h"
#include "linkbuilder/link-builder.h"
#include "linkbuilder/link-operations.h"
#include "store/profile.h"
#include "ui/bak-def-widget.h"
#include "ui/control-widget.h"
#include "ui/def-dlg.h"
#include "ui/prompts.h"
#include "ui/rut-def-widget.h"
#include "ui/rut-dlg.h"
#include "ui/window-ptr.h"

/** The path by which the program was started, as given; none before the start. */
inline varnholt::TextPtr main_s_exe_path;

namespace varnholt {

struct MainState {
  WindowPtr<GtkWindow> window;
  ObjectPtr<GtkVBox> main_box;
  ObjectPtr<GtkHBox> page_box;
  ObjectPtr<VhControlWidget> control_bar;
  /** The pages of file definitions, of routes, and of boot scripts. */
  ObjectPtr<VhBakDefWidget> lnk_table;
  ObjectPtr<VhRutDefWidget> rut_table;
  ObjectPtr<VhBakDefWidget> shl_table;
  /** The same in the order of the page buttons. */
  std::array<ObjectPtr<GtkWidget>, 3> pages;
  /** The index of the page shown; -1 until one is. */
  int cur_page = -1;
  /** The dialog of each page. */
  WindowPtr<VhDefDlg> lnk_dlg;
  WindowPtr<VhDefDlg> shl_dlg;
  WindowPtr<VhRutDlg> rut_dlg;
  ObjectPtr<GdkPixbuf> icon_pixbuf;
  ObjectPtr<GdkPixbuf> ribbon_pixbuf;
  ObjectPtr<GtkHBox> ribbon_box;
  ObjectPtr<GtkImage> ribbon_image;
  /** Why the stored profile could not be read at the start, as a GFileError value; it then stays.
   */
  std::optional<int> unread;
  /** Whether the save runs: what the user does meanwhile comes too late. */
  bool closing = false;
};

}  // namespace varnholt

/** The main window with its pages and dialogs. */
struct Main : GObject, varnholt::MainState {
  Main() = delete;
};

struct MainClass : GObjectClass {};

GType main_get_type();

/**
 * A new object, or one of a derived type, whose window is shown, with the profile loaded. Closing
 * the window saves the profile, has it applied, and ends the toolkit's main loop.
 */
Main* main_new();
Main* main_construct(GType object_type);

/** Shows one page, 0 to 2, and hides the others; any other number hides all. */
void main_show_stack_page(Main* self, int page);

/** Does what a button of the control bar stands for. */
void main_on_btns_clicked(Main* self, VhControlWidgetBtnType type);

/**
 * Loads the profile into the tables. Lines of no known kind, lines that cannot be read and those
 * that a table refuses are left out. A profile that cannot be read is told on standard error, a
 * missing one on standard output; the tables then stay as they are.
 */
void main_read(Main* self);

/**
 * Saves the definitions if they differ from the stored profile, as its next version: writes the
 * temporary profile and has it moved into place with root rights, for which it asks an ordinary
 * user's password. Then, when the backup script exists, hides the window and runs the link builder
 * and the backup script with the same rights. Returns when all that has ended. Progress goes to
 * standard output, failures to standard error; no failure replaces the stored profile.
 */
void main_save(Main* self);

/** Writes the profile without its version line, each line ended by a line feed, into `text`. */
void main_save_imp(Main* self, std::string* text);

/** Window mode: shows the main window and returns when it is gone. The toolkit must be started. */
void main_run_window();

/**
 * Runs the program with its arguments, its own name first, and their number: as link builder when,
 * apart from the toolkit's own options, one of them is "--save_symlink", else with a window. Always
 * returns 0.
 */
int main_main(char** argv, int argc);
