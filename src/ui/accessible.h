// SPDX-License-Identifier: GPL-3.0-or-later
// Names widgets for screen readers, where a caption beside a widget is not tied to it.
#pragma once

#include <gtk/gtk.h>

namespace varnholt::ui {

/** Makes the current text of `caption` the name of `widget` for a screen reader. */
inline void name_by(gpointer widget, gpointer caption) {
  AtkObject* const named = gtk_widget_get_accessible(GTK_WIDGET(widget));
  AtkObject* const naming = gtk_widget_get_accessible(GTK_WIDGET(caption));
  atk_object_add_relationship(named, ATK_RELATION_LABELLED_BY, naming);
}

}  // namespace varnholt::ui
