// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "stress_fixture.h"

namespace holdwise::test {
namespace {

using namespace stress;

// Figures by hand. Betas against SH: 600000 1.5, 000001 0.5; 600519 is not in the table (0). Previous closes 9.80,
// 12.50, 1700. Portfolio 2 holds 1000 at 9, 500 at 12 and 10 at 1800 (cost 33000, weights 0.4, 0.25, 0.35);
// portfolio 1 holds 200 of 600000 at 9.5 (cost 1900).
//
// x = 0: value 9800 + 6250 + 17000 = 33050, gain 800 + 250 - 1000 = 50, rate 50 / 33000 = 0.1515 %.
const QStringList kTwoAtZero = List({"进取", "2024-05-22", "33050.00", "0.00", "50.00", "0.1515", "2"});
const QStringList kOneAtZero = List({"稳健", "2024-05-21", "1960.00", "0.00", "60.00", "3.1579", "1"});
// x = 0.2: 600000 +30 % = 12.74, 000001 +10 % = 13.75, 600519 1700. Value 12740 + 6875 + 17000; change 0.3 x 0.4 + 0.1
// x 0.25 = 14.5 %; gain 800 + 2940 + 250 + 625 - 1000 = 3615, rate 10.9545 %.
const QStringList kTwoAtTwenty = List({"进取", "2024-05-22", "36615.00", "14.50", "3615.00", "10.9545", "2"});
// Value 200 x 12.74, change 30 %, gain 60 + 588, rate 648 / 1900.
const QStringList kOneAtTwenty = List({"稳健", "2024-05-21", "2548.00", "30.00", "648.00", "34.1053", "1"});

TEST_F(StressView, OpensWithoutAMoveThoughTheDesignSaysTwenty) {
  OpenWithTwo();
  EXPECT_EQ(Entry().text(), QStringLiteral("0"));
  EXPECT_EQ(Choice("ComboBox11").currentIndex(), 0);
  EXPECT_EQ(Choice("ComboBox1").currentIndex(), 0);
  for (const char* name : {"ComboBox11", "ComboBox1"}) {
    const QComboBox& choice = Choice(name);
    EXPECT_EQ(QStringList({choice.itemText(0), choice.itemText(1), choice.itemText(2)}),
              List({"上证指数", "深证成指", "沪深300"}));
  }
  EXPECT_EQ(Button("btnOK").text(), QStringLiteral("确 定"));
  EXPECT_EQ(Button("btnCancel").text(), QStringLiteral("还 原"));
  ASSERT_EQ(portfolios->RowCount(), 2);
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtZero);
  EXPECT_EQ(RowOf(*portfolios, 1), kOneAtZero);
  EXPECT_EQ(Title(), QStringLiteral("成分股预期表现"));
  ASSERT_EQ(holdings->RowCount(), 3);
  EXPECT_EQ(RowOf(*holdings, 1), List({"000001", "平安银行", "12.50", "0.00", "250.00"}));
  EXPECT_EQ(Shown(), QStringLiteral("所示：上证指数 0%"));
}

TEST_F(StressView, EnterAppliesTheTypedMove) {
  OpenWithTwo();
  Type(QStringLiteral("20"));
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtZero) << "typing alone changes nothing";
  QTest::keyClick(&Entry(), Qt::Key_Return);
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtTwenty);
  EXPECT_EQ(RowOf(*portfolios, 1), kOneAtTwenty);
  // The list has one profit a security. Portfolio 2 comes after portfolio 1, so it is that of its holding of 600000.
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "12.74", "30.00", "3740.00"}));
  EXPECT_EQ(RowOf(*holdings, 1), List({"000001", "平安银行", "13.75", "10.00", "875.00"}));
  EXPECT_EQ(RowOf(*holdings, 2), List({"600519", "贵州茅台", "1700.00", "0.00", "-1000.00"}));
  EXPECT_EQ(Shown(), QStringLiteral("所示：上证指数 20%"));
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
}

TEST_F(StressView, TheButtonsApplyAndReset) {
  OpenWithTwo();
  Type(QStringLiteral("20"));
  QTest::mouseClick(&Button("btnOK"), Qt::LeftButton);
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtTwenty);
  QTest::mouseClick(&Button("btnCancel"), Qt::LeftButton);
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtZero);
  EXPECT_EQ(Entry().text(), QStringLiteral("0"));
  Button("btnOK").setFocus();
  Entry().setText(QStringLiteral("-20"));
  QTest::keyClick(&Button("btnOK"), Qt::Key_Space);
  // 200 x 9.80 x 0.7
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("1372.00"));
}

