// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the main window with its pages, dialogs and prompts, as the scenarios describe.
#include <sched.h>

#include <filesystem>
#include <fstream>
#include <span>

#include "app/varnholt.h"
#include "base/paths.h"
#include "base/shell.h"
#include "display-test.h"
#include "private-root.h"
#include "scenarios.h"
#include "scratch/scratch-paths.h"

using varnholt::connect;
using varnholt::ObjectPtr;
using varnholt::take_object;
using varnholt::take_text;
using Words = const std::string&;

namespace {

/** Returns a definition that is ticked, as after an edit. Adding it to a table unticks it. */
ObjectPtr<VhBakDefItem> read_file(Words fields) {
  auto item = take_object(vh_bak_def_item_lnk_scanf_string(("lnk,," + fields).c_str()));
  vh_bak_def_item_set_is_selected(item.get(), true);
  return item;
}

ObjectPtr<VhRutDefItem> read_route(Words fields) {
  return take_object(vh_rut_def_item_scanf_string(("rut,add," + fields).c_str()));
}

}  // namespace

class Window : public DisplayTest {
 public:
  explicit Window(Scenario scenario) : m_scenario(std::move(scenario)) {}

  void TestBody() override { script.check(m_scenario); }

 protected:
  void SetUp() override {
    g_setenv("TZ", "local-8", TRUE);
    DisplayTest::SetUp();
    static const bool root = enter_namespaces(CLONE_NEWNET);
    if (!root) GTEST_SKIP() << "no namespaces of one's own here";
    g_setenv("VARNHOLT_SCRATCH", varnholt::scratch_folder().c_str(), TRUE);
    main_s_exe_path = take_text(g_strdup(VARNHOLT_SCRATCH_PROGRAM));
    g_unsetenv("show_date");
    for (const auto& left : std::filesystem::directory_iterator{varnholt::scratch_folder()}) {
      std::filesystem::remove_all(left);
    }
    for (const auto* folder : {"/etc", "/tmp", "/usr/bin"}) {
      std::filesystem::create_directories(varnholt::scratch_folder() + folder);
    }
    script.left_out = varnholt::scratch_folder();
    learn_the_hands();
    learn_the_machine();
    testing::internal::CaptureStdout();
    start();
    testing::internal::GetCapturedStdout();
  }

  void TearDown() override {
    main_s_main_window = nullptr;
    main.reset();
    DisplayTest::TearDown();
  }

  /** Opens a new main window. */
  void start() {
    main_s_main_window = nullptr;
    main.reset();
    main = take_object(main_new());
    g_test_assert_expected_messages();
    window = GTK_WIDGET(main->window.get());
    main_s_main_window = varnholt::make_object(main->window.get());
    connect(main->control_bar.get(), "sig-btn-clicked", main->control_bar.get(),
            [this](VhControlWidget*, VhControlWidgetBtnType type) {
              const auto name =
                  take_text(g_enum_to_string(vh_control_widget_btn_type_get_type(), type));
              script.say(name.get());
            });
    for (const auto& [name, table] :
         {std::pair{"files", main->lnk_table.get()}, {"scripts", main->shl_table.get()}}) {
      learn_table(name, table, read_file, vh_bak_def_item_lnk_to_string, vh_bak_def_widget_add_item,
                  vh_bak_def_widget_edit_item);
    }
    learn_table("routes", main->rut_table.get(), read_route, vh_rut_def_item_to_string,
                vh_rut_def_widget_add_item, vh_rut_def_widget_edit_item);
    await_window();
  }

  /** Returns whether all columns of a table can be seen, and its first and its last row. */
  static std::string sight_of(GtkTreeView* view) {
    settle();
    auto* const across = gtk_tree_view_get_hadjustment(view);
    const bool fits = gtk_adjustment_get_upper(across) <= gtk_adjustment_get_page_size(across);
    std::unique_ptr<GtkTreePath, varnholt::FreeWith<gtk_tree_path_free>> first;
    std::unique_ptr<GtkTreePath, varnholt::FreeWith<gtk_tree_path_free>> last;
    if (gtk_tree_view_get_visible_range(view, varnholt::out(first), varnholt::out(last)) == 0) {
      return "nothing";
    }
    const int rows = gtk_tree_model_iter_n_children(gtk_tree_view_get_model(view), nullptr);
    const bool has_first = *gtk_tree_path_get_indices(first.get()) == 0;
    const bool has_last = *gtk_tree_path_get_indices(last.get()) == rows - 1;
    return std::string{fits ? "all columns" : "some columns"} + (has_first ? ", first row" : "") +
           (has_last ? ", last row" : "");
  }

