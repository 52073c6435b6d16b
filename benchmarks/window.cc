// SPDX-License-Identifier: GPL-3.0-or-later
// Times the window and a bare one, from start to close. Each step ends when all rows are measured
// and drawn again.
#include <gtk/gtk.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "app/varnholt.h"
#include "base/glib-ptr.h"
#include "base/paths.h"
#include "measure.h"
#include "scratch/scratch-paths.h"
#include "store/next-version.h"

extern "C" {
#include "bare-table.h"
}

using varnholt::take_object;
namespace paths = varnholt::paths;

namespace {

/** One in so many rows is ticked before the ticked ones are marked or deleted. */
constexpr int ticked_in = 10;

constexpr auto starting = "start";
constexpr auto ticking = "tick a row";
constexpr auto highlighting = "highlight a row";
constexpr auto closing = "close";
constexpr auto marking = "mark a tenth deleted";
constexpr auto deleting = "delete a tenth";

std::string title_of(const char* step, bool with_dates) {
  return std::string{"Window: "} + step + (with_dates ? ", with dates" : "");
}

struct Definition {
  std::string from;
  std::string to;
  bool overwrites;
};
using Definitions = std::vector<Definition>;

Definitions definitions_of(int number) {
  Definitions made;
  for (int index = 0; index < number; ++index) {
    const auto name = std::to_string(index / 100) + "/file-" + std::to_string(index);
    made.push_back({"/srv/data/" + name, "/data_bak/srv/data/" + name, index % 2 != 0});
  }
  return made;
}

void write_profile(const Definitions& definitions) {
  std::ofstream profile{paths::profile};
  for (const auto& [from, to, overwrites] : definitions) {
    profile << "lnk,file," << from << ',' << to
            << (overwrites ? ",overwrite,false" : ",update,true") << ",1284567890\n";
  }
}

void settle() {
  while (gtk_events_pending()) gtk_main_iteration();
  gdk_display_sync(gdk_display_get_default());
}

/** Waits until a window is on the screen and can be used, with all its rows measured. */
void await(GtkWindow* window) {
  while (!gtk_window_has_toplevel_focus(window)) gtk_main_iteration();
  settle();
}

/** The program's own window. */
class OurWindow {
 public:
  static constexpr auto name = "varnholt";

  explicit OurWindow(const Definitions& /*stored*/) { await(m_main->window.get()); }

  void tick(int row) {
    const std::unique_ptr<GList, varnholt::FreeWith<g_list_free>> boxes{gtk_cell_layout_get_cells(
        GTK_CELL_LAYOUT(gtk_tree_view_get_column(table()->tree_view.get(), 0)))};
    g_signal_emit_by_name(boxes->data, "toggled", std::to_string(row).c_str());
    // A real click would then highlight the row, which resets this flag.
    table()->sel_toggled = 0;
  }

  void highlight(int row) {
    const std::unique_ptr<GtkTreePath, varnholt::FreeWith<gtk_tree_path_free>> path{
        gtk_tree_path_new_from_indices(row, -1)};
    gtk_tree_selection_select_path(table()->selection, path.get());
  }

  void mark_ticked_deleted() { vh_bak_def_widget_mark_del_selected_items(table()); }
  void delete_ticked() { vh_bak_def_widget_del_selected_items(table()); }
  void untick_all() { vh_bak_def_widget_clear_selection(table()); }

  /** Closes the window as far as the question for root rights. */
  void close() {
    vh_bak_def_widget_update_items_last_oper_time(table());
    std::string text;
    main_save_imp(m_main.get(), &text);
    if (varnholt::store::write_next_version(text, {}) != varnholt::store::NextVersion::written) {
      give_up("the profile is not written");
    }
  }

  GtkTreeModel* model() { return GTK_TREE_MODEL(table()->store.get()); }

 private:
  VhBakDefWidget* table() { return m_main->lnk_table.get(); }

  varnholt::ObjectPtr<Main> m_main = take_object(main_new());
};

/** A window with only a bare table, which already has the texts that it shows. */
class BareWindow {
 public:
  static constexpr auto name = "bare window";

  explicit BareWindow(const Definitions& definitions) {
    for (const auto& [from, to, overwrites] : definitions) {
      bare_table_prepend(m_table, from.c_str(), to.c_str(), gboolean{overwrites});
    }
    await(GTK_WINDOW(m_window));
  }
  BareWindow(const BareWindow&) = delete;
  BareWindow& operator=(const BareWindow&) = delete;
  ~BareWindow() { gtk_widget_destroy(m_window); }