TEST_F(StressView, OnlyKeysOfNumbersAreTaken) {
  OpenWithTwo();
  Type(QStringLiteral("a-1x2 .5+,e"));
  EXPECT_EQ(Entry().text(), QStringLiteral("-12.5"));
  QTest::keyClick(&Entry(), Qt::Key_Backspace);
  EXPECT_EQ(Entry().text(), QStringLiteral("-12."));
  Entry().selectAll();
  Entry().insert(QStringLiteral("abc"));
  EXPECT_EQ(Entry().text(), QStringLiteral("-12.")) << "nor pasted ones";
}

TEST_F(StressView, WhatIsNoNumberCountsAsZero) {
  OpenWithTwo();
  for (const char* text : {"-", "1.2.3", "--5", ""}) {
    Apply(QStringLiteral("20"));
    ASSERT_EQ(RowOf(*portfolios, 0), kTwoAtTwenty);
    Apply(QString::fromUtf8(text));
    EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtZero) << text;
  }
}

TEST_F(StressView, APortfolioWithoutCostHasARateOfTwoDecimals) {
  bench.AddPortfolio(1, QStringLiteral("送的"), {{1600000, 200, 1, 0}});
  Open();
  Receive(kShanghai, Betas());
  // 200 x 9.80; four decimals only where a rate was computed.
  EXPECT_EQ(RowOf(*portfolios, 0), List({"送的", "2024-05-21", "1960.00", "0.00", "1960.00", "0.00", "1"}));
}

// The two choices.

TEST_F(StressView, ChoosingAnIndexTakesTheMoveBackAndShowsNothingNewUntilItIsApplied) {
  for (const char* name : {"ComboBox11", "ComboBox1"}) {
    SCOPED_TRACE(name);
    bench.CloseMainFrame();
    OpenWithTwo();
    Apply(QStringLiteral("20"));
    Choice(name).setFocus();
    QTest::keyClick(&Choice(name), Qt::Key_Down);
    EXPECT_EQ(Choice("ComboBox11").currentIndex(), 1);
    EXPECT_EQ(Choice("ComboBox1").currentIndex(), 1);
    EXPECT_EQ(Entry().text(), QStringLiteral("0"));
    Receive(kShenzhen, Betas(1, 2));
    EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtTwenty);
    EXPECT_EQ(Shown(), QStringLiteral("所示：上证指数 20%"));
    Click(*portfolios, kName, 1);
    EXPECT_EQ(holdings->Cells(kPrice, 0), QStringLiteral("12.74")) << "the holdings are of the same scenario";
    Apply(QStringLiteral("20"));
    // Against SZ: 600000 +20 %, 000001 +40 %.
    EXPECT_EQ(portfolios->Cells(kChange, 0), QStringLiteral("18.00"));
    EXPECT_EQ(portfolios->Cells(kChange, 1), QStringLiteral("20.00"));
    EXPECT_EQ(Shown(), QStringLiteral("所示：深证成指 20%"));
    QTest::keyClick(&Choice(name), Qt::Key_End);
    Receive(kCsi, Betas(0.5, 0.25));
    Apply(QStringLiteral("20"));
    EXPECT_EQ(portfolios->Cells(kChange, 1), QStringLiteral("10.00"));
    EXPECT_EQ(Shown(), QStringLiteral("所示：沪深300 20%"));
    ClearPortfolios();
  }
}

TEST_F(StressView, ChoosingAnIndexForgetsThatAMoveWasTyped) {
  OpenWithTwo();
  Type(QStringLiteral("20"));
  Choice("ComboBox11").setFocus();
  QTest::keyClick(&Choice("ComboBox11"), Qt::Key_Down);
  Receive(kShenzhen, Betas());
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Entry().text(), QStringLiteral("0"));
  EXPECT_EQ(Choice("ComboBox11").currentIndex(), 1);
  EXPECT_EQ(Shown(), QStringLiteral("所示：深证成指 0%")) << "initialising resets, with the index chosen";
}

// Initialising.

TEST_F(StressView, InitialisingResetsUnlessAMoveWasTyped) {
  OpenWithTwo();
  Entry().setText(QStringLiteral("20"));  // nobody typed
  QTest::mouseClick(&Button("btnOK"), Qt::LeftButton);
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtTwenty);
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtZero);
  Apply(QStringLiteral("20"));
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtTwenty) << "an applied move still counts as typed";
  EXPECT_EQ(Entry().text(), QStringLiteral("20"));
  Type(QStringLiteral("5"));
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Entry().text(), QStringLiteral("5"));
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtTwenty) << "and a typed one waits to be applied";
}

