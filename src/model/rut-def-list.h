// SPDX-License-Identifier: GPL-3.0-or-later
// The routes of the table in the order of its rows, with the flag about the default route.
#pragma once

#include <cstddef>
#include <unordered_map>

#include <glib-object.h>

#include "model/row-list.h"
#include "model/rut-def-item.h"

namespace varnholt::model {

/** The routes, an index of the texts that no two may share, and the flag of the default route. */
class RutDefListState : public RowList<VhRutDefItem> {
 public:
  RutDefListState() = default;
  RutDefListState(const RutDefListState&) = delete;
  RutDefListState& operator=(const RutDefListState&) = delete;
  ~RutDefListState();

  void insert(VhRutDefItem* item, bool first);
  void remove(const Place& place);

  /** Returns the first route other than `except` that is a rival of `route`, or null. */
  const VhRutDefItem* first_rival_of(const RutDefFields& route, const VhRutDefItem* except);

  bool del_def_rut = true;

 private:
  void leave(VhRutDefItem& item);

  /** The places of the first m_indexed routes, by hashes of the texts that no two may share. */
  std::unordered_multimap<std::size_t, guint> m_index;
  /** A change of the texts of a route, or of the places, sets this number to 0. */
  guint m_indexed = 0;
};

}  // namespace varnholt::model

/**
 * The routes of the table, in the order of its rows, and whether to delete the default route, which
 * is true in a new list. Holds references as VhBakDefItemList does.
 */
struct VhRutDefItemList : GObject, varnholt::model::RutDefListState {
  VhRutDefItemList() = delete;
};

struct VhRutDefItemListClass : GObjectClass {};

GType vh_rut_def_item_list_get_type();

/** Creates an empty list, or one of a derived type. */
VhRutDefItemList* vh_rut_def_item_list_new();
VhRutDefItemList* vh_rut_def_item_list_construct(GType object_type);

/** Sets or returns whether to delete the default route. */
void vh_rut_def_item_list_set_del_def_rut(VhRutDefItemList* self, bool del_def_rut);
bool vh_rut_def_item_list_get_del_def_rut(VhRutDefItemList* self);

/** Returns the flag as its line, without a line end: "rut,del,yes" or "rut,del,no". */
char* vh_rut_def_item_list_del_def_rut_to_string(VhRutDefItemList* self);

/**
 * Reads such a line. Returns true when its third field is "yes", and also when the line does not
 * fit. Returns false with a critical warning when `line` is null.
 */
bool vh_rut_def_item_list_scanf_del_def_rut(const char* line);

/**
 * Returns the item of a row and stores its index in `index`, which may be null. Returns null and
 * stores -1 when no item has the row. The second function returns the index alone.
 */
VhRutDefItem* vh_rut_def_item_list_find_in_iter(VhRutDefItemList* self, const GtkTreeIter* iter,
                                                int* index);
int vh_rut_def_item_list_find_in_iter_idx(VhRutDefItemList* self, const GtkTreeIter* iter);

/** Removes the item of a row from the list. Returns false when no item has the row. */
bool vh_rut_def_item_list_remove_in_iter(VhRutDefItemList* self, const GtkTreeIter* iter);

guint vh_rut_def_item_list_length(VhRutDefItemList* self);

/** Returns the item at `index`, counted from 0, or null when the list is shorter. */
VhRutDefItem* vh_rut_def_item_list_nth_data(VhRutDefItemList* self, guint index);

/** Adds `val` at the end of the list, which takes its own reference. */
void vh_rut_def_item_list_append_val(VhRutDefItemList* self, VhRutDefItem* val);

/** Returns how many items are ticked. */
guint vh_rut_def_item_list_total_selected_number(VhRutDefItemList* self);

/**
 * Returns the first ticked item and stores its index in `index`, which may be null. Returns null
 * and stores -1 when no item is ticked.
 */
VhRutDefItem* vh_rut_def_item_list_get_first_selected_item(VhRutDefItemList* self, int* index);
