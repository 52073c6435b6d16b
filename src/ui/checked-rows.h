// SPDX-License-Identifier: GPL-3.0-or-later
// The common part of the tables of definitions: a list and its rows that are kept in step, the
// check box and the highlight of a row, and the walk over the ticked rows.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtk/gtk.h>

#include "base/glib-ptr.h"
#include "base/signal.h"
#include "base/text.h"
#include "ui/prompts.h"

namespace varnholt::ui {

/** How a column of a table gets its width. */
struct ColumnWidth {
  bool resizable;
  bool expands;
};

/** One value of a row, with the type of its column. */
class Value {
 public:
  explicit Value(bool flag) { g_value_set_boolean(g_value_init(&m_value, G_TYPE_BOOLEAN), flag); }
  explicit Value(int number) { g_value_set_int(g_value_init(&m_value, G_TYPE_INT), number); }
  explicit Value(gint64 number) { g_value_set_int64(g_value_init(&m_value, G_TYPE_INT64), number); }
  /** Stores a text in a form that can be shown: a row must not be wider than a window can be. */
  explicit Value(const std::string& text) {
    g_value_set_string(g_value_init(&m_value, G_TYPE_STRING), shown_shortened(text).c_str());
  }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  ~Value() { g_value_unset(&m_value); }

 private:
  GValue m_value = G_VALUE_INIT;
};

/** Returns the value of a row in a column that holds a flag or a number. */
template <typename T>
T value_of(GtkTreeModel* model, GtkTreeIter* row, int column) {
  std::conditional_t<std::is_same_v<T, bool>, gboolean, T> value{};
  gtk_tree_model_get(model, row, column, &value, -1);
  return static_cast<T>(value);
}

/**
 * The state of a table widget of type Widget. `store` shows its List of Items: it has one row for
 * each item, in the same order, and the check box is in the first column of store and view. Each
 * item knows its row.
 */
template <typename Widget, typename List, typename Item>
struct CheckedRows {
  static constexpr int sel_column = 0;

  ObjectPtr<GtkTreeView> tree_view;
  ObjectPtr<List> items;
  ObjectPtr<GtkListStore> store;
  /** Borrowed from the view until that is destroyed, then null. Only one row can be highlighted. */
  GtkTreeSelection* selection = nullptr;
  /** 1 after a check box was clicked, until the highlight of its row follows. */
  int sel_toggled = 0;

  /**
   * Declares "sig-selection-changed", which passes an index, and the number of items. The index is
   * that of the item concerned, of the last item after one was added, or -1 when items were deleted
   * or marked.
   */
  static void add_signal(gpointer klass) {
    s_selection_changed =
        g_signal_new("sig_selection_changed", G_TYPE_FROM_CLASS(klass), G_SIGNAL_RUN_LAST, 0,
                     nullptr, nullptr, nullptr, G_TYPE_NONE, 2, G_TYPE_INT, G_TYPE_UINT);
  }

  void emit_selection_changed(int index) {
    g_signal_emit(widget(), s_selection_changed, 0, index, items->length());
  }

  /** Creates view and store, and takes over the list; typing searches in `search_column`. */
  void make_view(List* new_list, std::vector<GType> column_types, int search_column) {
    tree_view = sink_object<GtkTreeView>(gtk_tree_view_new());
    items = take_object(new_list);
    store = take_object(
        gtk_list_store_newv(static_cast<int>(column_types.size()), column_types.data()));
    gtk_tree_view_set_model(tree_view.get(), GTK_TREE_MODEL(store.get()));
    gtk_tree_view_set_search_column(tree_view.get(), search_column);
    selection = gtk_tree_view_get_selection(tree_view.get());
    gtk_tree_selection_set_mode(selection, GTK_SELECTION_SINGLE);
  }

