// SPDX-License-Identifier: GPL-3.0-or-later
// The bare table and its operations.
#include "bare-table.h"

#include <time.h>

enum { TICKED, FROM, TO, OPERATION, DATE, FORCE, OVERWRITES, SAVED, COLUMNS };

static GtkTreeViewColumn* append(GtkTreeView* view, const char* title, GtkCellRenderer* renderer,
                                 const char* attribute, int column) {
  GtkTreeViewColumn* const shown =
      gtk_tree_view_column_new_with_attributes(title, renderer, attribute, column, NULL);
  gtk_tree_view_column_set_sizing(shown, GTK_TREE_VIEW_COLUMN_AUTOSIZE);
  gtk_tree_view_append_column(view, shown);
  return shown;
}

static GtkTreeViewColumn* append_text(GtkTreeView* view, const char* title, int column) {
  return append(view, title, gtk_cell_renderer_text_new(), "text", column);
}

static void append_path(GtkTreeView* view, const char* title, int column) {
  GtkTreeViewColumn* const path = append_text(view, title, column);
  gtk_tree_view_column_set_resizable(path, TRUE);
  gtk_tree_view_column_set_expand(path, TRUE);
}

struct BareTable bare_table_new(gboolean with_dates) {
  GtkListStore* const store =
      gtk_list_store_new(COLUMNS, G_TYPE_BOOLEAN, G_TYPE_STRING, G_TYPE_STRING, G_TYPE_STRING,
                         G_TYPE_STRING, G_TYPE_BOOLEAN, G_TYPE_BOOLEAN, G_TYPE_INT64);
  GtkTreeView* const view = GTK_TREE_VIEW(gtk_tree_view_new_with_model(GTK_TREE_MODEL(store)));
  g_object_unref(store);
  append(view, "选择", gtk_cell_renderer_toggle_new(), "active", TICKED);
  append_path(view, "原文件(夹)", FROM);
  append_path(view, "目标文件(夹)|链接", TO);
  append_text(view, "操作", OPERATION);
  gtk_tree_view_column_set_visible(append_text(view, "上次更新时间", DATE), with_dates);
  GtkCellRenderer* const box = gtk_cell_renderer_toggle_new();
  GtkTreeViewColumn* const force = append(view, "是否覆盖", box, "active", FORCE);
  gtk_tree_view_column_add_attribute(force, box, "visible", OVERWRITES);
  return (struct BareTable){view, store};
}

GtkWidget* bare_window_new(struct BareTable table) {
  GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_default_size(GTK_WINDOW(window), 600, 450);
  GtkWidget* const frame = gtk_scrolled_window_new(NULL, NULL);
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(frame), GTK_POLICY_AUTOMATIC,
                                 GTK_POLICY_ALWAYS);
  gtk_container_add(GTK_CONTAINER(frame), GTK_WIDGET(table.view));
  gtk_container_add(GTK_CONTAINER(window), frame);
  gtk_widget_show_all(window);
  return window;
}

void bare_table_prepend(struct BareTable table, const char* from, const char* to,
                        gboolean overwrite) {
  const gint64 saved = 1284567890;
  gtk_list_store_insert_with_values(table.store, NULL, 0, FROM, from, TO, to, OPERATION,
                                    overwrite ? "覆盖" : "追加", DATE, "2010-09-15 16:24:50", FORCE,
                                    FALSE, OVERWRITES, overwrite, SAVED, saved, -1);
}

void bare_table_tick(struct BareTable table, int row, gboolean ticked) {
  GtkTreeIter place;
  gtk_tree_model_iter_nth_child(GTK_TREE_MODEL(table.store), &place, NULL, row);
  gtk_list_store_set(table.store, &place, TICKED, ticked, -1);
}

void bare_table_highlight(struct BareTable table, int row, int ticked) {
  GtkTreePath* const path = gtk_tree_path_new_from_indices(row, -1);
  gtk_tree_selection_select_path(gtk_tree_view_get_selection(table.view), path);
  gtk_tree_path_free(path);
  bare_table_tick(table, ticked, FALSE);
  bare_table_tick(table, row, TRUE);
}

static gboolean is_set(GtkTreeModel* model, GtkTreeIter* row, int column) {
  gboolean set = FALSE;
  gtk_tree_model_get(model, row, column, &set, -1);
  return set;
}

void bare_table_mark_ticked_deleted(struct BareTable table) {
  GtkTreeModel* const model = GTK_TREE_MODEL(table.store);
  GtkTreeIter row;
  gboolean more = gtk_tree_model_get_iter_first(model, &row);
  for (; more; more = gtk_tree_model_iter_next(model, &row)) {
    if (!is_set(model, &row, TICKED)) continue;
    const gboolean overwrites = is_set(model, &row, OVERWRITES);
    gtk_list_store_set(table.store, &row, TICKED, FALSE, OPERATION,
                       overwrites ? "覆盖|标记删除" : "追加|标记删除", -1);
  }
}

void bare_table_delete_ticked(struct BareTable table) {
  GtkTreeModel* const model = GTK_TREE_MODEL(table.store);
  GtkTreeIter row;
  gboolean more = gtk_tree_model_get_iter_first(model, &row);
  while (more) {
    more = is_set(model, &row, TICKED) ? gtk_list_store_remove(table.store, &row)
                                       : gtk_tree_model_iter_next(model, &row);
  }
}

static void add_line(GtkTreeModel* model, GtkTreeIter* row, gint64 now, GString* text) {
  char* from = NULL;
  char* to = NULL;
  gboolean overwrites = FALSE;
  gint64 saved = 0;
  gtk_tree_model_get(model, row, FROM, &from, TO, &to, OVERWRITES, &overwrites, SAVED, &saved, -1);
  g_string_append_printf(text, "lnk,file,%s,%s,%s,%" G_GINT64_FORMAT "\n", from, to,
                         overwrites ? "overwrite,false" : "update,true", overwrites ? saved : now);
  g_free(from);
  g_free(to);
}

gboolean bare_table_save(struct BareTable table, const char* profile) {
  GtkTreeModel* const model = GTK_TREE_MODEL(table.store);
  const gint64 now = time(NULL);
  GString* const text = g_string_new("version,1\n");
  GtkTreeIter row;
  gboolean more = gtk_tree_model_get_iter_first(model, &row);
  for (; more; more = gtk_tree_model_iter_next(model, &row)) add_line(model, &row, now, text);
  g_string_append(text, "rut,del,yes\n");
  const gboolean saved = g_file_set_contents(profile, text->str, (gssize)text->len, NULL);
  g_string_free(text, TRUE);
  return saved;
}
