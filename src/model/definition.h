// SPDX-License-Identifier: GPL-3.0-or-later
// A file definition or a boot script as a plain value, with its two line formats and the answers to
// the questions of the tables. Single commas separate the fields of a line, without any quoting,
// so no field may contain a comma.
#pragma once

#include <glib.h>

#include <optional>
#include <string>
#include <string_view>

#include "model/file-operation.h"

namespace varnholt::model {

/** The contents of a file definition or a boot script. */
struct BakDefFields {
  /** The source. */
  std::string from;
  /** The target; for a symbolic definition, the path at which the link is made. */
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
 * Reads a line of the Link page as vh_bak_def_item_lnk_scanf_string() does, but without looking at
 * the file system: `is_dir` stays false. Returns nullopt when the line does not fit or contains a
 * NUL byte.
 */
std::optional<BakDefFields> read_lnk_line(std::string_view line);

/** Returns the word for the operation of a definition, without its mark. */
std::string_view operation_word(const BakDefFields& definition);

/** Returns the field for the operation in the line of a file definition. */
std::string operation_field(const BakDefFields& definition);

/** Returns the line of a file definition, without a line end. */
std::string lnk_line(const BakDefFields& definition);

/** These two do the same for a line of the Shell page. */
std::optional<BakDefFields> read_shl_line(std::string_view line);
std::string shl_line(const BakDefFields& script);

/** Returns whether source and target are the same path. No table accepts such a definition. */
bool is_own_source(const BakDefFields& definition);

/** Returns whether a new definition comes first in its table. Links do not; they come last. */
bool comes_first(const BakDefFields& definition);

/** Returns whether saving sets the time: for an update, and for an overwrite with its flag set. */
bool is_stamped(const BakDefFields& definition);

}  // namespace varnholt::model
