// SPDX-License-Identifier: GPL-3.0-or-later
// File definitions and boot scripts: flags, file tests, one definition, the list of a table.
#include "model/bak-model.h"

#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <string_view>
#include <utility>

#include "base/diagnostics.h"
#include "base/glib-ptr.h"
#include "base/object-type.h"
#include "base/text.h"

namespace {

using varnholt::BakDefFields;
using varnholt::fields_of;
using varnholt::give_text;

bool has(int op, VhFileOperationType flag) {
  return vh_IsFileOperationType(op, flag);
}

/** A byte that begins a character of UTF-8. Safe on text that breaks off in the middle of one. */
bool begins_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

/** Who has an item or a list finds the enumerations by name too. */
void register_enumerations() {
  vh_file_test_type_get_type();
  vh_file_operation_type_get_type();
}

VhBakDefItem* make_item(GType object_type, BakDefFields fields) {
  auto* const self = static_cast<VhBakDefItem*>(g_object_new(object_type, nullptr));
  BakDefFields& own = *self;
  own = std::move(fields);
  vh_bak_def_item_set_dir(self);
  return self;
}

int operation_of_word(std::string_view word) {
  int op = VH_FILE_OPERATION_TYPE_FOT_NULL;
  if (word.starts_with("update")) {
    op = VH_FILE_OPERATION_TYPE_FOT_Update;
  } else if (word.starts_with("overwrite")) {
    op = VH_FILE_OPERATION_TYPE_FOT_OverWrite;
  } else if (word.starts_with("symbolic")) {
    op = VH_FILE_OPERATION_TYPE_FOT_Symbolic;
  }
  return word.ends_with("deleted") ? op | VH_FILE_OPERATION_TYPE_FOT_Deleted : op;
}

std::string word_of_operation(int op) {
  std::string word = "update";
  if (!has(op, VH_FILE_OPERATION_TYPE_FOT_Update)) {
    if (has(op, VH_FILE_OPERATION_TYPE_FOT_OverWrite)) {
      word = "overwrite";
    } else if (has(op, VH_FILE_OPERATION_TYPE_FOT_Symbolic)) {
      word = "symbolic";
    }
  }
  if (has(op, VH_FILE_OPERATION_TYPE_FOT_Deleted)) word += "|deleted";
  return word;
}

char* vh_bak_def_item_real_lnk_to_string(VhBakDefItem* self) {
  const bool update = has(self->op, VH_FILE_OPERATION_TYPE_FOT_Update);
  std::string line = self->is_dir ? "lnk,dir," : "lnk,file,";
  line += self->from + ',' + self->to + ',' + word_of_operation(self->op);
  if (update || has(self->op, VH_FILE_OPERATION_TYPE_FOT_OverWrite)) {
    line += update || self->force_overwrite ? ",true," : ",false,";
    line += std::to_string(self->last_oper_time);
  }
  return give_text(line);
}

}  // namespace

namespace varnholt {

std::optional<BakDefFields> read_lnk_line(std::string_view line) {
  const auto fields = fields_of(line, "lnk");
  if (fields.size() != 5 && fields.size() != 7) return std::nullopt;
  // Behind a NUL byte the rest of a path would not be seen.
  if (line.find('\0') != std::string_view::npos) return std::nullopt;
  BakDefFields read;
  read.from = fields[2];
  read.to = fields[3];
  read.op = operation_of_word(fields[4]);
  const bool takes_time = has(read.op, VH_FILE_OPERATION_TYPE_FOT_Update) ||
                          has(read.op, VH_FILE_OPERATION_TYPE_FOT_OverWrite);
  if (fields.size() == 7 && takes_time) {
    read.force_overwrite = fields[5] == "true";
    read.last_oper_time = g_ascii_strtoll(std::string{fields[6]}.c_str(), nullptr, 0);
  }
  return read;
}

}  // namespace varnholt

GType vh_file_test_type_get_type() {
  static const GEnumValue values[] = {
      {VH_FILE_TEST_TYPE_IS_DIR, "VH_FILE_TEST_TYPE_IS_DIR", "is-dir"},
      {VH_FILE_TEST_TYPE_EXISTS, "VH_FILE_TEST_TYPE_EXISTS", "exists"},
      {0, nullptr, nullptr}};
  static const GType type = g_enum_register_static("VhFileTestType", values);
  return type;
}

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

