// SPDX-License-Identifier: GPL-3.0-or-later
// The definitions of one table in the order of its rows.
#include "model/bak-def-list.h"

#include "base/diagnostics.h"
#include "base/object-type.h"

bool varnholt::model::BakDefListState::hide(const Place& found) {
  print_progress("hide_in_iter %d\n", found.index);
  if (found.item == nullptr) return false;
  found.item->op |= VH_FILE_OPERATION_TYPE_FOT_Deleted;
  found.item->is_selected = false;
  return true;
}

GType vh_bak_def_item_list_get_type() {
  return varnholt::
      ObjectType<VhBakDefItemList, VhBakDefItemListClass, varnholt::model::BakDefListState>::get(
          G_TYPE_OBJECT, "VhBakDefItemList", [](VhBakDefItemListClass* /*klass*/) {
            // A program that finds this type by its name can then find the type of the items too.
            g_type_class_unref(g_type_class_ref(vh_bak_def_item_get_type()));
          });
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
  const auto found = self->find(*iter);
  if (found.item != nullptr) self->remove(found);
  return found.item != nullptr;
}

bool vh_bak_def_item_list_hide_in_iter(VhBakDefItemList* self, const GtkTreeIter* iter) {
  g_return_val_if_fail(self != NULL, false);
  g_return_val_if_fail(iter != NULL, false);
  return VhBakDefItemList::hide(self->find(*iter));
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
  self->insert(val, false);
}

void vh_bak_def_item_list_prepend_val(VhBakDefItemList* self, VhBakDefItem* val) {
  g_return_if_fail(self != NULL);
  g_return_if_fail(val != NULL);
  self->insert(val, true);
}

guint vh_bak_def_item_list_total_selected_number(VhBakDefItemList* self) {
  g_return_val_if_fail(self != NULL, 0);
  return self->selected_number();
}

VhBakDefItem* vh_bak_def_item_list_get_first_selected_item(VhBakDefItemList* self, int* index) {
  g_return_val_if_fail(self != NULL, nullptr);
  return self->first_selected().hand_out(index);
}