  /** Appends a column that fits its contents; `attribute` shows the store's `column`. */
  GtkTreeViewColumn* append_column(const char* title, GtkCellRenderer* renderer, ColumnWidth width,
                                   const char* attribute = nullptr, int column = -1) {
    GtkTreeViewColumn* const made = gtk_tree_view_column_new();
    gtk_tree_view_column_set_title(made, title);
    gtk_tree_view_column_pack_start(made, renderer, TRUE);
    if (attribute != nullptr) {
      gtk_tree_view_column_add_attribute(made, renderer, attribute, column);
    }
    // The order matters: setting this sizing makes a column that users cannot resize.
    gtk_tree_view_column_set_sizing(made, GTK_TREE_VIEW_COLUMN_AUTOSIZE);
    gtk_tree_view_column_set_resizable(made, width.resizable);
    gtk_tree_view_column_set_expand(made, width.expands);
    gtk_tree_view_append_column(tree_view.get(), made);
    return made;
  }

  /** Appends the column of the check boxes; `on_toggled` receives the path of the clicked row. */
  void append_check_column(const char* title, void (*on_toggled)(Widget*, const char*)) {
    append_column(title, new_toggle(on_toggled), {false, false}, "active", sel_column);
  }

  GtkCellRenderer* new_toggle(void (*on_toggled)(Widget*, const char*)) {
    GtkCellRenderer* const toggle = gtk_cell_renderer_toggle_new();
    connect(toggle, "toggled", widget(),
            [self = widget(), on_toggled](GtkCellRendererToggle* /*toggle*/, const char* path) {
              on_toggled(self, path);
            });
    return toggle;
  }

  void attach_signals() {
    connect(selection, "changed", widget(),
            [this](GtkTreeSelection* /*selection*/) { on_tree_selection_changed(); });
    // The view destroys its selection when it is destroyed; the table may live longer.
    connect(tree_view.get(), "destroy", widget(),
            [this](GtkTreeView* /*view*/) { selection = nullptr; });
  }

  /**
   * Toggles the flag in a column of the row at a path such as "3". Returns its item and the flag.
   */
  std::pair<typename List::Place, bool> toggle(const char* path, int column) {
    auto* const model = GTK_TREE_MODEL(store.get());
    GtkTreeIter row{};
    if (!gtk_tree_model_get_iter_from_string(model, &row, path)) return {};
    const bool on = !value_of<bool>(model, &row, column);
    gtk_list_store_set(store.get(), &row, column, gboolean{on}, -1);
    return {find(row), on};
  }

  /** Returns the item of a row of the store; both have the same index in list and store. */
  typename List::Place find(GtkTreeIter row) const {
    // A list store leaves these words as they were in the variable that the toolkit passes on.
    row.user_data2 = row.user_data3 = nullptr;
    const auto path = path_of(row);
    // Only a row of another store has no path.
    return items->find(row, path ? *gtk_tree_path_get_indices(path.get()) : -1);
  }

  void on_sel_toggled(const char* path) {
    g_return_if_fail(path != NULL);
    const auto [found, ticked] = toggle(path, sel_column);
    if (found.item == nullptr) return;
    found.item->is_selected = ticked;
    emit_selection_changed(found.index);
    sel_toggled = 1;
  }

  void on_tree_selection_changed() {
    if (sel_toggled == 1) {
      sel_toggled = 0;
      return;
    }
    const auto found = highlighted();
    if (found.item == nullptr) return;
    clear_selection();
    found.item->is_selected = true;
    set_check_box(*found.item->iter, true);
    emit_selection_changed(found.index);
  }

  /** Unticks every item that has a row. */
  void clear_selection() {
    for (const auto& item : *items) {
      if (!item->iter) continue;
      item->is_selected = false;
      set_check_box(*item->iter, false);
    }
  }

  /** Returns the item of the highlighted row, or an empty place when no row is highlighted. */
  typename List::Place highlighted() const {
    GtkTreeIter row{};
    const bool any =
        selection != nullptr && gtk_tree_selection_get_selected(selection, nullptr, &row) != 0;
    return any ? find(row) : typename List::Place{};
  }