  void tick(int row) {
    bare_table_tick(m_table, row, TRUE);
    m_ticked = row;
  }
  void highlight(int row) {
    bare_table_highlight(m_table, row, m_ticked);
    m_ticked = row;
  }
  void mark_ticked_deleted() { bare_table_mark_ticked_deleted(m_table); }
  void delete_ticked() { bare_table_delete_ticked(m_table); }
  void untick_all() { bare_table_tick(m_table, m_ticked, FALSE); }

  void close() {
    if (!bare_table_save(m_table, paths::temporary_profile)) give_up("cannot write");
  }

  GtkTreeModel* model() { return GTK_TREE_MODEL(m_table.store); }

 private:
  BareTable m_table = bare_table_new(gboolean{g_getenv("show_date") != nullptr});
  GtkWidget* m_window = bare_window_new(m_table);
  int m_ticked = 0;
};

/** Collects the times of one kind of window, with or without the dates of the definitions. */
template <typename Window>
class Stopwatch {
 public:
  Stopwatch(Figures& figures, bool with_dates) : m_figures(figures), m_with_dates(with_dates) {}

  /** Times a step until everything is drawn again. */
  template <typename Step>
  void time(const char* name, Step step) {
    settle();
    const auto begin = Clock::now();
    step();
    settle();
    m_figures.add(title_of(name, m_with_dates), Window::name, milliseconds_since(begin));
  }

 private:
  Figures& m_figures;
  bool m_with_dates;
};

template <typename Window>
void tick_a_tenth(Window& window, int rows) {
  window.untick_all();
  for (int row = 0; row < rows; row += ticked_in) window.tick(row);
}

/** Runs through the life of a window and times each step. */
template <typename Window>
void live(const Definitions& definitions, bool with_dates, Figures& figures) {
  const auto rows = static_cast<int>(definitions.size());
  Stopwatch<Window> stopwatch{figures, with_dates};
  std::unique_ptr<Window> window;
  stopwatch.time(starting, [&] { window = std::make_unique<Window>(definitions); });
  if (rows > 0) {
    stopwatch.time(ticking, [&] { window->tick(0); });
    stopwatch.time(highlighting, [&] { window->highlight(rows / 2); });
  }
  // If the file existed, writing it again would wait for the disk.
  std::filesystem::remove(paths::temporary_profile);
  stopwatch.time(closing, [&] { window->close(); });
  if (rows == 0) return;
  tick_a_tenth(*window, rows);
  stopwatch.time(marking, [&] { window->mark_ticked_deleted(); });
  tick_a_tenth(*window, rows);
  stopwatch.time(deleting, [&] { window->delete_ticked(); });
  if (gtk_tree_model_iter_n_children(window->model(), nullptr) != rows - rows / ticked_in) {
    give_up("rows are not deleted");
  }
}

bool any_is_wanted(bool with_dates) {
  const auto steps = {starting, ticking, highlighting, closing, marking, deleting};
  return std::any_of(steps.begin(), steps.end(), [with_dates](const char* step) {
    return is_wanted(title_of(step, with_dates));
  });
}

void compare_lives(int number, std::size_t samples, bool with_dates) {
  g_unsetenv("show_date");
  if (with_dates) g_setenv("show_date", "1", TRUE);
  const auto definitions = definitions_of(number);
  write_profile(definitions);
  Figures figures;
  by_turns(2, samples, [&](std::size_t who) {
    if (who == 0) {
      live<OurWindow>(definitions, with_dates, figures);
    } else {
      live<BareWindow>(definitions, with_dates, figures);
    }
  });
  figures.write(number);
}

}  // namespace

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  read_arguments(argc, argv);
  std::filesystem::create_directories(varnholt::scratch_folder() + "/etc");
  std::filesystem::create_directories(varnholt::scratch_folder() + "/tmp");
  for (const bool with_dates : {false, true}) {
    if (!any_is_wanted(with_dates)) continue;
    compare_lives(0, 15, with_dates);
    compare_lives(1'000, 9, with_dates);
    compare_lives(10'000, 3, with_dates);
    compare_lives(100'000, 1, with_dates);
  }
  return 0;
}
