// SPDX-License-Identifier: GPL-3.0-or-later
// The definitions of one table in the order of its rows.
#pragma once

#include <glib-object.h>

#include "model/bak-def-item.h"
#include "model/row-list.h"

namespace varnholt::model {

struct BakDefListState : RowList<VhBakDefItem> {
  /** Does the same as vh_bak_def_item_list_hide_in_iter() for the item at a place. */
  static bool hide(const Place& found);
};

}  // namespace varnholt::model

/**
 * The definitions of one table, in the order of its rows. The list holds a reference to each item.
 * A caller that gets an item gets a new reference and releases it. When several items have the same
 * row, or several are ticked, the first one counts.
 */
struct VhBakDefItemList : GObject, varnholt::model::BakDefListState {
  VhBakDefItemList() = delete;
};

struct VhBakDefItemListClass : GObjectClass {};

GType vh_bak_def_item_list_get_type();

/** Creates an empty list, or one of a derived type. */
VhBakDefItemList* vh_bak_def_item_list_new();
VhBakDefItemList* vh_bak_def_item_list_construct(GType object_type);

/**
 * Returns the item of a row and stores its index in `index`, which may be null. Returns null and
 * stores -1 when no item has the row. The second function returns the index alone.
 */
VhBakDefItem* vh_bak_def_item_list_find_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter,
                                                int* index);
int vh_bak_def_item_list_find_in_iter_idx(VhBakDefItemList* self, const GtkTreeIter* iter);

/** Removes the item of a row from the list. Returns false when no item has the row. */
bool vh_bak_def_item_list_remove_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter);

/**
 * Marks the item of a row deleted and unticks it; the item stays in the list. Prints the item's
 * index. Returns false when no item has the row.
 */
bool vh_bak_def_item_list_hide_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter);

guint vh_bak_def_item_list_length(VhBakDefItemList* self);

/** Returns the item at `index`, counted from 0, or null when the list is shorter. */
VhBakDefItem* vh_bak_def_item_list_nth_data(VhBakDefItemList* self, guint index);

/** Adds `val` at the end or at the front of the list, which takes its own reference. */
void vh_bak_def_item_list_append_val(VhBakDefItemList* self, VhBakDefItem* val);
void vh_bak_def_item_list_prepend_val(VhBakDefItemList* self, VhBakDefItem* val);

/** Returns how many items are ticked. */
guint vh_bak_def_item_list_total_selected_number(VhBakDefItemList* self);

/**
 * Returns the first ticked item and stores its index in `index`, which may be null. Returns null
 * and stores -1 when no item is ticked.
 */
VhBakDefItem* vh_bak_def_item_list_get_first_selected_item(VhBakDefItemList* self, int* index);
