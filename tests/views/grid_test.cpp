// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include "common/grid/cell_geometry.h"
#include "common/grid/grid_model.h"
#include "common/grid/string_grid.h"
#include "grid_rows_fixture.h"

namespace holdwise {
namespace {

/// A shown grid of three rows and two columns, 100 pixels a column.
class Grid : public testing::Test {
 protected:
  Grid() {
    grid.SetColCount(2);
    grid.SetRowCount(3);
    for (int row = 0; row < 3; ++row) {
      for (int column = 0; column < 2; ++column) grid.SetCells(column, row, QString::asprintf("r%dc%d", row, column));
    }
    grid.SetColors(TestColors());
    grid.resize(200, 200);
    grid.SetColWidths({100, 100});
    grid.show();
    QTest::qWait(10);
  }
  QPoint Middle(int column, int row) const { return grid.CellRect(column, row).center(); }
  void Click(int column, int row) { QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, Middle(column, row)); }

  TStringGrid grid{QStringLiteral("Test"), QStringLiteral("grid")};
};

TEST(GridModelTest, HoldsToTheRulesOfItemModels) {
  GridModel model;
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.SetColumnCount(5);
  model.SetRowCount(40);
  model.SetText(4, 39, QStringLiteral("last"));
  model.BeginBatch();
  model.SetText(1, 2, QStringLiteral("a"));
  model.SetRowCount(2);
  model.SetText(3, 1, QStringLiteral("b"));
  model.EndBatch();
  model.SetColumnCount(2);
  model.SetRowCount(7);
  model.ClearTexts();
  EXPECT_EQ(model.rowCount(), 7);
  EXPECT_EQ(model.columnCount(), 2);
}

TEST(GridModelTest, OneRowAndOneColumnAlwaysStay) {
  GridModel model;
  EXPECT_EQ(model.rowCount(), 1);
  EXPECT_EQ(model.columnCount(), 1);
  model.SetRowCount(0);
  model.SetColumnCount(-4);
  EXPECT_EQ(model.rowCount(), 1);
  EXPECT_EQ(model.columnCount(), 1);
}

TEST(GridModelTest, RowsCutOffAreForgotten) {
  GridModel model;
  model.SetRowCount(2);
  model.SetText(0, 1, QStringLiteral("old"));
  model.SetRowCount(1);
  model.SetRowCount(2);
  EXPECT_EQ(model.Text(0, 1), QString());
}

TEST(GridModelTest, CellsOutsideReadEmptyAndTakeNothing) {
  GridModel model;
  model.SetText(0, 1, QStringLiteral("x"));
  model.SetText(-1, 0, QStringLiteral("x"));
  EXPECT_EQ(model.Text(0, 1), QString());
  EXPECT_EQ(model.Text(1, 0), QString());
  EXPECT_EQ(model.Text(0, 0), QString());
}

TEST(GridModelTest, ABatchIsOneAnnouncementOfTheRangeThatChanged) {
  GridModel model;
  model.SetColumnCount(6);
  model.SetRowCount(10);
  QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
  model.BeginBatch();
  model.SetText(4, 2, QStringLiteral("a"));
  model.BeginBatch();
  model.SetText(1, 7, QStringLiteral("b"));
  model.EndBatch();
  EXPECT_EQ(changes.count(), 0);
  model.EndBatch();
  ASSERT_EQ(changes.count(), 1);
  const auto first = changes[0][0].toModelIndex();
  const auto last = changes[0][1].toModelIndex();
  EXPECT_EQ(first, model.index(2, 1));
  EXPECT_EQ(last, model.index(7, 4));
  // The same text again is no change.
  model.SetText(4, 2, QStringLiteral("a"));
  EXPECT_EQ(changes.count(), 1);
}

TEST(CellGeometryTest, TextsLieInTheMiddleOrAfterTheInset) {
  const QRect cell(100, 52, 91, 26);
  // (91 - 40) / 2 = 25, (26 - 13) / 2 = 6
  EXPECT_EQ(CentredTextBox(cell, {40, 13}), QRect(125, 58, 40, 13));
  // A text 10 wider than its cell sticks out 5 on the left.
  EXPECT_EQ(CentredTextBox(cell, {101, 13}), QRect(95, 58, 101, 13));
  EXPECT_EQ(LeftTextBox(cell, {40, 13}), QRect(102, 58, 40, 13));
}

TEST(CellGeometryTest, ThePictureBoxLosesTheSameOnBothSides) {
  // (91 - 20) / 2 = 35 on each side leaves 21; (26 - 20) / 2 = 3 leaves 20.
  EXPECT_EQ(PictureBox(QRect(100, 52, 91, 26), {20, 20}), QRect(135, 55, 21, 20));
}

TEST(CellGeometryTest, ATextIsClippedWhenItNeedsMoreThanTheWidthWithItsInset) {
  EXPECT_FALSE(IsClipped(58, 60));
  EXPECT_TRUE(IsClipped(59, 60));
}

TEST_F(Grid, AnEmptiedGridKeepsOneEmptyRowAndStartsAtItsTop) {
  grid.SelectCell(0, 2);
  ClearStrnGrd(grid);
  EXPECT_EQ(grid.RowCount(), 1);
  EXPECT_EQ(grid.ColCount(), 2);
  EXPECT_TRUE(grid.IsEmpty());
  EXPECT_EQ(grid.Cells(1, 0), QString());
  EXPECT_EQ(grid.Row(), 0);
}

TEST_F(Grid, AClickAsksBeforeTheRowChanges) {
  std::vector<std::pair<int, int>> asked;  // asked row, current row at that moment
  grid.OnSelectCell = [&](int, int row) {
    asked.emplace_back(row, grid.Row());
    return true;
  };
  Click(1, 2);
  Click(0, 2);
  EXPECT_EQ(asked, (std::vector<std::pair<int, int>>{{2, 0}, {2, 2}}));
  EXPECT_EQ(grid.Row(), 2);
}

TEST_F(Grid, ARefusedClickLeavesTheRow) {
  grid.OnSelectCell = [](int column, int) { return column != 1; };
  Click(1, 2);
  EXPECT_EQ(grid.Row(), 0);
  Click(0, 2);
  EXPECT_EQ(grid.Row(), 2);
}

TEST_F(Grid, OnlyTheLeftButtonSelects) {
  QTest::mouseClick(grid.viewport(), Qt::RightButton, {}, Middle(0, 1));
  EXPECT_EQ(grid.Row(), 0);
}

TEST_F(Grid, ArrowKeysMoveTheRowAndStopAtTheEnds) {
  grid.setFocus();
  QTest::keyClick(&grid, Qt::Key_Up);
  EXPECT_EQ(grid.Row(), 0);
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(grid.Row(), 1);
  QTest::keyClick(&grid, Qt::Key_End);
  EXPECT_EQ(grid.Row(), 2);
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(grid.Row(), 2);
  QTest::keyClick(&grid, Qt::Key_PageUp);
  EXPECT_EQ(grid.Row(), 0);
}

TEST_F(Grid, TheCurrentRowIsBroughtIntoView) {
  grid.SetRowCount(100);
  QTest::qWait(10);
  grid.setFocus();
  QTest::keyClick(&grid, Qt::Key_End);
  EXPECT_EQ(grid.Row(), 99);
  EXPECT_TRUE(grid.viewport()->rect().contains(grid.CellRect(0, 99)));
}

TEST_F(Grid, TheMouseFindsCellsAndNothingBesideThem) {
  EXPECT_EQ(grid.MouseToCell({5, 5}), (GridCell{0, 0}));
  EXPECT_EQ(grid.MouseToCell({150, 60}), (GridCell{1, 2}));
  EXPECT_TRUE(grid.MouseToCell({150, 3 * 26 + 1}).IsNone());
  EXPECT_EQ(grid.CellRect(1, 2), QRect(100, 52, 100, 26));
  EXPECT_TRUE(grid.CellRect(1, 3).isEmpty());
}

TEST_F(Grid, PressMoveAndReleaseAreReportedWithTheirPlace) {
  QPoint down;
  QPoint move;
  QPoint up;
  Qt::KeyboardModifiers held;
  grid.OnMouseDown = [&](Qt::MouseButton, Qt::KeyboardModifiers modifiers, const QPoint& position) {
    down = position;
    held = modifiers;
  };
  grid.OnMouseMove = [&](const QPoint& position) { move = position; };
  grid.OnMouseUp = [&](const QPoint& position) { up = position; };
  QTest::mouseMove(grid.viewport(), {33, 44});
  QTest::mousePress(grid.viewport(), Qt::LeftButton, Qt::ControlModifier, {55, 66});
  QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, {7, 8});
  EXPECT_EQ(move, QPoint(33, 44));
  EXPECT_EQ(down, QPoint(55, 66));
  EXPECT_EQ(held, Qt::ControlModifier);
  EXPECT_EQ(up, QPoint(7, 8));
}

