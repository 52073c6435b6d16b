// SPDX-License-Identifier: GPL-3.0-or-later
// The static routes of the profile: one route with its line, and the routes of the table.
#include "model/rut-model.h"

#include <array>
#include <string>
#include <utility>

#include "base/glib-ptr.h"
#include "base/object-type.h"
#include "base/text.h"

namespace {

using varnholt::fields_of;
using varnholt::give_text;
using varnholt::RutDefFields;

/** The texts of a route in the order of its line. */
constexpr std::array rut_def_texts{&RutDefFields::name, &RutDefFields::addr, &RutDefFields::mask,
                                   &RutDefFields::gw,   &RutDefFields::jup,  &RutDefFields::nic};

VhRutDefItem* make_item(GType object_type, RutDefFields fields) {
  auto* const self = static_cast<VhRutDefItem*>(g_object_new(object_type, nullptr));
  RutDefFields& own = *self;
  own = std::move(fields);
  return self;
}

}  // namespace

GType vh_rut_def_item_get_type() {
  using ItemType = varnholt::ObjectType<VhRutDefItem, VhRutDefItemClass, RutDefFields>;
  static const GType type = ItemType::register_type(G_TYPE_OBJECT, "VhRutDefItem");
  return type;
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
  return make_item(object_type, {{}, name, addr, mask, gw, jup, nic});
}

void vh_rut_def_item_fill_by_other(VhRutDefItem* self, VhRutDefItem* item) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(item != NULL);
  varnholt::take_over<RutDefFields>(*self, *item);
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
  std::string line = "rut,add";
  for (const auto text : rut_def_texts) line += ',' + self->*text;
  return give_text(line);
}

VhRutDefItem* vh_rut_def_item_scanf_string(const char* line) {
  g_return_val_if_fail(line != NULL, nullptr);
  const auto fields = fields_of(line, "rut,add");
  if (fields.size() != 2 + rut_def_texts.size()) return nullptr;
  RutDefFields read;
  auto field = fields.begin() + 2;
  for (const auto text : rut_def_texts) read.*text = *field++;
  return make_item(vh_rut_def_item_get_type(), std::move(read));
}

GType vh_rut_def_item_list_get_type() {
  using ListType =
      varnholt::ObjectType<VhRutDefItemList, VhRutDefItemListClass, varnholt::RutDefListState>;
  static const GType type =
      ListType::register_type(G_TYPE_OBJECT, "VhRutDefItemList",
                              [](VhRutDefItemListClass* /*klass*/) { vh_rut_def_item_get_type(); });
  return type;
}

VhRutDefItemList* vh_rut_def_item_list_new() {
  return vh_rut_def_item_list_construct(vh_rut_def_item_list_get_type());
}

VhRutDefItemList* vh_rut_def_item_list_construct(GType object_type) {
  return static_cast<VhRutDefItemList*>(g_object_new(object_type, nullptr));
}

void vh_rut_def_item_list_set_del_def_rut(VhRutDefItemList* self, bool del_def_rut) {
  g_return_if_fail(self != NULL);
  self->del_def_rut = del_def_rut;
}

bool vh_rut_def_item_list_get_del_def_rut(VhRutDefItemList* self) {
  g_return_val_if_fail(self != NULL, false);
  return self->del_def_rut;
}

char* vh_rut_def_item_list_del_def_rut_to_string(VhRutDefItemList* self) {
  g_return_val_if_fail(self != NULL, nullptr);
  return give_text(self->del_def_rut ? "rut,del,yes" : "rut,del,no");
}

bool vh_rut_def_item_list_scanf_del_def_rut(const char* line) {
  g_return_val_if_fail(line != NULL, false);
  const auto fields = fields_of(line, "rut,del");
  return fields.size() != 3 || fields[2] == "yes";
}

VhRutDefItem* vh_rut_def_item_list_find_in_iter(VhRutDefItemList* self, const GtkTreeIter* iter,
                                                int* index) {
  g_return_val_if_fail(self != NULL, nullptr);
  g_return_val_if_fail(iter != NULL, nullptr);
  return self->find(*iter).hand_out(index);
}

int vh_rut_def_item_list_find_in_iter_idx(VhRutDefItemList* self, const GtkTreeIter* iter) {
  g_return_val_if_fail(self != NULL, 0);
  g_return_val_if_fail(iter != NULL, 0);
  return self->find(*iter).index;
}

bool vh_rut_def_item_list_remove_in_iter(VhRutDefItemList* self, const GtkTreeIter* iter) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(iter != NULL, false);
  return self->remove(*iter);
}

guint vh_rut_def_item_list_length(VhRutDefItemList* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->length();
}

VhRutDefItem* vh_rut_def_item_list_nth_data(VhRutDefItemList* self, guint index) {
  g_return_val_if_fail(self != NULL, nullptr);
  return self->nth(index).hand_out(nullptr);
}

void vh_rut_def_item_list_append_val(VhRutDefItemList* self, VhRutDefItem* val) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(val != NULL);
  self->append(val);
}

guint vh_rut_def_item_list_total_selected_number(VhRutDefItemList* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->selected_number();
}

VhRutDefItem* vh_rut_def_item_list_get_first_selected_item(VhRutDefItemList* self, int* index) {
  g_return_val_if_fail(self != NULL, nullptr);
  return self->first_selected().hand_out(index);
}
