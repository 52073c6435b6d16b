// SPDX-License-Identifier: GPL-3.0-or-later
// A window on the display, the user's hands, and answers to dialogs.
#include "display-test.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <gdk/gdkx.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>

#include "base/glib-ptr.h"
#include "ui/prompts.h"

using varnholt::FreeWith;
using varnholt::make_object;
using varnholt::take_text;

namespace {

constexpr gint64 patience = 5'000'000;  // microseconds
int releases_seen = 0;

Display* x_display() {
  return GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
}

void count_and_handle(GdkEvent* event, gpointer /*data*/) {
  gtk_main_do_event(event);
  if (event->type == GDK_BUTTON_RELEASE || event->type == GDK_KEY_RELEASE) ++releases_seen;
}

/** Processes events until it holds; fails when it takes too long. */
void wait_until(const std::function<bool()>& holds, const char* what) {
  const gint64 deadline = g_get_monotonic_time() + patience;
  while (!holds() && g_get_monotonic_time() < deadline) gtk_main_iteration_do(FALSE);
  EXPECT_TRUE(holds()) << "waited in vain for " << what;
}

/** Lets the server deliver what was faked, and waits until its last part has been handled. */
void await_release(int seen_before) {
  XFlush(x_display());
  wait_until([seen_before] { return releases_seen != seen_before; }, "a click or key to arrive");
}

void click_at(GdkWindow* inside, int x, int y) {
  int root_x = 0;
  int root_y = 0;
  gdk_window_get_root_coords(inside, x, y, &root_x, &root_y);
  const int before = releases_seen;
  XTestFakeMotionEvent(x_display(), -1, root_x, root_y, CurrentTime);
  XTestFakeButtonEvent(x_display(), 1, True, CurrentTime);
  XTestFakeButtonEvent(x_display(), 1, False, CurrentTime);
  await_release(before);
}

std::string cell_text(GtkTreeViewColumn* column) {
  const std::unique_ptr<GList, FreeWith<g_list_free>> cells{
      gtk_cell_layout_get_cells(GTK_CELL_LAYOUT(column))};
  if (GTK_IS_CELL_RENDERER_TOGGLE(cells->data)) {
    auto* const box = GTK_CELL_RENDERER_TOGGLE(cells->data);
    if (!gtk_cell_renderer_get_visible(GTK_CELL_RENDERER(box))) return "-";
    return gtk_cell_renderer_toggle_get_active(box) ? "[x]" : "[ ]";
  }
  char* text = nullptr;
  g_object_get(cells->data, "text", &text, nullptr);
  return take_text(text).get();
}

}  // namespace

DisplayTest::DisplayTest() {
  if (gtk_init_check(nullptr, nullptr)) return;
  std::fputs("No display: run the tests with ./test.\n", stderr);
  std::exit(EXIT_FAILURE);
}

void DisplayTest::SetUp() {
  g_log_set_always_fatal(
      static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING | G_LOG_LEVEL_ERROR));
  gdk_event_handler_set(count_and_handle, nullptr, nullptr);
  window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_default_size(GTK_WINDOW(window), 900, 780);
  main_s_main_window = make_object(GTK_WINDOW(window));
  m_looking = g_timeout_add(
      5,
      [](gpointer self) -> gboolean {
        static_cast<DisplayTest*>(self)->look_for_dialog();
        return TRUE;
      },
      this);
}

void DisplayTest::TearDown() {
  EXPECT_TRUE(m_expected.empty()) << "an expected dialog did not come";
  g_source_remove(m_looking);
  main_s_main_window = nullptr;
  gtk_widget_destroy(window);
  settle();
}

void DisplayTest::show(GtkWidget* widget) {
  gtk_container_add(GTK_CONTAINER(window), widget);
  gtk_widget_show_all(window);
  gtk_window_present(GTK_WINDOW(window));
  wait_until([this] { return gtk_window_has_toplevel_focus(GTK_WINDOW(window)); }, "the window");
  settle();
}

void DisplayTest::settle() {
  XSync(x_display(), False);
  while (gtk_events_pending()) gtk_main_iteration();
}

// Clicks first let the window arrange itself: what is clicked stands where it is looked for.

void DisplayTest::click(GtkWidget* widget) {
  settle();
  const auto& place = widget->allocation;
  click_at(gtk_widget_get_window(widget), place.x + place.width / 2, place.y + place.height / 2);
}

