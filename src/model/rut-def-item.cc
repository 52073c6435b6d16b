// SPDX-License-Identifier: GPL-3.0-or-later
// One static route as an object.
#include "model/rut-def-item.h"

#include <utility>

#include "base/glib-ptr.h"
#include "base/object-type.h"
#include "model/new-item.h"

namespace {

using varnholt::model::RutDefFields;

VhRutDefItem* make_item(GType object_type, RutDefFields fields) {
  auto* const self = static_cast<VhRutDefItem*>(g_object_new(object_type, nullptr));
  static_cast<varnholt::model::RutDefFields&>(*self) = std::move(fields);
  return self;
}

}  // namespace

GType vh_rut_def_item_get_type() {
  return varnholt::ObjectType<VhRutDefItem, VhRutDefItemClass, varnholt::model::RutDefState>::get(
      G_TYPE_OBJECT, "VhRutDefItem");
}

VhRutDefItem* vh_rut_def_item_new(const char* name, const char* addr, const char* mask,
                                  const char* gw, const char* jup, const char* nic) {
  return vh_rut_def_item_construct(vh_rut_def_item_get_type(), name, addr, mask, gw, jup, nic);
}

VhRutDefItem* vh_rut_def_item_construct(GType object_type, const char* name, const char* addr,
                                        const char* mask, const char* gw, const char* jup,
                                        const char* nic) {
  g_return_val_if_fail(name != NULL, nullptr);
  g_return_val_if_fail(addr != NULL, nullptr);
  g_return_val_if_fail(mask != NULL, nullptr);
  g_return_val_if_fail(gw != NULL, nullptr);
  g_return_val_if_fail(jup != NULL, nullptr);
  g_return_val_if_fail(nic != NULL, nullptr);
  return make_item(object_type, {name, addr, mask, gw, jup, nic});
}

VhRutDefItem* varnholt::model::new_rut_def_item(std::optional<RutDefFields> fields) {
  return fields ? make_item(vh_rut_def_item_get_type(), std::move(*fields)) : nullptr;
}

void vh_rut_def_item_fill_by_other(VhRutDefItem* self, VhRutDefItem* item) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(item != NULL);
  self->is_selected = item->is_selected;
  static_cast<varnholt::model::RutDefFields&>(*self) =
      static_cast<const varnholt::model::RutDefFields&>(*item);
  for (auto* indexed : self->indexed) *indexed = 0;
}

void vh_rut_def_item_set_is_selected(VhRutDefItem* self, bool is_selected) {
  g_return_if_fail(self != NULL);
  self->is_selected = is_selected;
}

bool vh_rut_def_item_get_is_selected(VhRutDefItem* self) {
  g_return_val_if_fail(self != NULL, false);
  return self->is_selected;
}

char* vh_rut_def_item_to_string(VhRutDefItem* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return varnholt::give_text(varnholt::model::rut_add_line(*self));
}

VhRutDefItem* vh_rut_def_item_scanf_string(const char* line) {
  g_return_val_if_fail(line != NULL, nullptr);
  return varnholt::model::new_rut_def_item(varnholt::model::read_rut_add_line(line));
}
