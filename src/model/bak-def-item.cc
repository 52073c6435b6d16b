// SPDX-License-Identifier: GPL-3.0-or-later
// One definition of the Link page or of the Shell page as an object.
#include "model/bak-def-item.h"

#include <utility>

#include "base/glib-ptr.h"
#include "base/object-type.h"
#include "model/file-test.h"
#include "model/new-item.h"

namespace {

using varnholt::model::BakDefFields;

VhBakDefItem* make_item(GType object_type, BakDefFields fields) {
  auto* const self = static_cast<VhBakDefItem*>(g_object_new(object_type, nullptr));
  static_cast<varnholt::model::BakDefFields&>(*self) = std::move(fields);
  vh_bak_def_item_set_dir(self);
  return self;
}

char* real_lnk_to_string(VhBakDefItem* self) {
  return varnholt::give_text(varnholt::model::lnk_line(*self));
}

}  // namespace

GType vh_bak_def_item_get_type() {
  return varnholt::ObjectType<VhBakDefItem, VhBakDefItemClass, varnholt::model::BakDefState>::get(
      G_TYPE_OBJECT, "VhBakDefItem", [](VhBakDefItemClass* klass) {
        klass->lnk_to_string = real_lnk_to_string;
        // A program that finds this type by its name can then find the enumerations too.
        vh_file_test_type_get_type();
        vh_file_operation_type_get_type();
      });
}

VhBakDefItem* vh_bak_def_item_new(const char* from, const char* to, int op, gint64 last_oper_time) {
  return vh_bak_def_item_construct(vh_bak_def_item_get_type(), from, to, op, last_oper_time);
}

VhBakDefItem* vh_bak_def_item_construct(GType object_type, const char* from, const char* to, int op,
                                        gint64 last_oper_time) {
  g_return_val_if_fail(from != NULL, nullptr);
  g_return_val_if_fail(to != NULL, nullptr);
  return make_item(object_type,
                   {.from = from, .to = to, .op = op, .last_oper_time = last_oper_time});
}

VhBakDefItem* varnholt::model::new_bak_def_item(std::optional<BakDefFields> fields) {
  return fields ? make_item(vh_bak_def_item_get_type(), std::move(*fields)) : nullptr;
}

void vh_bak_def_item_fill_by_other(VhBakDefItem* self, VhBakDefItem* item) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(item != NULL);
  self->is_selected = item->is_selected;
  static_cast<varnholt::model::BakDefFields&>(*self) =
      static_cast<const varnholt::model::BakDefFields&>(*item);
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
  return varnholt::model::new_bak_def_item(varnholt::model::read_lnk_line(line));
}

char* vh_bak_def_item_shl_to_string(VhBakDefItem* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return varnholt::give_text(varnholt::model::shl_line(*self));
}

VhBakDefItem* vh_bak_def_item_shl_scanf_string(const char* line) {
  g_return_val_if_fail(line != NULL, nullptr);
  return varnholt::model::new_bak_def_item(varnholt::model::read_shl_line(line));
}
