// SPDX-License-Identifier: GPL-3.0-or-later
// The class Main, which ties the parts of the program together: the window, the commands of its
// buttons, and the profile that it loads and saves. Functions of the class that need no object of
// it are declared elsewhere: its start in start/start.h, its link operations in linkbuilder/, its
// prompts in ui/prompts.h, and those on texts in store/profile.h.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "base/glib-ptr.h"
#include "store/profile.h"
#include "ui/bak-def-widget.h"
#include "ui/control-widget.h"
#include "ui/def-dlg.h"
#include "ui/prompts.h"
#include "ui/rut-def-widget.h"
#include "ui/rut-dlg.h"
#include "ui/window-ptr.h"

/**
 * The path with which the program was started, as it was given; null before the start, and where
 * there is no window.
 */
inline varnholt::TextPtr main_s_exe_path;

namespace varnholt::app {

struct MainState {
  ui::WindowPtr<GtkWindow> window;
  ObjectPtr<GtkVBox> main_box;
  ObjectPtr<GtkHBox> page_box;
  ObjectPtr<VhControlWidget> control_bar;
  /** The pages of file definitions, of routes, and of boot scripts. */
  ObjectPtr<VhBakDefWidget> lnk_table;
  ObjectPtr<VhRutDefWidget> rut_table;
  ObjectPtr<VhBakDefWidget> shl_table;
  /** The same pages in the order of the page buttons. */
  std::array<ObjectPtr<GtkWidget>, 3> pages;
  /** The index of the page that was shown last; -1 before the first one. */
  int cur_page = -1;
  /** The dialog of each page. */
  ui::WindowPtr<VhDefDlg> lnk_dlg;
  ui::WindowPtr<VhDefDlg> shl_dlg;
  ui::WindowPtr<VhRutDlg> rut_dlg;
  ObjectPtr<GdkPixbuf> icon_pixbuf;
  ObjectPtr<GdkPixbuf> ribbon_pixbuf;
  ObjectPtr<GtkHBox> ribbon_box;
  ObjectPtr<GtkImage> ribbon_image;
  /** The GFileError code of a failed read at the start; the stored profile is then left alone. */
  std::optional<int> unread;
  /** Whether the save is running. A request to close the window is then ignored. */
  bool closing = false;
};

}  // namespace varnholt::app

/** The main window with its pages and dialogs. */
struct Main : GObject, varnholt::app::MainState {
  Main() = delete;
};

struct MainClass : GObjectClass {};

GType main_get_type();

/**
 * Creates an object, or one of a derived type, shows its window and loads the profile. Closing the
 * window saves the profile, applies it, and ends the toolkit's main loop.
 */
Main* main_new();
Main* main_construct(GType object_type);

/** Shows one page, 0 to 2, and hides the others; any other number hides all. */
void main_show_stack_page(Main* self, int page);

/** Performs the action of a button of the control bar. */
void main_on_btns_clicked(Main* self, VhControlWidgetBtnType type);

/**
 * Loads the profile into the tables. Lines of an unknown kind, lines that cannot be read and lines
 * that a table refuses are left out. A profile that cannot be read is reported on standard error, a
 * missing one on standard output; the tables then stay as they are.
 */
void main_read(Main* self);

/**
 * Saves the definitions as the next version of the profile if they differ from the stored one:
 * writes the temporary profile and moves it into place with root rights, for which it asks an
 * ordinary user for the password. Then, when the backup script exists, hides the window and runs
 * the link builder and the backup script with the same rights. Returns when all that has ended.
 * Prints progress to standard output and failures to standard error. A failure leaves the stored
 * profile as it was, unless mv(1) is interrupted between two file systems.
 */
void main_save(Main* self);

/** Stores the profile without its version line in `text`; each line ends with a line feed. */
void main_save_imp(Main* self, std::string* text);

/** Runs window mode until the main window is gone. The toolkit must be initialised. */
void main_run_window();
