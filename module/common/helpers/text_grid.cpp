// SPDX-License-Identifier: MIT
#include "common/helpers/text_grid.h"

namespace holdwise {

QString TTextGrid::Cells(int column, int row) const {
  if (row < 0 || row >= RowCount() || column < 0 || column >= colCount_) return {};
  return rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

int TTextGrid::RowOf(QStringView firstCell) const {
  // Borrowed, so that a look-up makes no text.
  return rowsByFirstCell_.value(QString::fromRawData(firstCell.data(), firstCell.size()), -1);
}

void TTextGrid::Fill(const ResultSet& table) {
  ++revision_;
  rows_.clear();
  rowsByFirstCell_.clear();
  colCount_ = table.ColumnCount();
  rows_.reserve(static_cast<std::size_t>(table.RowCount()));
  rowsByFirstCell_.reserve(table.RowCount());
  for (int row = 0; row < table.RowCount(); ++row) {
    std::vector<QString>& cells = rows_.emplace_back();
    cells.reserve(static_cast<std::size_t>(colCount_));
    for (int column = 0; column < colCount_; ++column) cells.push_back(table.TextAt(row, column));
    if (colCount_ > 0 && !rowsByFirstCell_.contains(cells.front())) rowsByFirstCell_.insert(cells.front(), row);
  }
}

}  // namespace holdwise
