// SPDX-License-Identifier: MIT
// What a grid puts on the clipboard, by keyboard and from its context menu.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>

#include "common/grid/grid_picks.h"
#include "common/grid/table_text.h"
#include "contrast.h"
#include "grid_rows_fixture.h"
#include "view_tools.h"

namespace holdwise {
namespace {

using test::OpenMenu;

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
    QMenu* menu = OpenMenu(grid, grid.CellRect(1, 0).center());
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
  QMenu* menu = OpenMenu(grid, grid.CellRect(0, 1).center());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(grid.Row(), 1);
  menu->close();
  QTest::qWait(10);
  menu = OpenMenu(grid, {5, grid.viewport()->height() - 3});
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
  QMenu* menu = OpenMenu(grid);
  ASSERT_NE(menu, nullptr);
  for (const QAction* action : menu->actions()) EXPECT_FALSE(action->isEnabled());
  menu->close();
}

TEST_F(GridCopy, WhatTheMenuCannotDoIsGreyAndYetToBeRead) {
  GridColors light = TestColors();
  light.oddRow = QColor(244, 247, 251);
  light.unselectedText = QColor(31, 41, 51);
  for (const GridColors& colors : {TestColors(), light}) {
    grid.SetColors(colors);
    QMenu* menu = OpenMenu(grid);
    ASSERT_NE(menu, nullptr);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
      const QColor text = menu->palette().color(QPalette::Active, role);
      const QColor grey = menu->palette().color(QPalette::Disabled, role);
      EXPECT_GE(Contrast(text, grey), 1.5) << role;
      EXPECT_GE(Contrast(grey, menu->palette().color(QPalette::Base)), 4.5) << role;
    }
    EXPECT_EQ(menu->palette().color(QPalette::Base), colors.oddRow) << "the theme's, whatever the host's windows have";
    menu->close();
    QTest::qWait(10);
  }
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
