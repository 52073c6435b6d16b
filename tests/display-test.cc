// SPDX-License-Identifier: GPL-3.0-or-later
// Uses a window on the display as a user does, and answers dialogs.
#include "display-test.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <dlfcn.h>
#include <gdk/gdkx.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <span>
#include <sstream>

#include "base/glib-ptr.h"

using varnholt::FreeWith;
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

GtkDialog* modal_dialog() {
  return GTK_DIALOG(gtk_widget_get_toplevel(gtk_grab_get_current()));
}

/** Processes events until `holds` returns true. Fails the test when that takes too long. */
void wait_until(const std::function<bool()>& holds, const char* what) {
  const gint64 deadline = g_get_monotonic_time() + patience;
  while (!holds() && g_get_monotonic_time() < deadline) gtk_main_iteration_do(FALSE);
  EXPECT_TRUE(holds()) << "waited in vain for " << what;
}

/** Lets the server deliver the faked events, and waits until the last release has been handled. */
void await_releases(int seen_before, std::size_t released = 1) {
  XFlush(x_display());
  const int expected = seen_before + static_cast<int>(released);
  wait_until([expected] { return releases_seen >= expected; }, "a click or key to arrive");
}

void click_at(GdkWindow* inside, int x, int y, int times = 1) {
  int root_x = 0;
  int root_y = 0;
  gdk_window_get_root_coords(inside, x, y, &root_x, &root_y);
  XTestFakeMotionEvent(x_display(), -1, root_x, root_y, CurrentTime);
  for (int time = 0; time < times; ++time) {
    const int before = releases_seen;
    XTestFakeButtonEvent(x_display(), 1, True, CurrentTime);
    XTestFakeButtonEvent(x_display(), 1, False, CurrentTime);
    await_releases(before);
    // After a change the columns of a table have no width until it is drawn again.
    if (time + 1 < times) DisplayTest::settle();
  }
}

void press_all(const std::vector<KeySym>& chord) {
  const int before = releases_seen;
  for (const bool down : {true, false}) {
    for (const auto key : chord) {
      XTestFakeKeyEvent(x_display(), XKeysymToKeycode(x_display(), key), down, CurrentTime);
    }
  }
  await_releases(before, chord.size());
}

/** Types a text of ASCII characters. */
void type(const std::string& text) {
  for (const auto letter : text) {
    const KeySym key = static_cast<unsigned char>(letter);
    const auto code = XKeysymToKeycode(x_display(), key);
    const bool shifted = XkbKeycodeToKeysym(x_display(), code, 0, 0) != key;
    press_all(shifted ? std::vector<KeySym>{XK_Shift_L, key} : std::vector<KeySym>{key});
  }
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

/**
 * Returns the properties of a widget, or of its place in `around`, that differ from their defaults
 * and are not mere state.
 */
std::string changed_properties(GtkWidget* widget, GtkWidget* around) {
  static const std::set<std::string> state{
      "can-focus",      "composite-child",  "events",        "has-focus",    "has-toplevel-focus",
      "invisible-char", "is-active",        "is-focus",      "name",         "orientation",
      "position",       "receives-default", "scroll-offset", "storage-type", "visible"};
  auto* const klass = G_OBJECT_GET_CLASS(around == nullptr ? widget : around);
  guint count = 0;
  const std::unique_ptr<GParamSpec*, FreeWith<g_free>> all{
      around == nullptr ? g_object_class_list_properties(klass, &count)
                        : gtk_container_class_list_child_properties(klass, &count)};
  std::string changed;
  for (auto* each : std::span{all.get(), count}) {
    const bool text = g_value_type_transformable(each->value_type, G_TYPE_STRING) != 0;
    if (!text || (each->flags & G_PARAM_READABLE) == 0 || state.contains(each->name)) continue;
    GValue value = G_VALUE_INIT;
    g_value_init(&value, each->value_type);
    if (around == nullptr) {
      g_object_get_property(G_OBJECT(widget), each->name, &value);
    } else {
      gtk_container_child_get_property(GTK_CONTAINER(around), widget, each->name, &value);
    }
    if (g_param_value_defaults(each, &value) == 0) {
      changed +=
          ' ' + std::string{each->name} + '=' + take_text(g_strdup_value_contents(&value)).get();
    }
    g_value_unset(&value);
  }
  return changed;
}

/** Returns the text of one widget of a dialog; empty when it has none of its own. */
std::string text_of_widget(GtkWidget* widget) {
  if (GTK_IS_ENTRY(widget)) {
    return '[' + std::string{pango_layout_get_text(gtk_entry_get_layout(GTK_ENTRY(widget)))} + ']';
  }
  if (GTK_IS_COMBO_BOX_TEXT(widget)) {
    const auto chosen = take_text(gtk_combo_box_text_get_active_text(GTK_COMBO_BOX_TEXT(widget)));
    return '{' + std::string{chosen ? chosen.get() : "-"} + '}';
  }
  if (GTK_IS_TOGGLE_BUTTON(widget) && gtk_button_get_label(GTK_BUTTON(widget)) != nullptr) {
    const bool on = gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(widget));
    return (on ? "[x] " : "[ ] ") + std::string{gtk_button_get_label(GTK_BUTTON(widget))};
  }
  if (GTK_IS_BUTTON(widget)) {
    const char* const label = gtk_button_get_label(GTK_BUTTON(widget));
    return label == nullptr ? "" : '<' + std::string{label} + '>';
  }
  const bool in_button = gtk_widget_get_ancestor(widget, gtk_button_get_type()) != nullptr;
  return GTK_IS_LABEL(widget) && !in_button ? gtk_label_get_text(GTK_LABEL(widget)) : "";
}

