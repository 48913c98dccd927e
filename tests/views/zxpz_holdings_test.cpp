// SPDX-License-Identifier: MIT
// The holdings grid and its edit box: opening, the mouse, deletion, the keyboard capture.
#include "zxpz_fixture.h"

namespace holdwise::test {
namespace {

using Captures = std::vector<bool>;

constexpr int kPrice = kHoldingPrice;
constexpr int kQuantity = kHoldingQuantity;

using Holdings = EditorTest;

TEST_F(Holdings, StartsEmptyWithTheBoxClosed) {
  EXPECT_TRUE(editor->GetIshaveData()) << "true says that there is nothing";
  EXPECT_EQ(Grid().RowCount(), 1);
  EXPECT_TRUE(editor->Rows().empty());
  EXPECT_TRUE(Edit().isHidden());
  EXPECT_TRUE(editor->EditedCell().IsNone());
  editor->EditCell(kPrice, 0);
  EXPECT_TRUE(Edit().isHidden()) << "an empty grid has nothing to edit";
}

TEST_F(Holdings, RowsComeBackAsTheyWereGiven) {
  const std::vector<HoldingRow> rows = {
      {QStringLiteral("600000"), QStringLiteral("浦发银行"), QStringLiteral("9.80"), {}},
      {QStringLiteral("000001"), QStringLiteral("平安银行"), {}, QStringLiteral("0")}};
  editor->SetRows(rows);
  EXPECT_FALSE(editor->GetIshaveData());
  EXPECT_EQ(editor->Rows(), rows);
  editor->AddRow(rows[0]);
  EXPECT_EQ(editor->Rows().size(), 3U);
  editor->ClearRows();
  EXPECT_TRUE(editor->GetIshaveData());
  EXPECT_EQ(Grid().RowCount(), 1);
  editor->AddRow(rows[1]);
  EXPECT_EQ(editor->Rows(), std::vector{rows[1]}) << "the empty row is taken first";
}

TEST_F(Holdings, NewRowsCloseTheBoxAndForgetThePickedOnes) {
  Fill(3);
  Click(0, 1, Qt::ControlModifier);
  editor->EditCell(kPrice, 2);
  Edit().setText(QStringLiteral("99"));
  Fill(2);
  EXPECT_TRUE(Edit().isHidden());
  EXPECT_TRUE(editor->PickedRows().IsEmpty());
  EXPECT_EQ(editor->Rows()[1].price, QStringLiteral("12.5")) << "its text went nowhere";
}

// Opening, committing, closing.

TEST_F(Holdings, TheBoxOpensInsideItsCellWithAllOfItsTextSelected) {
  Fill(3);
  editor->EditCell(kQuantity, 1);
  EXPECT_EQ(Grid().Row(), 1);
  EXPECT_TRUE(Edit().isVisible());
  EXPECT_TRUE(Edit().hasFocus());
  const QRect cell = Grid().CellRect(kQuantity, 1);
  EXPECT_EQ(Edit().geometry(), QRect(cell.left() + 5, cell.top() + 3, cell.width() - 10, cell.height() - 6));
  EXPECT_EQ(Edit().text(), QStringLiteral("200"));
  EXPECT_EQ(Edit().selectedText(), QStringLiteral("200"));
  EXPECT_EQ(editor->EditedCell(), (GridCell{kQuantity, 1}));
  EXPECT_EQ(Edit().parentWidget(), Grid().viewport());
  EXPECT_EQ(Edit().palette().color(QPalette::Base), QColor(255, 255, 232)) << "15269887 = 0xE8FFFF, red lowest";
}

TEST_F(Holdings, ACommitWritesTheTextAndLeavesTheBoxOpen) {
  Fill(2);
  editor->EditCell(kPrice, 1);
  Edit().setText(QStringLiteral("8.88"));
  host.keyCodes.calls.clear();
  editor->FInplaceEditExit();
  EXPECT_EQ(editor->Rows()[1].price, QStringLiteral("8.88"));
  EXPECT_TRUE(Edit().isVisible());
  EXPECT_EQ(host.keyCodes.calls, Captures{true});
}

TEST_F(Holdings, ACommitOfTheClosedBoxOnlyGivesTheKeyboardBack) {
  Fill(2);
  const auto before = editor->Rows();
  host.keyCodes.calls.clear();
  editor->FInplaceEditExit();
  EXPECT_EQ(editor->Rows(), before);
  EXPECT_EQ(host.keyCodes.calls, Captures{true});
}

TEST_F(Holdings, ClosingWritesNothing) {
  Fill(2);
  const auto before = editor->Rows();
  editor->EditCell(kPrice, 1);
  Type(QStringLiteral("8"));
  editor->UpdateEditor();
  EXPECT_EQ(editor->Rows(), before);
  EXPECT_TRUE(Edit().isHidden());
  EXPECT_EQ(Edit().text(), QString());
  EXPECT_TRUE(editor->EditedCell().IsNone());
  EXPECT_TRUE(Grid().hasFocus()) << "the keyboard goes on in the grid";
  EXPECT_TRUE(host.keyCodes.IsCaptureOn());
}

TEST_F(Holdings, WhatWasTypedStaysWhenTheFocusGoesElsewhere) {
  Fill(2);
  editor->EditCell(kPrice, 0);
  Type(QStringLiteral("7.5"));
  editor->btnDel->setFocus();
  EXPECT_EQ(editor->Rows()[0].price, QStringLiteral("7.5"));
  EXPECT_TRUE(Edit().isVisible()) << "the box stays where it is";
  Click(kQuantity, 1);
  EXPECT_EQ(editor->EditedCell(), (GridCell{kQuantity, 1}));
  Type(QStringLiteral("50"));
  Click(0, 0);
  EXPECT_EQ(editor->Rows()[1].quantity, QStringLiteral("50"));
  EXPECT_TRUE(Edit().isHidden());
}

TEST_F(Holdings, TheBoxMovesWithItsCell) {
  Fill(10);
  editor->EditCell(kPrice, 9);
  EXPECT_TRUE(Grid().viewport()->rect().contains(Edit().geometry())) << "the row was brought into view";
  const int before = Edit().y();
  editor->resize(600, 320);
  QTest::qWait(20);
  EXPECT_EQ(Edit().geometry(), Grid().CellRect(kPrice, 9).adjusted(5, 3, -5, -3));
  EXPECT_NE(Edit().y(), before);
}

// The mouse.

TEST_F(Holdings, AClickOnPriceOrQuantityOpensTheBoxAndOneElsewhereClosesIt) {
  Fill(3);
  Click(kPrice, 1);
  EXPECT_EQ(editor->EditedCell(), (GridCell{kPrice, 1}));
  EXPECT_FALSE(host.keyCodes.IsCaptureOn());
  Type(QStringLiteral("3.5"));
  Click(kHoldingName, 2);
  EXPECT_TRUE(Edit().isHidden());
  EXPECT_EQ(editor->Rows()[1].price, QStringLiteral("3.5"));
  EXPECT_EQ(Grid().Row(), 2);
  EXPECT_TRUE(host.keyCodes.IsCaptureOn());
  Click(kQuantity, 0, Qt::ControlModifier);
  EXPECT_EQ(editor->EditedCell(), (GridCell{kQuantity, 0})) << "also with Ctrl";
  QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, QPoint(10, 3 * 26 + 10));
  EXPECT_TRUE(Edit().isHidden()) << "below the rows";
  QTest::mouseClick(Grid().viewport(), Qt::RightButton, {}, Middle(kPrice, 1));
  EXPECT_TRUE(Edit().isHidden()) << "the right button is the menu's";
}

TEST_F(Holdings, ControlAndClickPickAndUnpickRows) {
  Fill(4);
  const auto isPicked = [this](int row) { return editor->PickedRows().Contains(Grid().IdOf(row)); };
  Click(0, 1, Qt::ControlModifier);
  Click(0, 3, Qt::ControlModifier);
  EXPECT_TRUE(isPicked(1) && isPicked(3));
  EXPECT_FALSE(isPicked(0) || isPicked(2));
  Click(0, 1, Qt::ControlModifier);
  EXPECT_FALSE(isPicked(1));
  EXPECT_TRUE(isPicked(3));
  Click(0, 2);
  EXPECT_TRUE(editor->PickedRows().IsEmpty());
}

TEST_F(Holdings, ControlPressedPicksTheCurrentRowFirst) {
  Fill(4);
  Click(0, 2);
  WithControl([&] { Click(0, 0, Qt::ControlModifier); });
  EXPECT_TRUE(editor->PickedRows().Contains(Grid().IdOf(2))) << "both";
  EXPECT_TRUE(editor->PickedRows().Contains(Grid().IdOf(0)));
  WithControl([&] { Click(0, 0, Qt::ControlModifier); });
  EXPECT_FALSE(editor->PickedRows().Contains(Grid().IdOf(0)));
  EXPECT_TRUE(editor->PickedRows().Contains(Grid().IdOf(2))) << "with a row picked, Ctrl adds none";
}

TEST_F(Holdings, AControlThatBeginsACommandPicksNothing) {
  Fill(4);
  QGuiApplication::clipboard()->clear();
  for (const int key : {Qt::Key_C, Qt::Key_V, Qt::Key_A}) {
    Click(0, 1);
    WithControl([key] { Key(key, Qt::ControlModifier); });
    EXPECT_TRUE(editor->PickedRows().IsEmpty()) << key;
  }
  Click(0, 1);
  WithControl([] { Key(Qt::Key_C, Qt::ControlModifier); });
  Key(Qt::Key_Down);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Numbers(), (std::vector{1, 2, 4})) << "the current row, not the one that was copied from";
}

