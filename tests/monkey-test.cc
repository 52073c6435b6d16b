// SPDX-License-Identifier: GPL-3.0-or-later
// Thousands of random actions on the main window; after each, lists, rows and profile text agree.
// VARNHOLT_ACTIONS says how many, VARNHOLT_SEED repeats a run.
#include <array>
#include <filesystem>
#include <random>
#include <sstream>

#include "app/varnholt.h"
#include "base/text.h"
#include "display-test.h"
#include "scratch/scratch-paths.h"

using varnholt::take_object;
using varnholt::take_text;

namespace {

guint number_from(const char* variable, guint otherwise) {
  const char* const text = g_getenv(variable);
  return text == nullptr ? otherwise : static_cast<guint>(std::stoul(text));
}

std::string value_of(GtkTreeModel* model, GtkTreeIter* row, int column) {
  char* text = nullptr;
  gtk_tree_model_get(model, row, column, &text, -1);
  return take_text(text).get();
}

}  // namespace

class Monkey : public DisplayTest {
 protected:
  void SetUp() override {
    g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
    std::filesystem::remove_all(varnholt::scratch_folder() + "/etc");
    main = take_object(main_new());
    main_s_main_window = varnholt::make_object(main->window.get());
    dealer = g_timeout_add(
        1, [](gpointer self) { return static_cast<Monkey*>(self)->deal_with_dialog(); }, this);
    g_source_set_can_recurse(g_main_context_find_source_by_id(nullptr, dealer), TRUE);
  }

  void TearDown() override {
    g_source_remove(dealer);
    main_s_main_window = nullptr;
    main.reset();
  }

  guint roll(std::size_t sides) { return static_cast<guint>(dice() % sides); }