bool vh_FileTests(const char* filename, VhFileTestType test) {
  g_return_val_if_fail(filename != NULL, false);
  if (test == VH_FILE_TEST_TYPE_EXISTS) return access(filename, F_OK) == 0;
  if (test != VH_FILE_TEST_TYPE_IS_DIR) return false;
  struct stat status {};
  return stat(filename, &status) == 0 && S_ISDIR(status.st_mode);
}

bool vh_IsFileOperationType(int value, int flag) {
  switch (flag) {
    case VH_FILE_OPERATION_TYPE_FOT_Update:
    case VH_FILE_OPERATION_TYPE_FOT_OverWrite:
    case VH_FILE_OPERATION_TYPE_FOT_Symbolic:
    case VH_FILE_OPERATION_TYPE_FOT_Deleted:
      return (value & flag) == flag;
    default:
      varnholt::print_failure("op[%d] is not Good value \n", flag);
      g_assertion_message_expr(G_LOG_DOMAIN, "bak-model", __LINE__, __func__, "FALSE");
  }
}

char* vh_FileOperationType_tostr(int op) {
  std::string text = "追加";
  if (has(op, VH_FILE_OPERATION_TYPE_FOT_Symbolic)) {
    text = "软链接";
  } else if (has(op, VH_FILE_OPERATION_TYPE_FOT_OverWrite)) {
    text = "覆盖";
  }
  if (has(op, VH_FILE_OPERATION_TYPE_FOT_Deleted)) text += "|标记删除";
  return give_text(text);
}

int vh_string_index_of(const char* rawstr, const char* needle) {
  g_return_val_if_fail(rawstr != NULL, 0);
  g_return_val_if_fail(needle != NULL, 0);
  const std::string_view text = rawstr;
  const std::string_view wanted = needle;
  int characters = 0;
  for (std::size_t at = 0; at + wanted.size() <= text.size(); ++at) {
    if (at < text.size() && !begins_character(text[at])) continue;
    if (text.substr(at).starts_with(wanted)) return characters;
    ++characters;
  }
  return -1;
}

GType vh_bak_def_item_get_type() {
  using ItemType = varnholt::ObjectType<VhBakDefItem, VhBakDefItemClass, BakDefFields>;
  static const GType type =
      ItemType::register_type(G_TYPE_OBJECT, "VhBakDefItem", [](VhBakDefItemClass* klass) {
        klass->lnk_to_string = vh_bak_def_item_real_lnk_to_string;
        register_enumerations();
      });
  return type;
}

VhBakDefItem* vh_bak_def_item_new(const char* from, const char* to, int op, gint64 last_oper_time) {
  return vh_bak_def_item_construct(vh_bak_def_item_get_type(), from, to, op, last_oper_time);
}

VhBakDefItem* vh_bak_def_item_construct(GType object_type, const char* from, const char* to, int op,
                                        gint64 last_oper_time) {
  g_return_val_if_fail(from != NULL, nullptr);
  g_return_val_if_fail(to != NULL, nullptr);
  BakDefFields fields;
  fields.from = from;
  fields.to = to;
  fields.op = op;
  fields.last_oper_time = last_oper_time;
  return make_item(object_type, std::move(fields));
}

void vh_bak_def_item_fill_by_other(VhBakDefItem* self, VhBakDefItem* item) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(item != NULL);
  varnholt::take_over<BakDefFields>(*self, *item);
  vh_bak_def_item_set_dir(self);
}

void vh_bak_def_item_set_last_oper_time_int64(VhBakDefItem* self, gint64 last_oper_time) {
  g_return_if_fail(self != NULL);
  self->last_oper_time = last_oper_time;
}

gint64 vh_bak_def_item_get_last_oper_time_int64(VhBakDefItem* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->last_oper_time;
}

void vh_bak_def_item_set_last_oper_time_dt(VhBakDefItem* self, const struct tm* dt) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(dt != NULL);
  struct tm local = *dt;
  self->last_oper_time = mktime(&local);
}

void vh_bak_def_item_set_is_selected(VhBakDefItem* self, bool is_selected) {
  g_return_if_fail(self != NULL);
  self->is_selected = is_selected;
}

bool vh_bak_def_item_get_is_selected(VhBakDefItem* self) {
  g_return_val_if_fail(self != NULL, false);
  return self->is_selected;
}

void vh_bak_def_item_set_force_overwrite(VhBakDefItem* self, bool force_overwrite) {
  g_return_if_fail(self != NULL);
  self->force_overwrite = force_overwrite;
}

bool vh_bak_def_item_get_force_overwrite(VhBakDefItem* self) {
  g_return_val_if_fail(self != NULL, false);
  return self->force_overwrite;
}

