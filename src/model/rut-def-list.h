// SPDX-License-Identifier: GPL-3.0-or-later
// The routes of the table in the order of its rows, with the flag about the default route.
#pragma once

#include <cstddef>
#include <unordered_map>

#include <glib-object.h>

#include "model/row-list.h"
#include "model/rut-def-item.h"

namespace varnholt {

/** The routes with an index of what no two of them may share, and the flag. */
class RutDefListState : public RowList<VhRutDefItem> {
 public:
  RutDefListState() = default;
  RutDefListState(const RutDefListState&) = delete;
  RutDefListState& operator=(const RutDefListState&) = delete;
  ~RutDefListState();

  void insert(VhRutDefItem* item, bool first);
  void remove(const Place& place);

  /** The first route but `except` that is a rival of `route`; null when there is none. */
  const VhRutDefItem* first_rival_of(const RutDefFields& route, const VhRutDefItem* except);

  /** Must be called when the texts of a route or the places of routes have changed. */
  void forget_texts();

  bool del_def_rut = true;

 private:
  void leave(VhRutDefItem& item);

  /** The places of the first m_indexed routes by hashes of what no two may share. */
  std::unordered_multimap<std::size_t, guint> m_index;
  guint m_indexed = 0;
};

}  // namespace varnholt

/**
 * The routes of the table, in the order of its rows, and whether the default route is to be deleted
 * (which is so in a new list). Holds references as VhBakDefItemList does.
 */
struct VhRutDefItemList : GObject, varnholt::RutDefListState {
  VhRutDefItemList() = delete;
};

struct VhRutDefItemListClass : GObjectClass {};

GType vh_rut_def_item_list_get_type();

/** A new, empty list, or one of a type derived from it. */
VhRutDefItemList* vh_rut_def_item_list_new();
VhRutDefItemList* vh_rut_def_item_list_construct(GType object_type);

/** Whether the default route is to be deleted. */
void vh_rut_def_item_list_set_del_def_rut(VhRutDefItemList* self, bool del_def_rut);
bool vh_rut_def_item_list_get_del_def_rut(VhRutDefItemList* self);

/** The flag as its line, without a line end: "rut,del,yes" or "rut,del,no". */
char* vh_rut_def_item_list_del_def_rut_to_string(VhRutDefItemList* self);

/**
 * Reads such a line: true when its third field is "yes", and also when the line does not fit. False
 * with a critical warning when it is missing.
 */
bool vh_rut_def_item_list_scanf_del_def_rut(const char* line);

/** The item of a row and, when asked for, its index; none and -1 when no item has the row. */
VhRutDefItem* vh_rut_def_item_list_find_in_iter(VhRutDefItemList* self, const GtkTreeIter* iter,
                                                int* index);
int vh_rut_def_item_list_find_in_iter_idx(VhRutDefItemList* self, const GtkTreeIter* iter);

/** Takes the item of a row out of the list; false when no item has the row. */
bool vh_rut_def_item_list_remove_in_iter(VhRutDefItemList* self, const GtkTreeIter* iter);

guint vh_rut_def_item_list_length(VhRutDefItemList* self);

/** The item at `index`, counted from 0; none when there are not so many. */
VhRutDefItem* vh_rut_def_item_list_nth_data(VhRutDefItemList* self, guint index);

/** Puts `val` at the end of the list, which takes a reference of its own. */
void vh_rut_def_item_list_append_val(VhRutDefItemList* self, VhRutDefItem* val);

/** How many items are ticked. */
guint vh_rut_def_item_list_total_selected_number(VhRutDefItemList* self);

/** The first ticked item and, when asked for, its index; none and -1 when none is ticked. */
VhRutDefItem* vh_rut_def_item_list_get_first_selected_item(VhRutDefItemList* self, int* index);
