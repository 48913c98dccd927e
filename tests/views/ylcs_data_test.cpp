// SPDX-License-Identifier: MIT
// The stress view when something it rests on is missing, late, or comes back; and what is painted.
#include <gtest/gtest.h>

#include "stress_fixture.h"

namespace holdwise::test {
namespace {

using namespace stress;

// Against SH 600000 has beta 1.5: at +20 % its 200 shares of portfolio 1 are worth 200 x 9.80 x 1.3.
const QString kWithBeta = QStringLiteral("2548.00");
const QString kWithoutBeta = QStringLiteral("1960.00");

TEST_F(StressView, WhatWasAppliedBeforeTheRiskFileCameIsRecomputedWhenItComes) {
  AddTwo();
  Open();
  EXPECT_FALSE(MainNotice().isVisible()) << "the file is on its way, and a move of 0 needs no beta";
  Apply(QStringLiteral("20"));
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithoutBeta);
  EXPECT_TRUE(MainNotice().text().startsWith(QStringLiteral("所示数值没有计入贝塔系数")));
  EXPECT_TRUE(MainNotice().toolTip().contains(QStringLiteral("上证指数")));
  Click(*portfolios, kName, 1);
  Type(QStringLiteral("3"));
  Receive(kShanghai, Betas());
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithBeta);
  EXPECT_EQ(portfolios->Row(), 1) << "the selection stays";
  EXPECT_EQ(holdings->Cells(kPrice, 0), QStringLiteral("12.74"));
  EXPECT_EQ(Entry().text(), QStringLiteral("3")) << "and so does what is being typed";
  EXPECT_FALSE(MainNotice().text().contains(QStringLiteral("没有计入")));
}

TEST_F(StressView, ALateFileOfTheFormerIndexFillsItsOwnTable) {
  AddTwo();
  Open();
  Apply(QStringLiteral("20"));
  ChooseIndex(1);
  Receive(kShanghai, Betas());
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithoutBeta) << "nothing is applied while another index is chosen";
  EXPECT_TRUE(MainNotice().text().startsWith(QStringLiteral("所示数值没有计入贝塔系数")));
  Receive(kShenzhen, Betas(1, 2));
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithoutBeta);
  EXPECT_EQ(Shown(), QStringLiteral("所示：上证指数 20%"));
  Apply(QStringLiteral("10"));
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("2156.00"));  // 1960 x 1.1
  EXPECT_FALSE(MainNotice().text().contains(QStringLiteral("没有计入")));
  Choice("ComboBox1").setFocus();
  QTest::keyClick(&Choice("ComboBox1"), Qt::Key_Home);
  Apply(QStringLiteral("20"));
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithBeta) << "its table was filled";
}

TEST_F(StressView, ARiskFileThatDoesNotComeIsSaidUntilItComes) {
  AddTwo();
  Open();
  Fail(kShanghai);
  EXPECT_TRUE(MainNotice().isVisible());
  EXPECT_EQ(MainNotice().text(), QStringLiteral("没有取得上证指数的风险文件"));
  EXPECT_TRUE(MainNotice().toolTip().contains(QStringLiteral("贝塔系数都按 0 计算")));
  Apply(QStringLiteral("20"));
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithoutBeta);
  EXPECT_EQ(MainNotice().text(), QStringLiteral("没有取得上证指数的风险文件"));
  // The same index chosen again asks again.
  Choice("ComboBox11").setFocus();
  QTest::keyClick(&Choice("ComboBox11"), Qt::Key_Down);
  QTest::keyClick(&Choice("ComboBox11"), Qt::Key_Up);
  EXPECT_EQ(std::count(Download()->Pending().begin(), Download()->Pending().end(), kShanghai), 1);
  Receive(kShanghai, QByteArray("no table"));
  Fail(kShenzhen);
  EXPECT_EQ(MainNotice().text(), QStringLiteral("没有取得上证指数的风险文件")) << "a damaged one is none";
  // The data comes back: the typed move stays and is computed.
  Apply(QStringLiteral("20"));
  SendFrameMessage(*frame, FrameMessage::Init);
  Receive(kShanghai, Betas());
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithBeta);
  EXPECT_FALSE(MainNotice().text().contains(QStringLiteral("风险文件")));
}