void DisplayTest::click(GtkTreeView* view, int row, int column) {
  settle();
  const std::unique_ptr<GtkTreePath, FreeWith<gtk_tree_path_free>> path{
      gtk_tree_path_new_from_indices(row, -1)};
  GdkRectangle cell{};
  gtk_tree_view_get_cell_area(view, path.get(), gtk_tree_view_get_column(view, column), &cell);
  click_at(gtk_tree_view_get_bin_window(view), cell.x + cell.width / 2, cell.y + cell.height / 2);
}

void DisplayTest::press(const std::string& keys) {
  std::istringstream words{keys};
  for (std::string key; words >> key;) {
    const int before = releases_seen;
    const auto code = XKeysymToKeycode(x_display(), XStringToKeysym(key.c_str()));
    XTestFakeKeyEvent(x_display(), code, True, CurrentTime);
    XTestFakeKeyEvent(x_display(), code, False, CurrentTime);
    await_release(before);
  }
}

void DisplayTest::expect_dialog(std::function<void(GtkDialog*)> deal) {
  m_expected.push_back(std::move(deal));
}

std::string DisplayTest::text_of(GtkDialog* dialog) {
  std::string text = gtk_window_get_title(GTK_WINDOW(dialog));
  find(gtk_dialog_get_content_area(dialog), [&text](GtkWidget* widget) {
    if (GTK_IS_LABEL(widget)) text += gtk_label_get_text(GTK_LABEL(widget));
    if (!GTK_IS_ENTRY(widget)) return false;
    text += pango_layout_get_text(gtk_entry_get_layout(GTK_ENTRY(widget)));
    return false;
  });
  return text;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the widgets are
GtkWidget* DisplayTest::find(GtkWidget* top, const std::function<bool(GtkWidget*)>& holds) {
  if (holds(top)) return top;
  if (!GTK_IS_CONTAINER(top)) return nullptr;
  const std::unique_ptr<GList, FreeWith<g_list_free>> children{
      gtk_container_get_children(GTK_CONTAINER(top))};
  for (GList* child = children.get(); child != nullptr; child = child->next) {
    if (auto* const found = find(GTK_WIDGET(child->data), holds)) return found;
  }
  return nullptr;
}

void DisplayTest::take_picture(const std::string& file) {
  const auto picture = varnholt::take_object(
      gdk_pixbuf_get_from_drawable(nullptr, gdk_get_default_root_window(), nullptr, 0, 0, 0, 0,
                                   gdk_screen_width(), gdk_screen_height()));
  EXPECT_TRUE(gdk_pixbuf_save(picture.get(), file.c_str(), "png", nullptr, nullptr));
}

void DisplayTest::look_for_dialog() {
  GtkWidget* const modal = gtk_grab_get_current();
  if (modal == nullptr || !GTK_IS_DIALOG(modal)) return;
  if (g_object_get_data(G_OBJECT(modal), "dealt-with") == nullptr) {
    // A key before that would go elsewhere.
    if (!gtk_window_has_toplevel_focus(GTK_WINDOW(modal))) return;
    g_object_set_data(G_OBJECT(modal), "dealt-with", modal);
    m_deadline = g_get_monotonic_time() + patience;
    if (!m_expected.empty()) {
      const auto deal = std::move(m_expected.front());
      m_expected.pop_front();
      deal(GTK_DIALOG(modal));
      return;
    }
    ADD_FAILURE() << "an unexpected dialog";
  } else if (g_get_monotonic_time() < m_deadline) {
    return;
  } else {
    ADD_FAILURE() << "a dialog stays";
  }
  gtk_dialog_response(GTK_DIALOG(modal), GTK_RESPONSE_NONE);
}

std::vector<std::string> table(GtkTreeView* view) {
  GtkTreeModel* const model = gtk_tree_view_get_model(view);
  std::vector<std::string> lines(1);
  GtkTreeViewColumn* column = nullptr;
  for (int number = 0; (column = gtk_tree_view_get_column(view, number)) != nullptr; ++number) {
    if (gtk_tree_view_column_get_visible(column) == 0) continue;
    const std::string between = number == 0 ? "" : " | ";
    lines[0] += between + gtk_tree_view_column_get_title(column);
    if (gtk_tree_view_column_get_resizable(column) != 0) lines[0] += '~';
    if (gtk_tree_view_column_get_expand(column) != 0) lines[0] += '+';
    GtkTreeIter iter{};
    std::size_t row = 0;
    for (auto more = gtk_tree_model_get_iter_first(model, &iter); more != 0;
         more = gtk_tree_model_iter_next(model, &iter)) {
      lines.resize(std::max(lines.size(), ++row + 1));
      gtk_tree_view_column_cell_set_cell_data(column, model, &iter, FALSE, FALSE);
      lines[row] += between + cell_text(column);
    }
  }
  return lines;
}
