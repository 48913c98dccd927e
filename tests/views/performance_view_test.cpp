// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QToolTip>
#include <functional>

#include "common/series/missing_prices.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "performance_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace performance;

TEST_F(PerformanceView, ListsSavedPortfoliosNewestFirst) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(3, QStringLiteral("乙"), {{1600000, 100, 1, 9}}, 0);
  bench.AddPortfolio(2, QStringLiteral("丙"), {{1600000, 100, 1, 9}});
  Open();
  ASSERT_EQ(portfolios->RowCount(), 2);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("丙"));
  EXPECT_EQ(portfolios->Cells(kCreated, 0), QStringLiteral("2024-05-22"));
  EXPECT_EQ(portfolios->Cells(kId, 0), QStringLiteral("2"));
  EXPECT_EQ(portfolios->Cells(kName, 1), QStringLiteral("甲"));
  EXPECT_EQ(portfolios->ColCount(), 10);
  EXPECT_EQ(holdings->ColCount(), 15);
}

TEST_F(PerformanceView, ShowsTheHoldingsOfTheNewestPortfolio) {
  OpenWithTwo();
  EXPECT_EQ(Title(), QStringLiteral("进取-成分股表现"));
  ASSERT_EQ(holdings->RowCount(), 3);
  // See PerformanceFigures for the arithmetic; month close only for 600000, week closes for 600000 and 600519.
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "银行", "10.00", "2.04", "1000", "40.00", "200.00",
                                       "500.00", "1000.00", "1000.00", "11.11", "9", "9.5", "9"}));
  EXPECT_EQ(RowOf(*holdings, 1), List({"000001", "平安银行", "银行", "12.00", "-4.00", "500", "25.00", "-250.00", "0",
                                       "0", "0.00", "0.00", "12", "0", "0"}));
  EXPECT_EQ(RowOf(*holdings, 2),
            List({"600519", "贵州茅台", "酒、饮料和精制茶制造业及其相关服务", "1710.00", "0.59", "10", "35.00",
                  "100.00", "600.00", "0", "-900.00", "-5.00", "1800", "1650", ""}));
}

TEST_F(PerformanceView, ComingBackTheSelectedRowIsInView) {
  for (int id = 1; id <= 9; ++id) bench.AddPortfolio(id, QStringLiteral("组合%1").arg(id), {{1600000, 200, 1, 9.5}});
  Open();
  QTest::keyClick(portfolios, Qt::Key_End);
  ASSERT_FALSE(portfolios->viewport()->rect().contains(portfolios->CellRect(kName, 0)));
  bench.ClickNode(2002);
  ShowView();
  EXPECT_EQ(portfolios->Row(), 8);
  EXPECT_TRUE(portfolios->viewport()->rect().contains(portfolios->CellRect(kName, 8)))
      << portfolios->CellRect(kName, 8).top() << ' ' << portfolios->viewport()->height();
}

TEST_F(PerformanceView, ShowsEveryPortfolioLive) {
  OpenWithTwo();
  // value 10000 + 6000 + 17100; previous closes 9800 + 6250 + 17000; weeks 9500 + 0 + 16500; months 9000; cost 33000
  EXPECT_EQ(RowOf(*portfolios, 0),
            List({"进取", "2024-05-22", "33100.00", "0.15", "27.31", "267.78", "100.00", "0.30", "", "2"}));
  // value 2000; 1960: 2.04 %; 1900: 5.26 %; 1800: 11.11 %; cost 1900
  EXPECT_EQ(RowOf(*portfolios, 1),
            List({"稳健", "2024-05-21", "2000.00", "2.04", "5.26", "11.11", "100.00", "5.26", "", "1"}));
}

