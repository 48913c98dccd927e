// SPDX-License-Identifier: MIT
// The stress view at its edges: moves that are refused, what is said of it, and other ways to reach its controls.
#include <gtest/gtest.h>

#include <QWheelEvent>
#include <utility>

#include "common/store/statements.h"
#include "injecting_user_data.h"
#include "stress_fixture.h"
#include "views/ylcs/stress_bound.h"

namespace holdwise::test {
namespace {

using namespace stress;

// Against SH 600000 has beta 1.5: at +20 % its 200 shares of portfolio 1 are worth 200 x 9.80 x 1.3.
const QString kAtTwenty = QStringLiteral("2548.00");

// Which security refuses a move, and where its bound is.

TEST_F(StressView, ARefusedMoveNamesTheSecurityAndItsBoundUntilAnotherIsApplied) {
  OpenWithTwo();
  Apply(QStringLiteral("-70"));
  ASSERT_EQ(bench.host.messageBoxes.calls.size(), 1U);
  EXPECT_EQ(bench.host.messageBoxes.calls[0].text, QStringLiteral("涨跌幅超出界限值，请重新输入!"));
  const QString bound = QStringLiteral("浦发银行(600000)相对上证指数的贝塔系数是 1.5，涨跌幅要大于 -66.67%");
  EXPECT_TRUE(MainNotice().text().startsWith(bound)) << MainNotice().text().toStdString();
  Apply(QStringLiteral("-66.66"));
  EXPECT_EQ(bench.host.messageBoxes.calls.size(), 1U);
  EXPECT_FALSE(MainNotice().text().contains(bound));
}

TEST_F(StressView, ANegativeBetaRefusesARise) {
  AddTwo();
  Open();
  Receive(kShanghai, Betas(-2, 0.5));
  Apply(QStringLiteral("50"));
  EXPECT_EQ(bench.host.messageBoxes.calls.size(), 1U) << "1 - 2 x 0.5";
  EXPECT_TRUE(
      MainNotice().text().contains(QStringLiteral("浦发银行(600000)相对上证指数的贝塔系数是 -2，涨跌幅要小于 50%")));
  Apply(QStringLiteral("49.99"));
  EXPECT_EQ(bench.host.messageBoxes.calls.size(), 1U);
  Apply(QStringLiteral("-100"));
  // 200 x 9.80 x 3: it rises when the index falls.
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("5880.00"));
  Apply(QStringLiteral("-200"));
  EXPECT_EQ(bench.host.messageBoxes.calls.size(), 2U) << "1 - 0.5 x 2";
  EXPECT_TRUE(
      MainNotice().text().contains(QStringLiteral("平安银行(000001)相对上证指数的贝塔系数是 0.5，涨跌幅要大于 -200%")));
}

TEST_F(StressView, ABoundHasTwoDecimalsAndIsOneItself) {
  const auto text = [](double beta) {
    return BoundText({QStringLiteral("600000"), beta, -1 / beta}, QStringLiteral("x"));
  };
  for (const auto& [beta, shown] : {std::pair{2.0, "大于 -50%"},
                                    {3.0, "大于 -33.34%"},
                                    {0.16, "大于 -625%"},
                                    {-0.7, "小于 142.86%"},
                                    {-1.0, "小于 100%"}}) {
    EXPECT_TRUE(text(beta).endsWith(QString::fromUtf8(shown))) << text(beta).toStdString();
  }
  EXPECT_TRUE(text(1.23456789).contains(QStringLiteral(" 1.23457，")));
}

TEST_F(StressView, AMoveTakenBackThatIsRefusedTooLeavesTheGridsAndIsSaid) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  const QStringList before = Texts();
  ChooseIndex(1);
  Receive(kShenzhen, Betas(-5, 1));
  Apply(QStringLiteral("30"));
  EXPECT_EQ(bench.host.messageBoxes.calls.size(), 1U);
  EXPECT_EQ(Entry().text(), QStringLiteral("20")) << "the move of before, which 1 - 5 x 0.2 refuses, too";
  EXPECT_FALSE(g_ExpectValue->IsValid());
  EXPECT_EQ(Texts(), before);
  EXPECT_EQ(Shown(), QStringLiteral("所示：上证指数 20%"));
  EXPECT_TRUE(MainNotice().text().startsWith(QStringLiteral("预期值没有更新")));
  EXPECT_TRUE(
      MainNotice().toolTip().contains(QStringLiteral("浦发银行(600000)相对深证成指的贝塔系数是 -5，涨跌幅要小于 20%")));
  Apply(QStringLiteral("10"));
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("980.00"));  // 200 x 9.80 x 0.5
  EXPECT_FALSE(MainNotice().text().contains(QStringLiteral("预期值没有更新")));
}

