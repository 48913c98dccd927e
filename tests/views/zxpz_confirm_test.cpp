// SPDX-License-Identifier: MIT
// Confirming in the portfolio editor: what is refused, what is written, and where the keyboard is afterwards.
#include <gtest/gtest.h>

#include <QClipboard>

#include "common/frames/entry_bar.h"
#include "views/zxpz/stock_picker.h"
#include "zxpz_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace editor;

class EditorConfirm : public EditorView {
 protected:
  /// The edit box is over that cell, with the keyboard.
  [[nodiscard]] bool IsEdited(int column, int row) const {
    const QLineEdit& edit = *Holdings().FInplaceEdit;
    return edit.isVisible() && edit.hasFocus() && Holdings().EditedCell() == GridCell{column, row};
  }
};

TEST_F(EditorConfirm, WithoutHoldingsNothingHappensAndNothingIsSaid) {
  OpenWithThree();
  Name().setText(QStringLiteral("空"));
  Inject();
  Confirm();
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(injecting.plan.Calls(), QStringList());
  EXPECT_EQ(Name().text(), QStringLiteral("空"));
}

TEST_F(EditorConfirm, OneHoldingIsTooFew) {
  OpenWithThree();
  const QStringList tables = Tables();
  const std::vector<Edited> one = {Holding("600000", "10", "100")};
  Fill(QStringLiteral("单只"), one);
  Confirm();
  EXPECT_EQ(Messages(), std::vector<Call>{Notice("组合记录数应大于2")});
  ExpectUntouched(QStringLiteral("单只"), one, tables);
}

TEST_F(EditorConfirm, AnEmptyNameIsAskedFor) {
  OpenWithThree();
  const QStringList tables = Tables();
  Fill(QStringLiteral("   "), TwoRows());
  Confirm();
  EXPECT_EQ(Messages(), std::vector<Call>{Notice("组合名称不能为空，请输入名称")});
  EXPECT_TRUE(Name().hasFocus());
  EXPECT_FALSE(bench.host.keyCodes.IsCaptureOn());
  ExpectUntouched(QStringLiteral("   "), TwoRows(), tables);
}

TEST_F(EditorConfirm, ANameOfTheListIsRefusedAndSelected) {
  OpenWithThree();
  const QStringList tables = Tables();
  for (const char* name : {"稳健", " 稳健 "}) {
    bench.host.messageBoxes.calls.clear();
    Fill(QString::fromUtf8(name), TwoRows());
    Confirm();
    EXPECT_EQ(Messages(), std::vector<Call>{Notice("组合名称重复，请重新输入名称")});
    EXPECT_TRUE(Name().hasFocus());
    EXPECT_EQ(Name().selectedText(), Name().text());
    EXPECT_FALSE(bench.host.keyCodes.IsCaptureOn());
    ExpectUntouched(QString::fromUtf8(name), TwoRows(), tables);
  }
}

TEST_F(EditorConfirm, NamesOfTheListAreComparedWithoutRegardToCase) {
  bench.AddPortfolio(1, QStringLiteral("Alpha"), {{1600000, 200, 1, 9.5}}, 0);
  OpenEditor();
  Fill(QStringLiteral("ALPHA"), TwoRows());
  Confirm();
  EXPECT_EQ(Messages(), std::vector<Call>{Notice("组合名称重复，请重新输入名称")});
}

