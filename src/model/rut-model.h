// SPDX-License-Identifier: GPL-3.0-or-later
// The static routes of the profile: one route with its line, and the routes of the table in their
// order with the flag that belongs to all of them. Texts and failures are as for the definitions.
#pragma once

#include <string>

#include <gtk/gtk.h>

#include "model/row-list.h"

namespace varnholt {

/** What a route says. Nothing of it is interpreted; any text may be empty. */
struct RutDefFields : TableRow {
  std::string name;
  /** The address of the network segment, and its mask. */
  std::string addr;
  std::string mask;
  /** The gateway. */
  std::string gw;
  /** How many hops the route takes. */
  std::string jup;
  /** The network interface. */
  std::string nic;
};

}  // namespace varnholt

/** One static route. */
struct VhRutDefItem : GObject, varnholt::RutDefFields {
  VhRutDefItem() = delete;
};

struct VhRutDefItemClass : GObjectClass {};

GType vh_rut_def_item_get_type();

/** A new item, or one of a derived type, with copies of all texts; none when one is missing. */
VhRutDefItem* vh_rut_def_item_new(const char* name, const char* addr, const char* mask,
                                  const char* gw, const char* jup, const char* nic);
VhRutDefItem* vh_rut_def_item_construct(GType object_type, const char* name, const char* addr,
                                        const char* mask, const char* gw, const char* jup,
                                        const char* nic);

/** Takes over what `item` says, but for its row. */
void vh_rut_def_item_fill_by_other(VhRutDefItem* self, VhRutDefItem* item);

/** The state of the check box in the table. */
void vh_rut_def_item_set_is_selected(VhRutDefItem* self, bool is_selected);
bool vh_rut_def_item_get_is_selected(VhRutDefItem* self);

/** The route as its line, without a line end: "rut,add,NAME,ADDR,MASK,GW,JUP,NIC". */
char* vh_rut_def_item_to_string(VhRutDefItem* self);

/**
 * Reads such a line: it begins with "rut,add" and has 8 fields between single commas. Returns a new
 * item, or none, without a message, when the line does not fit.
 */
VhRutDefItem* vh_rut_def_item_scanf_string(const char* line);

namespace varnholt {

struct RutDefListState : RowList<VhRutDefItem> {
  bool del_def_rut = true;
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