TEST_F(StressView, ARecalculationKeepsTheMoveInForceWithTheClosesOfNow) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  bench.host.codeNums.Add(
      {QStringLiteral("600000"), QStringLiteral("浦发银行"), QStringLiteral("银行"), 1, {10, 19.6}});
  ReCalc();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("5096.00"));  // 200 x 19.6 x 1.3
}

// A refused move.

TEST_F(StressView, ARefusedMoveRestoresFieldAndGrids) {
  OpenWithTwo();
  Apply(QStringLiteral("7"));
  const auto before = Texts();
  QStringList during;
  bench.host.messageBoxes.whileAsking = [&] { during = QStringList{Entry().text()} + Texts(); };
  // Beta 1.5: a fall of two thirds and more leaves nothing.
  Apply(QStringLiteral("-70"));
  ASSERT_EQ(bench.host.messageBoxes.calls.size(), 1U);
  EXPECT_EQ(bench.host.messageBoxes.calls[0].text, QStringLiteral("涨跌幅超出界限值，请重新输入!"));
  EXPECT_EQ(bench.host.messageBoxes.calls[0].buttons, 0);
  EXPECT_EQ(bench.host.messageBoxes.calls[0].style, 128);
  EXPECT_EQ(during, QStringList{QStringLiteral("-70")} + before);
  EXPECT_EQ(Entry().text(), QStringLiteral("7")) << "not 7.000000000000001";
  EXPECT_EQ(Entry().selectedText(), QStringLiteral("7"));
  EXPECT_TRUE(Entry().hasFocus());
  EXPECT_EQ(Texts(), before);
  EXPECT_EQ(g_ExpectValue->GetExpectAdd(), 0.07);
  EXPECT_TRUE(g_ExpectValue->IsValid());
  Click(*portfolios, kName, 1);
  // 9.80 x (1 + 1.5 x 0.07)
  EXPECT_EQ(holdings->Cells(kPrice, 0), QStringLiteral("10.83"));
  Apply(QStringLiteral("-66"));
  EXPECT_EQ(bench.host.messageBoxes.calls.size(), 1U) << "1 - 0.99 is left";
}

TEST_F(StressView, AMoveRefusedAfterTheIndexWasSwitchedLeavesTheGridsOfTheOldOne) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  ChooseIndex(1);
  Receive(kShenzhen, Betas(1, 2));
  Apply(QStringLiteral("-50"));  // beta 2
  EXPECT_EQ(bench.host.messageBoxes.calls.size(), 1U);
  EXPECT_EQ(Entry().text(), QStringLiteral("20"));
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtTwenty);
  EXPECT_EQ(Shown(), QStringLiteral("所示：上证指数 20%"));
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->Cells(kPrice, 0), QStringLiteral("12.74"));
}

TEST_F(StressView, AMessageBoxThatOutlivesTheViewDoesNoHarm) {
  OpenWithTwo();
  bench.host.messageBoxes.whileAsking = [&] { bench.CloseMainFrame(); };
  frame->SetInput(QStringLiteral("Edit1"), QStringLiteral("20"));
  Entry().setText(QStringLiteral("-90"));
  QTest::mouseClick(&Button("btnOK"), Qt::LeftButton);
  EXPECT_EQ(bench.mainFrame, nullptr);
}

// Selection.

TEST_F(StressView, AClickShowsThatPortfolioAndApplyingGoesBackToTheFirst) {
  OpenWithTwo();
  Click(*portfolios, kGain, 1);
  ASSERT_EQ(holdings->RowCount(), 1);
  EXPECT_EQ(portfolios->Row(), 1);
  Apply(QStringLiteral("20"));
  EXPECT_EQ(portfolios->Row(), 0);
  EXPECT_EQ(holdings->RowCount(), 3);
}

TEST_F(StressView, AProfitOfAnotherPortfoliosHoldingIsSaidSo) {
  OpenWithTwo();
  const QLabel& notice = frame->findChild<TitleStrip*>()->Notice();
  EXPECT_FALSE(notice.isVisible()) << "600000 is in both portfolios; the profit is that of the shown one";
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->Cells(kProfit, 0), QStringLiteral("800.00")) << "of 1000 shares, not of 200";
  EXPECT_EQ(notice.text(), QStringLiteral("1 只股票的预期损益是其他组合的持仓的"));
  EXPECT_TRUE(notice.toolTip().contains(QStringLiteral("浦发银行：所示预期损益属于组合“进取”中的持仓")));
  QTest::mouseMove(holdings->viewport(), holdings->CellRect(kProfit, 0).center());
  EXPECT_EQ(QToolTip::text(), QStringLiteral("浦发银行：所示预期损益属于组合“进取”中的持仓"));
}