/** Returns a chooser's title, what it chooses, and its current folder or its chosen file. */
std::string text_of_chooser(GtkFileChooser* chooser) {
  const bool folders =
      gtk_file_chooser_get_action(chooser) == GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER;
  auto* const path_of =
      folders ? gtk_file_chooser_get_current_folder : gtk_file_chooser_get_filename;
  wait_until([&] { return take_text(path_of(chooser)) != nullptr; }, "the chooser's path");
  EXPECT_TRUE(gtk_file_chooser_get_show_hidden(chooser));
  EXPECT_TRUE(gtk_file_chooser_get_local_only(chooser));
  return std::string{gtk_window_get_title(GTK_WINDOW(chooser))} +
         (folders ? " | a folder: " : " | a file: ") + take_text(path_of(chooser)).get();
}

}  // namespace

DisplayTest::DisplayTest() {
  if (gtk_init_check(nullptr, nullptr) != 0 &&
      gdk_x11_screen_get_window_manager_name(gdk_screen_get_default()) !=
          std::string_view{"unknown"}) {
    return;
  }
  std::fputs("These tests need a display with a window manager; ./test starts both.\n", stderr);
  std::exit(EXIT_FAILURE);
}

void DisplayTest::SetUp() {
  g_log_set_always_fatal(
      static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING | G_LOG_LEVEL_ERROR));
  gdk_event_handler_set(count_and_handle, nullptr, nullptr);
  m_looking = g_timeout_add(
      5,
      [](gpointer self) -> gboolean {
        static_cast<DisplayTest*>(self)->look_for_dialog();
        return TRUE;
      },
      this);
  // A dialog may appear while another one is handled.
  g_source_set_can_recurse(g_main_context_find_source_by_id(nullptr, m_looking), TRUE);
}

void DisplayTest::TearDown() {
  EXPECT_TRUE(m_expected.empty()) << "an expected dialog did not come";
  g_source_remove(m_looking);
  settle();
}

void DisplayTest::await_window() {
  wait_until([this] { return gtk_window_has_toplevel_focus(GTK_WINDOW(window)); }, "the window");
  settle();
}

void DisplayTest::settle() {
  XSync(x_display(), False);
  while (gtk_events_pending()) gtk_main_iteration();
}

// Clicks first let the window arrange itself, so that every widget is where it is looked for.

void DisplayTest::click(GtkWidget* widget) {
  settle();
  const auto& place = widget->allocation;
  click_at(gtk_widget_get_window(widget), place.x + place.width / 2, place.y + place.height / 2);
}

