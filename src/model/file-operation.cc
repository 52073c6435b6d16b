// SPDX-License-Identifier: GPL-3.0-or-later
// The operation of a file definition, as a set of flags.
#include "model/file-operation.h"

#include <bit>
#include <string>

#include "base/diagnostics.h"
#include "base/glib-ptr.h"

GType vh_file_operation_type_get_type() {
  static const GFlagsValue values[] = {
      {VH_FILE_OPERATION_TYPE_FOT_NULL, "VH_FILE_OPERATION_TYPE_FOT_NULL", "fot-null"},
      {VH_FILE_OPERATION_TYPE_FOT_Update, "VH_FILE_OPERATION_TYPE_FOT_Update", "fot-update"},
      {VH_FILE_OPERATION_TYPE_FOT_OverWrite, "VH_FILE_OPERATION_TYPE_FOT_OverWrite",
       "fot-overwrite"},
      {VH_FILE_OPERATION_TYPE_FOT_Symbolic, "VH_FILE_OPERATION_TYPE_FOT_Symbolic", "fot-symbolic"},
      {VH_FILE_OPERATION_TYPE_FOT_Deleted, "VH_FILE_OPERATION_TYPE_FOT_Deleted", "fot-deleted"},
      {0, nullptr, nullptr}};
  static const GType type = g_flags_register_static("VhFileOperationType", values);
  return type;
}

bool vh_IsFileOperationType(int value, int flag) {
  const auto bits = static_cast<unsigned>(flag);
  if (bits > VH_FILE_OPERATION_TYPE_FOT_Deleted || !std::has_single_bit(bits)) {
    varnholt::print_failure("op[%d] is not Good value \n", flag);
    g_assertion_message_expr(G_LOG_DOMAIN, "bak-model", __LINE__, __func__, "FALSE");
  }
  return (value & flag) == flag;
}

char* vh_FileOperationType_tostr(int op) {
  std::string text = "追加";
  if (vh_IsFileOperationType(op, VH_FILE_OPERATION_TYPE_FOT_Symbolic)) {
    text = "软链接";
  } else if (vh_IsFileOperationType(op, VH_FILE_OPERATION_TYPE_FOT_OverWrite)) {
    text = "覆盖";
  }
  if (vh_IsFileOperationType(op, VH_FILE_OPERATION_TYPE_FOT_Deleted)) text += "|标记删除";
  return varnholt::give_text(text);
}
