// SPDX-License-Identifier: GPL-3.0-or-later
// A line read is read the same each time, and what its writer makes of it is read back as the same.
#include "model/bak-model.h"
#include "target.h"

namespace {

using varnholt::take_object;
using varnholt::take_text;

/** An operation of no known kind is written as an update, which has more fields when written. */
bool is_written_as_read(const VhBakDefItem* item) {
  return (item->op & ~VH_FILE_OPERATION_TYPE_FOT_Deleted) != VH_FILE_OPERATION_TYPE_FOT_NULL;
}
bool is_written_as_read(const VhRutDefItem* /*item*/) {
  return true;
}

template <typename Item>
void check_line(const std::string& line, Item* (*read)(const char*), char* (*written)(Item*)) {
  const auto item = take_object(read(line.c_str()));
  const auto same = take_object(read(line.c_str()));
  must_hold(!item == !same, "read once, not twice: " + line);
  if (!item) return;
  const std::string text = take_text(written(item.get())).get();
  must_hold(text == take_text(written(same.get())).get(), "read in two ways: " + line);
  const auto back = take_object(read(text.c_str()));
  must_hold(back != nullptr, "not read back: " + text);
  must_hold(!is_written_as_read(item.get()) || text == take_text(written(back.get())).get(),
            "written in two ways: " + text);
}

void check_flag(const std::string& line) {
  const auto list = take_object(vh_rut_def_item_list_new());
  const bool flag = vh_rut_def_item_list_scanf_del_def_rut(line.c_str());
  vh_rut_def_item_list_set_del_def_rut(list.get(), flag);
  const auto text = take_text(vh_rut_def_item_list_del_def_rut_to_string(list.get()));
  must_hold(vh_rut_def_item_list_scanf_del_def_rut(text.get()) == flag, "another flag: " + line);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string line{reinterpret_cast<const char*>(data), size};
  check_line(line, vh_bak_def_item_lnk_scanf_string, vh_bak_def_item_lnk_to_string);
  check_line(line, vh_bak_def_item_shl_scanf_string, vh_bak_def_item_shl_to_string);
  check_line(line, vh_rut_def_item_scanf_string, vh_rut_def_item_to_string);
  check_flag(line);
  return 0;
}
