// SPDX-License-Identifier: GPL-3.0-or-later
// The model: lines read and written, flags, file tests.
#include "model/bak-model.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/glib-ptr.h"
#include "model/rut-model.h"
#include "scenarios.h"
#include "scratch/scratch-paths.h"
#include "varnholt.h"

using varnholt::take_object;
using varnholt::take_text;

namespace {

std::string owned(char* text) {
  return text == nullptr ? "(none)" : take_text(text).get();
}

}  // namespace

TEST(BakModel, ReadsAndWritesTexts) {
  Transcript script;
  const auto learn = [&script](const char* kind, auto read, auto written) {
    script.commands[kind] = [=, &script](const std::string& line) {
      const auto item = take_object(read(line.c_str()));
      script.say(item ? owned(written(item.get())) : "(none)");
    };
  };
  learn("lnk", vh_bak_def_item_lnk_scanf_string, vh_bak_def_item_lnk_to_string);
  learn("shl", vh_bak_def_item_shl_scanf_string, vh_bak_def_item_shl_to_string);
  learn("rut", vh_rut_def_item_scanf_string, vh_rut_def_item_to_string);
  script.commands["op"] = [&script](const std::string& op) {
    script.say(owned(vh_FileOperationType_tostr(std::stoi(op))));
  };
  script.commands["index"] = [&script](const std::string& words) {
    const auto colon = words.find(':');
    script.say(std::to_string(
        vh_string_index_of(words.substr(colon + 1).c_str(), words.substr(0, colon).c_str())));
  };
  script.commands["flag"] = [&script](const std::string& line) {
    const auto list = take_object(vh_rut_def_item_list_new());
    EXPECT_TRUE(vh_rut_def_item_list_get_del_def_rut(list.get()));
    const bool flag = vh_rut_def_item_list_scanf_del_def_rut(line.c_str());
    vh_rut_def_item_list_set_del_def_rut(list.get(), flag);
    script.say(owned(vh_rut_def_item_list_del_def_rut_to_string(list.get())));
  };
  script.commands["version"] = [&script](std::string text) {
    const int version = main_get_cur_version(&text);
    script.say(std::to_string(version) + ':' + text);
  };
  for (const auto& scenario : scenarios_of(SCENARIOS "/lines.scenarios")) script.check(scenario);
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

TEST(BakModel, TestsFlagsAndFiles) {
  EXPECT_TRUE(vh_IsFileOperationType(9, 1) && vh_IsFileOperationType(9, 8));
  EXPECT_FALSE(vh_IsFileOperationType(2, 1) || vh_IsFileOperationType(0, 4));
  EXPECT_DEATH(vh_IsFileOperationType(9, 3),
               "op\\[3\\] is not Good value \n.*bak-model:.*vh_IsFileOperationType.*FALSE");
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
  g_test_expect_message("varnholt", G_LOG_LEVEL_CRITICAL, "*vh_rut_def_item_*'gw != NULL'*");
  EXPECT_EQ(vh_rut_def_item_new("", "", "", nullptr, nullptr, ""), nullptr);
  g_test_expect_message("varnholt", G_LOG_LEVEL_CRITICAL, "*scanf_del_def_rut*'line != NULL'*");
  EXPECT_FALSE(vh_rut_def_item_list_scanf_del_def_rut(nullptr));
  g_test_expect_message("varnholt", G_LOG_LEVEL_CRITICAL, "*find_in_iter*'self != NULL'*");
  int index = 77;
  EXPECT_EQ(vh_bak_def_item_list_find_in_iter(nullptr, nullptr, &index), nullptr);
  EXPECT_EQ(index, 77);
  g_test_assert_expected_messages();
  EXPECT_EQ(owned(g_flags_to_string(vh_file_operation_type_get_type(), 12)),
            "VH_FILE_OPERATION_TYPE_FOT_Symbolic | VH_FILE_OPERATION_TYPE_FOT_Deleted");
}