TEST_F(StressView, AMoveThatTheLateFileRefusesIsTakenBackAndSaid) {
  AddTwo();
  Open();
  Apply(QStringLiteral("-90"));
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithoutBeta) << "without a beta nothing is wiped out";
  Receive(kShanghai, Betas());
  EXPECT_EQ(Entry().text(), QStringLiteral("0"));
  EXPECT_EQ(Shown(), QStringLiteral("所示：上证指数 0%"));
  EXPECT_EQ(portfolios->Cells(kChange, 0), QStringLiteral("0.00"));
  EXPECT_TRUE(MainNotice().toolTip().contains(QStringLiteral("-90% 超出界限值")));
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_TRUE(MainNotice().toolTip().contains(QStringLiteral("-90% 超出界限值"))) << "until a move is applied";
  Apply(QStringLiteral("20"));
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithBeta);
  EXPECT_FALSE(MainNotice().toolTip().contains(QStringLiteral("超出界限值")));
}

TEST_F(StressView, AHoldingThatTheRiskFileLacksIsNamed) {
  OpenWithTwo();
  EXPECT_EQ(MainNotice().text(), QStringLiteral("1 个组合的数据不完整"));
  EXPECT_TRUE(MainNotice().toolTip().contains(QStringLiteral("进取：贵州茅台(600519)没有贝塔系数")));
  EXPECT_FALSE(MainNotice().toolTip().contains(QStringLiteral("稳健")));
  bench.ClickNode(2002);
  EXPECT_FALSE(MainNotice().isVisible()) << "the risk view shows such a holding without figures";
}

// The host knows no previous close (its "0.00" is one that is not known).
TEST_F(StressView, AHoldingWhosePreviousCloseIsNotKnownIsNamed) {
  bench.AddPortfolio(1, QStringLiteral("新股"), {{1000002, 100, 1, 8}});
  Open();
  Receive(kShanghai, Betas());
  EXPECT_TRUE(MainNotice().toolTip().contains(QStringLiteral("新股：万科A(000002)没有昨收盘价")))
      << MainNotice().toolTip().toStdString();
}

// The closes were read before the portfolio was made, as when it has just been saved.
TEST_F(StressView, AHoldingWithoutPreviousCloseIsAMessageAndTheGridsStay) {
  OpenWithTwo();
  Apply(QStringLiteral("20"));
  const QStringList before = Texts();
  bench.AddPortfolio(3, QStringLiteral("新"), {{1000002, 100, 1, 8}});
  Apply(QStringLiteral("10"));
  ASSERT_EQ(bench.host.messageBoxes.calls.size(), 1U);
  EXPECT_TRUE(bench.host.messageBoxes.calls[0].text.contains(QStringLiteral("万科A(000002)没有昨收盘价")));
  EXPECT_EQ(Texts(), before);
  EXPECT_EQ(Entry().text(), QStringLiteral("10"));
  EXPECT_EQ(Shown(), QStringLiteral("所示：上证指数 20%"));
  EXPECT_TRUE(MainNotice().text().startsWith(QStringLiteral("预期值没有更新")));
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->Cells(kPrice, 0), QStringLiteral("12.74")) << "not half of another move";
  // Shown again it still has the figures of before, and none for the portfolio it could not compute.
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(RowOf(*portfolios, 0), List({"新", "2024-05-23", "", "", "", "", "3"}));
  EXPECT_EQ(portfolios->Cells(kValue, 2), kWithBeta);
  // The recalculation reads the closes again: the move in force is computed.
  ReCalc();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(portfolios->Cells(kValue, 2), QStringLiteral("2254.00"));  // 1960 x 1.15
  EXPECT_FALSE(MainNotice().text().startsWith(QStringLiteral("预期值没有更新")));
}

