// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "common/grid/string_grid.h"

namespace holdwise {

inline GridColors TestColors() {
  GridColors colors;
  colors.evenRow = QColor(10, 20, 30);
  colors.oddRow = QColor(40, 50, 60);
  colors.selectedRow = QColor(0, 90, 160);
  colors.unselectedText = QColor(200, 201, 202);
  colors.selectedText = QColor(255, 254, 253);
  colors.background = QColor(0, 100, 0);
  return colors;
}

/// A shown grid of six rows 20 pixels high, named after their numbers, and two columns of 100 pixels.
class GridRows : public testing::Test {
 protected:
  GridRows() {
    grid.SetColCount(2);
    grid.SetTitles({QStringLiteral("甲"), QStringLiteral("乙")});
    grid.SetDefaultRowHeight(20);
    grid.SetRangeSelect(true);
    grid.SetColors(TestColors());
    Fill(6);
    grid.resize(200, 200);
    grid.SetColWidths({100, 100});
    grid.show();
    QApplication::setActiveWindow(&grid);
    grid.setFocus();
    QTest::qWait(10);
  }
  void Fill(int rows) {
    grid.SetRowCount(rows);
    for (int row = 0; row < rows; ++row) grid.SetCells(0, row, QString::number(row));
  }
  /// First cells of all rows.
  [[nodiscard]] QString Rows() const {
    QString rows;
    for (int row = 0; row < grid.RowCount(); ++row) rows += grid.Cells(0, row);
    return rows;
  }
  void Click(int row, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, modifiers, grid.CellRect(0, row).center());
  }
  void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&grid, static_cast<Qt::Key>(key), modifiers);
  }
  [[nodiscard]] QColor ColorAt(int y) { return grid.viewport()->grab().toImage().pixelColor(2, y); }

  TStringGrid grid{QStringLiteral("Test"), QStringLiteral("grid")};
};

}  // namespace holdwise