TEST_F(Grid, ADoubleClickIsTwoPressesAndThenItself) {
  QStringList order;
  grid.OnMouseDown = [&](Qt::MouseButton, Qt::KeyboardModifiers, const QPoint&) { order << QStringLiteral("press"); };
  grid.OnDoubleClick = [&](const QPoint&) { order << QStringLiteral("double"); };
  QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, Middle(0, 1));
  QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, Middle(0, 1));
  EXPECT_EQ(order.last(), QStringLiteral("double"));
  EXPECT_GE(order.count(QStringLiteral("press")), 2);
}

TEST_F(Grid, RowsAlternateAndTheCurrentOneStandsOut) {
  grid.SelectCell(0, 1);
  const QImage picture = grid.viewport()->grab().toImage();
  EXPECT_EQ(picture.pixelColor(2, 2), TestColors().evenRow);
  EXPECT_EQ(picture.pixelColor(2, 26 + 2), TestColors().selectedRow);
  EXPECT_EQ(picture.pixelColor(150, 26 + 2), TestColors().selectedRow);
  EXPECT_EQ(picture.pixelColor(2, 52 + 2), TestColors().evenRow);
  grid.SelectCell(0, 0);
  EXPECT_EQ(grid.viewport()->grab().toImage().pixelColor(2, 26 + 2), TestColors().oddRow);
}