  /**
   * Adds an item, unticked, at the front or at the end of list and store, with a value for each
   * column of its row. The list takes its own reference.
   */
  template <std::size_t N>
  void insert(Item* item, bool first, std::array<Value, N> values) {
    GtkTreeIter row{};
    gtk_list_store_insert_with_valuesv(store.get(), &row, first ? 0 : G_MAXINT, s_columns.data(),
                                       data_of(values), N);
    item->is_selected = false;
    item->iter = row;
    items->insert(item, first);
    emit_selection_changed(static_cast<int>(items->length()) - 1);
  }

  /**
   * Copies the contents of `new_item` into `old_item`, which stays in its row, and ticks both. The
   * row is written in one call, because the toolkit measures it at each write.
   */
  template <std::size_t N>
  void replace(Item* old_item, Item* new_item, std::array<Value, N> values,
               void (*fill_by_other)(Item* self, Item* item)) {
    GtkTreeIter row = *old_item->iter;
    gtk_list_store_set_valuesv(store.get(), &row, s_columns.data(), data_of(values), N);
    new_item->iter = row;
    new_item->is_selected = true;
    fill_by_other(old_item, new_item);
    fit_columns();
    emit_selection_changed(find(row).index);
  }

  /**
   * Calls `take` for each ticked item, first to last; it must untick the item or remove it. When
   * `take` fails, when the item is still ticked, or when an item has no row, shows a message and
   * leaves the rest.
   */
  void take_ticked(const std::function<bool(const typename List::Place& ticked)>& take) {
    ObjectPtr<Item> taken;
    guint from = 0;
    while (true) {
      auto ticked = items->first_selected(from);
      // A handler of the signal may have ticked an item in front of this one.
      if (ticked.item == nullptr) ticked = items->first_selected();
      if (ticked.item == nullptr) return;
      from = static_cast<guint>(ticked.index);
      const bool again = ticked.item == taken.get();
      taken = make_object(ticked.item);
      if (again || !taken->iter || !take(ticked)) {
        main_alter("删除失败", GTK_BUTTONS_CLOSE);
        return;
      }
      emit_selection_changed(-1);
    }
  }

  /** Removes every ticked item from list and store. */
  void del_selected_items() {
    take_ticked([this](const typename List::Place& ticked) {
      GtkTreeIter row = *ticked.item->iter;
      ticked.item->iter.reset();
      items->remove(ticked);
      gtk_list_store_remove(store.get(), &row);
      return true;
    });
    fit_columns();
  }

  /** Scrolls to the row of an item. */
  void scroll_to(const Item& item) {
    gtk_tree_view_scroll_to_cell(tree_view.get(), path_of(*item.iter).get(), nullptr, FALSE, 0, 0);
  }

 private:
  std::unique_ptr<GtkTreePath, FreeWith<gtk_tree_path_free>> path_of(GtkTreeIter row) const {
    return std::unique_ptr<GtkTreePath, FreeWith<gtk_tree_path_free>>{
        gtk_tree_model_get_path(GTK_TREE_MODEL(store.get()), &row)};
  }

  /** Lets columns become narrower that users can resize: by themselves they only grow. */
  void fit_columns() { gtk_tree_view_columns_autosize(tree_view.get()); }

  template <std::size_t N>
  static GValue* data_of(std::array<Value, N>& values) {
    static_assert(sizeof(Value) == sizeof(GValue));
    return reinterpret_cast<GValue*>(values.data());
  }

  Widget* widget() { return static_cast<Widget*>(this); }

  /** Writes only a change, because the toolkit measures a row again whenever it is written. */
  void set_check_box(GtkTreeIter row, bool ticked) {
    const bool own = row.stamp == store->stamp;
    if (!own || value_of<bool>(GTK_TREE_MODEL(store.get()), &row, sel_column) == ticked) return;
    gtk_list_store_set(store.get(), &row, sel_column, gboolean{ticked}, -1);
  }

  static inline guint s_selection_changed = 0;
  static inline std::array s_columns{0, 1, 2, 3, 4, 5, 6};
};

}  // namespace varnholt::ui
