// SPDX-License-Identifier: MIT
// The holdings grid and its edit box: opening, keys, filters, the mouse, deletion, the keyboard capture.
#include "zxpz_fixture.h"

namespace holdwise::test {
namespace {

using Captures = std::vector<bool>;

constexpr int kPrice = kHoldingPrice;
constexpr int kQuantity = kHoldingQuantity;

class Holdings : public EditorTest {
 protected:
  /// Opens the box over a cell that holds the text, with the caret there.
  void EditText(int column, const QString& text, int caret) {
    editor->UpdateEditor();
    Grid().SetCells(column, 0, text);
    editor->EditCell(column, 0);
    Edit().setCursorPosition(caret);
  }
};

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
  EXPECT_TRUE(HostCaptures());
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

// The keys that go from cell to cell.

struct Step {
  GridCell from;
  int key;
  Qt::KeyboardModifiers modifiers;
  GridCell to;
};

TEST_F(Holdings, TabAndArrowsGoFromCellToCellAndStopAtTheBorders) {
  const Step steps[] = {
      {{kPrice, 1}, Qt::Key_Tab, {}, {kQuantity, 1}},
      {{kQuantity, 1}, Qt::Key_Tab, {}, {kPrice, 2}},
      {{kQuantity, 2}, Qt::Key_Tab, {}, {kQuantity, 2}},
      {{kPrice, 2}, Qt::Key_Tab, {}, {kQuantity, 2}},
      {{kPrice, 1}, Qt::Key_Backtab, Qt::ShiftModifier, {kQuantity, 0}},
      {{kPrice, 0}, Qt::Key_Backtab, Qt::ShiftModifier, {kPrice, 0}},
      {{kQuantity, 1}, Qt::Key_Backtab, Qt::ShiftModifier, {kPrice, 1}},
      {{kQuantity, 0}, Qt::Key_Backtab, Qt::ShiftModifier, {kPrice, 0}},
      {{kPrice, 1}, Qt::Key_Tab, Qt::ShiftModifier, {kQuantity, 0}},
      {{kPrice, 1}, Qt::Key_Up, {}, {kPrice, 0}},
      {{kPrice, 0}, Qt::Key_Up, {}, {kPrice, 0}},
      {{kQuantity, 1}, Qt::Key_Up, {}, {kQuantity, 0}},
      {{kQuantity, 0}, Qt::Key_Up, {}, {kQuantity, 0}},
      {{kPrice, 1}, Qt::Key_Down, {}, {kPrice, 2}},
      {{kPrice, 2}, Qt::Key_Down, {}, {kPrice, 2}},
      {{kQuantity, 2}, Qt::Key_Down, {}, {kQuantity, 2}},
      {{kPrice, 1}, Qt::Key_Return, {}, {kQuantity, 1}},
      {{kPrice, 2}, Qt::Key_Enter, Qt::KeypadModifier, {kQuantity, 2}},
      {{kQuantity, 1}, Qt::Key_Return, {}, {kPrice, 2}},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(testing::Message() << step.from.column << "," << step.from.row << " key " << std::hex << step.key);
    Fill(3);
    editor->EditCell(step.from.column, step.from.row);
    Type(QStringLiteral("5"));
    const QString typed = Edit().text();
    ASSERT_EQ(typed, QStringLiteral("5"));
    host.keyCodes.calls.clear();
    Key(step.key, step.modifiers);
    EXPECT_EQ(Grid().Cells(step.from.column, step.from.row), typed) << "every step commits";
    EXPECT_EQ(editor->EditedCell(), step.to);
    EXPECT_EQ(Grid().Row(), step.to.row);
    EXPECT_EQ(Edit().geometry(), Grid().CellRect(step.to.column, step.to.row).adjusted(5, 3, -5, -3));
    EXPECT_TRUE(Edit().hasFocus());
    EXPECT_EQ(Edit().text(), Grid().Cells(step.to.column, step.to.row));
    EXPECT_EQ(Edit().selectedText(), Edit().text());
    EXPECT_EQ(host.keyCodes.calls, (Captures{true, false})) << "given back and taken again";
  }
}

TEST_F(Holdings, EnterOnTheLastQuantityClosesTheBox) {
  Fill(2);
  editor->EditCell(kQuantity, 1);
  Type(QStringLiteral("700"));
  Key(Qt::Key_Return);
  EXPECT_EQ(editor->Rows()[1].quantity, QStringLiteral("700"));
  EXPECT_TRUE(Edit().isHidden());
  EXPECT_TRUE(Grid().hasFocus());
  EXPECT_TRUE(HostCaptures());
}

TEST_F(Holdings, AWholePortfolioIsFilledByKeyboard) {
  Fill(3);
  Grid().setFocus();
  Grid().SelectCell(0, 0);
  Key(Qt::Key_Return);
  for (const char* text : {"9", "100", "8.5", "200", "7.25", "300"}) {
    Key(Qt::Key_Backspace);
    Type(QString::fromLatin1(text));
    Key(Qt::Key_Return);
  }
  EXPECT_TRUE(Edit().isHidden());
  const auto rows = editor->Rows();
  EXPECT_EQ(rows[0].price + u' ' + rows[0].quantity, QStringLiteral("9 100"));
  EXPECT_EQ(rows[1].price + u' ' + rows[1].quantity, QStringLiteral("8.5 200"));
  EXPECT_EQ(rows[2].price + u' ' + rows[2].quantity, QStringLiteral("7.25 300"));
}

TEST_F(Holdings, OtherKeysOfTheBoxAreNotTheGridsKeys) {
  Fill(3);
  editor->EditCell(kPrice, 1);
  for (const int key : {Qt::Key_PageDown, Qt::Key_Escape, Qt::Key_F5, Qt::Key_Delete, Qt::Key_Control}) Key(key);
  EXPECT_EQ(Numbers(), (std::vector{1, 2, 3})) << "Delete takes a character, not the row";
  EXPECT_EQ(Grid().Row(), 1);
  EXPECT_TRUE(editor->PickedRows().IsEmpty());
  EXPECT_EQ(Edit().text(), QString()) << "Delete has taken the selected text";
}

// The filter, with keys.

struct Typing {
  int column;
  const char* before;
  int caret;
  const char* keys;
  const char* after;
};

TEST_F(Holdings, TheFilterOfTypedCharacters) {
  const Typing cases[] = {
      {kPrice, "0", 1, "5", "5"},
      {kPrice, "0.00", 4, "12.5", "12.5"},
      {kPrice, "", 0, "12.345", "12.34"},
      {kPrice, "", 0, "1000.5", "1000"},
      {kPrice, "", 0, "10000", "1000"},
      {kPrice, "", 0, "1.2.3", "1.23"},
      {kPrice, "", 0, "1a2-3,4 e", "1234"},
      {kPrice, "12.34", 0, "9", "912.34"},
      {kPrice, "12.34", 3, "9", "12.34"},
      {kPrice, "123.45", 0, "9", "123.45"},
      {kPrice, "0", 1, "x", ""},
      {kQuantity, "0", 1, "7", "7"},
      {kQuantity, "", 0, "1234567890", "123456789"},
      {kQuantity, "", 0, "1.5", "15"},
      {kQuantity, "", 0, "12345678.9", "123456789"},
      {kQuantity, "100", 0, "x5", "5100"},
  };
  for (const Typing& typing : cases) {
    Fill(1);
    EditText(typing.column, QString::fromLatin1(typing.before), typing.caret);
    Type(QString::fromLatin1(typing.keys));
    EXPECT_EQ(Edit().text().toStdString(), typing.after) << "\"" << typing.before << "\" then " << typing.keys;
  }
}

TEST_F(Holdings, TheFirstDigitReplacesTheSelectedTextOfAnOpenedCell) {
  Fill(1);
  Grid().SetCells(kPrice, 0, QStringLiteral("10.00"));
  editor->EditCell(kPrice, 0);
  Type(QStringLiteral("9.5"));
  EXPECT_EQ(Edit().text(), QStringLiteral("9.5"));
  // Six characters and values above 999 take a backspace first: intended.
  Grid().SetCells(kPrice, 0, QStringLiteral("1710.50"));
  editor->UpdateEditor();
  editor->EditCell(kPrice, 0);
  Type(QStringLiteral("9"));
  EXPECT_EQ(Edit().text(), QStringLiteral("1710.50"));
  Key(Qt::Key_Backspace);
  Type(QStringLiteral("9"));
  EXPECT_EQ(Edit().text(), QStringLiteral("9"));
}

TEST_F(Holdings, BackspaceAlwaysWorks) {
  Fill(1);
  EditText(kPrice, QStringLiteral("123.45"), 6);
  Key(Qt::Key_Backspace);
  EXPECT_EQ(Edit().text(), QStringLiteral("123.4"));
  EditText(kPrice, QStringLiteral("12.3456"), 7);
  Key(Qt::Key_Backspace);
  EXPECT_EQ(Edit().text(), QStringLiteral("12.345")) << "also in a text that could not be typed";
  EditText(kQuantity, QStringLiteral("123456789"), 9);
  Key(Qt::Key_Backspace);
  EXPECT_EQ(Edit().text(), QStringLiteral("12345678"));
}

TEST_F(Holdings, WhatIsPastedOrPutTogetherPassesTheSameSieve) {
  Fill(1);
  EditText(kQuantity, QStringLiteral("5"), 1);
  const auto paste = [](const char* text) {
    QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
    Key(Qt::Key_V, Qt::ControlModifier);
  };
  paste("12a");
  EXPECT_EQ(Edit().text(), QStringLiteral("5"));
  paste("12");
  EXPECT_EQ(Edit().text(), QStringLiteral("512"));
  EditText(kPrice, QStringLiteral("5"), 1);
  paste(".123");
  EXPECT_EQ(Edit().text(), QStringLiteral("5"));
  QInputMethodEvent commit;
  commit.setCommitString(QStringLiteral("一2.345"));
  QApplication::sendEvent(&Edit(), &commit);
  EXPECT_EQ(Edit().text(), QStringLiteral("52.34"));
}

// The mouse.

TEST_F(Holdings, AClickOnPriceOrQuantityOpensTheBoxAndOneElsewhereClosesIt) {
  Fill(3);
  Click(kPrice, 1);
  EXPECT_EQ(editor->EditedCell(), (GridCell{kPrice, 1}));
  EXPECT_FALSE(HostCaptures());
  Type(QStringLiteral("3.5"));
  Click(kHoldingName, 2);
  EXPECT_TRUE(Edit().isHidden());
  EXPECT_EQ(editor->Rows()[1].price, QStringLiteral("3.5"));
  EXPECT_EQ(Grid().Row(), 2);
  EXPECT_TRUE(HostCaptures());
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
  EXPECT_TRUE(HostCaptures());
  Edit().setFocus();
  EXPECT_FALSE(HostCaptures());
  editor->UpdateEditor();
  EXPECT_TRUE(HostCaptures());
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