  /** Enters and chooses anything in the dialog that stands, if one does, and answers it. */
  gboolean deal_with_dialog() {
    auto* const grab = gtk_grab_get_current();
    if (grab == nullptr || !GTK_IS_DIALOG(grab)) return TRUE;
    find(grab, [this](GtkWidget* widget) {
      if (!gtk_widget_get_visible(widget) || !gtk_widget_is_sensitive(widget)) return false;
      if (GTK_IS_COMBO_BOX(widget)) {
        gtk_combo_box_set_active(GTK_COMBO_BOX(widget), static_cast<int>(roll(2)));
      } else if (GTK_IS_ENTRY(widget) && roll(3) != 0) {
        gtk_entry_set_text(GTK_ENTRY(widget), texts.at(roll(texts.size())).c_str());
      } else if (GTK_IS_CHECK_BUTTON(widget) && roll(2) == 0) {
        gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(widget), TRUE);
      }
      return false;
    });
    const std::array answers{GTK_RESPONSE_ACCEPT, GTK_RESPONSE_YES,    GTK_RESPONSE_ACCEPT,
                             GTK_RESPONSE_NO,     GTK_RESPONSE_CANCEL, GTK_RESPONSE_DELETE_EVENT};
    gtk_dialog_response(GTK_DIALOG(grab), answers.at(roll(answers.size())));
    return TRUE;
  }

  /** Does something with the rows of a table and their check boxes in a column. */
  template <typename Table>
  void touch(Table* table, int box_column) {
    const auto rows = table->items->length();
    if (rows == 0) return;
    const auto row = std::to_string(roll(rows));
    const std::unique_ptr<GtkTreePath, varnholt::FreeWith<gtk_tree_path_free>> path{
        gtk_tree_path_new_from_string(row.c_str())};
    auto* const column = gtk_tree_view_get_column(table->tree_view.get(), box_column);
    const std::unique_ptr<GList, varnholt::FreeWith<g_list_free>> cells{
        gtk_cell_layout_get_cells(GTK_CELL_LAYOUT(column))};
    const auto how = roll(7);
    if (how < 5) g_signal_emit_by_name(cells->data, "toggled", row.c_str());
    if (how == 5) gtk_tree_view_set_cursor(table->tree_view.get(), path.get(), nullptr, FALSE);
    if (how == 6) table->clear_selection();
  }

  void act() {
    const auto& bar = main->control_bar;
    const auto what = roll(16);
    if (what < 3) gtk_button_clicked(bar->btn_add.get());
    if (what == 3) gtk_button_clicked(bar->btn_edt.get());
    if (what == 4 && roll(4) == 0) gtk_button_clicked(bar->btn_del.get());
    if (what == 5) gtk_button_clicked(GTK_BUTTON(bar->page_btns.at(roll(3)).get()));
    if (what == 6) gtk_button_clicked(GTK_BUTTON(main->rut_table->del_rut_cb.get()));
    if (what == 7 || what == 8) settle();
    if (what == 9) touch(main->lnk_table.get(), VH_BAK_DEF_WIDGET_COL_IDX_FORCE_OVERWRITE);
    if (what == 10) touch(main->rut_table.get(), 0);
    if (what == 11) touch(main->shl_table.get(), 0);
    if (what > 11) touch(main->lnk_table.get(), 0);
  }

  /** Checks that a table shows its list, two fields of each item, and that rows lead to items. */
  template <typename List>
  static void check_rows(auto* table, auto* (*nth)(List*, guint),
                         auto* (*find)(List*, const GtkTreeIter*, int*),
                         auto* (*first_ticked)(List*, int*), guint (*ticked)(List*), auto one,
                         auto other) {
    auto* const model = GTK_TREE_MODEL(table->store.get());
    auto* const list = table->items.get();
    std::vector<int> ticks;
    GtkTreeIter row{};
    int index = 0;
    for (auto more = gtk_tree_model_get_iter_first(model, &row); more != 0;
         more = gtk_tree_model_iter_next(model, &row), ++index) {
      const auto item = take_object(nth(list, static_cast<guint>(index)));
      int found = -1;
      ASSERT_TRUE(item && take_object(find(list, &row, &found)) == item) << index;
      ASSERT_EQ(found, index);
      ASSERT_EQ(varnholt::value_of<bool>(model, &row, 0), item->is_selected) << index;
      ASSERT_EQ(value_of(model, &row, 1), varnholt::shown_shortened((*item).*one));
      ASSERT_EQ(value_of(model, &row, 2), varnholt::shown_shortened((*item).*other));
      if (item->is_selected) ticks.push_back(index);
    }
    ASSERT_EQ(nth(list, static_cast<guint>(index)), nullptr);
    ASSERT_EQ(ticked(list), ticks.size());
    const auto first = take_object(first_ticked(list, &index));
    ASSERT_EQ(index, ticks.empty() ? -1 : ticks.front());
    ASSERT_EQ(first == nullptr, ticks.empty());
  }

  static void check_definitions(VhBakDefWidget* table) {
    check_rows(table, vh_bak_def_item_list_nth_data, vh_bak_def_item_list_find_in_iter,
               vh_bak_def_item_list_get_first_selected_item,
               vh_bak_def_item_list_total_selected_number, &VhBakDefItem::from, &VhBakDefItem::to);
    bool links_begin = false;
    for (const auto& item : *table->items) {
      const bool link = vh_IsFileOperationType(item->op, VH_FILE_OPERATION_TYPE_FOT_Symbolic);
      ASSERT_TRUE(link || !links_begin) << item->from;
      links_begin = link;
      GtkTreeIter row = *item->iter;
      ASSERT_EQ(varnholt::value_of<int>(GTK_TREE_MODEL(table->store.get()), &row,
                                        VH_BAK_DEF_WIDGET_COL_IDX_UP),
                item->op);
    }
  }

  /** Checks that each line of the profile's text is read back as what was written. */
  void check_text() {
    std::string text;
    main_save_imp(main.get(), &text);
    std::istringstream lines{text};
    guint items = 0;
    for (std::string line; std::getline(lines, line); ++items) {
      const auto check = [&line](auto* read, auto* written) {
        const auto back = take_object(read(line.c_str()));
        ASSERT_TRUE(back) << line;
        ASSERT_EQ(take_text(written(back.get())).get(), line);
      };
      if (line.starts_with("lnk")) {
        check(vh_bak_def_item_lnk_scanf_string, vh_bak_def_item_lnk_to_string);
      } else if (line.starts_with("shl")) {
        check(vh_bak_def_item_shl_scanf_string, vh_bak_def_item_shl_to_string);
      } else if (line.starts_with("rut,add")) {
        check(vh_rut_def_item_scanf_string, vh_rut_def_item_to_string);
      } else {
        ASSERT_EQ(line, main->rut_table->items->del_def_rut ? "rut,del,yes" : "rut,del,no");
      }
    }
    ASSERT_EQ(items, main->lnk_table->items->length() + main->rut_table->items->length() +
                         main->shl_table->items->length() + 1);
  }

  const std::vector<std::string> texts{"",          "/",
                                       "/a",        "/a/",
                                       "/b c ",     "/é",
                                       "-rf",       "\xE2\x80\x8F/א",
                                       "/x,y",      "/a\nb",
                                       "`$x`\"\\'", "\x01\x1B",
                                       "a=b",       "10.0.0.0",
                                       "10.0.0.1",  "255.0.0.0",
                                       "eth0",      std::string(4096, 'x')};
  const guint seed = number_from("VARNHOLT_SEED", std::random_device{}());
  std::mt19937 dice{seed};
  guint dealer = 0;
  varnholt::ObjectPtr<Main> main;
};

TEST_F(Monkey, LeavesListsRowsAndTextInStep) {
  const guint actions = number_from("VARNHOLT_ACTIONS", 2000);
  for (guint action = 0; action < actions; ++action) {
    SCOPED_TRACE("VARNHOLT_SEED=" + std::to_string(seed) + ", action " + std::to_string(action));
    testing::internal::CaptureStdout();
    act();
    testing::internal::GetCapturedStdout();
    check_definitions(main->lnk_table.get());
    check_definitions(main->shl_table.get());
    check_rows(main->rut_table.get(), vh_rut_def_item_list_nth_data,
               vh_rut_def_item_list_find_in_iter, vh_rut_def_item_list_get_first_selected_item,
               vh_rut_def_item_list_total_selected_number, &VhRutDefItem::name,
               &VhRutDefItem::addr);
    check_text();
    ASSERT_FALSE(HasFailure());
  }
  std::printf("%u actions, VARNHOLT_SEED=%u\n", actions, seed);
}
