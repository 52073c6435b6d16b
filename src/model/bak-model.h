// SPDX-License-Identifier: GPL-3.0-or-later
// File definitions and boot scripts: what a definition can ask for, one definition with its two
// line forms, and the definitions of a table in their order. All text is UTF-8 but kept byte for
// byte; a text that is returned belongs to the caller, who releases it with g_free(). A missing
// pointer argument logs a critical warning, and the operation gives its zero result.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include <gtk/gtk.h>

#include "model/row-list.h"

/** A question about a path. Registered as an enumeration; nicks "is-dir" and "exists". */
enum VhFileTestType : int {
  VH_FILE_TEST_TYPE_IS_DIR = 0,
  VH_FILE_TEST_TYPE_EXISTS = 1,
};
GType vh_file_test_type_get_type();

/**
 * What a definition asks for: at most one of the first three, with or without Deleted. Registered
 * as flags; nicks "fot-null", "fot-update", "fot-overwrite", "fot-symbolic" and "fot-deleted".
 */
enum VhFileOperationType : int {
  /** The operation word of the line was not recognised. */
  VH_FILE_OPERATION_TYPE_FOT_NULL = 0,
  VH_FILE_OPERATION_TYPE_FOT_Update = 1,
  VH_FILE_OPERATION_TYPE_FOT_OverWrite = 2,
  /** The target path is to be a symbolic link to the source. */
  VH_FILE_OPERATION_TYPE_FOT_Symbolic = 4,
  /** The definition goes at the next run of the link builder. */
  VH_FILE_OPERATION_TYPE_FOT_Deleted = 8,
};
GType vh_file_operation_type_get_type();

/**
 * Asks the file system about `filename`, following symbolic links as stat(2) and access(2) do: a
 * dangling link does not exist. Any other `test` is false.
 */
bool vh_FileTests(const char* filename, VhFileTestType test);

/** Whether `value` has `flag`, which must be one of the four single flags: any other one ends the
 * program. */
bool vh_IsFileOperationType(int value, int flag);

/** The text of the operation column, for example "覆盖|标记删除". */
char* vh_FileOperationType_tostr(int op);

/**
 * Where `needle` first stands in `rawstr`, counted in characters, not bytes; -1 when nowhere. An
 * empty needle stands at 0.
 */
int vh_string_index_of(const char* rawstr, const char* needle);

namespace varnholt {

/** What a file definition or a boot script says. */
struct BakDefFields : TableRow {
  std::string from;
  /** The target; for a symbolic definition the path at which the link is made. */
  std::string to;
  /** Whether `from` named a folder when vh_bak_def_item_set_dir() last looked. */
  bool is_dir = false;
  /** VhFileOperationType flags. */
  int op = VH_FILE_OPERATION_TYPE_FOT_NULL;
  /** Seconds since the epoch; 0 when never set. */
  gint64 last_oper_time = 0;
  /** The overwrite flag of update and overwrite definitions. */
  bool force_overwrite = false;
};

/**
 * What a line of the Link page says, as vh_bak_def_item_lnk_scanf_string() reads it, but without a
 * look at the file system: `is_dir` stays false. None when the line does not fit or holds a NUL
 * byte.
 */
std::optional<BakDefFields> read_lnk_line(std::string_view line);

}  // namespace varnholt

/**
 * One definition of the Link page or of the Shell page. A line of either form has its fields
 * between single commas, without any quoting: no field may hold a comma.
 */
struct VhBakDefItem : GObject, varnholt::BakDefFields {
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

/** Takes over what `item` says, but for its row; whether `from` is a folder is looked up again. */
void vh_bak_def_item_fill_by_other(VhBakDefItem* self, VhBakDefItem* item);

/** Seconds since the epoch. */
void vh_bak_def_item_set_last_oper_time_int64(VhBakDefItem* self, gint64 last_oper_time);
gint64 vh_bak_def_item_get_last_oper_time_int64(VhBakDefItem* self);
/** Takes `dt` as local time, as mktime(3) does. */
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
 * Reads such a line. A line with another number of fields than 5 or 7 does not fit, nor one that
 * does not begin with "lnk". The operation counts by its beginning, the mark by the end of the same
 * field; SECONDS may be octal or hexadecimal, as g_ascii_strtoll() reads them. Returns a new item,
 * or none, without a message, when the line does not fit.
 */
VhBakDefItem* vh_bak_def_item_lnk_scanf_string(const char* line);

/** The item as its line of the Shell page, without a line end: "shl,FROM,TO,update|overwrite". */
char* vh_bak_def_item_shl_to_string(VhBakDefItem* self);

/** Reads such a line. Returns a new item, or none, without a message, when it does not fit. */
VhBakDefItem* vh_bak_def_item_shl_scanf_string(const char* line);

/**
 * The definitions of one table, in the order of its rows. Holds a reference on each; who gets an
 * item from it gets a reference too and releases it. Of several ticked items the first counts, and
 * so it does of several with one row, if each had it when it was put in.
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
