// SPDX-License-Identifier: GPL-3.0-or-later
// Performs thousands of random actions on the main window; after each one, lists and rows must
// agree. VARNHOLT_ACTIONS is the number of actions, and VARNHOLT_SEED repeats a run.
#include <array>
#include <filesystem>
#include <random>

#include "app/varnholt.h"
#include "base/text.h"
#include "scratch/scratch-paths.h"
#include "tests/display-test.h"

using varnholt::shown_shortened;
using varnholt::take_object;
using varnholt::take_text;

static guint number_from(const char* variable, guint otherwise) {
  const char* const text = g_getenv(variable);
  return text == nullptr || *text == '\0' ? otherwise : static_cast<guint>(std::stoul(text));
}

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

  /** Enters and chooses random values in the dialog that is open, if any, and answers it. */
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

  /** Ticks, unticks or highlights rows of a table. */
  void touch(auto* table) {
    const auto rows = table->items->length();
    if (rows == 0) return;
    const auto row = roll(rows);
    auto* const item = table->items->nth(row).item;
    const auto how = roll(7);
    if (how < 5) table->on_sel_toggled(std::to_string(row).c_str());
    if (how == 5) gtk_tree_selection_select_iter(table->selection, &*item->iter);
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
    if (what == 9) touch(main->rut_table.get());
    if (what == 10) touch(main->shl_table.get());
    if (what > 10) touch(main->lnk_table.get());
  }

  /** Checks that a table shows its list, and that each row leads to its item. */
  static void check(const auto* widget, auto cells_of) {
    const auto rows = table(widget->tree_view.get());
    ASSERT_EQ(widget->items->length() + 1, rows.size());
    for (std::size_t row = 1; const auto& item : *widget->items) {
      const std::string box = item->is_selected ? "[x] | " : "[ ] | ";
      ASSERT_TRUE(rows.at(row).starts_with(box + cells_of(*item))) << rows.at(row);
      ASSERT_EQ(widget->items->find(*item->iter).index + 1, row++);
    }
  }

  static std::string cells_of_definition(const VhBakDefItem& item) {
    return shown_shortened(item.from) + " | " + shown_shortened(item.to) + " | " +
           take_text(vh_FileOperationType_tostr(item.op)).get();
  }

  static std::string cells_of_route(const VhRutDefItem& item) {
    return shown_shortened(item.name) + " | " + shown_shortened(item.addr);
  }

  const std::vector<std::string> texts{
      "",         "/",         "/a",        "/a/",
      "/b c ",    "/é",        "-rf",       "\xE2\x80\x8F/א",
      "/x,y",     "/a\nb",     "`$x`\"\\'", "\x01\x1B",
      "10.0.0.0", "255.0.0.0", "eth0",      std::string(4096, 'x')};
  const guint seed = number_from("VARNHOLT_SEED", std::random_device{}());
  std::mt19937 dice{seed};
  guint dealer = 0;
  varnholt::ObjectPtr<Main> main;
};

TEST_F(Monkey, LeavesListsAndRowsInStep) {
  const guint actions = number_from("VARNHOLT_ACTIONS", 2000);
  for (guint action = 0; action < actions; ++action) {
    SCOPED_TRACE("VARNHOLT_SEED=" + std::to_string(seed) + ", action " + std::to_string(action));
    testing::internal::CaptureStdout();
    act();
    testing::internal::GetCapturedStdout();
    check(main->lnk_table.get(), cells_of_definition);
    check(main->shl_table.get(), cells_of_definition);
    check(main->rut_table.get(), cells_of_route);
    ASSERT_FALSE(HasFailure());
  }
  std::printf("%u actions, VARNHOLT_SEED=%u\n", actions, seed);
}
