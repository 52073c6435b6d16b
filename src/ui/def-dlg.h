// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog in which a file definition or a boot script is entered or changed.
#pragma once

#include <gtk/gtk.h>

#include "base/glib-ptr.h"
#include "model/bak-model.h"

namespace varnholt::ui {

struct DefDlgState {
  ObjectPtr<GtkTable> table;
  ObjectPtr<GtkLabel> from_label;
  ObjectPtr<GtkLabel> to_label;
  ObjectPtr<GtkEntry> from_entry;
  ObjectPtr<GtkEntry> to_entry;
  /** These buttons open the file chooser for the entry beside them. */
  ObjectPtr<GtkButton> from_btn;
  ObjectPtr<GtkButton> to_btn;
  ObjectPtr<GtkLabel> action_label;
  ObjectPtr<GtkRadioButton> append_rb;
  ObjectPtr<GtkRadioButton> overwrite_rb;
  ObjectPtr<GtkHBox> action_box;
  /** When this is ticked, the chooser selects files, not folders. */
  ObjectPtr<GtkCheckButton> select_file_cb;
  /** 1 while the dialog offers select_file_cb. */
  int select_file_shown = 0;
  /** When this is ticked, the definition is a symbolic link. */
  ObjectPtr<GtkCheckButton> jnt_cb;
  /** 1 when the dialog offers jnt_cb. */
  int jnt_enabled = 0;
  /** 0 for file definitions, 1 for boot scripts. */
  int is_shell = 0;
};

}  // namespace varnholt::ui

/** The dialog. It is hidden until it is run, and stays on the screen until its caller hides it. */
struct VhDefDlg : GtkDialog, varnholt::ui::DefDlgState {
  VhDefDlg() = delete;
};

struct VhDefDlgClass : GtkDialogClass {};

GType vh_def_dlg_get_type();

/**
 * Creates a dialog, or one of a derived type, over `parent`. Like every window it belongs to the
 * toolkit until it is destroyed. `title` may be null.
 */
VhDefDlg* vh_def_dlg_new(int is_shell, const char* title, GtkWindow* parent);
VhDefDlg* vh_def_dlg_construct(GType object_type, int is_shell, const char* title,
                               GtkWindow* parent);

/**
 * Runs the dialog until the user confirms values that can be a definition, or leaves it in another
 * way. Returns the response, which is GTK_RESPONSE_ACCEPT when the user confirmed. When `is_edit`
 * is 1, an ordinary definition cannot become a symbolic one, or the other way round.
 */
int vh_def_dlg_run(VhDefDlg* self, int is_edit);

/**
 * Stores the two paths as new texts, which the caller releases with g_free(), and the operation,
 * which is Update, OverWrite or Symbolic. A pointer may be null when its value is not wanted. The
 * second function sets the same values.
 */
void vh_def_dlg_get_ndata(VhDefDlg* self, char** from, char** to, VhFileOperationType* op);
void vh_def_dlg_set_ndata(VhDefDlg* self, const char* from_loc, const char* to_loc,
                          VhFileOperationType op);

/**
 * Returns the path in an entry as a new text, without white space at both ends and without one "/"
 * at the end. A path that no entry can show is returned as it was set, unless the user changed it.
 * The last two functions set the paths.
 */
char* vh_def_dlg_get_from_location(VhDefDlg* self);
char* vh_def_dlg_get_to_location(VhDefDlg* self);
void vh_def_dlg_set_from_location(VhDefDlg* self, const char* val);
void vh_def_dlg_set_to_location(VhDefDlg* self, const char* val);

/**
 * Returns or sets the chosen operation. Any flags may be set; an operation that is neither symbolic
 * nor update counts as overwrite.
 */
VhFileOperationType vh_def_dlg_get_file_operation_type(VhDefDlg* self);
void vh_def_dlg_set_file_operation_type(VhDefDlg* self, VhFileOperationType op);

/** Empties both entries; check boxes and buttons stay as they are. */
void vh_def_dlg_clear_entries(VhDefDlg* self);

/** Shows the widgets for a symbolic definition, or for an ordinary one when `on` is 0. */
void vh_def_dlg_update_ui(VhDefDlg* self, int on);

/** Updates the dialog after `cb`, the check box for symbolic links, was toggled. */
void vh_def_dlg_on_jnt_toggled(VhDefDlg* self, GtkToggleButton* cb);

/** Lets the user choose the path for the entry beside `btn`. */
void vh_def_dlg_on_btns_clicked(VhDefDlg* self, GtkButton* btn);

/** Connects the handlers above. */
void vh_def_dlg_attach_signals(VhDefDlg* self);
