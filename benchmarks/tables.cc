// SPDX-License-Identifier: GPL-3.0-or-later
// Times the main window from its start, and the table of definitions in a shown window: loading
// beside a bare view over a list store of the same columns, in rotating order, and each step of
// what a user does with the rows. After a change the toolkit measures all rows anew while it is
// idle; that is timed beside the bare view.
//
// Usage: tables-benchmark [WORDS OF A TITLE]
#include <fcntl.h>
#include <gtk/gtk.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/glib-ptr.h"
#include "base/paths.h"
#include "measure.h"
#include "scratch/scratch-paths.h"
#include "varnholt.h"

using varnholt::take_object;

namespace {

/** Where results go; the standard output takes what the tables print at their work. */
std::FILE* report = nullptr;

constexpr int sizes[] = {1'000, 10'000, 100'000};
constexpr int samples = 3;
/** One row in so many is ticked before rows are marked or unticked. */
constexpr int ticked_in = 10;

using Clock = std::chrono::steady_clock;

double seconds_since(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

void settle() {
  while (gtk_events_pending()) gtk_main_iteration();
  gdk_display_sync(gdk_display_get_default());
}

/** Runs a step to the moment at which all rows are measured and drawn. */
template <typename Step>
double timed(Step step) {
  settle();
  const auto begin = Clock::now();
  step();
  settle();
  return seconds_since(begin);
}

/** Waits until a window is on the screen and can be used, with all its rows measured. */
void await(GtkWidget* window) {
  while (!gtk_window_has_toplevel_focus(GTK_WINDOW(window))) gtk_main_iteration();
  settle();
}

class Window {
 public:
  explicit Window(GtkWidget* content) {
    gtk_window_set_default_size(GTK_WINDOW(m_window), 900, 600);
    gtk_container_add(GTK_CONTAINER(m_window), content);
    gtk_widget_show_all(m_window);
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() { gtk_widget_destroy(m_window); }

  void await_it() const { await(m_window); }

 private:
  GtkWidget* m_window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
};

std::vector<std::string> lines_of(int definitions) {
  std::vector<std::string> lines;
  lines.reserve(static_cast<std::size_t>(definitions));
  for (int definition = 0; definition < definitions; ++definition) {
    const auto name = std::to_string(definition / 100) + "/file-" + std::to_string(definition);
    const char* const operation = definition % 2 == 0 ? "update,true" : "overwrite,false";
    std::string line = "lnk,file,/srv/data/";
    line.append(name).append(",/data_bak/srv/data/").append(name).append(",");
    lines.push_back(line.append(operation).append(",1284567890"));
  }
  return lines;
}

void add_lines(VhBakDefWidget* table, const std::vector<std::string>& lines) {
  for (const auto& line : lines) {
    const auto item = take_object(vh_bak_def_item_lnk_scanf_string(line.c_str()));
    if (!vh_bak_def_widget_add_item(table, item.get())) give_up("a definition is refused");
  }
}

/** A view as anyone would write it who has the texts of the cells at hand. */
class BareTable {
 public:
  BareTable() {
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(widget), GTK_POLICY_AUTOMATIC,
                                   GTK_POLICY_ALWAYS);
    GtkWidget* const view = gtk_tree_view_new_with_model(GTK_TREE_MODEL(m_store.get()));
    gtk_container_add(GTK_CONTAINER(widget), view);
    append(view, "选择", gtk_cell_renderer_toggle_new(), "active", 0);
    for (auto* path :
         {append(view, "原文件(夹)", gtk_cell_renderer_text_new(), "text", 1),
          append(view, "目标文件(夹)|链接", gtk_cell_renderer_text_new(), "text", 2)}) {
      gtk_tree_view_column_set_resizable(path, TRUE);
      gtk_tree_view_column_set_expand(path, TRUE);
    }
    append(view, "操作", gtk_cell_renderer_text_new(), "text", 3);
    auto* const date = append(view, "上次更新时间", gtk_cell_renderer_text_new(), "text", 4);
    gtk_tree_view_column_set_visible(date, FALSE);
    GtkCellRenderer* const box = gtk_cell_renderer_toggle_new();
    auto* const force = append(view, "是否覆盖", box, "active", 5);
    gtk_tree_view_column_add_attribute(force, box, "visible", 6);
  }

  void prepend(const char* from, const char* to, bool overwrite) {
    GtkTreeIter row{};
    gtk_list_store_insert_with_values(m_store.get(), &row, 0, 0, FALSE, 1, from, 2, to, 3,
                                      overwrite ? "覆盖" : "追加", 4, "2010-09-15 16:24:50", 5,
                                      FALSE, 6, gboolean{overwrite}, -1);
  }

  void tick_first() {
    GtkTreeIter row{};
    gtk_tree_model_get_iter_first(GTK_TREE_MODEL(m_store.get()), &row);
    gtk_list_store_set(m_store.get(), &row, 0, TRUE, -1);
  }

  GtkWidget* const widget = gtk_scrolled_window_new(nullptr, nullptr);

 private:
  static GtkTreeViewColumn* append(GtkWidget* view, const char* title, GtkCellRenderer* renderer,
                                   const char* attribute, int column) {
    auto* const shown =
        gtk_tree_view_column_new_with_attributes(title, renderer, attribute, column, nullptr);
    gtk_tree_view_column_set_sizing(shown, GTK_TREE_VIEW_COLUMN_AUTOSIZE);
    gtk_tree_view_append_column(GTK_TREE_VIEW(view), shown);
    return shown;
  }

  varnholt::ObjectPtr<GtkListStore> m_store =
      take_object(gtk_list_store_new(7, G_TYPE_BOOLEAN, G_TYPE_STRING, G_TYPE_STRING, G_TYPE_STRING,
                                     G_TYPE_STRING, G_TYPE_BOOLEAN, G_TYPE_BOOLEAN));
};

/** Loading, and ticking one row then. */
struct Cost {
  double load;
  double tick;
};

using Paths = std::vector<std::pair<std::string, std::string>>;

Paths paths_of(int definitions) {
  Paths paths;
  for (const auto& line : lines_of(definitions)) {
    const auto item = take_object(vh_bak_def_item_lnk_scanf_string(line.c_str()));
    paths.emplace_back(item->from, item->to);
  }
  return paths;
}

void fill(BareTable& table, const Paths& paths) {
  bool overwrite = false;
  for (const auto& [from, to] : paths) {
    table.prepend(from.c_str(), to.c_str(), overwrite);
    overwrite = !overwrite;
  }
}

Cost time_bare(int definitions) {
  const auto paths = paths_of(definitions);
  BareTable table;
  const Window window{table.widget};
  window.await_it();
  const double load = timed([&] { fill(table, paths); });
  return {load, timed([&] { table.tick_first(); })};
}

/** The main window from nothing to its use, with a profile that it reads. */
double time_start(int definitions) {
  std::ofstream profile{varnholt::paths::profile};
  for (const auto& line : lines_of(definitions)) profile << line << '\n';
  profile.close();
  settle();
  const auto begin = Clock::now();
  const auto main = take_object(main_new());
  await(GTK_WIDGET(main->window.get()));
  return seconds_since(begin);
}

/** A window with a bare view, which has what it shows at hand. */
double time_bare_start(int definitions) {
  const auto paths = paths_of(definitions);
  settle();
  const auto begin = Clock::now();
  BareTable table;
  const Window window{table.widget};
  fill(table, paths);
  window.await_it();
  return seconds_since(begin);
}

void compare_starts(const char* title) {
  if (!is_wanted(title)) return;
  std::fprintf(report, "\n%s: until it can be used and all rows are measured, median of %d\n",
               title, samples);
  std::filesystem::create_directory(varnholt::scratch_folder() + "/etc");
  for (const int definitions : {0, 1'000, 10'000, 100'000}) {
    std::vector<double> ours;
    std::vector<double> bare;
    for (int sample = 0; sample < samples; ++sample) {
      ours.push_back(time_start(definitions));
      bare.push_back(time_bare_start(definitions));
    }
    std::fprintf(report, "  %8d definitions %11.1f ms, bare window %11.1f ms, ratio %.2f\n",
                 definitions, 1000 * median(ours), 1000 * median(bare),
                 median(ours) / median(bare));
  }
}

/** Ticks a row as a click on its check box does. */
void tick(VhBakDefWidget* table, int row) {
  const std::unique_ptr<GList, varnholt::FreeWith<g_list_free>> boxes{gtk_cell_layout_get_cells(
      GTK_CELL_LAYOUT(gtk_tree_view_get_column(table->tree_view.get(), 0)))};
  g_signal_emit_by_name(boxes->data, "toggled", std::to_string(row).c_str());
}

Cost time_ours(int definitions) {
  auto* const table = vh_bak_def_widget_new(0);
  const Window window{GTK_WIDGET(table)};
  window.await_it();
  const auto lines = lines_of(definitions);
  const double load = timed([&] { add_lines(table, lines); });
  return {load, timed([&] { tick(table, 0); })};
}

void compare(const char* title) {
  if (!is_wanted(title)) return;
  std::fprintf(report, "\n%s: until all rows are drawn and measured, median of %d\n", title,
               samples);
  std::fprintf(report, "  %22s %14s %14s %8s   %s\n", "definitions", "varnholt", "bare view",
               "ratio", "varnholt for each");
  for (const int definitions : sizes) {
    std::map<std::string, std::vector<double>> ours;
    std::map<std::string, std::vector<double>> bare;
    for (int sample = 0; sample < samples; ++sample) {
      for (const bool turn : {sample % 2 == 0, sample % 2 != 0}) {
        const Cost cost = turn ? time_ours(definitions) : time_bare(definitions);
        auto& times = turn ? ours : bare;
        times["loading"].push_back(cost.load);
        times["ticking a row"].push_back(cost.tick);
      }
    }
    for (const auto& [name, times] : ours) {
      std::fprintf(report, "  %-13s %8d %11.1f ms %11.1f ms %8.2f   %6.2f us\n", name.c_str(),
                   definitions, 1000 * median(times), 1000 * median(bare[name]),
                   median(times) / median(bare[name]), 1e6 * median(times) / definitions);
    }
  }
}

void tick_a_tenth(VhBakDefWidget* table, int definitions) {
  for (int row = 0; row < definitions; row += ticked_in) tick(table, row);
  if (vh_bak_def_widget_get_total_selections(table) !=
      static_cast<guint>(definitions / ticked_in)) {
    give_up("rows are not ticked");
  }
}

struct Step {
  const char* name;
  std::vector<double> seconds;
};

std::vector<Step> new_steps() {
  return {{"add all", {}},       {"highlight one", {}},  {"untick one", {}},
          {"tick a tenth", {}},  {"untick a tenth", {}}, {"mark a tenth deleted", {}},
          {"delete a tenth", {}}};
}

/** Times each step until the program returns to the toolkit. */
void time_steps(int definitions, std::vector<Step>& steps) {
  auto* const table = vh_bak_def_widget_new(0);
  const Window window{GTK_WIDGET(table)};
  window.await_it();
  auto next = steps.begin();
  const auto step = [&next](auto act) {
    const auto begin = Clock::now();
    act();
    (next++)->seconds.push_back(seconds_since(begin));
  };
  const auto lines = lines_of(definitions);
  const std::unique_ptr<GtkTreePath, varnholt::FreeWith<gtk_tree_path_free>> middle{
      gtk_tree_path_new_from_indices(definitions / 2, -1)};
  step([&] { add_lines(table, lines); });
  step([&] { gtk_tree_selection_select_path(table->selection, middle.get()); });
  step([&] { vh_bak_def_widget_clear_selection(table); });
  step([&] { tick_a_tenth(table, definitions); });
  step([&] { vh_bak_def_widget_clear_selection(table); });
  tick_a_tenth(table, definitions);
  step([&] { vh_bak_def_widget_mark_del_selected_items(table); });
  tick_a_tenth(table, definitions);
  step([&] { vh_bak_def_widget_del_selected_items(table); });
  if (vh_bak_def_item_list_length(table->items.get()) !=
      static_cast<guint>(definitions - definitions / ticked_in)) {
    give_up("rows are not deleted");
  }
}

void show_steps(const char* title) {
  if (!is_wanted(title)) return;
  std::fprintf(report,
               "\n%s: until the window can be used again, median of %d, us for each definition\n",
               title, samples);
  std::vector<std::pair<int, std::vector<Step>>> columns;
  for (const int definitions : sizes) {
    auto& [size, steps] = columns.emplace_back(definitions, new_steps());
    for (int sample = 0; sample < samples; ++sample) time_steps(size, steps);
  }
  for (std::size_t step = 0; step < new_steps().size(); ++step) {
    std::fprintf(report, "  %-22s", columns[0].second[step].name);
    for (const auto& [definitions, steps] : columns) {
      const double all = median(steps[step].seconds);
      std::fprintf(report, "   %7d: %8.2f ms %6.3f", definitions, 1000 * all,
                   1e6 * all / definitions);
    }
    std::fprintf(report, "\n");
  }
}

}  // namespace

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  if (argc > 1) wanted = argv[1];
  report = fdopen(dup(STDOUT_FILENO), "w");
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (report == nullptr || dup2(nowhere, STDOUT_FILENO) < 0) give_up("cannot part the outputs");
  std::setvbuf(report, nullptr, _IOLBF, 0);
  compare_starts("The start of the window beside a bare one");
  compare("The table beside a bare view");
  show_steps("Work in the table");
  return 0;
}
