// SPDX-License-Identifier: GPL-3.0-or-later
// Tests of the model and the profile: lines, items, flags, file tests, versions, times and moves.
#include "model/bak-model.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/glib-ptr.h"
#include "base/shell.h"
#include "linkbuilder/link-operations.h"
#include "scenarios.h"
#include "scratch/scratch-paths.h"
#include "store/profile.h"

using varnholt::take_object;
using varnholt::take_text;

static std::string owned(char* text) {
  return text == nullptr ? "(none)" : take_text(text).get();
}

class Lines : public testing::Test {
 public:
  explicit Lines(Scenario scenario) : m_scenario(std::move(scenario)) {}

  void TestBody() override {
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
      const auto needle = words.substr(0, words.find(':'));
      const auto text = words.substr(needle.size() + 1);
      const int index = vh_string_index_of(text.c_str(), needle.c_str());
      script.say(std::to_string(index));
      if (g_utf8_strlen(needle.c_str(), -1) != 1) return;
      EXPECT_EQ(main_string_index_of(text.c_str(), g_utf8_get_char(needle.c_str())), index);
    };
    script.commands["flag"] = [&script](const std::string& line) {
      const auto list = take_object(vh_rut_def_item_list_new());
      EXPECT_TRUE(vh_rut_def_item_list_get_del_def_rut(list.get()));
      vh_rut_def_item_list_set_del_def_rut(list.get(),
                                           vh_rut_def_item_list_scanf_del_def_rut(line.c_str()));
      script.say(owned(vh_rut_def_item_list_del_def_rut_to_string(list.get())));
    };
    script.commands["version"] = [&script](std::string text) {
      const int version = main_get_cur_version(&text);
      script.say(std::to_string(version) + ':' + text);
    };
    script.commands["time"] = [&script](const std::string& local_time) {
      g_setenv("TZ", "local-8", TRUE);
      struct tm broken_down {};
      strptime(local_time.c_str(), "%F %T", &broken_down);
      const auto item = take_object(vh_bak_def_item_new("/a", "/b", 1, 0));
      vh_bak_def_item_set_last_oper_time_dt(item.get(), &broken_down);
      EXPECT_EQ(vh_bak_def_item_get_last_oper_time_int64(item.get()), item->last_oper_time);
      script.say(owned(vh_bak_def_item_lnk_to_string(item.get())));
    };
    script.commands["fill"] = [&script](const std::string& from) {
      const auto filled = take_object(vh_bak_def_item_new("/", "/c", 2, 0));
      const auto other = take_object(vh_bak_def_item_new(from.c_str(), "/b", 1, 7));
      other->is_dir = !other->is_dir;
      vh_bak_def_item_fill_by_other(filled.get(), other.get());
      script.say(owned(vh_bak_def_item_lnk_to_string(filled.get())));
    };
    script.commands["row"] = [](const std::string& number) {
      const GtkTreeIter row{std::stoi(number), GINT_TO_POINTER(2), GINT_TO_POINTER(3), nullptr};
      vh_print_iter(&row);
      const GtkTreeIter other{row.stamp, row.user_data, nullptr, nullptr};
      EXPECT_TRUE(vh_cmp_iter(&row, &row) && !vh_cmp_iter(&row, &other));
    };
    script.commands["word"] = [&script](const std::string& path) {
      script.say(varnholt::command_word(path));
    };
    script.commands["run"] = [](const std::string& command) {
      varnholt::run_command("cd \"" + varnholt::scratch_folder() + "\"; " + command);
    };
    script.commands["move"] = [&script](const std::string& paths) {
      std::filesystem::current_path(varnholt::scratch_folder());
      const auto from = paths.substr(0, paths.find(' '));
      const auto to = paths.substr(paths.find(' ') + 1);
      script.say(main_move_file_force(from.c_str(), to.c_str()) ? "moved" : "refused");
    };
    script.check(m_scenario);
  }

 private:
  Scenario m_scenario;
};

static const bool registered = register_scenarios<Lines>("Lines", "lines.scenarios");

TEST(Questions, HaveNoAnswerToWhatNobodyAsks) {
  EXPECT_FALSE(vh_FileTests("/", static_cast<VhFileTestType>(2)));
  EXPECT_DEATH(vh_IsFileOperationType(9, 3),
               "op\\[3\\] is not Good value \n.*bak-model:.*vh_IsFileOperationType.*FALSE");
}