  /** Adds the command `name`, whose first word says what to do with the table. */
  void learn_table(Words name, auto* widget, auto read, auto written, auto add, auto edit) {
    connect(widget, "sig-selection-changed", widget, [=, this](GtkWidget*, int at, guint count) {
      script.say(name + ' ' + std::to_string(at) + '/' + std::to_string(count));
    });
    const auto show_all = [=, this] {
      for (Words line : table(widget->tree_view.get())) script.say(line);
      std::string ticks;
      for (const auto& item : *widget->items) {
        script.say(take_text(written(item.get())).get());
        ticks += item.get() == widget->highlighted().item ? " >" : " ";
        ticks += item->is_selected ? 'x' : '-';
      }
      script.say(std::to_string(widget->items->selected_number()) + " ticked:" + ticks);
    };
    const auto edit_row = [=, this](int row, Words fields) {
      auto* const edited = widget->items->nth(static_cast<guint>(row)).item;
      const auto before = *edited->iter;
      const auto values = read(fields);
      if (!edit(widget, values.get(), edited)) return script.say("refused");
      EXPECT_TRUE(vh_cmp_iter(&before, &*edited->iter) && vh_cmp_iter(&before, &*values->iter));
    };
    using Verb = std::function<void(int row, Words last_word)>;
    const std::map<std::string, Verb> verbs{
        {"add",
         [=, this](int, Words fields) {
           if (!add(widget, read(fields).get())) script.say("refused");
         }},
        {"edit", edit_row},
        {"click", [=](int row, Words at) { click(widget->tree_view.get(), row, std::stoi(at)); }},
        {"double-click",
         [=](int row, Words at) { click(widget->tree_view.get(), row, std::stoi(at), 2); }},
        {"delete", [=](int, Words) { widget->del_selected_items(); }},
        {"clear", [=](int, Words) { widget->clear_selection(); }},
        {"show", [=](int, Words) { show_all(); }},
        {"sight", [=, this](int, Words) { script.say(sight_of(widget->tree_view.get())); }}};
    script.commands[name] = [verbs](Words arguments) {
      std::istringstream words{arguments};
      std::string verb;
      int row = 0;
      words >> verb >> row;
      verbs.at(verb)(row, arguments.substr(arguments.rfind(' ') + 1));
    };
  }

  /** Returns whether a widget is a caption that is shown only in part. */
  static bool is_cut(GtkWidget* widget) {
    if (!GTK_IS_LABEL(widget) || gtk_widget_get_mapped(widget) == 0) return false;
    gtk_container_check_resize(GTK_CONTAINER(gtk_widget_get_toplevel(widget)));
    int width = 0;
    pango_layout_get_pixel_size(gtk_label_get_layout(GTK_LABEL(widget)), &width, nullptr);
    return width > widget->allocation.width;
  }