/// 000001 has no close of the week, and neither it nor 600519 one of the month.
TEST_F(PerformanceView, AFigureThatLacksACloseIsMarkedWhereItIsRead) {
  OpenWithTwo();
  const QString zero = QStringLiteral("，其市值按 0 计入比较的基数，所示涨跌幅偏大");
  const QString week = QStringLiteral("平安银行(000001)没有上周收盘价") + zero;
  EXPECT_EQ(portfolios->RemarkOf({kWeekChange, 0}), week);
  EXPECT_EQ(portfolios->RemarkOf({kMonthChange, 0}),
            QStringLiteral("平安银行(000001)、贵州茅台(600519)没有上月收盘价") + zero);
  EXPECT_EQ(portfolios->RemarkOf({kDayChange, 0}), QString());
  EXPECT_EQ(portfolios->RemarkOf({kWeekChange, 1}), QString());
  EXPECT_EQ(portfolios->RemarkOf({kMonthChange, 1}), QString());
  EXPECT_EQ(portfolios->Cells(kWeekChange, 0), QStringLiteral("27.31")) << "the cell keeps its text";
  EXPECT_EQ(holdings->RemarkOf({kWeekContribution, 0}), QString());
  EXPECT_EQ(holdings->RemarkOf({kWeekContribution, 1}), QStringLiteral("没有上周收盘价，周贡献显示为 0"));
  EXPECT_EQ(holdings->RemarkOf({kMonthContribution, 1}), QStringLiteral("没有上周收盘价，月贡献也显示为 0"));
  EXPECT_EQ(holdings->RemarkOf({kMonthContribution, 2}), QStringLiteral("没有上月收盘价，月贡献显示为 0"));
  // The mark in the corner, and the text under the mouse.
  const QImage picture = portfolios->viewport()->grab().toImage();
  const auto corner = [&](int column, int row) {
    return picture.pixelColor(portfolios->CellRect(column, row).topRight() + QPoint(-1, 1));
  };
  EXPECT_EQ(corner(kWeekChange, 0), Color("Grid_SelTxtColor"));
  EXPECT_EQ(corner(kDayChange, 0), Color("Qm_GridRowSelectColor"));
  EXPECT_EQ(corner(kWeekChange, 1), Color("KTR_HighLightColor2"));
  QTest::mouseMove(portfolios->viewport(), portfolios->CellRect(kWeekChange, 0).center());
  EXPECT_EQ(QToolTip::text(), week);
  // Another portfolio's holding takes the row.
  Click(*portfolios, kName, 1);
  bench.AddClose(1000001, 1, 20240524, 12);
  g_ClosePrice->SetIsNeedUpdate(true);
  Refresh();
  EXPECT_EQ(portfolios->RemarkOf({kWeekChange, 0}), QString()) << "the close is there now";
  EXPECT_EQ(holdings->RemarkOf({kWeekContribution, 0}), QString());
}

/// 600001 is not quoted at all: it counts as nothing in the sums, and the list's row says so like the strip below.
TEST_F(PerformanceView, APortfolioWithAHoldingWithoutPriceIsMarkedWhereItIsRead) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 200, 0.5, 9.5}});
  bench.AddPortfolio(2, QStringLiteral("乙"), {{1600000, 200, 0.5, 9.5}, {1600001, 100, 0.5, 9}});
  Open();
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  Refresh();
  EXPECT_EQ(portfolios->Cells(kGain, 0), QStringLiteral("-800.00")) << "2000 - 1900 - 900: the text is the plain sum";
  for (const int column : {kValue, kDayChange, kWeekChange, kMonthChange, kGain, kGainRate}) {
    const QString remark = portfolios->RemarkOf({column, 0});
    EXPECT_TRUE(remark.contains(QStringLiteral("(600001)没有现价"))) << column << remark.toStdString();
    EXPECT_FALSE(portfolios->RemarkOf({column, 1}).contains(QStringLiteral("没有现价"))) << column;
  }
  EXPECT_TRUE(portfolios->RemarkOf({kDayChange, 0}).contains(QStringLiteral("(600001)没有昨收盘价，日涨跌幅显示为 0")));
  bench.DeliverPrices({{QStringLiteral("600001"), {900, 2}}});
  Refresh();
  EXPECT_EQ(portfolios->RemarkOf({kGain, 0}), QString()) << "it has come";
}

TEST_F(PerformanceView, APriceMessageToAnEmptyListShowsNothing) {
  Open();
  Refresh();
  EXPECT_EQ(RowOf(*portfolios, 0), QStringList(10, QString()));
}

