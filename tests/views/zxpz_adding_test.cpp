// SPDX-License-Identifier: MIT
// From the stock list and the clipboard into the holdings.
#include "zxpz_picker_fixture.h"

namespace holdwise::test {
namespace {

// The list.

TEST_F(Picker, DoubleClickEnterAndButtonAdd) {
  QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, List().CellRect(1, RowOf("600519")).center());
  EXPECT_EQ(Held(), QStringList({"600519"}));
  List().setFocus();
  Key(Qt::Key_Down);
  Key(Qt::Key_Return);
  EXPECT_EQ(Held(), QStringList({"600519", "601398"}));
  ClickStock("000001");
  PressAdd();
  EXPECT_EQ(Held(), QStringList({"600519", "601398", "000001"}));
}

TEST_F(Picker, ShiftAddsARangeFromTopToBottom) {
  ClickStock("600000");
  ClickStock("000002", Qt::ShiftModifier);
  PressAdd();
  EXPECT_EQ(Held(), QStringList({"000002", "002594", "300750", "600000"}));
}

TEST_F(Picker, ControlAddsSingleStocks) {
  ClickStock("600519", Qt::ControlModifier);
  ClickStock("000002", Qt::ControlModifier);
  ClickStock("300750", Qt::ControlModifier);
  ClickStock("000002", Qt::ControlModifier);
  PressAdd();
  EXPECT_EQ(Held(), QStringList({"300750", "600519"})) << "in the order of the list";
  ClickStock("000001");
  EXPECT_TRUE(picker->PickedStocks().IsEmpty()) << "a plain click forgets them";
}

TEST_F(Picker, ControlPressedPicksTheCurrentStockFirst) {
  ClickStock("000002");
  WithControl([&] { ClickStock("600519", Qt::ControlModifier); });
  PressAdd();
  EXPECT_EQ(Held(), QStringList({"000002", "600519"}));
}

TEST_F(Picker, PickedStocksStayPickedWhileTheListIsNarrowed) {
  ClickStock("000002", Qt::ControlModifier);
  TypeCode("600519");
  QTest::mouseClick(List().viewport(), Qt::LeftButton, Qt::ControlModifier,
                    List().CellRect(0, RowOf("600519")).center());
  TypeCode("9");
  PressAdd();
  EXPECT_EQ(Held(), QStringList({"000002", "600519"}));
}

TEST_F(Picker, AControlThatBeginsACommandPicksNothing) {
  for (const int key : {Qt::Key_C, Qt::Key_V, Qt::Key_A, Qt::Key_Return}) {
    editor->ClearRows();
    ClickStock("000002");
    WithControl([key] { Key(key, Qt::ControlModifier); });
    EXPECT_TRUE(picker->PickedStocks().IsEmpty()) << key;
    editor->ClearRows();
    TypeCode("600519");
    Key(Qt::Key_Return);
    EXPECT_EQ(Held(), QStringList({"600519"})) << key;
    TypeCode("");
  }
}

TEST_F(Picker, ACommandLeavesThePickedStocksAsTheyWere) {
  ClickStock("000002");
  WithControl([this] {
    ClickStock("600519", Qt::ControlModifier);
    Key(Qt::Key_C, Qt::ControlModifier);
  });
  WithControl([] { Key(Qt::Key_C, Qt::ControlModifier); });
  PressAdd();
  EXPECT_EQ(Held(), QStringList({"000002", "600519"}));
}

TEST_F(Picker, AControlAloneLeavesItsPickUntilAKeyMovesTheRow) {
  for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End, Qt::Key_PageDown, Qt::Key_PageUp}) {
    ClickStock("000002");
    WithControl([] {});
    EXPECT_FALSE(picker->PickedStocks().IsEmpty());
    Key(key);
    EXPECT_TRUE(picker->PickedStocks().IsEmpty()) << key;
  }
  ClickStock("000002");
  WithControl([] { Key(Qt::Key_Down, Qt::ControlModifier); });
  Key(Qt::Key_Return);
  EXPECT_EQ(Held(), QStringList({"000002"})) << "with Ctrl held the row that was picked stays so";
}

TEST_F(Picker, TheArrowsWithShiftSelectInsteadOfWhatWasPicked) {
  ClickStock("000002");
  WithControl([] {});
  Key(Qt::Key_Down, Qt::ShiftModifier);
  Key(Qt::Key_Return);
  EXPECT_EQ(Held(), QStringList({"000002", "002594"}));
}

