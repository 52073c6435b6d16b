// SPDX-License-Identifier: GPL-3.0-or-later
// One definition of the Link page or of the Shell page as an object. All text is UTF-8 but is kept
// byte for byte. The caller owns a returned text and releases it with g_free(). A null pointer
// argument logs a critical warning, and the function returns null, 0 or false.
#pragma once

#include <ctime>

#include <glib-object.h>

#include "model/definition.h"
#include "model/table-row.h"

namespace varnholt::model {

struct BakDefState : TableRow, BakDefFields {};

}  // namespace varnholt::model

/** One definition of the Link page or of the Shell page. */
struct VhBakDefItem : GObject, varnholt::model::BakDefState {
  VhBakDefItem() = delete;
};

struct VhBakDefItemClass : GObjectClass {
  /** Is called by vh_bak_def_item_lnk_to_string(). A derived type may override it. */
  char* (*lnk_to_string)(VhBakDefItem* self);
};

GType vh_bak_def_item_get_type();

/**
 * Creates an item, or one of a derived type, with copies of both paths and without a row, and looks
 * up whether `from` is a folder. `op` holds VhFileOperationType flags, `last_oper_time` seconds
 * since the epoch. Returns null when a path is null.
 */
VhBakDefItem* vh_bak_def_item_new(const char* from, const char* to, int op, gint64 last_oper_time);
VhBakDefItem* vh_bak_def_item_construct(GType object_type, const char* from, const char* to, int op,
                                        gint64 last_oper_time);

/** Copies everything from `item` except its row, and looks up again whether `from` is a folder. */
void vh_bak_def_item_fill_by_other(VhBakDefItem* self, VhBakDefItem* item);

/** Sets or returns the time of the last update, in seconds since the epoch. */
void vh_bak_def_item_set_last_oper_time_int64(VhBakDefItem* self, gint64 last_oper_time);
gint64 vh_bak_def_item_get_last_oper_time_int64(VhBakDefItem* self);
/** Sets the same time; `dt` is a local time, as for mktime(3). This exists for other callers. */
void vh_bak_def_item_set_last_oper_time_dt(VhBakDefItem* self, const struct tm* dt);

/** Sets or returns the state of the check box in the table. */
void vh_bak_def_item_set_is_selected(VhBakDefItem* self, bool is_selected);
bool vh_bak_def_item_get_is_selected(VhBakDefItem* self);

/** Sets or returns the overwrite flag. An update definition is written as if it were set. */
void vh_bak_def_item_set_force_overwrite(VhBakDefItem* self, bool force_overwrite);
bool vh_bak_def_item_get_force_overwrite(VhBakDefItem* self);

/** Looks up whether `from` is a folder now, and stores the answer. */
void vh_bak_def_item_set_dir(VhBakDefItem* self);

/**
 * Returns the item as its line of the Link page, without a line end:
 * "lnk,dir|file,FROM,TO,update|overwrite,true|false,SECONDS" or "lnk,dir|file,FROM,TO,symbolic",
 * with "|deleted" after the operation when the item is marked deleted. Without any operation it is
 * the short form with "update".
 */
char* vh_bak_def_item_lnk_to_string(VhBakDefItem* self);

/**
 * Reads such a line and returns a new item. Returns null, without a message, when the line does not
 * begin with "lnk" or has neither 5 nor 7 fields. The beginning of the operation field decides the
 * operation, and its end the deletion mark. SECONDS may be octal or hexadecimal, as
 * g_ascii_strtoll() reads it.
 */
VhBakDefItem* vh_bak_def_item_lnk_scanf_string(const char* line);

/**
 * Returns the item as its line of the Shell page, without a line end:
 * "shl,FROM,TO,update|overwrite".
 */
char* vh_bak_def_item_shl_to_string(VhBakDefItem* self);

/** Reads such a line. Returns a new item, or null without a message when it does not fit. */
VhBakDefItem* vh_bak_def_item_shl_scanf_string(const char* line);
