// SPDX-License-Identifier: GPL-3.0-or-later
// One static route as an object. Texts and failures are handled as for definitions
// (bak-def-item.h).
#pragma once

#include <vector>

#include <glib-object.h>

#include "model/route.h"
#include "model/table-row.h"

namespace varnholt::model {

struct RutDefState : TableRow, RutDefFields {
  /** How many routes each list that holds this one has indexed; 0 makes it index them anew. */
  std::vector<guint*> indexed;
};

}  // namespace varnholt::model

/** One static route. */
struct VhRutDefItem : GObject, varnholt::model::RutDefState {
  VhRutDefItem() = delete;
};

struct VhRutDefItemClass : GObjectClass {};

GType vh_rut_def_item_get_type();

/**
 * Creates an item, or one of a derived type, with copies of all texts. Returns null when a text is
 * null.
 */
VhRutDefItem* vh_rut_def_item_new(const char* name, const char* addr, const char* mask,
                                  const char* gw, const char* jup, const char* nic);
VhRutDefItem* vh_rut_def_item_construct(GType object_type, const char* name, const char* addr,
                                        const char* mask, const char* gw, const char* jup,
                                        const char* nic);

/**
 * Copies everything from `item` except its row. While a list holds a route, its texts may be
 * changed in no other way.
 */
void vh_rut_def_item_fill_by_other(VhRutDefItem* self, VhRutDefItem* item);

/** Sets or returns the state of the check box in the table. */
void vh_rut_def_item_set_is_selected(VhRutDefItem* self, bool is_selected);
bool vh_rut_def_item_get_is_selected(VhRutDefItem* self);

/** Returns the route as its line, without a line end: "rut,add,NAME,ADDR,MASK,GW,JUP,NIC". */
char* vh_rut_def_item_to_string(VhRutDefItem* self);

/**
 * Reads such a line, which begins with "rut,add" and has 8 fields between single commas. Returns a
 * new item, or null, without a message, when the line does not fit.
 */
VhRutDefItem* vh_rut_def_item_scanf_string(const char* line);