TEST_F(Picker, WhatHasBeenAddedIsNoLongerPicked) {
  ClickStock("000002", Qt::ControlModifier);
  ClickStock("600519", Qt::ControlModifier);
  PressAdd();
  EXPECT_TRUE(picker->PickedStocks().IsEmpty());
  Fill(9);
  ClickStock("000002", Qt::ControlModifier);
  ClickStock("600519", Qt::ControlModifier);
  PressAdd();
  EXPECT_EQ(Messages(), QStringList({"组合记录数应小于10"}));
  EXPECT_FALSE(picker->PickedStocks().IsEmpty()) << "some have not";
}

TEST_F(Picker, ATypedCodeIsMeantAndNotWhatWasPickedOutOfSight) {
  ClickStock("000002", Qt::ControlModifier);
  TypeCode("600519");
  Key(Qt::Key_Return);
  EXPECT_EQ(Held(), QStringList({"600519"}));
  TypeCode("0000");
  Key(Qt::Key_Return);
  EXPECT_EQ(Held(), QStringList({"600519", "000002"})) << "in sight again, it is what Enter adds";
  EXPECT_TRUE(picker->PickedStocks().IsEmpty());
}

TEST_F(Picker, AHiddenRowIsNeitherSelectedNorAdded) {
  TypeCode("60");
  EXPECT_FALSE(List().SelectCell(0, RowOf("000001")));
  TypeCode("");
  picker->Search->setText(QStringLiteral("银行"));
  ClickStock("000001");
  ClickStock("601398", Qt::ShiftModifier);
  PressAdd();
  EXPECT_EQ(Held(), QStringList({"000001", "600000", "601398"})) << "what lies between them out of sight is left out";
}

TEST_F(Picker, TheListIsCopiedAsItIsShown) {
  TypeCode("6005");
  List().setFocus();
  Key(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("股票代码\t股票名称\n600519\t贵州茅台\n"));
}

// Adding.

TEST_F(Picker, ANewRowHasTheCurrentPriceAndNoQuantity) {
  for (const char* code : {"600519", "002594", "300750"}) ClickStock(code, Qt::ControlModifier);
  PressAdd();
  const std::vector<HoldingRow> expected = {
      {QStringLiteral("002594"), QStringLiteral("比亚迪"), QStringLiteral("230.46"), {}},
      {QStringLiteral("300750"), QStringLiteral("宁德时代"), QStringLiteral("0.00"), {}},  // its price is not known
      {QStringLiteral("600519"), QStringLiteral("贵州茅台"), QStringLiteral("1710.50"), {}}};
  EXPECT_EQ(editor->Rows(), expected);
}

// Nearest to 1.065 in single precision is 1.0650000572, in double precision 1.0649999999; nearest to 1.135
// are 1.1349999905 and 1.1350000000000000089; nearest to 1.005 are 1.0049999952 and 1.0049999999.
TEST_F(Picker, TheCurrentPriceIsTakenInSinglePrecision) {
  for (const auto& [price, text] : {std::pair{1.005, "1.00"}, {1.065, "1.07"}, {1.135, "1.13"}}) {
    Add("600000", "浦发银行", 1, price);
    editor->ClearRows();
    ClickStock("600000");
    PressAdd();
    EXPECT_EQ(editor->Rows()[0].price.toStdString(), text);
  }
}

TEST_F(Picker, TheFocusAndTheKeyboardStayWhereTheyAreWhenAnAddIsRefused) {
  Fill(10);
  for (const char* text : {"组合记录数应小于10", "浦发银行在组合里已经存在"}) {
    host.messageBoxes.calls.clear();
    TypeCode("600000");
    Key(Qt::Key_Return);
    EXPECT_EQ(Messages(), QStringList({QString::fromUtf8(text)}));
    EXPECT_TRUE(Code().hasFocus()) << text;
    EXPECT_FALSE(host.keyCodes.IsCaptureOn()) << text;
    List().setFocus();
    Key(Qt::Key_Return);
    EXPECT_TRUE(List().hasFocus()) << text;
    EXPECT_TRUE(host.keyCodes.IsCaptureOn()) << text;
    editor->ClearRows();
    picker->btnAdd->setFocus();
    Key(Qt::Key_Space);
    ASSERT_EQ(Held(), QStringList({"600000"}));
  }
}

TEST_F(Picker, AStockThatIsThereIsNamedAndSkipped) {
  ClickStock("600000");
  PressAdd();
  ClickStock("300750");
  ClickStock("600519", Qt::ShiftModifier);
  PressAdd();
  EXPECT_EQ(Messages(), QStringList({"浦发银行在组合里已经存在"}));
  EXPECT_EQ(Held(), QStringList({"600000", "300750", "600519"})) << "the others are added";
}