TEST_F(EditorConfirm, TheFirstPriceOrQuantityOfZeroIsOpened) {
  OpenWithThree();
  const QStringList tables = Tables();
  struct Case {
    std::vector<Edited> rows;
    const char* text;
    int column;
    int row;
  };
  const std::vector<Case> cases = {
      {{Holding("600000", "0.00", "100"), Holding("000001", "12", "")}, "买入价不能为零", kHoldingPrice, 0},
      {{Holding("600000", "10", "100"), Holding("000001", "", "")}, "买入价不能为零", kHoldingPrice, 1},
      {{Holding("600000", "10", ""), Holding("000001", "0", "1")}, "数量不能为零", kHoldingQuantity, 0},
      {{Holding("600000", "10", "1"), Holding("000001", "1", "0")}, "数量不能为零", kHoldingQuantity, 1}};
  for (const Case& one : cases) {
    bench.host.messageBoxes.calls.clear();
    Fill(QStringLiteral("新"), one.rows);
    Confirm();
    EXPECT_EQ(Messages(), std::vector<Call>{Notice(one.text)});
    EXPECT_TRUE(IsEdited(one.column, one.row)) << one.text << one.row;
    EXPECT_FALSE(bench.host.keyCodes.IsCaptureOn());
    ExpectUntouched(QStringLiteral("新"), one.rows, tables);
  }
}

TEST_F(EditorConfirm, TwoHoldingsMakeAPortfolio) {
  OpenWithThree();
  Fill(QStringLiteral(" 两只 "), TwoRows());
  QStringList seen;
  onDownload = [&] { seen = Headers(); };
  Confirm();
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(downloads, 1);
  ASSERT_EQ(seen.size(), 4) << "it is stored before its figures are calculated";
  // 3111.0249 in single precision with two decimals.
  const auto id = bench.database.Service().Count(QStringLiteral("select ID from alg_commain where COMNAME = '两只'"));
  EXPECT_TRUE(Headers().contains(QStringLiteral("%1 两只 3111.02 2024-06-03 0").arg(id)));
  EXPECT_EQ(HoldingsOf(static_cast<int>(id)), List({"1600000 100 10", "1000001 200 12.5"}));
  EXPECT_EQ(
      bench.database.Lines(QStringLiteral("select PZBL from alg_comdetail where MAINID = %1 order by ID").arg(id)),
      List({"0.2857142857142857", "0.7142857142857143"}))
      << "1000 and 2500 of 3500, as Python writes them";
}

TEST_F(EditorConfirm, TheNewPortfolioIsSelectedAndTheEditorEmpty) {
  OpenWithThree();
  Fill(QStringLiteral("两只"), TwoRows());
  Confirm();
  ASSERT_EQ(portfolios->RowCount(), 3);
  EXPECT_EQ(RowOf(*portfolios, 2), List({"3", "两只", "2024-06-03", "", "0.00", "0.000000", "0.000000", ""}));
  EXPECT_EQ(portfolios->Row(), 2);
  EXPECT_EQ(RowOf(*holdings, 1), List({"000001", "平安银行", "200", "0.7142857142857143", "12.5"}));
  EXPECT_TRUE(Holdings().GetIshaveData());
  EXPECT_EQ(Name().text(), QString());
  EXPECT_FALSE(IsModifying());
}

TEST_F(EditorConfirm, AConfirmedPortfolioLeavesNoStockPicked) {
  OpenEditor();
  StockPicker& picker = *Band().Picker;
  TStringGrid& stocks = *picker.StringGrid2;
  Fill(QStringLiteral("两只"), TwoRows());
  QTest::mouseClick(stocks.viewport(), Qt::LeftButton, Qt::ControlModifier, stocks.CellRect(0, 1).center());
  Confirm();
  EXPECT_TRUE(picker.PickedStocks().IsEmpty());
}

// With the keys as a person presses them: Ctrl first.

TEST_F(EditorConfirm, ConfirmingFromTheStockListPicksNothing) {
  OpenEditor();
  StockPicker& picker = *Band().Picker;
  Fill(QStringLiteral("两只"), TwoRows());
  picker.StringGrid2->setFocus();
  QTest::keyPress(picker.StringGrid2, Qt::Key_Control);
  QTest::keyClick(picker.StringGrid2, Qt::Key_Return, Qt::ControlModifier);
  QTest::keyRelease(picker.StringGrid2, Qt::Key_Control);
  EXPECT_EQ(Headers().size(), 1);
  EXPECT_TRUE(Holdings().GetIshaveData());
  EXPECT_TRUE(picker.PickedStocks().IsEmpty());
  picker.RzEdit3->setFocus();
  QTest::keyClicks(picker.RzEdit3, QStringLiteral("600519"));
  QTest::keyClick(picker.RzEdit3, Qt::Key_Return);
  ASSERT_EQ(Holdings().Rows().size(), 1U);
  EXPECT_EQ(Holdings().Rows()[0].code, QStringLiteral("600519"));
}