// What is said.

TEST_F(StressView, ARiskFileOfTheChosenIndexThatDoesNotComeIsSaidWithTheIndexShown) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  ChooseIndex(1);
  Fail(kShenzhen);
  EXPECT_TRUE(MainNotice().text().startsWith(QStringLiteral("没有取得深证成指的风险文件")));
  EXPECT_TRUE(MainNotice().toolTip().contains(QStringLiteral("所示仍是上证指数的数值")));
  EXPECT_EQ(portfolios->Cells(kValue, 1), kAtTwenty);
}

TEST_F(StressView, WhatTheStoredFiguresLackIsNotSaidHere) {
  bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 200, 1, 9.5}});
  Open();
  Receive(kShanghai, Betas());
  bench.database.Service().Execute(QStringLiteral("update alg_commain set ISFINISHED = 1, LACKING = 1"));
  bench.ClickNode(2002);
  EXPECT_EQ(MainNotice().text(), QStringLiteral("1 个组合的数据不完整"));
  bench.ClickNode(2003);
  EXPECT_EQ(MainNotice().text(), QString());
}

TEST_F(StressView, OneStockTwiceInAPortfolioHasOneProfitWhichIsSaid) {
  bench.AddPortfolio(1, QStringLiteral("两笔"),
                     {{1600000, 100, 0.5, 9}, {1600000, 300, 0.5, 10}, {1000001, 100, 0, 12}});
  Open();
  Receive(kShanghai, Betas());
  // 80 - 60 + 50, and the list's one profit of 600000 is that of its last holding.
  EXPECT_EQ(portfolios->Cells(kGain, 0), QStringLiteral("70.00"));
  EXPECT_EQ(holdings->Cells(kProfit, 0), QStringLiteral("-60.00"));
  EXPECT_EQ(holdings->Cells(kProfit, 1), QStringLiteral("-60.00"));
  const QString said = QStringLiteral("浦发银行：本组合有多笔持仓，所示预期损益只是其中一笔的");
  const QLabel& notice = frame->findChild<TitleStrip*>()->Notice();
  EXPECT_EQ(notice.text(), QStringLiteral("1 只股票有多笔持仓，只算出其中一笔的预期损益"));
  EXPECT_EQ(notice.toolTip().count(said), 1);
  QTest::mouseMove(holdings->viewport(), holdings->CellRect(kProfit, 1).center());
  EXPECT_EQ(QToolTip::text(), said);
}

TEST_F(StressView, InputsSayWhatIsInForceWhileAnotherValueWaits) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  ChooseIndex(1);
  Receive(kShenzhen, Betas());
  Type(QStringLiteral("-"));
  const auto inputs = frame->Inputs();
  ASSERT_EQ(inputs.size(), 2U);
  EXPECT_EQ(QStringList({inputs[0].caption, inputs[0].value, inputs[0].inForce}), List({"参考指数", "399001", "1"}));
  EXPECT_EQ(QStringList({inputs[1].caption, inputs[1].value, inputs[1].inForce}), List({"预期涨跌幅(%)", "-", "20"}));
}