TEST_F(Picker, AStockThatComesTwiceInOneAddIsCopied) {
  picker->SelectSource(StockPicker::kOwnGroup);  // 600519, 000002, 600000, 600519
  List().setFocus();
  Key(Qt::Key_Home);
  Key(Qt::Key_End, Qt::ShiftModifier);
  PressAdd();
  EXPECT_EQ(Held(), QStringList({"600519", "000002", "600000", "600519"}));
  EXPECT_EQ(editor->Rows()[3], editor->Rows()[0]);
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(Picker, TheTenthRowEndsAnAdd) {
  Fill(8);
  ClickStock("000001");
  ClickStock("002594", Qt::ShiftModifier);
  PressAdd();
  EXPECT_EQ(editor->Rows().size(), 10U);
  EXPECT_EQ(editor->Rows()[8].code, QStringLiteral("000001"));
  EXPECT_EQ(editor->Rows()[9].code, QStringLiteral("000002"));
  EXPECT_EQ(Messages(), QStringList({"组合记录数应小于10"}));
  PressAdd();
  EXPECT_EQ(Messages(), QStringList({"组合记录数应小于10", "组合记录数应小于10"})) << "one each time, not one a stock";
  EXPECT_EQ(editor->Rows().size(), 10U);
}

TEST_F(Picker, TheLimitComesBeforeTheQuestionWhetherItIsThere) {
  Fill(9);
  ClickStock("600000");
  PressAdd();
  ClickStock("600000");
  PressAdd();
  EXPECT_EQ(Messages(), QStringList({"组合记录数应小于10"}));
}

TEST_F(Picker, AnAddClosesTheEditBoxWhateverHappens) {
  Fill(10);
  editor->EditCell(kHoldingPrice, 3);
  Type(QStringLiteral("8"));
  ClickStock("600000");
  EXPECT_TRUE(Edit().isVisible());
  PressAdd();
  EXPECT_TRUE(Edit().isHidden());
  EXPECT_EQ(editor->Rows()[3].price, QStringLiteral("8")) << "what was typed stays";
  EXPECT_EQ(Grid().ColWidth(0), Grid().ClientWidth() / 4);
}

TEST_F(Picker, TheWindowMayGoWhileAMessageIsShown) {
  ClickStock("600000");
  PressAdd();
  host.messageBoxes.whileAsking = [this] {
    (void)editor.release();
    window.reset();
  };
  picker->Label4Click();
  EXPECT_EQ(Messages(), QStringList({"浦发银行在组合里已经存在"}));
}

// Without the mouse.

TEST_F(Picker, TabGoesThroughTheControlsAndLeavesTheEditBoxOut) {
  Fill(2);
  picker->RzComboBox1->setFocus();
  for (QWidget* next : std::initializer_list<QWidget*>{picker->Search, picker->RzEdit3, picker->StringGrid2,
                                                       picker->btnAdd, editor->StringGrid3, editor->btnDel}) {
    Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), next) << next->objectName().toStdString();
  }
  Key(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(Grid().hasFocus());
}

TEST_F(Picker, APortfolioIsBuiltWithoutTheMouse) {
  picker->RzEdit3->setFocus();
  for (const char* code : {"600519", "000001", "601398"}) {
    Type(QString::fromLatin1(code));
    Key(Qt::Key_Return);
  }
  for (int tabs = 0; tabs < 3; ++tabs) Key(Qt::Key_Tab);
  ASSERT_TRUE(Grid().hasFocus());
  Key(Qt::Key_Return);
  for (const char* quantity : {"100", "2000", "30000"}) {
    Key(Qt::Key_Return);  // the price stays
    Type(QString::fromLatin1(quantity));
    Key(Qt::Key_Return);
  }
  const std::vector<HoldingRow> expected = {
      {QStringLiteral("600519"), QStringLiteral("贵州茅台"), QStringLiteral("1710.50"), QStringLiteral("100")},
      {QStringLiteral("000001"), QStringLiteral("平安银行"), QStringLiteral("12.00"), QStringLiteral("2000")},
      {QStringLiteral("601398"), QStringLiteral("工商银行"), QStringLiteral("5.25"), QStringLiteral("30000")}};
  EXPECT_EQ(editor->Rows(), expected);
  EXPECT_TRUE(Edit().isHidden());
}

// Pasting.

class Paste : public Picker {
 protected:
  void PasteText(const char* text) {
    QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
    Grid().setFocus();
    Key(Qt::Key_V, Qt::ControlModifier);
  }
};

