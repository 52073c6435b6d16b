// SPDX-License-Identifier: GPL-3.0-or-later
// The model: lines read and written, flags, file tests.
#include "model/bak-model.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/glib-ptr.h"
#include "scratch/scratch-paths.h"

using varnholt::take_object;
using varnholt::take_text;

namespace {

std::string owned(char* text) {
  return text == nullptr ? "(none)" : take_text(text).get();
}

/** What the items that the two readers make of a line are written as. */
std::string written(const char* line) {
  const auto lnk = take_object(vh_bak_def_item_lnk_scanf_string(line));
  const auto shl = take_object(vh_bak_def_item_shl_scanf_string(line));
  if (lnk) return owned(vh_bak_def_item_lnk_to_string(lnk.get()));
  return shl ? owned(vh_bak_def_item_shl_to_string(shl.get())) : "(none)";
}

}  // namespace

TEST(BakModel, ReadsAndWritesLines) {
  for (const auto& [line, expected] : {
           std::pair{"lnk,file,/,/b,update", "lnk,dir,/,/b,update,true,0"},
           {"lnk,dir,/no/a,/b,update,yes,0x10", "lnk,file,/no/a,/b,update,true,16"},
           {"lnk,,/no/a,/b,overwrite|deleted,false,12",
            "lnk,file,/no/a,/b,overwrite|deleted,false,12"},
           {"lnk,,/no/a,/b,overwrite,true ,-010x", "lnk,file,/no/a,/b,overwrite,true,-8"},
           {"lnk,,/no/a,/b,overwrite,True,99999999999999999999",
            "lnk,file,/no/a,/b,overwrite,false,9223372036854775807"},
           {"lnk,,/no/a,/b,symbolic|deleted,true,5", "lnk,file,/no/a,/b,symbolic|deleted"},
           {"lnk,,/no/a,/b,copy", "lnk,file,/no/a,/b,update"},
           {"lnkx, , \t/no/a\r\f , /b\v ,symbolically deleted \r",
            "lnk,file,/no/a,/b\v,symbolic|deleted"},
           {"lnk,,,,", "lnk,file,,,update"},
           {" lnk,file,/a,/b,update", "(none)"},
           {"lnk,file,/a,/b,c,symbolic", "(none)"},
           {"lnk,file,/a,/b,update,true,1,", "(none)"},
           {"lnk", "(none)"},
           {"", "(none)"},
           {"shl, /a ,/b,update \r", "shl,/a,/b,update"},
           {"shl,/a,/b,Update", "shl,/a,/b,overwrite"},
           {"shl,/a,/b", "(none)"},
           {"shl,/a,/b,update,x", "(none)"},
       }) {
    EXPECT_EQ(written(line), expected) << line;
  }
}

TEST(BakModel, CopiesWhatAnotherItemSaysButNotItsRow) {
  const auto folder = varnholt::scratch_folder() + "/folder";
  std::filesystem::create_directory(folder);
  const auto item = take_object(vh_bak_def_item_lnk_scanf_string("lnk,file,/,/b,overwrite,true,7"));
  const auto other = take_object(vh_bak_def_item_new(folder.c_str(), "/c", 8, 0));
  EXPECT_TRUE(other->is_dir);
  char node{};
  const GtkTreeIter row{7, &node, nullptr, nullptr};
  item->iter = row;
  vh_bak_def_item_set_is_selected(other.get(), true);
  std::filesystem::remove(folder);
  vh_bak_def_item_fill_by_other(item.get(), other.get());
  EXPECT_EQ(owned(vh_bak_def_item_lnk_to_string(item.get())),
            "lnk,file," + folder + ",/c,update|deleted");
  EXPECT_TRUE(vh_bak_def_item_get_is_selected(item.get()));
  EXPECT_FALSE(vh_bak_def_item_get_force_overwrite(item.get()));
  vh_bak_def_item_set_force_overwrite(item.get(), true);
  EXPECT_TRUE(vh_bak_def_item_get_force_overwrite(item.get()));
  EXPECT_TRUE(vh_cmp_iter(&*item->iter, &row));
  for (const GtkTreeIter elsewhere : {GtkTreeIter{8, &node, nullptr, nullptr},
                                      {7, nullptr, nullptr, nullptr},
                                      {7, &node, &node, nullptr},
                                      {7, &node, nullptr, &node}}) {
    EXPECT_FALSE(vh_cmp_iter(&elsewhere, &row));
  }
}

TEST(BakModel, TellsOperationsCharactersAndFiles) {
  for (const auto& [op, text] : {std::pair{0, "追加"},
                                 {2, "覆盖"},
                                 {7, "软链接"},
                                 {8, "追加|标记删除"},
                                 {10, "覆盖|标记删除"}}) {
    EXPECT_EQ(owned(vh_FileOperationType_tostr(op)), text);
  }
  EXPECT_TRUE(vh_IsFileOperationType(9, 1) && vh_IsFileOperationType(9, 8));
  EXPECT_FALSE(vh_IsFileOperationType(2, 1) || vh_IsFileOperationType(0, 4));
  EXPECT_DEATH(vh_IsFileOperationType(9, 3),
               "op\\[3\\] is not Good value \n.*bak-model:.*vh_IsFileOperationType.*FALSE");
  for (const auto& [text, needle, index] : {std::tuple{"网段地址", "地址", 2},
                                            {"ab", "abc", -1},
                                            {"abc", "", 0},
                                            {"aéé ", "é ", 2},
                                            {"\xF0", "a", -1}}) {
    EXPECT_EQ(vh_string_index_of(text, needle), index) << text;
  }
  const std::filesystem::path folder = varnholt::scratch_folder();
  std::filesystem::create_symlink(folder, folder / "link");
  std::filesystem::create_symlink("nowhere", folder / "dangling");
  for (const auto& [path, is_dir, exists] : {std::tuple{folder / "link", true, true},
                                             {"/proc/self/exe", false, true},
                                             {folder / "dangling", false, false}}) {
    EXPECT_EQ(vh_FileTests(path.c_str(), VH_FILE_TEST_TYPE_IS_DIR), is_dir) << path;
    EXPECT_EQ(vh_FileTests(path.c_str(), VH_FILE_TEST_TYPE_EXISTS), exists) << path;
    EXPECT_FALSE(vh_FileTests(path.c_str(), static_cast<VhFileTestType>(2))) << path;
  }
}

TEST(BakModel, TellsMissingArgumentsAndIsKnownToTheTypeSystem) {
  g_test_expect_message("varnholt", G_LOG_LEVEL_CRITICAL, "*vh_bak_def_item_*'to != NULL'*");
  EXPECT_EQ(vh_bak_def_item_new("/a", nullptr, 0, 0), nullptr);
  g_test_assert_expected_messages();
  EXPECT_EQ(owned(g_flags_to_string(vh_file_operation_type_get_type(), 12)),
            "VH_FILE_OPERATION_TYPE_FOT_Symbolic | VH_FILE_OPERATION_TYPE_FOT_Deleted");
  EXPECT_EQ(owned(g_enum_to_string(vh_file_test_type_get_type(), 1)), "VH_FILE_TEST_TYPE_EXISTS");
}
