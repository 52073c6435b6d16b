// SPDX-License-Identifier: GPL-3.0-or-later
// A file definition or a boot script as a plain value, with its two line forms and with what the
// tables ask about it. A line has its fields between single commas, without any quoting, so no
// field may hold a comma.
#pragma once

#include <glib.h>

#include <optional>
#include <string>
#include <string_view>

#include "model/file-operation.h"

namespace varnholt {

/** What a file definition or a boot script says. */
struct BakDefFields {
  /** The source. */
  std::string from;
  /** The target; for a symbolic definition the path at which the link is made. */
  std::string to;
  /** Whether `from` named a folder when vh_bak_def_item_set_dir() last looked. */
  bool is_dir = false;
  /** VhFileOperationType flags. */
  int op = VH_FILE_OPERATION_TYPE_FOT_NULL;
  /** Seconds since the epoch; 0 when it was never set. */
  gint64 last_oper_time = 0;
  /** The overwrite flag of update and overwrite definitions. */
  bool force_overwrite = false;

  bool has(VhFileOperationType flag) const { return vh_IsFileOperationType(op, flag); }
};

/**
 * What a line of the Link page says, as vh_bak_def_item_lnk_scanf_string() reads it, but without a
 * look at the file system: `is_dir` stays false. None when the line does not fit or holds a NUL
 * byte.
 */
std::optional<BakDefFields> read_lnk_line(std::string_view line);

/** The line of a file definition, without a line end. */
std::string lnk_line(const BakDefFields& definition);

/** The same two for a line of the Shell page. */
std::optional<BakDefFields> read_shl_line(std::string_view line);
std::string shl_line(const BakDefFields& script);

/** Whether source and target are the same path. No table takes such a definition. */
bool is_own_source(const BakDefFields& definition);

/** Whether a new definition comes first in its table, as all do but links, which come last. */
bool comes_first(const BakDefFields& definition);

/** Whether saving sets the time of a definition: it updates, or overwrites with its flag set. */
bool is_stamped(const BakDefFields& definition);

}  // namespace varnholt