void DisplayTest::click(GtkTreeView* view, int row, int column, int times) {
  settle();
  const std::unique_ptr<GtkTreePath, FreeWith<gtk_tree_path_free>> path{
      gtk_tree_path_new_from_indices(row, -1)};
  GdkRectangle cell{};
  gtk_tree_view_get_cell_area(view, path.get(), gtk_tree_view_get_column(view, column), &cell);
  click_at(gtk_tree_view_get_bin_window(view), cell.x + cell.width / 2, cell.y + cell.height / 2,
           times);
}

void DisplayTest::drop(GtkWidget* widget, const std::string& uris) {
  GtkSelectionData dropped{};
  dropped.display = gdk_display_get_default();
  dropped.target = gdk_atom_intern_static_string("text/uri-list");
  ASSERT_TRUE(gtk_target_list_find(gtk_drag_dest_get_target_list(widget), dropped.target, nullptr));
  gtk_selection_data_set(&dropped, dropped.target, 8, reinterpret_cast<const guchar*>(uris.data()),
                         static_cast<int>(uris.size()));
  const varnholt::TextPtr data{reinterpret_cast<char*>(dropped.data)};
  const auto drag = varnholt::take_object(gdk_drag_context_new());
  drag->protocol = GDK_DRAG_PROTO_NONE;
  drag->source_window = varnholt::make_object(gtk_widget_get_window(widget)).release();
  g_signal_emit_by_name(widget, "drag-data-received", drag.get(), 0, 0, &dropped, 0U, 0U);
}

void DisplayTest::press(const std::string& keys) {
  std::istringstream words{keys};
  for (std::string word; words >> word;) {
    if (word.starts_with('=')) {
      type(word.substr(1));
      continue;
    }
    if (word.starts_with('^')) {
      wait_until([&word] { return text_of(modal_dialog()).ends_with(word.substr(1)); }, &word[1]);
      continue;
    }
    std::istringstream names{word};
    std::vector<KeySym> chord;
    for (std::string name; std::getline(names, name, '+');) {
      chord.push_back(XStringToKeysym(name.c_str()));
    }
    press_all(chord);
  }
}

void DisplayTest::ask_to_close() {
  const std::unique_ptr<GdkEvent, FreeWith<gdk_event_free>> event{gdk_event_new(GDK_DELETE)};
  event->any.window = varnholt::make_object(gtk_widget_get_window(window)).release();
  gdk_event_put(event.get());
}

void DisplayTest::expect_dialog(std::function<void(GtkDialog*)> deal) {
  m_expected.push_back(std::move(deal));
  if (gtk_grab_get_current() == nullptr) m_dealt_with = nullptr;
}

std::string DisplayTest::text_of(GtkDialog* dialog) {
  if (GTK_IS_FILE_CHOOSER(dialog)) return text_of_chooser(GTK_FILE_CHOOSER(dialog));
  struct Piece {
    int middle;
    int left;
    std::string text;
  };
  std::vector<Piece> pieces;
  find(GTK_WIDGET(dialog), [&pieces, dialog](GtkWidget* widget) {
    auto text = text_of_widget(widget);
    if (text.empty() || !gtk_widget_get_mapped(widget)) return false;
    if (gtk_window_get_focus(GTK_WINDOW(dialog)) == widget) text.insert(0, ">");
    if (!gtk_widget_is_sensitive(widget)) text.insert(0, "~");
    const auto& place = widget->allocation;
    pieces.push_back({place.y + place.height / 2, place.x, text});
    return false;
  });
  // The text is in reading order; a piece a little higher or lower belongs to the same line.
  std::ranges::sort(pieces, {}, &Piece::middle);
  for (std::size_t at = 1; at < pieces.size(); ++at) {
    if (pieces[at].middle - pieces[at - 1].middle < 5) pieces[at].middle = pieces[at - 1].middle;
  }
  std::ranges::sort(pieces, {}, [](const Piece& piece) {
    return std::pair{piece.middle, piece.left};
  });
  std::string text = gtk_window_get_title(GTK_WINDOW(dialog));
  for (const auto& piece : pieces) text += " | " + piece.text;
  return text;
}

