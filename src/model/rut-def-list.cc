// SPDX-License-Identifier: GPL-3.0-or-later
// The routes of the table in the order of its rows, with the flag about the default route.
#include "model/rut-def-list.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include "base/glib-ptr.h"
#include "base/object-type.h"

namespace varnholt::model {
namespace {

/** Two rivals have the first or the second hash in common. */
std::array<std::size_t, 2> hashes_of(const RutDefFields& route) {
  const std::hash<std::string> hash;
  return {hash(route.name), hash(route.addr + ',' + route.mask + ',' + route.gw)};
}

}  // namespace

RutDefListState::~RutDefListState() {
  for (const auto& item : *this) leave(*item);
}

void RutDefListState::insert(VhRutDefItem* item, bool first) {
  RowList::insert(item, first);
  item->indexed.push_back(&m_indexed);
  if (first) m_indexed = 0;
}

void RutDefListState::remove(const Place& place) {
  leave(*place.item);
  m_indexed = 0;
  RowList::remove(place);
}

void RutDefListState::leave(VhRutDefItem& item) {
  item.indexed.erase(std::ranges::find(item.indexed, &m_indexed));
}

const VhRutDefItem* RutDefListState::first_rival_of(const RutDefFields& route,
                                                    const VhRutDefItem* except) {
  if (m_indexed == 0) m_index.clear();
  for (; m_indexed < length(); ++m_indexed) {
    for (const auto hash : hashes_of(*nth(m_indexed).item)) m_index.emplace(hash, m_indexed);
  }
  guint first = length();
  for (const auto hash : hashes_of(route)) {
    for (auto [at, end] = m_index.equal_range(hash); at != end; ++at) {
      const auto* const other = nth(at->second).item;
      if (other != except && are_rivals(*other, route)) first = std::min(first, at->second);
    }
  }
  return nth(first).item;
}

}  // namespace varnholt::model

GType vh_rut_def_item_list_get_type() {
  return varnholt::
      ObjectType<VhRutDefItemList, VhRutDefItemListClass, varnholt::model::RutDefListState>::get(
          G_TYPE_OBJECT, "VhRutDefItemList",
          [](VhRutDefItemListClass* /*klass*/) { vh_rut_def_item_get_type(); });
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
  return varnholt::give_text(varnholt::model::rut_del_line(self->del_def_rut));
}

bool vh_rut_def_item_list_scanf_del_def_rut(const char* line) {
  g_return_val_if_fail(line != NULL, false);
  return varnholt::model::read_rut_del_line(line).value_or(true);
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
  const auto found = self->find(*iter);
  if (found.item != nullptr) self->remove(found);
  return found.item != nullptr;
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
  self->insert(val, false);
}

guint vh_rut_def_item_list_total_selected_number(VhRutDefItemList* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->selected_number();
}

VhRutDefItem* vh_rut_def_item_list_get_first_selected_item(VhRutDefItemList* self, int* index) {
  g_return_val_if_fail(self != NULL, nullptr);
  return self->first_selected().hand_out(index);
}
