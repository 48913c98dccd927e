// SPDX-License-Identifier: MIT
// The grid's rows: identity, deletion, rows that are not shown, and ranges.
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "common/grid/grid_model.h"
#include "grid_rows_fixture.h"

namespace holdwise {

void PrintTo(const GridRange& range, std::ostream* out) {
  *out << range.top << " to " << range.bottom;
}

namespace {

TEST(NarrowedModel, HoldsToTheRulesOfItemModels) {
  GridModel model;
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.SetColumnCount(2);
  model.SetRowCount(9);
  model.ShowRows([](int row) { return row % 3 == 1; });
  EXPECT_EQ(model.rowCount(), 3);
  EXPECT_EQ(model.RowCount(), 9);
  EXPECT_EQ(model.RowAt(2), 7);
  EXPECT_EQ(model.RowAt(3), 9) << "behind the last";
  EXPECT_EQ(model.PlaceOf(4), 1);
  EXPECT_EQ(model.PlaceOf(5), -1);
  model.ShowRows([](int) { return false; });
  EXPECT_EQ(model.rowCount(), 0);
  model.ShowRows([](int row) { return row > 4; });
  model.RemoveRow(2);
  EXPECT_EQ(model.rowCount(), 8);
  model.ShowRows([](int row) { return row == 0; });
  model.SetRowCount(3);
  EXPECT_EQ(model.rowCount(), 3);
}

TEST(NarrowedModel, AnnouncesChangesByPlace) {
  GridModel model;
  model.SetRowCount(10);
  model.ShowRows([](int row) { return row >= 4 && row % 2 == 0; });  // 4, 6, 8
  QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
  model.SetText(0, 5, QStringLiteral("not shown"));
  EXPECT_EQ(changes.count(), 0);
  model.BeginBatch();
  model.SetText(0, 2, QStringLiteral("a"));
  model.SetText(0, 7, QStringLiteral("b"));
  model.EndBatch();
  ASSERT_EQ(changes.count(), 1);
  EXPECT_EQ(changes[0][0].toModelIndex().row(), 0);
  EXPECT_EQ(changes[0][1].toModelIndex().row(), 1);
  EXPECT_EQ(model.data(model.index(1, 0)).toString(), QString());
  model.SetText(0, 8, QStringLiteral("c"));
  EXPECT_EQ(model.data(model.index(2, 0)).toString(), QStringLiteral("c"));
}

TEST_F(GridRows, ARowIsKnownWhereverItMoves) {
  const RowId four = grid.IdOf(4);
  grid.DeleteRow(1, 2);
  EXPECT_EQ(grid.IdOf(2), four);
  grid.SetCells(0, 2, QStringLiteral("other text"));
  EXPECT_EQ(grid.IdOf(2), four);
  const RowId last = grid.IdOf(3);
  grid.SetRowCount(3);
  grid.SetRowCount(4);
  EXPECT_NE(grid.IdOf(3), last) << "a new row in an old place";
  EXPECT_EQ(grid.IdOf(-1), 0);
  EXPECT_EQ(grid.IdOf(4), 0);
}

TEST_F(GridRows, DeletingRows) {
  struct Case {
    int row, count;
    const char* left;
  };
  for (const Case& one : {Case{0, 1, "12345"}, Case{5, 1, "01234"}, Case{2, 3, "015"}, Case{2, 0, "012345"},
                          Case{2, -1, "012345"}, Case{4, 9, "0123"}, Case{6, 1, "012345"}, Case{-1, 1, "012345"}}) {
    grid.SetRowCount(0);
    Fill(6);
    grid.DeleteRow(one.row, one.count);
    EXPECT_EQ(Rows().toStdString(), one.left) << one.row << ", " << one.count;
  }
}

TEST_F(GridRows, TheOnlyRowIsEmptiedInstead) {
  Fill(1);
  const RowId id = grid.IdOf(0);
  grid.DeleteRow(0, 1);
  EXPECT_EQ(grid.RowCount(), 1);
  EXPECT_TRUE(grid.IsEmpty());
  EXPECT_EQ(grid.IdOf(0), id);
  Fill(6);
  grid.DeleteRow(0, 6);
  EXPECT_EQ(grid.RowCount(), 1);
  EXPECT_TRUE(grid.IsEmpty());
}

TEST_F(GridRows, TheRowNumberStaysCurrentWhenRowsGo) {
  grid.SelectCell(0, 3);
  grid.DeleteRow(3, 1);
  EXPECT_EQ(grid.Cells(0, grid.Row()), QStringLiteral("4"));
  grid.DeleteRow(0, 1);
  EXPECT_EQ(grid.Cells(0, grid.Row()), QStringLiteral("4")) << "a row before it: the same row";
  grid.DeleteRow(3, 1);
  EXPECT_EQ(grid.Cells(0, grid.Row()), QStringLiteral("4"));
  grid.DeleteRow(2, 1);
  EXPECT_EQ(grid.Row(), 1) << "none there any more: the last one";
  EXPECT_EQ(grid.Selection(), (GridRange{1, 1}));
}

TEST_F(GridRows, RowsThatAreNotShownHaveNoHeightAndCannotBeSelected) {
  grid.ShowRows([](int row) { return row == 2 || row == 5; });
  EXPECT_EQ(grid.RowCount(), 6);
  EXPECT_EQ(Rows(), QStringLiteral("012345")) << "their texts stay";
  EXPECT_EQ(grid.RowHeight(2), 20);
  EXPECT_EQ(grid.RowHeight(3), 0);
  EXPECT_EQ(grid.RowHeight(6), 0);
  EXPECT_EQ(grid.GetVisualTopRow(), 2);
  EXPECT_EQ(grid.Row(), 2) << "the current one went, so the first shown one is";
  EXPECT_FALSE(grid.SelectCell(0, 3));
  EXPECT_TRUE(grid.SelectCell(0, 5));
  EXPECT_EQ(grid.CellRect(1, 5), QRect(100, 20, 100, 20));
  EXPECT_TRUE(grid.CellRect(1, 4).isEmpty());
  EXPECT_EQ(grid.MouseToCell({150, 25}), (GridCell{1, 5}));
  EXPECT_TRUE(grid.MouseToCell({150, 41}).IsNone());
  EXPECT_EQ(grid.ColWidth(0), 100) << "the columns keep their widths";
}

TEST_F(GridRows, KeysWalkTheShownRows) {
  grid.ShowRows([](int row) { return row == 1 || row == 3 || row == 4; });
  Key(Qt::Key_Down);
  EXPECT_EQ(grid.Row(), 3);
  Key(Qt::Key_Down);
  Key(Qt::Key_Down);
  EXPECT_EQ(grid.Row(), 4);
  Key(Qt::Key_Up);
  EXPECT_EQ(grid.Row(), 3);
  Key(Qt::Key_Home);
  EXPECT_EQ(grid.Row(), 1);
  Key(Qt::Key_End);
  EXPECT_EQ(grid.Row(), 4);
}

TEST_F(GridRows, NoRowShownIsNoSelection) {
  grid.ShowRows([](int) { return false; });
  EXPECT_EQ(grid.GetVisualTopRow(), -1);
  EXPECT_EQ(grid.Row(), 0);
  EXPECT_EQ(grid.Selection().Count(), 0);
  for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_End, Qt::Key_Home, Qt::Key_PageDown}) Key(key);
  EXPECT_EQ(grid.Selection().Count(), 0);
  EXPECT_EQ(ColorAt(5), TestColors().background);
  grid.ShowRows([](int) { return true; });
  EXPECT_EQ(grid.Row(), 0);
  EXPECT_EQ(grid.Selection(), (GridRange{0, 0}));
}

