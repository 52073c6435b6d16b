// SPDX-License-Identifier: GPL-3.0-or-later
// What a definition knows of its place in a table: the state of its check box, and its row.
#pragma once

#include <optional>

#include <gtk/gtk.h>

/** Whether two iterators designate the same row: stamp and all three user words are equal. */
bool vh_cmp_iter(const GtkTreeIter* a, const GtkTreeIter* b);

/** Prints an iterator to standard output, without a line end, to look at while debugging. */
void vh_print_iter(const GtkTreeIter* iter);

namespace varnholt {

/**
 * The state of a check box. Every ticking of any one is counted: who has seen that none was ticked
 * need not look again while the count stands.
 */
class Tick {
 public:
  Tick() = default;
  Tick(const Tick&) = default;
  ~Tick() = default;
  Tick& operator=(const Tick& other) {
    if (this != &other) *this = other.m_ticked;
    return *this;
  }
  Tick& operator=(bool ticked) {
    if (ticked && !m_ticked) ++s_tickings;
    m_ticked = ticked;
    return *this;
  }
  // NOLINTNEXTLINE(google-explicit-constructor): it is read as the flag that it is
  operator bool() const { return m_ticked; }

  static guint64 tickings() { return s_tickings; }

 private:
  bool m_ticked = false;
  static inline guint64 s_tickings = 0;
};

struct TableRow {
  /** Private: the state of the check box. */
  Tick is_selected;
  /** The row in the table's list store, once a table has the item. */
  std::optional<GtkTreeIter> iter;
};

/** Copies what `other` says, its check box too, but leaves `own` in its row. */
template <typename Fields>
void take_over(Fields& own, const Fields& other) {
  const auto row = own.iter;
  own = other;
  own.iter = row;
}

}  // namespace varnholt