TEST_F(Grid, AnEmptyGridDrawsNothingButItsBackground) {
  ClearStrnGrd(grid);
  const QImage picture = grid.viewport()->grab().toImage();
  for (int y = 0; y < picture.height(); y += 3) {
    for (int x = 0; x < picture.width(); x += 3) ASSERT_EQ(picture.pixelColor(x, y), TestColors().background);
  }
}

TEST_F(Grid, TheQuietTextShowsOnlyWhileTheGridIsEmpty) {
  grid.SetEmptyText(QStringLiteral("暂无"));
  auto* label = grid.viewport()->findChild<QLabel*>();
  ASSERT_NE(label, nullptr);
  EXPECT_FALSE(label->isVisible());
  ClearStrnGrd(grid);
  EXPECT_TRUE(label->isVisible());
  grid.SetCells(0, 0, QStringLiteral("x"));
  EXPECT_FALSE(label->isVisible());
}

TEST_F(Grid, TextsAreCentredUnlessTheColumnSaysLeft) {
  const int width = grid.fontMetrics().horizontalAdvance(QStringLiteral("r0c1"));
  EXPECT_EQ(grid.TextBox({1, 0}).left(), 100 + (100 - width) / 2);
  grid.SetColumnAlignment(1, Qt::AlignLeft);
  EXPECT_EQ(grid.TextBox({1, 0}).left(), 102);
  EXPECT_EQ(grid.TextBox({0, 0}).left(), (100 - width) / 2);
}

TEST_F(Grid, AnOwnDrawingReplacesTheOrdinaryOne) {
  grid.OnDrawCell = [](QPainter& painter, const GridCellPaint& cell) { painter.fillRect(cell.rect, Qt::yellow); };
  EXPECT_EQ(grid.viewport()->grab().toImage().pixelColor(50, 13), QColor(Qt::yellow));
}