TEST_F(StressView, WithoutSavedPortfoliosBothGridsAreEmptyAndMovesAreTaken) {
  bench.AddPortfolio(1, QStringLiteral("甲"), ThreeHoldings(), 0);
  Open();
  Apply(QStringLiteral("-200"));
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
  Fail(kShanghai);
  EXPECT_FALSE(MainNotice().isVisible()) << "there is nobody to miss it";
}

TEST_F(StressView, ALinkOpensTheSecurity) {
  OpenWithTwo();
  Click(*holdings, kSecurityName, 1);
  EXPECT_EQ(bench.host.codeNums.currentCode, QStringLiteral("1000001"));
}

TEST_F(StressView, TheHostLeavesTheKeyboardToTheEntry) {
  OpenWithTwo();
  Button("btnOK").setFocus();
  bench.host.keyCodes.calls.clear();
  Entry().setFocus();
  bench.ClickNode(2002);
  EXPECT_EQ(bench.host.keyCodes.calls, (std::vector<bool>{false, true}));
}

// The catalogue's inputs.

TEST_F(StressView, InputsAreSetByName) {
  OpenWithTwo();
  const auto values = [this] {
    QStringList texts;
    for (const auto& input : frame->Inputs()) texts << input.name + u'=' + input.value;
    return texts;
  };
  EXPECT_EQ(values(), List({"ComboBox11=1", "Edit1=0"}));
  EXPECT_EQ(frame->SetInput(QStringLiteral("Edit1"), QStringLiteral("20")), QString());
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtTwenty);
  EXPECT_EQ(frame->SetInput(QStringLiteral("ComboBox11"), QStringLiteral("399001")), QString());
  Receive(kShenzhen, Betas(1, 2));
  EXPECT_EQ(values(), List({"ComboBox11=399001", "Edit1=0"}));
  EXPECT_EQ(Choice("ComboBox1").currentIndex(), 1);
  EXPECT_EQ(RowOf(*portfolios, 0), kTwoAtZero) << "an index is applied with a move of 0";
  EXPECT_EQ(Shown(), QStringLiteral("所示：深证成指 0%"));
}

TEST_F(StressView, WhatIsPutIntoAnInputIsNotApplied) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  const auto before = Texts();
  EXPECT_EQ(frame->PutInput(QStringLiteral("ComboBox11"), QStringLiteral("399001")), QString());
  Receive(kShenzhen, Betas(1, 2));
  EXPECT_EQ(frame->PutInput(QStringLiteral("Edit1"), QStringLiteral("-")), QString());
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Texts(), before);
  EXPECT_EQ(Shown(), QStringLiteral("所示：上证指数 20%"));
  EXPECT_EQ(Choice("ComboBox11").currentIndex(), 1);
  EXPECT_EQ(Entry().text(), QStringLiteral("-"));
  EXPECT_NE(frame->PutInput(QStringLiteral("ComboBox11"), QStringLiteral("2")), QString());
  EXPECT_NE(frame->PutInput(QStringLiteral("Edit2"), QStringLiteral("5")), QString());
}

TEST_F(StressView, AnInputThatCannotBeIsRefusedWithoutAQuestion) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  const auto before = Texts();
  for (const auto& [name, value] : {std::pair{"Edit1", "1e2"},
                                    {"Edit1", "ten"},
                                    {"Edit1", ""},
                                    {"Edit1", "1.2.3"},
                                    {"ComboBox11", "2"},
                                    {"ComboBox11", "上证"},
                                    {"Edit2", "5"}}) {
    const QString problem = frame->SetInput(QString::fromUtf8(name), QString::fromUtf8(value));
    EXPECT_TRUE(problem.contains(QString::fromUtf8(QLatin1String(name) == "Edit2" ? name : value))) << value;
    EXPECT_FALSE(problem.isEmpty());
    EXPECT_EQ(Entry().text(), QStringLiteral("20"));
    EXPECT_EQ(Texts(), before);
  }
  EXPECT_EQ(frame->SetInput(QStringLiteral("Edit1"), QStringLiteral("-70")),
            QStringLiteral("涨跌幅超出界限值，请重新输入!（浦发银行(600000)相对上证指数的贝塔系数是 1.5，涨跌幅要大于 "
                           "-66.67%）"));
  EXPECT_EQ(Entry().text(), QStringLiteral("20"));
  EXPECT_EQ(Texts(), before);
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
  EXPECT_FALSE(MainNotice().text().contains(QStringLiteral("涨跌幅要"))) << "no user has typed it";
}

}  // namespace
}  // namespace holdwise::test