TEST_F(Holdings, AKeyThatMovesTheRowForgetsThePickedOnes) {
  for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End, Qt::Key_PageDown, Qt::Key_PageUp}) {
    Fill(4);
    Click(0, 1);
    WithControl([this] { Click(0, 3, Qt::ControlModifier); });
    Key(key);
    EXPECT_TRUE(editor->PickedRows().IsEmpty()) << key;
  }
}

TEST_F(Holdings, NothingIsPickedInAnEmptyGrid) {
  Grid().setFocus();
  WithControl([&] { Click(0, 0, Qt::ControlModifier); });
  EXPECT_TRUE(editor->PickedRows().IsEmpty());
}

// Deletion.

TEST_F(Holdings, DeleteTakesTheSelectedRange) {
  Fill(5);
  Click(0, 1);
  Click(0, 3, Qt::ShiftModifier);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Numbers(), (std::vector{1, 5}));
  EXPECT_TRUE(Edit().isHidden());
  QTest::mouseClick(editor->btnDel, Qt::LeftButton);
  EXPECT_EQ(Numbers(), std::vector{1}) << "the row number that was current";
}

TEST_F(Holdings, DeleteTakesThePickedRowsWhereverTheyStand) {
  Fill(5);
  Click(0, 0);
  WithControl([&] { Click(0, 4, Qt::ControlModifier); });
  Click(0, 2, Qt::ControlModifier);
  QTest::mouseClick(editor->btnDel, Qt::LeftButton);
  EXPECT_EQ(Numbers(), (std::vector{2, 4}));
  EXPECT_TRUE(editor->PickedRows().IsEmpty());
}

