// SPDX-License-Identifier: MIT
// The keys of the edit box over the holdings: from cell to cell, and which characters it takes.
#include <QInputMethodEvent>

#include "zxpz_fixture.h"

namespace holdwise::test {
namespace {

using Captures = std::vector<bool>;

constexpr int kPrice = kHoldingPrice;
constexpr int kQuantity = kHoldingQuantity;

class EditKeys : public EditorTest {
 protected:
  /// Opens the box over a cell that holds the text, with the caret there.
  void EditText(int column, const QString& text, int caret) {
    editor->UpdateEditor();
    Grid().SetCells(column, 0, text);
    editor->EditCell(column, 0);
    Edit().setCursorPosition(caret);
  }
};

// The keys that go from cell to cell.

struct Step {
  GridCell from;
  int key;
  Qt::KeyboardModifiers modifiers;
  GridCell to;
};

TEST_F(EditKeys, TabAndArrowsGoFromCellToCellAndStopAtTheBorders) {
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

TEST_F(EditKeys, EnterOnTheLastQuantityClosesTheBox) {
  Fill(2);
  editor->EditCell(kQuantity, 1);
  Type(QStringLiteral("700"));
  Key(Qt::Key_Return);
  EXPECT_EQ(editor->Rows()[1].quantity, QStringLiteral("700"));
  EXPECT_TRUE(Edit().isHidden());
  EXPECT_TRUE(Grid().hasFocus());
  EXPECT_TRUE(host.keyCodes.IsCaptureOn());
}

TEST_F(EditKeys, AWholePortfolioIsFilledByKeyboard) {
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

TEST_F(EditKeys, OtherKeysOfTheBoxAreNotTheGridsKeys) {
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

TEST_F(EditKeys, TheFilterOfTypedCharacters) {
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

TEST_F(EditKeys, TheFirstDigitReplacesTheSelectedTextOfAnOpenedCell) {
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

TEST_F(EditKeys, BackspaceAlwaysWorks) {
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

TEST_F(EditKeys, WhatIsPastedOrPutTogetherPassesTheSameSieve) {
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
  paste("34567890");
  EXPECT_EQ(Edit().text(), QStringLiteral("512")) << "ten digits";
  EditText(kPrice, QStringLiteral("5"), 1);
  for (const char* text : {".123", "99999.99", "999.995", "12345", "1234.5", "1.2.3", "-1", " 1", "1e3"}) {
    paste(text);
    EXPECT_EQ(Edit().text(), QStringLiteral("5")) << text;
  }
  for (const char* text : {"999.99", "1000", "9999", "1234.5"}) {
    Edit().selectAll();
    paste(text);
    EXPECT_EQ(Edit().text(), QString::fromLatin1(text)) << "as it can be typed";
  }
  EditText(kPrice, QStringLiteral("5"), 1);
  EXPECT_EQ(Edit().text(), QStringLiteral("5"));
  QInputMethodEvent commit;
  commit.setCommitString(QStringLiteral("一2.345"));
  QApplication::sendEvent(&Edit(), &commit);
  EXPECT_EQ(Edit().text(), QStringLiteral("52.34"));
}

TEST_F(EditKeys, ATextThatCannotBeTypedMayBeShortenedButNotReplacedByAnother) {
  Fill(1);
  const auto paste = [](const char* text) {
    QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
    Key(Qt::Key_V, Qt::ControlModifier);
  };
  EditText(kPrice, QStringLiteral("1710.50"), 7);
  Edit().selectAll();
  paste("999999.99");
  EXPECT_EQ(Edit().text(), QStringLiteral("1710.50"));
  Edit().setCursorPosition(1);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Edit().text(), QStringLiteral("110.50"));
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Edit().text(), QStringLiteral("1710.50")) << "undone";
  Edit().selectAll();
  paste("999999.99");
  EXPECT_EQ(Edit().text(), QStringLiteral("1710.50"));
  Edit().selectAll();
  paste("999.99");
  EXPECT_EQ(Edit().text(), QStringLiteral("999.99"));
}

}  // namespace
}  // namespace holdwise::test
