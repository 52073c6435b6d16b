// SPDX-License-Identifier: GPL-3.0-or-later
// Owning pointers for windows, which the toolkit keeps until somebody destroys them.
#pragma once

#include <memory>

#include <gtk/gtk.h>

namespace varnholt::ui {

/** Destroys a window, unless that has happened already, and releases the reference to it. */
struct DestroyWindow {
  template <typename Window>
  void operator()(Window* owned) const noexcept {
    gtk_widget_destroy(GTK_WIDGET(owned));
    g_object_unref(owned);
  }
};

template <typename Window>
using WindowPtr = std::unique_ptr<Window, DestroyWindow>;

/** Takes a reference to a new window and returns it with its own type. */
template <typename Window>
WindowPtr<Window> own_window(gpointer window) noexcept {
  return WindowPtr<Window>{static_cast<Window*>(g_object_ref(window))};
}

}  // namespace varnholt::ui
