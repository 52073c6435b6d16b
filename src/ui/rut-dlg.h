// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog in which a static route is entered or changed.
#pragma once

#include <gtk/gtk.h>

#include <string>
#include <vector>

#include "base/glib-ptr.h"
#include "model/route.h"

namespace varnholt::ui {

struct RutDlgState {
  ObjectPtr<GtkTable> table;
  ObjectPtr<GtkLabel> name_label;
  ObjectPtr<GtkLabel> addr_label;
  ObjectPtr<GtkLabel> mask_label;
  ObjectPtr<GtkLabel> gw_label;
  ObjectPtr<GtkLabel> jup_label;
  ObjectPtr<GtkLabel> nic_label;
  ObjectPtr<GtkEntry> name_entry;
  ObjectPtr<GtkEntry> addr_entry;
  ObjectPtr<GtkEntry> mask_entry;
  ObjectPtr<GtkEntry> gw_entry;
  ObjectPtr<GtkEntry> jup_entry;
  ObjectPtr<GtkComboBox> nic_combo;
  /** The interfaces that nic_combo offers, row by row; the first one is empty, for none. */
  std::vector<std::string> nics;
};

}  // namespace varnholt::ui

/** The dialog. It is hidden until it is run, and stays on the screen until its caller hides it. */
struct VhRutDlg : GtkDialog, varnholt::ui::RutDlgState {
  VhRutDlg() = delete;
};

struct VhRutDlgClass : GtkDialogClass {};

GType vh_rut_dlg_get_type();

/**
 * Creates a dialog, or one of a derived type, over `parent`. Like every window it belongs to the
 * toolkit until it is destroyed. `title` may be null. It offers the network interfaces that exist
 * now.
 */
VhRutDlg* vh_rut_dlg_new(const char* title, GtkWindow* parent);
VhRutDlg* vh_rut_dlg_construct(GType object_type, const char* title, GtkWindow* parent);

/**
 * Runs the dialog until the user confirms values that can be a route, or leaves it in another way.
 * Returns the response, which is GTK_RESPONSE_ACCEPT when the user confirmed. The form of addresses
 * is not checked.
 */
int vh_rut_dlg_run(VhRutDlg* self);

/**
 * Stores the values as new texts, which the caller releases with g_free(), without white space at
 * both ends: name, address, mask, gateway, hop count and interface. A pointer may be null when its
 * value is not wanted. A text that no entry can show is returned as it was set, unless the user
 * changed it.
 */
void vh_rut_dlg_get_ndata(VhRutDlg* self, char** name, char** addr, char** mask, char** gawy,
                          char** jump, char** nic);

/** Sets the same values; an interface that the machine does not have counts as none. */
void vh_rut_dlg_set_ndata(VhRutDlg* self, const char* name, const char* addr, const char* mask,
                          const char* gawy, const char* jump, const char* nic);

/** Empties the entries; the interface stays chosen. */
void vh_rut_dlg_clear_entries(VhRutDlg* self);

/**
 * Stores in `nics` the network interfaces of the machine in the order of /proc/net/dev (see
 * proc(5)), without those whose names begin with "lo", such as the loopback one. Returns false,
 * with an empty list, when they cannot be read.
 */
bool vh_rut_dlg_get_nics(std::vector<std::string>* nics);