TEST_F(PerformanceView, APortfolioWithoutHoldingsStopsTheListsLiveColumnsToo) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(2, QStringLiteral("空"), {});
  Open();
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  Refresh();
  EXPECT_EQ(Title(), QStringLiteral("空-成分股表现"));
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_EQ(portfolios->Cells(kValue, 1), QString());
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->RowCount(), 1);
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("1000.00"));
  Click(*portfolios, kName, 0);
  EXPECT_TRUE(holdings->IsEmpty());
}

TEST_F(PerformanceView, AClickLoadsThatPortfolio) {
  OpenWithTwo();
  MessageSpy spy(*frame);
  Click(*portfolios, kValue, 1);
  EXPECT_EQ(Title(), QStringLiteral("稳健-成分股表现"));
  ASSERT_EQ(holdings->RowCount(), 1);
  EXPECT_EQ(holdings->Cells(kHoldingGain, 0), QStringLiteral("100.00"));
  EXPECT_EQ(portfolios->Row(), 1);
  EXPECT_EQ(spy.Count(FrameMessage::ReflashNowPrice), 1);
}

/// With a thousand portfolios each selection would take as long as all of them.
TEST_F(PerformanceView, ASelectionWorksOutNothingThatTheListShowsAlready) {
  OpenWithTwo();
  const QString mark = QStringLiteral("mark");
  const auto isWorkedOutBy = [&](const std::function<void()>& change) {
    portfolios->SetCells(kValue, 1, mark);
    change();
    Click(*portfolios, kName, 1 - portfolios->Row());
    return portfolios->Cells(kValue, 1) == QStringLiteral("2000.00");
  };
  EXPECT_FALSE(isWorkedOutBy([] {}));
  EXPECT_EQ(portfolios->Cells(kValue, 1), mark);
  EXPECT_EQ(holdings->RowCount(), 1) << "the selected one's holdings";
  EXPECT_TRUE(isWorkedOutBy([this] { bench.DeliverPrices(PricesOfThree()); }));
  EXPECT_TRUE(isWorkedOutBy([] { g_UserValue->ReGetUserValue_Sum(); }));
  EXPECT_TRUE(isWorkedOutBy([] { g_UserValue->ReGetUserCloseValue(); }));
  EXPECT_TRUE(isWorkedOutBy([] { g_ClosePrice->SetIsNeedUpdate(true); }));
  EXPECT_TRUE(isWorkedOutBy([this] { SendFrameMessage(*frame, FrameMessage::Init); }));
  EXPECT_FALSE(isWorkedOutBy([] {}));
}

TEST_F(PerformanceView, InitialisationEndsWithAPriceMessageOfItsOwn) {
  OpenWithTwo();
  MessageSpy spy(*frame);
  SendFrameMessage(*frame, FrameMessage::Init);
  // One after the holdings are loaded, one after everything.
  EXPECT_EQ(spy.messages, std::vector<int>({5096, 5099, 5099}));
}

TEST_F(PerformanceView, RowsWithoutAPriceOrValueKeepWhatTheyShow) {
  // No trade yet and no previous close either: the price is 0, and so is the portfolio's value.
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1000002, 300, 1, 5}});
  Open();
  holdings->SetCells(kPrice, 0, QStringLiteral("7.50"));
  holdings->SetCells(kHoldingGain, 0, QStringLiteral("750.00"));
  portfolios->SetCells(kValue, 0, QStringLiteral("2250.00"));
  bench.DeliverPrices({{QStringLiteral("000002"), {0, 2}}});
  Refresh();
  EXPECT_EQ(holdings->Cells(kPrice, 0), QStringLiteral("7.50"));
  EXPECT_EQ(holdings->Cells(kHoldingGain, 0), QStringLiteral("750.00"));
  EXPECT_EQ(holdings->Cells(kDayContribution, 0), QString());
  EXPECT_EQ(portfolios->Cells(kValue, 0), QStringLiteral("2250.00"));
  EXPECT_EQ(portfolios->Cells(kGain, 0), QString());
}

TEST_F(PerformanceView, ASecurityWithoutAPriceDoesNotInheritTheFiguresOfItsRow) {
  // The second holding is 000001 in the newer portfolio and 600001, which nobody quotes, in the older one.
  bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 200, 0.5, 9.5}, {1600001, 100, 0.5, 9}});
  bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  Open();
  bench.DeliverPrices(PricesOfThree());
  Refresh();
  ASSERT_EQ(holdings->Cells(kPrice, 1), QStringLiteral("12.00"));
  Click(*portfolios, kName, 1);
  EXPECT_EQ(RowOf(*holdings, 1),
            List({"600001", "已退市", "", "", "", "100", "50.00", "", "", "", "", "", "9", "0", "0"}));
  EXPECT_EQ(holdings->Cells(kPrice, 0), QStringLiteral("10.00"));
}