TEST_F(StressView, InputsThatWereSetCanBePutBackInTheirOrder) {
  OpenWithTwo();
  ChooseIndex(1);
  Receive(kShenzhen, Betas(1, 2));
  Apply(QStringLiteral("5"));
  const QStringList before = Texts();
  const auto inputs = frame->Inputs();
  ASSERT_EQ(frame->SetInput(QStringLiteral("ComboBox11"), QStringLiteral("1")), QString());
  ASSERT_EQ(frame->SetInput(QStringLiteral("Edit1"), QStringLiteral("-10")), QString());
  ASSERT_NE(Texts(), before);
  for (const auto& input : inputs) EXPECT_EQ(frame->SetInput(input.name, input.value), QString());
  EXPECT_EQ(Texts(), before);
  EXPECT_EQ(Shown(), QStringLiteral("所示：深证成指 5%"));
  EXPECT_EQ(Entry().text(), QStringLiteral("5"));
}

// A database that fails.

TEST_F(StressView, APageThatCannotBeMadeIsSaidAndMadeTheNextTime) {
  AddTwo();
  bench.OpenMainFrame();
  UserDataServices* const database = std::exchange(FDBServer, &bench.host.fakeUserData);
  bench.ClickNode(2003);
  EXPECT_EQ(bench.mainFrame->CurFrame(), nullptr);
  ASSERT_FALSE(bench.host.debug.Lines().empty());
  QStringList texts;
  for (const QLabel* label : bench.mainFrame->findChildren<QLabel*>())
    if (label->isVisible()) texts << label->text();
  EXPECT_TRUE(texts.contains(QStringLiteral("“压力测试”页面没有打开，请稍后再选一次（原因见日志）。")));
  FDBServer = database;
  bench.ClickNode(2002);
  ShowView();
  EXPECT_EQ(portfolios->RowCount(), 2);
  Receive(kShanghai, Betas());
  EXPECT_EQ(frame->SetInput(QStringLiteral("Edit1"), QStringLiteral("20")), QString());
  EXPECT_EQ(portfolios->Cells(kValue, 1), kAtTwenty);
}

TEST_F(StressView, ARecalculationWithoutCostsStillTakesTheClosesOfNow) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  bench.host.codeNums.Add(
      {QStringLiteral("600000"), QStringLiteral("浦发银行"), QStringLiteral("银行"), 1, {10, 19.6}});
  InjectingUserData failing(bench.database.Service());
  UserDataServices* const database = std::exchange(FDBServer, &failing);
  failing.plan.FailCall(0);
  EXPECT_THROW(ReCalc(), Error);
  EXPECT_EQ(failing.plan.Calls().first(), sql::kPortfolioCosts);
  FDBServer = database;
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("5096.00"));  // 200 x 19.6 x 1.3
}

// Other ways to the controls.

TEST_F(StressView, TheKeypadsEnterApplies) {
  OpenWithTwo();
  Type(QStringLiteral("20"));
  QTest::keyClick(&Entry(), Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(portfolios->Cells(kValue, 1), kAtTwenty);
}

TEST_F(StressView, TheWheelOverADropDownChoosesInBoth) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  int place = 0;
  for (const char* name : {"ComboBox11", "ComboBox1"}) {
    QComboBox& choice = Choice(name);
    const QPointF at = choice.rect().center();
    QWheelEvent event(at, choice.mapToGlobal(at), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&choice, &event);
    ++place;
    EXPECT_EQ(Choice("ComboBox11").currentIndex(), place);
    EXPECT_EQ(Choice("ComboBox1").currentIndex(), place);
    EXPECT_EQ(static_cast<int>(g_AllStockData->CurrentType()), place);
    EXPECT_EQ(Entry().text(), QStringLiteral("0"));
    EXPECT_EQ(portfolios->Cells(kValue, 1), kAtTwenty) << "nothing new until it is applied";
  }
}

}  // namespace
}  // namespace holdwise::test