TEST_F(Holdings, PickedRowsAreKnownByIdentity) {
  Fill(5);
  Click(0, 3, Qt::ControlModifier);
  Grid().DeleteRow(1, 1);
  QTest::mouseClick(editor->btnDel, Qt::LeftButton);
  EXPECT_EQ(Numbers(), (std::vector{1, 3, 5})) << "the fourth, although it stands third now";
}

TEST_F(Holdings, DeletingTheOnlyRowLeavesAnEmptyOne) {
  Fill(1);
  Click(0, 0);
  Key(Qt::Key_Delete);
  EXPECT_TRUE(editor->GetIshaveData());
  EXPECT_EQ(Grid().RowCount(), 1);
  EXPECT_TRUE(editor->Rows().empty());
  Key(Qt::Key_Delete);
  EXPECT_TRUE(editor->GetIshaveData()) << "nothing to delete";
}

TEST_F(Holdings, DeletingAllPickedRowsLeavesAnEmptyOne) {
  Fill(3);
  for (const int row : {0, 1, 2}) Click(0, row, Qt::ControlModifier);
  Key(Qt::Key_Delete);
  EXPECT_TRUE(editor->GetIshaveData());
  EXPECT_EQ(Grid().RowCount(), 1);
}

TEST_F(Holdings, ADoubleClickDeletesTheRow) {
  Fill(3);
  QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, Middle(kHoldingName, 1));
  EXPECT_EQ(Numbers(), (std::vector{1, 3}));
}