TEST_F(StressView, OpeningWithoutAPreviousCloseShowsThePageAndSaysSo) {
  OpenWithTwo();
  bench.ClickNode(2002);
  bench.AddPortfolio(3, QStringLiteral("新"), {{1000002, 100, 1, 8}});
  bench.ClickNode(2003);
  EXPECT_TRUE(frame->isVisible());
  EXPECT_EQ(portfolios->RowCount(), 3);
  EXPECT_TRUE(MainNotice().toolTip().contains(QStringLiteral("万科A(000002)没有昨收盘价")));
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty()) << "nobody has asked for anything";
}

TEST_F(StressView, AFailingStatementIsLoggedAndTheViewStaysUsable) {
  OpenWithTwo();
  UserDataServices* const database = FDBServer;
  FDBServer = &bench.host.fakeUserData;
  Apply(QStringLiteral("20"));
  ASSERT_FALSE(bench.host.debug.Lines().empty());
  EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(QStringLiteral("Holdwise.bpl->Ylcs->Edit1 发生错误!")));
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithoutBeta);
  FDBServer = database;
  Apply(QStringLiteral("20"));
  EXPECT_EQ(portfolios->Cells(kValue, 1), kWithBeta);
}

TEST_F(StressView, TheViewIsNotSettledBeforeTheTableHasCome) {
  OpenWithTwo();
  bench.DeliverPrices(PricesOfThree());
  QTest::qWait(1200);  // the recalculation
  EXPECT_TRUE(bench.mainFrame->IsSettled());
  ChooseIndex(1);
  EXPECT_FALSE(bench.mainFrame->IsSettled());
  Receive(kShenzhen, Betas());
  EXPECT_TRUE(bench.mainFrame->IsSettled());
}

// What is painted.

TEST_F(StressView, EverythingFitsAtEveryWidth) {
  OpenWithTwo();
  for (const int width : {900, 1024, 1920}) {
    bench.host.system.workArea.resize(width, 640);
    bench.mainFrame->resize(width, 640);
    QTest::qWait(20);
    for (const HeaderStrip* strip : frame->findChildren<HeaderStrip*>()) {
      for (const QLabel* label : strip->Labels()) {
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width()) << label->text().toStdString();
      }
    }
    int right = 0;
    for (const QWidget* control :
         Entry().parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
      if (!control->isVisible() || control->isWindow()) continue;
      EXPECT_GE(control->width(), control->minimumSizeHint().width()) << control->objectName().toStdString();
      right = std::max(right, control->geometry().right());
    }
    EXPECT_LT(right, frame->width());
    int total = 0;
    for (int column = 0; column < kId; ++column) total += portfolios->ColWidth(column);
    EXPECT_EQ(total, portfolios->ClientWidth());
  }
  EXPECT_TRUE(portfolios->isColumnHidden(kId));
}

TEST_F(StressView, TheFocusedEntryHasAFrameThatIsSeen) {
  OpenWithTwo();
  const auto frameColour = [this] { return Entry().grab().toImage().pixelColor(0, Entry().height() / 2); };
  for (int theme = 0; theme < 2; ++theme) {
    Entry().setFocus();
    EXPECT_EQ(frameColour(), Color("Grid_ClickTxtColor")) << theme;
    Button("btnOK").setFocus();
    EXPECT_NE(frameColour(), Color("Grid_ClickTxtColor")) << theme;
    bench.host.theme.Switch();
    SendFrameMessage(*frame, FrameMessage::ChangeSkin);
  }
}

TEST_F(StressView, ItFollowsTheTheme) {
  OpenWithTwo();
  for (int theme = 0; theme < 2; ++theme) {
    const QWidget& bar = *Entry().parentWidget();
    const QImage picture = frame->grab().toImage();
    EXPECT_EQ(picture.pixelColor(bar.geometry().topRight() - QPoint(3, -3)), Color("Qm_BGCorlor"));
    const QPoint row = portfolios->viewport()->mapTo(frame, portfolios->CellRect(kName, 1).topLeft());
    EXPECT_EQ(picture.pixelColor(row + QPoint(1, 12)), Color("KTR_HighLightColor2"));
    EXPECT_EQ(Entry().palette().color(QPalette::Text), Color("QM_TitleFontColor"));
    bench.host.theme.Switch();
    SendFrameMessage(*frame, FrameMessage::ChangeSkin);
  }
}

}  // namespace
}  // namespace holdwise::test
