// SPDX-License-Identifier: MIT
#include "grid_sort.h"

#include <QScopeGuard>

#include "common/grid/string_grid.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr int kManyRows = 5000;

class Sorter {
 public:
  Sorter(TStringGrid& grid, int column, bool ascending, bool numeric)
      : grid_(grid), column_(column), ascending_(ascending), numeric_(numeric) {}

  void Sort(int first, int last) {
    int left = first;
    int right = last;
    const QString pivot = KeyOf((first + last) / 2);
    do {
      while (Order(KeyOf(left), pivot) < 0) ++left;
      while (Order(KeyOf(right), pivot) > 0) --right;
      if (left <= right) Exchange(left++, right--);
    } while (left <= right);
    if (first < right) Sort(first, right);
    if (left < last) Sort(left, last);
  }

 private:
  QString KeyOf(int row) {
    if (numeric_ && grid_.Cells(column_, row).isEmpty()) grid_.SetCells(column_, row, QStringLiteral("0"));
    return grid_.Cells(column_, row);
  }
  /// Below 0 when the first text comes before the second.
  [[nodiscard]] int Order(const QString& a, const QString& b) const {
    const int order = numeric_ ? Compared(RealOr(a), RealOr(b)) : Compared(a.toUtf8(), b.toUtf8());
    return ascending_ ? order : -order;
  }
  template <typename Value>
  static int Compared(const Value& a, const Value& b) {
    return a < b ? -1 : b < a ? 1 : 0;
  }
  void Exchange(int a, int b) {
    if (a == b) return;
    for (int column = 0; column < grid_.ColCount(); ++column) {
      const QString text = grid_.Cells(column, a);
      grid_.SetCells(column, a, grid_.Cells(column, b));
      grid_.SetCells(column, b, text);
    }
  }

  TStringGrid& grid_;
  int column_;
  bool ascending_;
  bool numeric_;
};

}  // namespace

void GridQuickSort(TStringGrid& grid, int column, bool ascending, bool numeric) {
  const bool isLong = grid.RowCount() > kManyRows;
  if (isLong) grid.viewport()->setCursor(Qt::WaitCursor);
  const auto reset = qScopeGuard([&] {
    if (isLong) grid.viewport()->unsetCursor();
  });
  const GridBatch batch(grid);
  Sorter(grid, column, ascending, numeric).Sort(0, grid.RowCount() - 1);
}

}  // namespace holdwise