TEST_F(Holdings, OnlyTheLeftButtonsDoubleClickDeletes) {
  Fill(3);
  for (const auto button : {Qt::RightButton, Qt::MiddleButton}) {
    QTest::mouseDClick(Grid().viewport(), button, {}, Middle(kHoldingName, 1));
    EXPECT_EQ(Numbers(), (std::vector{1, 2, 3}));
  }
}

TEST_F(Holdings, ADoubleClickBelowTheRowsDeletesTheCurrentOne) {
  Fill(3);
  Click(0, 1);
  QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, QPoint(10, 3 * 26 + 10));
  EXPECT_EQ(Numbers(), (std::vector{1, 3}));
}

TEST_F(Holdings, DeletingClosesTheBoxWithoutMovingItsText) {
  Fill(3);
  editor->EditCell(kPrice, 1);
  Type(QStringLiteral("77"));
  QTest::mouseClick(editor->btnDel, Qt::LeftButton);
  EXPECT_EQ(Numbers(), (std::vector{1, 3}));
  EXPECT_TRUE(Edit().isHidden());
  EXPECT_EQ(editor->Rows()[1].price, QStringLiteral("13.5"));
  EXPECT_EQ(editor->Rows()[0].price, QStringLiteral("11.5"));
}

// The host's keyboard.

TEST_F(Holdings, TheHostHasTheKeyboardExactlyWhileTheBoxHasNot) {
  Fill(3);
  Grid().setFocus();
  host.keyCodes.calls.clear();
  Click(kPrice, 0);
  EXPECT_EQ(host.keyCodes.calls, Captures{false});
  Click(kQuantity, 2);
  EXPECT_EQ(host.keyCodes.calls, (Captures{false, true, false})) << "the click goes to the grid first";
  editor->btnDel->setFocus();
  EXPECT_TRUE(host.keyCodes.IsCaptureOn());
  Edit().setFocus();
  EXPECT_FALSE(host.keyCodes.IsCaptureOn());
  editor->UpdateEditor();
  EXPECT_TRUE(host.keyCodes.IsCaptureOn());
}

// Widths and titles.

TEST_F(Holdings, EachColumnHasAQuarterOfTheWidth) {
  editor->resize(423, 240);
  QTest::qWait(20);
  for (int column = 0; column < kHoldingsColumns; ++column) EXPECT_EQ(Grid().ColWidth(column), 105) << column;
  Fill(10);  // a scroll bar comes
  QTest::qWait(20);
  ASSERT_LT(Grid().ClientWidth(), 423);
  for (int column = 0; column < kHoldingsColumns; ++column) {
    EXPECT_EQ(Grid().ColWidth(column), Grid().ClientWidth() / 4) << column;
  }
}

TEST_F(Holdings, TitlesInOneLineAndInTwo) {
  const auto titles = [this] {
    QStringList texts;
    for (const QLabel* label : editor->findChild<HeaderStrip*>()->Labels()) texts << label->text();
    return texts;
  };
  EXPECT_EQ(titles(), QStringList({"股票代码", "股票名称", "买入价(元)", "数量(股)"}));
  const int before = Grid().y();
  editor->SetTitles({"股票\r代码", "股票\r名称", "买入\r价(元)", "数量(股)"});
  QTest::qWait(20);
  EXPECT_EQ(titles(), QStringList({"股票\n代码", "股票\n名称", "买入\n价(元)", "数量(股)"}));
  EXPECT_GT(Grid().y(), before) << "the strip is higher";
}

}  // namespace
}  // namespace holdwise::test
