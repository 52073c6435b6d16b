// SPDX-License-Identifier: GPL-3.0-or-later
// The definitions of one table in the order of its rows.
#pragma once

#include <glib-object.h>

#include "model/bak-def-item.h"
#include "model/row-list.h"

/**
 * The definitions of one table, in the order of its rows. The list holds a reference on each; a
 * caller who gets an item gets a new reference and releases it. When several items have the same
 * row, or several are ticked, the first one counts.
 */
struct VhBakDefItemList : GObject, varnholt::RowList<VhBakDefItem> {
  VhBakDefItemList() = delete;
};

struct VhBakDefItemListClass : GObjectClass {};

GType vh_bak_def_item_list_get_type();

/** A new, empty list, or one of a type derived from it. */
VhBakDefItemList* vh_bak_def_item_list_new();
VhBakDefItemList* vh_bak_def_item_list_construct(GType object_type);

/** The item of a row and, when asked for, its index; none and -1 when no item has the row. */
VhBakDefItem* vh_bak_def_item_list_find_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter,
                                                int* index);
int vh_bak_def_item_list_find_in_iter_idx(VhBakDefItemList* self, const GtkTreeIter* iter);

/** Takes the item of a row out of the list; false when no item has the row. */
bool vh_bak_def_item_list_remove_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter);

/**
 * Marks the item of a row deleted and unticks it; it stays in the list. Prints its index. False
 * when no item has the row.
 */
bool vh_bak_def_item_list_hide_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter);

namespace varnholt {

/** The same for the item that was found at a place. */
bool hide(const VhBakDefItemList::Place& found);

}  // namespace varnholt

guint vh_bak_def_item_list_length(VhBakDefItemList* self);

/** The item at `index`, counted from 0; none when there are not so many. */
VhBakDefItem* vh_bak_def_item_list_nth_data(VhBakDefItemList* self, guint index);

/** Put `val` at the end or at the front of the list, which takes a reference of its own. */
void vh_bak_def_item_list_append_val(VhBakDefItemList* self, VhBakDefItem* val);
void vh_bak_def_item_list_prepend_val(VhBakDefItemList* self, VhBakDefItem* val);

/** How many items are ticked. */
guint vh_bak_def_item_list_total_selected_number(VhBakDefItemList* self);

/** The first ticked item and, when asked for, its index; none and -1 when none is ticked. */
VhBakDefItem* vh_bak_def_item_list_get_first_selected_item(VhBakDefItemList* self, int* index);