TEST_F(GridRows, AnotherNumberOfRowsShowsAllOfThem) {
  grid.ShowRows([](int row) { return row == 4; });
  grid.SetRowCount(7);
  EXPECT_EQ(grid.RowHeight(0), 20);
  EXPECT_EQ(grid.GetVisualTopRow(), 0);
}

TEST_F(GridRows, RowsKeepTheirColourWhenOthersAreNotShown) {
  grid.ShowRows([](int row) { return row == 1 || row == 3 || row == 4; });
  EXPECT_EQ(ColorAt(2), TestColors().selectedRow);
  EXPECT_EQ(ColorAt(22), TestColors().oddRow);
  EXPECT_EQ(ColorAt(42), TestColors().evenRow);
}

TEST_F(GridRows, AnEmptiedGridPaintsNoSelectedRow) {
  grid.SelectCell(0, 4);
  ClearStrnGrd(grid);
  EXPECT_EQ(ColorAt(5), TestColors().background);
}

TEST_F(GridRows, ShiftAndClickSelectsFromTheRowWhereItBegan) {
  Click(2);
  Click(4, Qt::ShiftModifier);
  EXPECT_EQ(grid.Selection(), (GridRange{2, 4}));
  Click(0, Qt::ShiftModifier);
  EXPECT_EQ(grid.Selection(), (GridRange{0, 2}));
  EXPECT_EQ(ColorAt(2), TestColors().selectedRow);
  EXPECT_EQ(ColorAt(42), TestColors().selectedRow);
  EXPECT_EQ(ColorAt(62), TestColors().oddRow);
  Click(3);
  EXPECT_EQ(grid.Selection(), (GridRange{3, 3}));
}

TEST_F(GridRows, ShiftAndArrowsSelectAndAPlainArrowEndsIt) {
  Click(1);
  Key(Qt::Key_Down, Qt::ShiftModifier);
  Key(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(grid.Selection(), (GridRange{1, 3}));
  Key(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(grid.Selection(), (GridRange{1, 2}));
  Key(Qt::Key_Home, Qt::ShiftModifier);
  EXPECT_EQ(grid.Selection(), (GridRange{0, 1}));
  Key(Qt::Key_Home);
  EXPECT_EQ(grid.Selection(), (GridRange{0, 0}));
}

TEST_F(GridRows, DraggingSelects) {
  const auto at = [this](int row) { return grid.CellRect(0, row).center(); };
  QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, at(1));
  QTest::mouseMove(grid.viewport(), at(4));
  EXPECT_EQ(grid.Selection(), (GridRange{1, 4}));
  QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, at(4));
  QTest::mouseMove(grid.viewport(), at(0));
  EXPECT_EQ(grid.Selection(), (GridRange{1, 4})) << "the button is up";
}

TEST_F(GridRows, WithoutRangesOneRowIsSelected) {
  grid.SetRangeSelect(false);
  Click(1);
  Click(3, Qt::ShiftModifier);
  EXPECT_EQ(grid.Selection(), (GridRange{3, 3}));
  Key(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(grid.Selection(), (GridRange{2, 2}));
}

TEST_F(GridRows, ARangeAcrossRowsThatAreNotShownCountsThem) {
  grid.ShowRows([](int row) { return row != 2; });
  Click(1);
  Click(3, Qt::ShiftModifier);
  EXPECT_EQ(grid.Selection(), (GridRange{1, 3}));
}

}  // namespace
}  // namespace holdwise