TEST_F(EditorConfirm, TheFirstPortfolioOfAnEmptyListTakesItsFirstRow) {
  OpenEditor();
  Fill(QStringLiteral("第一个"), TwoRows());
  Confirm();
  ASSERT_EQ(portfolios->RowCount(), 1);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("第一个"));
  EXPECT_EQ(holdings->RowCount(), 2);
}

TEST_F(EditorConfirm, WhatStandsInTheOpenEditBoxCounts) {
  OpenEditor();
  Fill(QStringLiteral("两只"), {Holding("600000", "10.00", "100"), Holding("000001", "12.5", "")});
  Holdings().EditCell(kHoldingQuantity, 1);
  QTest::keyClicks(Holdings().FInplaceEdit, QStringLiteral("300"));
  QTest::keyClick(Holdings().FInplaceEdit, Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(bench.database.Lines(QStringLiteral("select PZSL from alg_comdetail order by ID")), List({"100", "300"}));
}

TEST_F(EditorConfirm, ASavedPortfolioHasItsNameToo) {
  OpenWithThree();
  const QStringList tables = Tables();
  Fill(QStringLiteral("已保存"), TwoRows());
  Confirm();
  EXPECT_EQ(Messages(), std::vector<Call>{Notice("组合表现已存在该组合名称")});
  EXPECT_TRUE(Name().hasFocus());
  EXPECT_FALSE(bench.host.keyCodes.IsCaptureOn());
  ExpectUntouched(QStringLiteral("已保存"), TwoRows(), tables);
}

TEST_F(EditorConfirm, AnErrorOfTheDatabaseIsNotSaidAndNothingIsLost) {
  OpenWithThree();
  const QStringList tables = Tables();
  Fill(QStringLiteral("两只"), TwoRows());
  Inject();
  for (int number = 0; number < 7; ++number) {
    injecting.plan.FailCall(number);
    Confirm();
    EXPECT_TRUE(injecting.plan.HasFailed()) << number;
    EXPECT_TRUE(Messages().empty());
    ExpectUntouched(QStringLiteral("两只"), TwoRows(), tables);
  }
}

TEST_F(EditorConfirm, ACalculationThatCannotBeginLeavesThePortfolioStored) {
  OpenWithThree();
  Fill(QStringLiteral("两只"), TwoRows());
  onDownload = [] { throw Error(ErrorCategory::Io, "no session"); };
  Confirm();
  EXPECT_EQ(portfolios->RowCount(), 3);
  EXPECT_EQ(Name().text(), QString());
  EXPECT_TRUE(bench.host.debug.Lines().back().contains(QStringLiteral("no session")));
}

TEST_F(EditorConfirm, AQuoteInTheNameIsSaidAndNothingTypedIsLost) {
  OpenWithThree();
  const QStringList tables = Tables();
  Fill(QString(), TwoRows());
  Name().setFocus();
  QApplication::clipboard()->setText(QStringLiteral("老王's组合"));
  QTest::keyClick(&Name(), Qt::Key_V, Qt::ControlModifier);
  Confirm();
  ASSERT_EQ(Messages().size(), 1U);
  EXPECT_TRUE(Messages().front().text.contains(QStringLiteral("单引号")));
  EXPECT_TRUE(Name().hasFocus());
  EXPECT_FALSE(bench.host.keyCodes.IsCaptureOn());
  ExpectUntouched(QStringLiteral("老王's组合"), TwoRows(), tables);
}

TEST_F(EditorConfirm, CharactersThatNobodySeesAreRefused) {
  OpenWithThree();
  const QStringList tables = Tables();
  for (const char16_t invisible : {u'\0', u'\t', u'\n', u'\u200B', u'\u202E', u'\u2028'}) {
    bench.host.messageBoxes.calls.clear();
    Fill(QStringLiteral("甲") + QChar(invisible) + QStringLiteral("乙"), TwoRows());
    Confirm();
    ASSERT_EQ(Messages().size(), 1U) << std::hex << static_cast<int>(invisible);
    EXPECT_EQ(Messages().front().text, QStringLiteral("组合名称含有换行、制表符等看不见的字符，请删去后再确定"));
    EXPECT_EQ(Tables(), tables);
  }
}

// The checks have their order: of two faults the earlier check's is said, and only that one.
TEST_F(EditorConfirm, TheChecksComeInTheirOrder) {
  OpenWithThree();
  const QStringList tables = Tables();
  const std::vector<Edited> one = {Holding("600000", "0", "0")};
  const std::vector<Edited> zero = {Holding("600000", "0", "0"), Holding("000001", "0", "1")};
  struct Case {
    const char* name;
    std::vector<Edited> rows;
    const char* text;  ///< or none
  };
  const std::vector<Case> created = {{"", {}, nullptr},
                                     {"", one, "组合记录数应大于2"},
                                     {"稳健", one, "组合记录数应大于2"},
                                     {"", zero, "组合名称不能为空，请输入名称"},
                                     {"稳健", zero, "组合名称重复，请重新输入名称"},
                                     {"已保存", zero, "买入价不能为零"},
                                     {"已保存", {Holding("600000", "1", "0"), Holding("1", "0", "0")}, "数量不能为零"}};
  const std::vector<Case> modified = {{"", {}, "请添加股票到您的组合"},
                                      {"", one, "组合记录数应大于2"},
                                      {"", zero, "组合名称不能为空，请输入名称"},
                                      {"进取", zero, "买入价不能为零"}};
  const auto check = [&](const Case& faults) {
    bench.host.messageBoxes.calls.clear();
    Fill(QString::fromUtf8(faults.name), faults.rows);
    Confirm();
    const auto expected = faults.text == nullptr ? std::vector<Call>{} : std::vector<Call>{Notice(faults.text)};
    EXPECT_EQ(Messages(), expected) << faults.name << faults.rows.size();
    EXPECT_EQ(Tables(), tables);
  };
  for (const Case& faults : created) check(faults);
  Press(kModify, 0);
  for (const Case& faults : modified) check(faults);
}

TEST_F(EditorConfirm, AConfirmedPortfolioLeavesTheNameItsKeyboard) {
  OpenEditor();
  Fill(QStringLiteral("两只"), TwoRows());
  Name().setFocus();
  QTest::keyClick(&Name(), Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Headers().size(), 1);
  EXPECT_TRUE(Name().hasFocus());
  EXPECT_FALSE(bench.host.keyCodes.IsCaptureOn());
}

TEST_F(EditorConfirm, TheMainFrameMayGoWhileAMessageWaits) {
  const std::vector<Edited> unfilled = {Holding("600000", "1", ""), Holding("000001", "1", "1")};
  const std::vector<std::pair<const char*, std::vector<Edited>>> cases = {
      {"", TwoRows()}, {"稳健", TwoRows()}, {"已保存", TwoRows()}, {"a'b", TwoRows()}, {"新", unfilled}};
  AddThree();
  const QStringList tables = Tables();
  for (const auto& [name, rows] : cases) {
    OpenEditor();
    Fill(QString::fromUtf8(name), rows);
    bench.host.messageBoxes.whileAsking = [&] { bench.CloseMainFrame(); };
    Confirm();
    bench.host.messageBoxes.whileAsking = nullptr;
    EXPECT_EQ(bench.mainFrame, nullptr) << name;
    EXPECT_EQ(Tables(), tables) << name;
    EXPECT_FALSE(bench.database.Service().InTransaction());
  }
}

}  // namespace
}  // namespace holdwise::test
