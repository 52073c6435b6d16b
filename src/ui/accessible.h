// SPDX-License-Identifier: GPL-3.0-or-later
// Names for those who cannot see, where a caption stands beside a widget without being tied to it.
#pragma once

#include <gtk/gtk.h>

namespace varnholt {

/** Has the text of `caption`, whatever it says by then, name `widget` to a screen reader. */
inline void name_by(gpointer widget, gpointer caption) {
  AtkObject* const named = gtk_widget_get_accessible(GTK_WIDGET(widget));
  AtkObject* const naming = gtk_widget_get_accessible(GTK_WIDGET(caption));
  atk_object_add_relationship(named, ATK_RELATION_LABELLED_BY, naming);
}

}  // namespace varnholt
