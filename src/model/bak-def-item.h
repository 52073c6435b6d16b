// SPDX-License-Identifier: GPL-3.0-or-later
// One definition of the Link page or of the Shell page as an object. All text is UTF-8 but is kept
// byte for byte; a text that is returned belongs to the caller, who releases it with g_free(). A
// missing pointer argument logs a critical warning, and the operation gives its zero result.
#pragma once

#include <ctime>

#include <glib-object.h>

#include "model/definition.h"
#include "model/table-row.h"

namespace varnholt {

struct BakDefState : TableRow, BakDefFields {};

}  // namespace varnholt

/** One definition of the Link page or of the Shell page. */
struct VhBakDefItem : GObject, varnholt::BakDefState {
  VhBakDefItem() = delete;
};

struct VhBakDefItemClass : GObjectClass {
  /** What vh_bak_def_item_lnk_to_string() calls. */
  char* (*lnk_to_string)(VhBakDefItem* self);
};

GType vh_bak_def_item_get_type();

/**
 * A new item, or one of a type derived from it, with copies of both paths and no row; whether
 * `from` is a folder is looked up. `op` holds VhFileOperationType flags, `last_oper_time` seconds
 * since the epoch. None when a path is missing.
 */
VhBakDefItem* vh_bak_def_item_new(const char* from, const char* to, int op, gint64 last_oper_time);
VhBakDefItem* vh_bak_def_item_construct(GType object_type, const char* from, const char* to, int op,
                                        gint64 last_oper_time);

namespace varnholt {

/**
 * A new item that says the same as `fields`; whether its source is a folder is looked up. None for
 * none.
 */
VhBakDefItem* new_bak_def_item(std::optional<BakDefFields> fields);

}  // namespace varnholt

/**
 * Copies everything from `item` but its row; whether `from` is a folder is looked up again.
 */
void vh_bak_def_item_fill_by_other(VhBakDefItem* self, VhBakDefItem* item);

/** Seconds since the epoch. */
void vh_bak_def_item_set_last_oper_time_int64(VhBakDefItem* self, gint64 last_oper_time);
gint64 vh_bak_def_item_get_last_oper_time_int64(VhBakDefItem* self);
/** Reads `dt` as local time, as mktime(3) does. This exists for other callers. */
void vh_bak_def_item_set_last_oper_time_dt(VhBakDefItem* self, const struct tm* dt);

/** The state of the check box in the table. */
void vh_bak_def_item_set_is_selected(VhBakDefItem* self, bool is_selected);
bool vh_bak_def_item_get_is_selected(VhBakDefItem* self);

/** The overwrite flag; an update definition is written as if it were set. */
void vh_bak_def_item_set_force_overwrite(VhBakDefItem* self, bool force_overwrite);
bool vh_bak_def_item_get_force_overwrite(VhBakDefItem* self);

/** Looks up whether `from` is a folder now. */
void vh_bak_def_item_set_dir(VhBakDefItem* self);

/**
 * The item as its line of the Link page, without a line end:
 * "lnk,dir|file,FROM,TO,update|overwrite,true|false,SECONDS" or "lnk,dir|file,FROM,TO,symbolic",
 * the operation followed by "|deleted" when the item is marked.
 */
char* vh_bak_def_item_lnk_to_string(VhBakDefItem* self);

/**
 * Reads such a line. A line does not fit when it does not begin with "lnk", or when it has another
 * number of fields than 5 or 7. The beginning of the operation field decides the operation, its end
 * the mark; SECONDS may be octal or hexadecimal, as g_ascii_strtoll() reads them. Returns a new
 * item, or none, without a message, when the line does not fit.
 */
VhBakDefItem* vh_bak_def_item_lnk_scanf_string(const char* line);

/** The item as its line of the Shell page, without a line end: "shl,FROM,TO,update|overwrite". */
char* vh_bak_def_item_shl_to_string(VhBakDefItem* self);

/** Reads such a line. Returns a new item, or none, without a message, when it does not fit. */
VhBakDefItem* vh_bak_def_item_shl_scanf_string(const char* line);