TEST_F(Grid, KeyColumnsAreMarkedAndNotShown) {
  grid.SetTitles({QStringLiteral("名称")});
  grid.SetHiddenColumns({1});
  const GridText text = grid.ToGridText();
  EXPECT_EQ(text.titles, QStringList({QStringLiteral("名称"), QString()}));
  EXPECT_EQ(text.hidden, std::vector<bool>({false, true}));
  ASSERT_EQ(text.rows.size(), 3U);
  EXPECT_EQ(text.rows[2], QStringList({QStringLiteral("r2c0"), QStringLiteral("r2c1")}));
  EXPECT_TRUE(grid.MouseToCell({150, 5}).IsNone());
  ClearStrnGrd(grid);
  EXPECT_TRUE(grid.ToGridText().rows.empty());
}

TEST_F(Grid, TheScrollBarTakesItsWidthFromTheClientArea) {
  const int before = grid.ClientWidth();
  int reported = 0;
  grid.OnClientWidthChanged = [&](int width) { reported = width; };
  grid.SetRowCount(100);
  QTest::qWait(20);
  EXPECT_LT(grid.ClientWidth(), before);
  EXPECT_EQ(reported, grid.ClientWidth());
  EXPECT_FALSE(grid.horizontalScrollBar()->isVisible());
}

TEST_F(Grid, HandCursorAndHintComeAndGo) {
  grid.SetHandCursor(true);
  EXPECT_EQ(grid.viewport()->cursor().shape(), Qt::PointingHandCursor);
  grid.SetHandCursor(false);
  EXPECT_EQ(grid.viewport()->cursor().shape(), Qt::ArrowCursor);
  grid.ShowHint(QStringLiteral("一段说明"));
  EXPECT_EQ(QToolTip::text(), QStringLiteral("一段说明"));
  grid.ShowHint({});
  QTest::qWait(400);
  EXPECT_FALSE(QToolTip::isVisible());
}

TEST_F(Grid, AHintStaysWhileTheMouseRests) {
  grid.ShowHint(QStringLiteral("一段说明"));
  QHelpEvent rest(QEvent::ToolTip, Middle(0, 0), grid.viewport()->mapToGlobal(Middle(0, 0)));
  QApplication::sendEvent(grid.viewport(), &rest);
  QTest::qWait(400);  // longer than a tool tip takes to go
  EXPECT_TRUE(QToolTip::isVisible());
  EXPECT_EQ(QToolTip::text(), QStringLiteral("一段说明"));
  grid.ShowHint({});
}

TEST_F(Grid, AHintIsShownAsItStands) {
  grid.ShowHint(QStringLiteral("<b>甲</b>"));
  EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("&lt;b&gt;甲"))) << QToolTip::text().toStdString();
  grid.ShowHint({});
}

TEST_F(Grid, TheLastColumnsTextStaysInsideTheEdge) {
  // 20 of the 120 pixels lie beyond the edge of a grid 200 wide.
  grid.SetColWidths({100, 120});
  EXPECT_EQ(grid.ShownPart(grid.CellRect(1, 0)), QRect(100, 0, 100, 26));
  const int width = grid.fontMetrics().horizontalAdvance(QStringLiteral("r0c1"));
  EXPECT_EQ(grid.TextBox({1, 0}).left(), 100 + (100 - width) / 2);
  std::vector<QRect> drawn;
  grid.OnDrawCell = [&](QPainter&, const GridCellPaint& cell) {
    if (cell.column == 1 && cell.row == 2) drawn.push_back(cell.rect);
  };
  (void)grid.viewport()->grab();
  EXPECT_EQ(drawn, std::vector<QRect>{QRect(100, 52, 100, 26)});
}

TEST_F(Grid, ATextThatShowsOnlyAPartOfItIsToldWhole) {
  const QString longText = QStringLiteral("一个很长很长很长很长很长很长的文字");  // 17 characters of 12 pixels
  grid.SetCells(1, 1, longText);
  EXPECT_EQ(grid.ClippedText({1, 1}), longText);
  EXPECT_EQ(grid.ClippedText({1, 0}), QString());
  grid.SetColWidths({0, 300});
  EXPECT_EQ(grid.ClippedText({1, 1}), longText) << "the edge cuts it off as well";
  grid.resize(300, 200);
  EXPECT_EQ(grid.ClippedText({1, 1}), QString());
  EXPECT_EQ(grid.ClippedText({}), QString());
}

}  // namespace
}  // namespace holdwise