  /** Adds the commands that use the window, and those that show it. */
  void learn_the_hands() {
    auto& on = script.commands;
    on["click"] = [this](Words label) { click(button(label)); };
    on["press"] = [this](Words keys) {
      await_window();
      press(keys);
    };
    on["answer"] = [this](Words answer) {
      expect_dialog([this, answer](GtkDialog* dialog) {
        EXPECT_EQ(gtk_window_get_transient_for(GTK_WINDOW(dialog)), main_s_main_window.get());
        settle();
        const auto last = answer.rfind(' ') + 1;
        press(answer.substr(0, last));
        EXPECT_LT(GTK_WIDGET(dialog)->allocation.width, gdk_screen_width());
        EXPECT_TRUE(GTK_IS_FILE_CHOOSER(dialog) || find(GTK_WIDGET(dialog), is_cut) == nullptr);
        script.say(text_of(dialog));
        press(answer.substr(last));
      });
    };
    on["layout"] = [this](Words what) {
      const auto say_layout = [this](gpointer top) {
        for (Words line : layout_of(GTK_WIDGET(top))) script.say(line);
      };
      if (what == "window") return say_layout(window);
      expect_dialog([say_layout](GtkDialog* dialog) {
        say_layout(dialog);
        press("Escape");
      });
    };
    on["drop"] = [this](Words uris) {
      expect_dialog([this, uris](GtkDialog* dialog) {
        drop(GTK_WIDGET(main->lnk_dlg->from_entry.get()), uris);
        script.say(text_of(dialog));
        press("Escape");
      });
    };
    on["alter"] = [this](Words text) {
      script.say(std::to_string(main_alter(text.c_str(), GTK_BUTTONS_YES_NO)));
    };
    on["ask"] = [this](Words text) {
      char* result = nullptr;
      char** const taken = text.empty() ? nullptr : &result;
      const bool confirmed = main_inputdlg(taken, text.c_str(), "title: ");
      const std::string typed = text.empty() ? "" : take_text(result).get();
      script.say((confirmed ? "yes: " : "no: ") + typed + '.');
    };
    on["focus"] = [this](Words /*none*/) {
      auto* const focus = gtk_window_get_focus(GTK_WINDOW(window));
      script.say(GTK_IS_BUTTON(focus) ? gtk_button_get_label(GTK_BUTTON(focus)) : "a table");
    };
    on["page"] = [this](Words page) {
      if (!page.empty()) main_show_stack_page(main.get(), std::stoi(page));
      std::string pressed;
      for (const auto& button : main->control_bar->page_btns) {
        pressed += gtk_toggle_button_get_active(button.get()) != 0 ? 'x' : '-';
      }
      std::string shown;
      for (const auto& each : main->pages) shown += gtk_widget_get_visible(each.get()) ? 'x' : '-';
      script.say(std::to_string(main->cur_page) + " buttons:" + pressed + " pages:" + shown);
    };
    on["font"] = [](Words name) {
      g_object_set(gtk_settings_get_default(), "gtk-font-name", name.c_str(), nullptr);
      settle();
    };
    on["flag"] = [this](Words flag) {
      auto* const routes = main->rut_table.get();
      if (!flag.empty()) vh_rut_def_widget_set_del_def_cb_active(routes, flag == "yes");
      script.say(take_text(vh_rut_def_item_list_del_def_rut_to_string(routes->items.get())).get());
      auto* const box = GTK_TOGGLE_BUTTON(routes->del_rut_cb.get());
      EXPECT_EQ(gtk_toggle_button_get_active(box), vh_rut_def_widget_get_del_def_cb_active(routes));
    };
  }

  /** Adds the commands that change the machine around the window. */
  void learn_the_machine() {
    auto& on = script.commands;
    on["without"] = [](Words /*window*/) { main_s_main_window = nullptr; };
    on["stray"] = [this](Words fields) {
      vh_bak_def_item_list_append_val(main->lnk_table->items.get(), read_file(fields).get());
    };
    on["time"] = [this](Words seconds) {
      (*main->shl_table->items->begin())->last_oper_time = std::stoll(seconds);
    };
    on["line"] = [](Words line) {
      std::ofstream{varnholt::paths::profile, std::ios::app} << line << '\n';
    };
    on["script"] = [](Words commands) {
      std::ofstream{varnholt::paths::backup_script} << "#!/bin/sh\n" << commands << '\n';
      std::filesystem::permissions(varnholt::paths::backup_script, std::filesystem::perms::all);
    };
    on["run"] = [](Words command) {
      varnholt::run_command("cd \"$VARNHOLT_SCRATCH\"; " + command);
    };
    on["type"] = [this](Words name) {
      const auto type = g_type_from_name(name.c_str());
      script.say(g_type_name(g_type_parent(type)));
      const auto say_values = [this](const auto* known) {
        for (const auto& value : std::span{known->values, known->n_values}) {
          script.say(std::to_string(value.value) + ' ' + value.value_name + ' ' + value.value_nick);
        }
      };
      auto* const known = G_TYPE_IS_OBJECT(type) ? nullptr : g_type_class_ref(type);
      if (G_TYPE_IS_ENUM(type)) say_values(static_cast<GEnumClass*>(known));
      if (G_TYPE_IS_FLAGS(type)) say_values(static_cast<GFlagsClass*>(known));
    };
    on["start"] = [this](Words critical) {
      if (!critical.empty()) {
        g_test_expect_message("varnholt", G_LOG_LEVEL_CRITICAL, critical.c_str());
      }
      start();
    };
    // The toolkit's file chooser does not free its caches.
    on["leaks"] = [](Words verb) { look_for_leaks(verb == "enable"); };
    on["dates"] = [](Words /*none*/) { g_setenv("show_date", "", TRUE); };
    on["close"] = [this](Words times) {
      ask_to_close();
      if (times == "twice") ask_to_close();
      gtk_main();
      settle();
    };
  }

  GtkWidget* button(Words label) const {
    return find(window, [&label](GtkWidget* widget) {
      return GTK_IS_BUTTON(widget) &&
             g_strcmp0(gtk_button_get_label(GTK_BUTTON(widget)), label.c_str()) == 0;
    });
  }

  Transcript script;
  ObjectPtr<Main> main;

 private:
  Scenario m_scenario;
};

static const bool registered = register_scenarios<Window>("Window", "window.scenarios");