std::vector<std::string> DisplayTest::layout_of(GtkWidget* top) {
  std::vector<std::string> lines;
  find(top, [&lines](GtkWidget* widget) {
    // The parts of a button, a combo box or another composed widget belong to the toolkit.
    auto* const around = gtk_widget_get_parent(widget);
    const auto inside = [around](GType type) {
      return around != nullptr && gtk_widget_get_ancestor(around, type) != nullptr;
    };
    gboolean own = FALSE;
    g_object_get(widget, "composite-child", &own, nullptr);
    if (inside(GTK_TYPE_BUTTON) || inside(GTK_TYPE_COMBO_BOX) || own) return false;
    auto line = changed_properties(widget, nullptr);
    if (around != nullptr) line += " :" + changed_properties(widget, around);
    auto* const named =
        GTK_IS_LABEL(widget) ? gtk_label_get_mnemonic_widget(GTK_LABEL(widget)) : nullptr;
    const auto relations =
        varnholt::take_object(atk_object_ref_relation_set(gtk_widget_get_accessible(widget)));
    if (atk_relation_set_get_n_relations(relations.get()) > 0) line += " is named";
    if (named != nullptr) line += std::string{" names a "} + G_OBJECT_TYPE_NAME(named);
    lines.push_back(G_OBJECT_TYPE_NAME(widget) + line);
    return false;
  });
  return lines;
}

// NOLINTNEXTLINE(misc-no-recursion): it goes as deep as the widgets are nested
GtkWidget* DisplayTest::find(GtkWidget* top, const std::function<bool(GtkWidget*)>& holds) {
  if (holds(top)) return top;
  if (!GTK_IS_CONTAINER(top)) return nullptr;
  // This also visits the children that a composed widget keeps to itself.
  std::vector<GtkWidget*> children;
  gtk_container_forall(
      GTK_CONTAINER(top),
      [](GtkWidget* child, gpointer all) {
        static_cast<std::vector<GtkWidget*>*>(all)->push_back(child);
      },
      &children);
  for (auto* child : children) {
    if (auto* const found = find(child, holds)) return found;
  }
  return nullptr;
}

void DisplayTest::look_for_dialog() {
  // A button that is pressed by a key takes the grab from its dialog for a moment.
  GtkWidget* const grab = gtk_grab_get_current();
  GtkWidget* const modal = grab == nullptr ? nullptr : gtk_widget_get_toplevel(grab);
  if (modal == nullptr || !GTK_IS_DIALOG(modal)) {
    m_dealt_with = nullptr;
    return;
  }
  // A dialog is handled when it appears, and again when another one in front of it has closed.
  const bool dealt_with = g_object_get_data(G_OBJECT(modal), "dealt-with") != nullptr;
  if (!dealt_with || modal != m_dealt_with) {
    // A key that is pressed earlier would go elsewhere.
    if (!gtk_window_has_toplevel_focus(GTK_WINDOW(modal))) return;
    m_dealt_with = modal;
    g_object_set_data(G_OBJECT(modal), "dealt-with", modal);
    m_deadline = g_get_monotonic_time() + patience;
    if (!m_expected.empty()) {
      const auto deal = std::move(m_expected.front());
      m_expected.pop_front();
      deal(GTK_DIALOG(modal));
      return;
    }
    ADD_FAILURE() << "an unexpected dialog: " << text_of(GTK_DIALOG(modal));
  } else if (g_get_monotonic_time() < m_deadline) {
    return;
  } else {
    m_deadline += patience;
    ADD_FAILURE() << "a dialog stays: " << text_of(GTK_DIALOG(modal));
  }
  gtk_dialog_response(GTK_DIALOG(modal), GTK_RESPONSE_CANCEL);
}

void look_for_leaks(bool on) {
  auto* const toggle = dlsym(RTLD_DEFAULT, on ? "__lsan_enable" : "__lsan_disable");
  if (toggle != nullptr) reinterpret_cast<void (*)()>(toggle)();
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
