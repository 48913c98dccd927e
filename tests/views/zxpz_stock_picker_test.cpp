// SPDX-License-Identifier: MIT
// Where stocks are picked: sources, narrowing, the code and search fields, the keypad.
#include <QAccessible>
#include <QLabel>
#include <set>

#include "zxpz_picker_fixture.h"

namespace holdwise::test {
namespace {

using Captures = std::vector<bool>;

// Sources.

TEST_F(Picker, AllSharesStandInTheOrderOfTheirCodes) {
  EXPECT_EQ(Shown(), kAllCodes) << "neither the fund nor the other market's";
  EXPECT_EQ(List().Cells(1, 5), QStringLiteral("贵州茅台"));
  EXPECT_EQ(List().RowHeight(0), 18);
  EXPECT_EQ(List().Row(), 0);
  EXPECT_EQ(picker->RzComboBox1->itemText(0), QStringLiteral("自选股"));
  EXPECT_EQ(picker->RzComboBox1->itemText(1), QStringLiteral("沪深A股"));
}

TEST_F(Picker, TheUsersOwnStocksKeepTheirOrder) {
  picker->RzComboBox1->setFocus();
  Key(Qt::Key_Up);
  // -1, the indices and the unknown number are left out.
  EXPECT_EQ(Shown(), QStringList({"600519", "000002", "600000", "600519"}));
  Key(Qt::Key_Down);
  EXPECT_EQ(Shown(), kAllCodes);
  picker->SelectSource(2);
  EXPECT_EQ(picker->RzComboBox1->currentIndex(), 1) << "there is no such source";
}

TEST_F(Picker, AnEmptySourceLeavesTheListEmpty) {
  host.dataCenter.groups.clear();
  picker->SelectSource(StockPicker::kOwnGroup);
  EXPECT_TRUE(List().IsEmpty());
  picker->FocusFirstVisible();
  Key(Qt::Key_Return);
  WithControl([&] { PressAdd(); });
  TypeCode("60");
  Compose({}, QStringLiteral("茅"));
  Key(Qt::Key_Return);
  EXPECT_TRUE(editor->GetIshaveData());
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(Picker, AnotherSourceForgetsThePickedStocksAndClosesTheEditBox) {
  Fill(2);
  ClickStock("600519", Qt::ControlModifier);
  ASSERT_FALSE(picker->PickedStocks().IsEmpty());
  editor->EditCell(kHoldingPrice, 1);
  picker->SelectSource(StockPicker::kOwnGroup);
  EXPECT_TRUE(picker->PickedStocks().IsEmpty());
  EXPECT_TRUE(Edit().isHidden());
}

TEST_F(Picker, TheCodesHaveHalfOfTheWidth) {
  for (const int width : {900, 901, 1400}) {
    window->resize(width, 320);
    QTest::qWait(20);
    const int client = List().ClientWidth();
    EXPECT_EQ(List().ColWidth(0), client / 2);
    EXPECT_EQ(List().ColWidth(1), client - client / 2);
  }
}

// The code field.

TEST_F(Picker, TypedDigitsNarrowTheList) {
  TypeCode("60");
  EXPECT_EQ(Shown(), QStringList({"600000", "600519", "601398"}));
  EXPECT_EQ(List().Row(), RowOf("600000")) << "the first shown one is current";
  QTest::keyClicks(&Code(), QStringLiteral("1"));
  EXPECT_EQ(Shown(), QStringList({"601398"}));
  QTest::keyClicks(&Code(), QStringLiteral("9"));
  EXPECT_TRUE(Shown().isEmpty());
  EXPECT_EQ(List().GetVisualTopRow(), -1);
  Code().selectAll();
  Key(Qt::Key_Backspace);
  EXPECT_EQ(Shown(), kAllCodes);
  EXPECT_EQ(List().Row(), 0);
}

TEST_F(Picker, TheCodeFieldTakesDigitsOnly) {
  struct Typed {
    const char* before;
    int caret;
    const char* keys;
    const char* after;
  };
  for (const Typed& typed : {Typed{"", 0, "60", "60"}, Typed{"60", 2, "a.b-c,d e", "60"}, Typed{"60", 0, "3", "360"},
                             Typed{"000001", 6, "9", "0000019"}, Typed{"", 0, "6x0'0", "600"}}) {
    Code().setFocus();
    Code().setText(QString::fromLatin1(typed.before));
    Code().setCursorPosition(typed.caret);
    Type(QString::fromLatin1(typed.keys));
    EXPECT_EQ(Code().text().toStdString(), typed.after) << typed.before << " then " << typed.keys;
  }
  Code().setText(QStringLiteral("60"));
  QGuiApplication::clipboard()->setText(QStringLiteral("sh"));
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Code().text(), QStringLiteral("60")) << "nor pasted";
}

TEST_F(Picker, EnterAddsTheFirstShownStock) {
  TypeCode("600");
  Key(Qt::Key_Return);
  EXPECT_EQ(Held(), QStringList({"600000"}));
  EXPECT_EQ(Code().selectedText(), QStringLiteral("600")) << "the next code can be typed at once";
  Type(QStringLiteral("3"));
  Key(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(Held(), QStringList({"600000", "300750"}));
}

TEST_F(Picker, EnterWithNoStockShownAddsNothing) {
  TypeCode("9");
  Key(Qt::Key_Return);
  EXPECT_TRUE(editor->GetIshaveData());
  PressAdd();
  EXPECT_TRUE(editor->GetIshaveData()) << "nor does the button";
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(Picker, ArrowsWalkTheListWhileTyping) {
  for (const int key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down}) {
    TypeCode("60");
    Key(key);
    EXPECT_TRUE(List().hasFocus()) << key;
    EXPECT_EQ(List().Row(), RowOf(key == Qt::Key_Down ? "600519" : "600000")) << key;
  }
  Key(Qt::Key_Return);
  EXPECT_EQ(Held(), QStringList({"600519"}));
}

TEST_F(Picker, TheNameFieldsEnterLeadsToTheFirstShownStock) {
  List().SelectCell(0, 4);
  picker->FocusFirstVisible();
  EXPECT_TRUE(List().hasFocus());
  EXPECT_EQ(List().Row(), 0);
  TypeCode("60");
  List().SelectCell(0, RowOf("601398"));
  picker->FocusFirstVisible();
  EXPECT_EQ(List().Row(), RowOf("600000"));
}

// The search field.

TEST_F(Picker, ChineseCharactersNarrowByName) {
  picker->Search->setFocus();
  QInputMethodEvent compose(QStringLiteral("yin'hang"), {});
  QApplication::sendEvent(picker->Search, &compose);
  EXPECT_EQ(Shown(), kAllCodes) << "what is being composed narrows nothing";
  Compose({}, QStringLiteral("银行"));
  EXPECT_EQ(picker->Search->text(), QStringLiteral("银行"));
  EXPECT_EQ(Shown(), QStringList({"000001", "600000", "601398"}));
  TypeCode("6");
  EXPECT_EQ(Shown(), QStringList({"600000", "601398"})) << "both fields count";
  TypeCode("3");
  EXPECT_EQ(Shown(), QStringList());
  const auto said = [this] {
    for (const QLabel* label : List().findChildren<QLabel*>())
      if (label->isVisible()) return label->text();
    return QString();
  };
  EXPECT_EQ(said(), QStringLiteral("没有符合代码“3”和名称“银行”的股票"));
  TypeCode("6");
  EXPECT_EQ(said(), QString());
  picker->Search->clear();
  EXPECT_EQ(Shown(), QStringList({"600000", "600519", "601398"}));
}

/// By every reading of a character, as in the host's own quick entry.
TEST_F(Picker, TheInitialsOfANameFindItToo) {
  host.codeNums.initials = {{1000001, QStringLiteral("P A Y XH")},
                            {1600000, QStringLiteral("P F Y XH")},
                            {1601398, QStringLiteral("G S Y XH")},
                            {1000002, QStringLiteral("W K A")}};
  picker->Search->setFocus();
  QTest::keyClicks(picker->Search, QStringLiteral("yh"));
  EXPECT_EQ(Shown(), QStringList({"000001", "600000", "601398"}));
  Retype(*picker->Search, QStringLiteral("PFYX"));
  EXPECT_EQ(Shown(), QStringList({"600000"}));
  Retype(*picker->Search, QStringLiteral("py"));
  EXPECT_EQ(Shown(), QStringList()) << "characters that follow one another";
  picker->Search->setText(QStringLiteral("ｗｋ"));
  EXPECT_EQ(Shown(), QStringList({"000002"})) << "full width";
  QTest::keyClick(picker->Search, Qt::Key_Return);
  EXPECT_EQ(editor->Rows().size(), 1U);
  picker->Search->clear();
  EXPECT_EQ(Shown(), kAllCodes);
}

TEST_F(Picker, ANameIsFoundAsPeopleWriteIt) {
  for (const char* text : {"万科", "万科A", "万 科", "科a", "Ａ", "0002"}) {
    picker->Search->setText(QString::fromUtf8(text));
    EXPECT_TRUE(Shown().contains(QStringLiteral("000002"))) << text;
    EXPECT_EQ(Shown().size(), 1) << text;
  }
  picker->Search->setText(QStringLiteral("519"));
  EXPECT_EQ(Shown(), QStringList({"600519"})) << "any part of the code";
  picker->Search->setText(QStringLiteral(" "));
  EXPECT_EQ(Shown(), kAllCodes);
}

TEST_F(Picker, TheSearchFieldAddsAndWalksToo) {
  picker->Search->setFocus();
  Compose({}, QStringLiteral("银行"));
  Key(Qt::Key_Return);
  EXPECT_EQ(Held(), QStringList({"000001"}));
  EXPECT_EQ(picker->Search->selectedText(), QStringLiteral("银行"));
  Key(Qt::Key_Left);
  EXPECT_TRUE(picker->Search->hasFocus()) << "left and right move in the text";
  Key(Qt::Key_Down);
  EXPECT_TRUE(List().hasFocus());
  EXPECT_EQ(List().Row(), RowOf("600000"));
}

TEST_F(Picker, ASourceIsLoadedAsNarrowAsTheFieldsSay) {
  TypeCode("60");
  picker->SelectSource(StockPicker::kOwnGroup);
  EXPECT_EQ(Shown(), QStringList({"600519", "600000", "600519"}));
}

// The host's keyboard.

TEST_F(Picker, TheHostLeavesTheKeyboardToAFocusedField) {
  for (EntryField* field : {picker->RzEdit3, picker->Search}) {
    List().setFocus();
    host.keyCodes.calls.clear();
    field->setFocus();
    EXPECT_EQ(host.keyCodes.calls, Captures{false});
    List().setFocus();
    EXPECT_EQ(host.keyCodes.calls, (Captures{false, true}));
  }
  Code().setFocus();
  Key(Qt::Key_Down);
  EXPECT_TRUE(host.keyCodes.IsCaptureOn()) << "the arrow has left the field";
  StockPicker::RzEdit3Enter();
  EXPECT_FALSE(host.keyCodes.IsCaptureOn());
  StockPicker::RzEdit3Exit();
  EXPECT_TRUE(host.keyCodes.IsCaptureOn());
}

// The keypad.

TEST_F(Picker, TheKeypadIsShownAndHidden) {
  EXPECT_FALSE(picker->RzPanel7->isVisible());
  QTest::mouseClick(picker->SpeedButton1, Qt::LeftButton);
  EXPECT_TRUE(picker->RzPanel7->isVisible());
  EXPECT_TRUE(picker->rect().contains(picker->RzPanel7->geometry()));
  EXPECT_FALSE(picker->RzPanel7->geometry().intersects(Code().geometry())) << "the field stays in sight";
  QTest::mouseClick(picker->SpeedButton1, Qt::LeftButton);
  EXPECT_FALSE(picker->RzPanel7->isVisible());
}

TEST_F(Picker, EveryKeyOfTheKeypadHasAName) {
  std::set<QString> names;
  for (KeypadKey* key : picker->findChildren<KeypadKey*>())
    names.insert(QAccessible::queryAccessibleInterface(key)->text(QAccessible::Name).trimmed());
  EXPECT_EQ(names.size(), 14U) << "each its own";
  EXPECT_FALSE(names.contains(QString()));
  EXPECT_TRUE(names.contains(QStringLiteral("清空")));
}

TEST_F(Picker, TheKeypadsKeysTypeIntoTheCodeField) {
  QTest::mouseClick(picker->SpeedButton1, Qt::LeftButton);
  List().setFocus();
  for (const char* key : {"1", "2", "3", "4", "5", "6", "7", "8", "9", "0"}) PressKey(QString::fromLatin1(key));
  EXPECT_EQ(Code().text(), QStringLiteral("1234567890"));
  EXPECT_TRUE(List().hasFocus()) << "no key takes the focus, nor gives it to the field";
  PressKey(StockKeypad::kBackCaption);
  EXPECT_EQ(Code().text(), QStringLiteral("123456789"));
  PressKey(StockKeypad::kClearCaption);
  EXPECT_EQ(Code().text(), QString());
  EXPECT_EQ(Shown(), kAllCodes);
  PressKey(QStringLiteral("3"));
  EXPECT_EQ(Shown(), QStringList({"300750"}));
}

TEST_F(Picker, SixHundredAndThreeNoughtsReplaceTheText) {
  QTest::mouseClick(picker->SpeedButton1, Qt::LeftButton);
  TypeCode("30");
  for (const char* key : {"600", "000"}) {
    List().setFocus();
    PressKey(QString::fromLatin1(key));
    EXPECT_EQ(Code().text(), QString::fromLatin1(key));
    EXPECT_TRUE(Code().hasFocus());
    EXPECT_EQ(Code().cursorPosition(), 3);
    EXPECT_EQ(Code().selectedText(), QString());
    EXPECT_FALSE(host.keyCodes.IsCaptureOn()) << "the field has the keyboard";
  }
  EXPECT_EQ(Shown(), QStringList({"000001", "000002"}));
  PressKey(QStringLiteral("2"));
  EXPECT_EQ(Code().text(), QStringLiteral("0002"));
}

TEST_F(Picker, ADigitOrBackOfTheKeypadGivesTheHostTheKeyboardBack) {
  QTest::mouseClick(picker->SpeedButton1, Qt::LeftButton);
  Code().setFocus();
  for (const QString& key : {QStringLiteral("6"), StockKeypad::kBackCaption}) {
    host.keyCodes.calls.clear();
    PressKey(key);
    EXPECT_EQ(host.keyCodes.calls, (Captures{false, true})) << "although the field has the focus";
  }
  host.keyCodes.calls.clear();
  PressKey(StockKeypad::kClearCaption);
  EXPECT_TRUE(host.keyCodes.calls.empty());
}

TEST_F(Picker, AKeyIsSunkenWhileItIsHeldAndCountsOnlyWhenReleasedOverIt) {
  QTest::mouseClick(picker->SpeedButton1, Qt::LeftButton);
  QLabel& key = KeyOf(QStringLiteral("7"));
  EXPECT_EQ(key.frameShadow(), QFrame::Raised);
  QTest::mousePress(&key, Qt::LeftButton);
  EXPECT_EQ(key.frameShadow(), QFrame::Sunken);
  QTest::mouseRelease(&key, Qt::LeftButton, {}, QPoint(-5, -5));
  EXPECT_EQ(key.frameShadow(), QFrame::Raised);
  EXPECT_EQ(Code().text(), QString());
  QTest::mouseClick(&key, Qt::RightButton);
  EXPECT_EQ(Code().text(), QString());
  EXPECT_EQ(KeyOf(StockKeypad::kBackCaption).objectName(), QStringLiteral("RzPanel18"));
  EXPECT_EQ(KeyOf(StockKeypad::kClearCaption).objectName(), QStringLiteral("RzPanel24"));
}

}  // namespace
}  // namespace holdwise::test