TEST_F(PerformanceView, ASecurityThatKeepsItsRowKeepsItsFigures) {
  bench.AddPortfolio(1, QStringLiteral("稳健"), {{1000002, 300, 1, 5}});
  bench.AddPortfolio(2, QStringLiteral("进取"), {{1000002, 100, 1, 5}});
  Open();
  bench.DeliverPrices({{QStringLiteral("000002"), {800, 2}}});
  Refresh();
  ASSERT_EQ(holdings->Cells(kHoldingGain, 0), QStringLiteral("300.00"));
  bench.DeliverPrices({{QStringLiteral("000002"), {0, 2}}});
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->Cells(kQuantity, 0), QStringLiteral("300"));
  EXPECT_EQ(holdings->Cells(kHoldingGain, 0), QStringLiteral("300.00"));
}

TEST_F(PerformanceView, WithoutAPreviousCloseThereIsNoDay) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1000002, 300, 1, 5}});
  Open();
  bench.DeliverPrices({{QStringLiteral("000002"), {800, 2}}});
  Refresh();
  EXPECT_EQ(holdings->Cells(kChange, 0), QStringLiteral("0"));
  EXPECT_EQ(holdings->Cells(kDayContribution, 0), QStringLiteral("0"));
  EXPECT_EQ(holdings->Cells(kWeekClose, 0), QStringLiteral("0"));
  EXPECT_EQ(holdings->Cells(kMonthClose, 0), QStringLiteral("0"));
  EXPECT_EQ(holdings->Cells(kWeekContribution, 0), QStringLiteral("0"));
  EXPECT_EQ(portfolios->Cells(kDayChange, 0), QStringLiteral("0"));
}

/// One holding's previous close is not enough for the change of the whole portfolio, and says nothing of another one's.
TEST_F(PerformanceView, AHoldingOnItsFirstTradingDayLeavesThePortfolioWithoutAChangeOfTheDay) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 0.5, 5}, {1000002, 300, 0.5, 5}});
  bench.AddPortfolio(2, QStringLiteral("乙"), {{1600000, 100, 1, 5}});
  Open();
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}, {QStringLiteral("000002"), {800, 2}}});
  Refresh();
  EXPECT_EQ(portfolios->Cells(kId, 1), QStringLiteral("1"));
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("3400.00"));
  EXPECT_EQ(portfolios->Cells(kDayChange, 1), QStringLiteral("0"));
  EXPECT_NE(portfolios->Cells(kDayChange, 0), QStringLiteral("0"));
  const QStringList lines = LinesOf(PortfoliosLackingPrices(PricesUsed::LatestAndCloses, Database()));
  ASSERT_EQ(lines.size(), 1);
  EXPECT_TRUE(lines.first().startsWith(QStringLiteral("甲：")) && lines.first().contains(QStringLiteral("000002")) &&
              lines.first().contains(QStringLiteral("没有昨收盘价")) &&
              lines.first().contains(QStringLiteral("没有上周收盘价")) &&
              lines.first().contains(QStringLiteral("没有上月收盘价")))
      << lines.first().toStdString();
}

/// A cost without a value: the gain is too small by what the holding is worth.
TEST_F(PerformanceView, AHoldingWithoutAPriceCountsInTheGainWithItsCostAndIsNamed) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 0.5, 5}, {1000001, 300, 0.5, 5}});
  bench.AddPortfolio(2, QStringLiteral("乙"), {{1600000, 100, 1, 5}});
  Open();
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  Refresh();
  // 100 x 10 against 100 x 5 + 300 x 5.
  EXPECT_EQ(portfolios->Cells(kValue, 1), QStringLiteral("1000.00"));
  EXPECT_EQ(portfolios->Cells(kGain, 1), QStringLiteral("-1000.00"));
  EXPECT_EQ(portfolios->Cells(kGainRate, 1), QStringLiteral("-50.00"));
  EXPECT_EQ(portfolios->Cells(kGain, 0), QStringLiteral("500.00"));
  const QStringList lines = LinesOf(PortfoliosLackingPrices(PricesUsed::LatestAndCloses, Database()));
  ASSERT_EQ(lines.size(), 1);
  EXPECT_TRUE(lines.first().startsWith(QStringLiteral("甲：平安银行(000001)没有最新价")))
      << lines.first().toStdString();
}

