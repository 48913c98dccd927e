// SPDX-License-Identifier: MIT
// The grid's rows: identity, deletion, rows that are not shown, ranges, and the copy of all of them.
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include "common/grid/grid_model.h"
#include "common/grid/grid_picks.h"
#include "common/grid/string_grid.h"
#include "common/grid/table_text.h"

namespace holdwise {

void PrintTo(const GridRange& range, std::ostream* out) {
  *out << range.top << " to " << range.bottom;
}

namespace {

GridColors TestColors() {
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

// Copying.

TEST(TableText, TitlesAndShownColumnsSeparatedByTabs) {
  const GridText text{QStringLiteral("g"),
                      {QStringLiteral("代码"), QStringLiteral("名称"), QString()},
                      {false, false, true},
                      {{QStringLiteral("600519"), QStringLiteral("贵州\t茅\n台 "), QStringLiteral("7")},
                       {QStringLiteral("000001"), QString(), QStringLiteral("8")}}};
  EXPECT_EQ(TabSeparated(text), QStringLiteral("代码\t名称\n600519\t贵州 茅 台\n000001\t\n"));
}

class GridCopy : public GridRows {
 protected:
  GridCopy() {
    Fill(2);
    grid.SetCells(1, 0, QStringLiteral("x"));
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
  }
  [[nodiscard]] static QString Copied() { return QGuiApplication::clipboard()->text(); }
  void CopyTable() { Key(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier); }
  [[nodiscard]] QMenu* OpenMenu(const QPoint& at = {5, 5}) {
    QContextMenuEvent open(QContextMenuEvent::Mouse, at, grid.viewport()->mapToGlobal(at));
    QApplication::sendEvent(grid.viewport(), &open);
    return grid.findChild<QMenu*>();
  }
};

TEST_F(GridCopy, ByKeyboard) {
  CopyTable();
  EXPECT_EQ(Copied(), QStringLiteral("甲\t乙\n0\tx\n1\t\n"));
}

TEST_F(GridCopy, TheSelectedRowsAloneByTheUsualKey) {
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Copied(), QStringLiteral("甲\t乙\n0\tx\n"));
  Key(Qt::Key_Down);
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Copied(), QStringLiteral("甲\t乙\n1\t\n"));
  grid.SetRangeSelect(true);
  Key(Qt::Key_Up, Qt::ShiftModifier);
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Copied(), QStringLiteral("甲\t乙\n0\tx\n1\t\n"));
}

TEST_F(GridCopy, PickedRowsInTheirOrder) {
  Fill(4);
  GridPicks picks(grid);
  grid.OnMouseDown = [&](Qt::MouseButton button, Qt::KeyboardModifiers modifiers, const QPoint& at) {
    picks.MouseDown(button, modifiers, at);
  };
  for (const int row : {3, 1})
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::ControlModifier, grid.CellRect(0, row).center());
  QTest::keyClick(&grid, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Copied(), QStringLiteral("甲\t乙\n1\t\n3\t\n"));
}

TEST_F(GridCopy, ByContextMenu) {
  grid.OnContextMenu = [](QMenu& menu) { menu.addAction(QStringLiteral("另一个")); };
  const auto texts = [](const QMenu& menu) {
    QStringList all;
    for (const QAction* action : menu.actions()) all << action->text().section(u'\t', 0, 0);
    return all;
  };
  const QStringList expected = {QStringLiteral("复制单元格"), QStringLiteral("复制行"), QStringLiteral("复制表格"),
                                QString(), QStringLiteral("另一个")};
  const std::vector<QString> copied = {QStringLiteral("x"), QStringLiteral("甲\t乙\n0\tx\n"),
                                       QStringLiteral("甲\t乙\n0\tx\n1\t\n")};
  for (std::size_t entry = 0; entry < copied.size(); ++entry) {
    QMenu* menu = OpenMenu(grid.CellRect(1, 0).center());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(texts(*menu), expected);
    for (std::size_t down = 0; down <= entry; ++down) QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_EQ(Copied(), copied[entry]);
    QTest::qWait(10);
    EXPECT_EQ(grid.findChild<QMenu*>(), nullptr) << "it goes when it closes";
  }
}

TEST_F(GridCopy, TheMenuIsOfTheRowItIsOpenedOn) {
  QMenu* menu = OpenMenu(grid.CellRect(0, 1).center());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(grid.Row(), 1);
  menu->close();
  QTest::qWait(10);
  menu = OpenMenu({5, grid.viewport()->height() - 3});
  ASSERT_NE(menu, nullptr);
  EXPECT_FALSE(menu->actions()[0]->isEnabled()) << "below the rows there is no cell";
  EXPECT_TRUE(menu->actions()[2]->isEnabled());
  menu->close();
}

TEST_F(GridCopy, ByTheMenuKeyItIsOfTheCurrentCell) {
  Key(Qt::Key_Down);
  QContextMenuEvent open(QContextMenuEvent::Keyboard, {1, 1}, grid.viewport()->mapToGlobal(QPoint(1, 1)));
  QApplication::sendEvent(grid.viewport(), &open);
  auto* menu = grid.findChild<QMenu*>();
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(grid.Row(), 1);
  EXPECT_GE(menu->pos().y(), grid.viewport()->mapToGlobal(grid.CellRect(0, 1).bottomLeft()).y());
  QTest::keyClick(menu, Qt::Key_Down);
  QTest::keyClick(menu, Qt::Key_Return);
  EXPECT_EQ(Copied(), QStringLiteral("1"));
}

TEST_F(GridCopy, AnEmptyGridLeavesTheClipboardAlone) {
  ClearStrnGrd(grid);
  Key(Qt::Key_C, Qt::ControlModifier);
  CopyTable();
  EXPECT_EQ(Copied(), QStringLiteral("before"));
  QMenu* menu = OpenMenu();
  ASSERT_NE(menu, nullptr);
  for (const QAction* action : menu->actions()) EXPECT_FALSE(action->isEnabled());
  menu->close();
}

TEST_F(GridCopy, FractionsAreCopiedInPercentWhereTheTitleSaysSo) {
  grid.SetCells(1, 0, QStringLiteral("0.12345"));
  grid.SetColumnPercent(1, true);
  CopyTable();
  EXPECT_EQ(Copied(), QStringLiteral("甲\t乙\n0\t12.35\n1\t0.00\n"));
  EXPECT_EQ(grid.ToGridText().rows, (std::vector<QStringList>{{"0", "12.35"}, {"1", "0.00"}}))
      << "an export has the same";
  EXPECT_EQ(grid.Cells(1, 0), QStringLiteral("0.12345"));
  grid.SetColumnPercent(1, false);
  EXPECT_EQ(grid.ToGridText().rows.front(), QStringList({"0", "0.12345"}));
}

TEST_F(GridCopy, OnlyTheRowsThatAreShown) {
  grid.ShowRows([](int row) { return row == 1; });
  CopyTable();
  EXPECT_EQ(Copied(), QStringLiteral("甲\t乙\n1\t\n"));
}

}  // namespace
}  // namespace holdwise