TEST_F(Paste, RowsComeBehindThoseThereAre) {
  ClickStock("601398");
  PressAdd();
  PasteText("代码\t数量\t价格\n600519\t100\t1700\nsz000001\t1,000\t11.5\n");
  const std::vector<HoldingRow> expected = {
      {QStringLiteral("601398"), QStringLiteral("工商银行"), QStringLiteral("5.25"), {}},
      {QStringLiteral("600519"), QStringLiteral("贵州茅台"), QStringLiteral("1700.00"), QStringLiteral("100")},
      {QStringLiteral("000001"), QStringLiteral("平安银行"), QStringLiteral("11.50"), QStringLiteral("1000")}};
  EXPECT_EQ(editor->Rows(), expected);
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(Paste, AMissingPriceIsTheCurrentOne) {
  PasteText("600519\n002594,300");
  EXPECT_EQ(editor->Rows()[0].price, QStringLiteral("1710.50"));
  EXPECT_EQ(editor->Rows()[0].quantity, QString());
  EXPECT_EQ(editor->Rows()[1].price, QStringLiteral("230.46"));
  EXPECT_EQ(editor->Rows()[1].quantity, QStringLiteral("300"));
}

TEST_F(Paste, TheHostSaysWhatIsAStock) {
  PasteText("510300,100,4\n830799,1,1\n399001,1,1\n000001.SH,1,1\n000002.SZ,7,8\n");
  EXPECT_EQ(Held(), QStringList({"000002"}));
  EXPECT_EQ(editor->Rows()[0].name, QStringLiteral("万 科Ａ"));
  ASSERT_EQ(Messages().size(), 1) << "one message";
  EXPECT_EQ(Messages()[0], QStringLiteral("粘贴了 1 只股票，4 行没有采用：\n第 1 行 510300：没有这只股票\n"
                                          "第 2 行 830799：没有这只股票\n第 3 行 399001：没有这只股票\n"
                                          "第 4 行 000001.SH：这个市场没有这只股票"));
}

TEST_F(Paste, TheLimitAndWhatIsThereHoldAsByHand) {
  Fill(8);
  editor->SetRows([this] {
    auto rows = editor->Rows();
    rows[0].code = QStringLiteral("600000");
    return rows;
  }());
  PasteText("600000,1,2\n600519,1,2\n000001,1,2\n000002,1,2\n");
  EXPECT_EQ(editor->Rows().size(), 10U);
  EXPECT_EQ(Messages(), QStringList({"粘贴了 2 只股票，2 行没有采用：\n第 1 行 600000 浦发银行：在组合里已经存在\n"
                                     "第 4 行 000002 万 科Ａ：组合最多 10 只股票"}));
}

TEST_F(Paste, NothingToPasteSaysWhatToCopy) {
  PasteText("");
  EXPECT_EQ(Messages(), QStringList({"剪贴板里没有持仓。请复制“代码、数量、价格”三列后再粘贴。"}));
  EXPECT_TRUE(editor->GetIshaveData());
}

TEST_F(Paste, WhatTheGridCopiesItTakesBack) {
  PasteText("600519,100,1700\n000001,200,11.5");
  const auto rows = editor->Rows();
  Key(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  editor->ClearRows();
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(editor->Rows(), rows);
  Grid().SelectCell(0, 1);
  Key(Qt::Key_C, Qt::ControlModifier);
  editor->ClearRows();
  Key(Qt::Key_V, Qt::ControlModifier);
  ASSERT_EQ(editor->Rows().size(), 1U) << "a single row, too: its titles say what is price and what is quantity";
  EXPECT_EQ(editor->Rows()[0], rows[1]);
}

TEST_F(Paste, TheContextMenuPastesToo) {
  QGuiApplication::clipboard()->setText(QStringLiteral("600519,100,1700"));
  QMenu* menu = OpenMenu(Grid());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->actions().constLast()->text(), QStringLiteral("粘贴持仓"));
  QTest::keyClick(menu, Qt::Key_Up);
  QTest::keyClick(menu, Qt::Key_Return);
  EXPECT_EQ(Held(), QStringList({"600519"}));
}

TEST_F(Paste, APasteKeepsWhatStandsInTheEditBox) {
  Fill(2);
  editor->EditCell(kHoldingPrice, 1);
  Type(QStringLiteral("7"));
  QGuiApplication::clipboard()->setText(QStringLiteral("600519,100,1700"));
  editor->PasteHoldings();
  EXPECT_EQ(editor->Rows().size(), 3U);
  EXPECT_EQ(editor->Rows()[1].price, QStringLiteral("7"));
  EXPECT_TRUE(Edit().isHidden());
}

}  // namespace
}  // namespace holdwise::test