TEST_F(PerformanceView, AMonthCloseWithoutAWeekCloseDoesNotCount) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1000001, 300, 1, 5}});
  bench.AddClose(1000001, 2, 20240430, 11.0);
  Open();
  bench.DeliverPrices({{QStringLiteral("000001"), {1200, 2}}});
  Refresh();
  for (const int column : {kWeekClose, kMonthClose, kWeekContribution, kMonthContribution}) {
    EXPECT_EQ(holdings->Cells(column, 0), QStringLiteral("0")) << column;
  }
}

TEST_F(PerformanceView, APortfolioWithoutCostKeepsItsGainRate) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 0}});
  Open();
  portfolios->SetCells(kGainRate, 0, QStringLiteral("7.77"));
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  Refresh();
  EXPECT_EQ(portfolios->Cells(kGain, 0), QStringLiteral("1000.00"));
  EXPECT_EQ(portfolios->Cells(kGainRate, 0), QStringLiteral("7.77"));
  EXPECT_EQ(holdings->Cells(kHoldingGainRate, 0), QStringLiteral("0"));
}

TEST_F(PerformanceView, ASecurityTheHostDoesNotKnowIsDelisted) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600001, 100, 1, 9}});
  Open();
  EXPECT_EQ(holdings->Cells(kCode, 0), QStringLiteral("600001"));
  EXPECT_EQ(holdings->Cells(kSecurityName, 0), QStringLiteral("已退市"));
  EXPECT_EQ(holdings->Cells(kIndustry, 0), QString());
}

TEST_F(PerformanceView, APortfolioThatHasGoneLeavesTheOldHoldings) {
  OpenWithTwo();
  bench.database.Service().Execute(QStringLiteral("delete from alg_commain where ID = 1"));
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->RowCount(), 3);
  EXPECT_EQ(Title(), QStringLiteral("稳健-成分股表现"));
}

TEST_F(PerformanceView, AQuoteInANameBreaksItsStatement) {
  bench.AddPortfolio(1, QStringLiteral("it''s"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  Open();
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->RowCount(), 3) << "the old holdings stay";
  ASSERT_FALSE(bench.host.debug.Lines().empty());
  EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(QStringLiteral("Holdwise.bpl->Zhbx->strngrd 发生错误!")));
}

TEST_F(PerformanceView, ClosesComeWithTheFirstPricesWhoseFiguresNeedThem) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.AddClose(1600000, 1, 20240524, 9.5);
  Open();
  EXPECT_EQ(holdings->Cells(kBuyPrice, 0), QStringLiteral("9"));
  EXPECT_EQ(holdings->Cells(kWeekClose, 0), QString());
  // What is stored until then is what counts.
  bench.AddClose(1600000, 2, 20240430, 9.0);
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  Refresh();
  EXPECT_EQ(holdings->Cells(kWeekClose, 0), QStringLiteral("9.5"));
  EXPECT_EQ(holdings->Cells(kMonthClose, 0), QStringLiteral("9"));
  // (10 - 9.5) x 100, (10 - 9) x 100
  EXPECT_EQ(holdings->Cells(kWeekContribution, 0), QStringLiteral("50.00"));
  EXPECT_EQ(holdings->Cells(kMonthContribution, 0), QStringLiteral("100.00"));
}

TEST_F(PerformanceView, ClosesAreReadAgainAfterARecalculation) {
  OpenWithTwo();
  bench.AddClose(1000001, 1, 20240524, 11.0);
  ReCalc();
  SendFrameMessage(*frame, FrameMessage::Init);
  // (12 - 11) x 500
  EXPECT_EQ(holdings->Cells(kWeekContribution, 1), QStringLiteral("500.00"));
}

}  // namespace
}  // namespace holdwise::test