void vh_bak_def_item_set_dir(VhBakDefItem* self) {
  g_return_if_fail(self != NULL);
  self->is_dir = vh_FileTests(self->from.c_str(), VH_FILE_TEST_TYPE_IS_DIR);
}

char* vh_bak_def_item_lnk_to_string(VhBakDefItem* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return G_TYPE_INSTANCE_GET_CLASS(self, vh_bak_def_item_get_type(), VhBakDefItemClass)
      ->lnk_to_string(self);
}

VhBakDefItem* vh_bak_def_item_lnk_scanf_string(const char* line) {
  g_return_val_if_fail(line != NULL, nullptr);
  auto fields = varnholt::read_lnk_line(line);
  return fields ? make_item(vh_bak_def_item_get_type(), std::move(*fields)) : nullptr;
}

char* vh_bak_def_item_shl_to_string(VhBakDefItem* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  const bool update = self->op == VH_FILE_OPERATION_TYPE_FOT_Update;
  return give_text("shl," + self->from + ',' + self->to + (update ? ",update" : ",overwrite"));
}

VhBakDefItem* vh_bak_def_item_shl_scanf_string(const char* line) {
  g_return_val_if_fail(line != NULL, nullptr);
  const auto fields = fields_of(line, "shl");
  if (fields.size() != 4) return nullptr;
  BakDefFields read;
  read.from = fields[1];
  read.to = fields[2];
  read.op = fields[3] == "update" ? VH_FILE_OPERATION_TYPE_FOT_Update
                                  : VH_FILE_OPERATION_TYPE_FOT_OverWrite;
  return make_item(vh_bak_def_item_get_type(), std::move(read));
}

GType vh_bak_def_item_list_get_type() {
  using ListType = varnholt::ObjectType<VhBakDefItemList, VhBakDefItemListClass,
                                        varnholt::RowList<VhBakDefItem>>;
  // What stands in a list is found by name before there is an item.
  static const GType type = ListType::register_type(G_TYPE_OBJECT, "VhBakDefItemList",
                                                    [](VhBakDefItemListClass* /*klass*/) {
                                                      vh_bak_def_item_get_type();
                                                      register_enumerations();
                                                    });
  return type;
}

VhBakDefItemList* vh_bak_def_item_list_new() {
  return vh_bak_def_item_list_construct(vh_bak_def_item_list_get_type());
}

VhBakDefItemList* vh_bak_def_item_list_construct(GType object_type) {
  return static_cast<VhBakDefItemList*>(g_object_new(object_type, nullptr));
}

VhBakDefItem* vh_bak_def_item_list_find_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter,
                                                int* index) {
  g_return_val_if_fail(self != NULL, nullptr);
  g_return_val_if_fail(iter != NULL, nullptr);
  return self->find(*iter).hand_out(index);
}

int vh_bak_def_item_list_find_in_iter_idx(VhBakDefItemList* self, const GtkTreeIter* iter) {
  g_return_val_if_fail(self != NULL, 0);
  g_return_val_if_fail(iter != NULL, 0);
  return self->find(*iter).index;
}

bool vh_bak_def_item_list_remove_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(iter != NULL, false);
  return self->remove(*iter);
}

bool vh_bak_def_item_list_hide_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(iter != NULL, false);
  const auto found = self->find(*iter);
  varnholt::print_progress("hide_in_iter %d\n", found.index);
  if (found.item == nullptr) return false;
  found.item->op |= VH_FILE_OPERATION_TYPE_FOT_Deleted;
  found.item->is_selected = false;
  return true;
}

guint vh_bak_def_item_list_length(VhBakDefItemList* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->length();
}

VhBakDefItem* vh_bak_def_item_list_nth_data(VhBakDefItemList* self, guint index) {
  g_return_val_if_fail(self != NULL, nullptr);
  return self->nth(index).hand_out(nullptr);
}

void vh_bak_def_item_list_append_val(VhBakDefItemList* self, VhBakDefItem* val) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(val != NULL);
  self->append(val);
}

void vh_bak_def_item_list_prepend_val(VhBakDefItemList* self, VhBakDefItem* val) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(val != NULL);
  self->prepend(val);
}

guint vh_bak_def_item_list_total_selected_number(VhBakDefItemList* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->selected_number();
}

VhBakDefItem* vh_bak_def_item_list_get_first_selected_item(VhBakDefItemList* self, int* index) {
  g_return_val_if_fail(self != NULL, nullptr);
  return self->first_selected().hand_out(index);
}
