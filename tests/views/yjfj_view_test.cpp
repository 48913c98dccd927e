// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QLabel>
#include <QToolTip>

#include "common/charts/step_chart_part.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "holdwise/packet/packet_file.h"
#include "portfolio_view_fixture.h"
#include "views/yjfj/decomposition_layout.h"

// Expected figures were worked out by hand; each stands beside its arithmetic.

namespace holdwise::test {
namespace {

using namespace decomposition;

class DecompositionView : public PortfolioViewTest {
 protected:
  DecompositionView() : PortfolioViewTest(3002) {}

  /// Two portfolios bought at an index of 2000, which stands at 2200 now. The newer one was bought
  /// for 100000 and is worth 112000 (10.00 and 12.00); the older one lost a half.
  void AddExample() {
    bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 100, 1, 20}});
    bench.AddPortfolio(2, QStringLiteral("进取"), {{1600000, 10000, 0.9, 9}, {1000001, 1000, 0.1, 10}});
    SetFigures(1, "ZSCLOSEPRICE = 2000, BETA = 0.5, ZHBZC = 0.01");
    SetFigures(2, "ZSCLOSEPRICE = 2000, BETA = 1.2, ZHBZC = 0.02");
    bench.host.dataCenter.indices[1] = {2200, 2190};
    Execute("insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (1,'定期存款整存整取','一年',2.25)");
    Execute("insert into alg_stockstatistic (secucode,hqtype,hqdate,sylbzc) values (1,0,20240528,0.025)");
  }
  void OpenExample(int width = 1000) {
    AddExample();
    OpenWithPrices(width);
  }
  void OpenWithPrices(int width = 1000) {
    Open(width);
    bench.DeliverPrices(PricesOfThree());
    Refresh();
    QTest::qWait(20);
  }
  void Execute(const char* statement) { bench.database.Service().Execute(QString::fromUtf8(statement)); }
  void SetFigures(int id, const char* figures) {
    bench.database.Service().Execute(
        QStringLiteral("update alg_commain set %1 where ID = %2").arg(QString::fromLatin1(figures)).arg(id));
  }
  void Refresh() { SendFrameMessage(*frame, FrameMessage::ReflashNowPrice); }
  [[nodiscard]] StepChartPart& Chart() const {
    return *static_cast<StepChartPart*>(frame->findChild<QWidget*>(QStringLiteral("RzPanel5")));
  }
  [[nodiscard]] const QLabel& Notice() const { return bench.mainFrame->findChild<TitleStrip*>()->Notice(); }
  [[nodiscard]] QRect BarOf(int step, int bar) const {
    return Chart().Places().steps[static_cast<std::size_t>(step)].bars[static_cast<std::size_t>(bar)].bar;
  }
  [[nodiscard]] QColor PaintedAt(const QPoint& point) const { return Chart().grab().toImage().pixelColor(point); }
};

TEST_F(DecompositionView, SplitsEveryPortfoliosReturn) {
  OpenExample();
  ASSERT_EQ(portfolios->RowCount(), 2);
  // The worked example: see the figures' test. Below: R = -0.5, A = 0.0225 + 0.0775 x 0.4 = 0.0535, B = 0.06125:
  // R - rf = -0.5225, A - B = -0.00775 (-0.78 rounded away), R - A = -0.5535; -55.35 - 0.78 = -56.13;
  // -52.25 + 56.13 = 3.88
  EXPECT_EQ(RowOf(*portfolios, 0),
            List({"进取", "12.00", "9.75", "9.30", "0.45", "-3.10", "3.55", "2", "2.25", "2000.00", "1.2", "0.02"}));
  const QStringList second = RowOf(*portfolios, 1);
  EXPECT_EQ(second.mid(0, 3), List({"稳健", "-50.00", "-52.25"}));
  EXPECT_EQ(second[kNetSelection], QStringLiteral("-55.35"));
  EXPECT_EQ(second.mid(kId), List({"1", "2.25", "2000.00", "0.5", "0.01"}));
}

TEST_F(DecompositionView, ThePartsAreEmptyBeforeThePrices) {
  AddExample();
  Open();
  EXPECT_EQ(RowOf(*portfolios, 0), List({"进取", "", "", "", "", "", "", "2", "2.25", "2000.00", "1.2", "0.02"}));
  EXPECT_EQ(Notice().text(), QString());
}

TEST_F(DecompositionView, AMissingValueLeavesTheRowAsItIs) {
  AddExample();
  Open();
  bench.DeliverPrices({{QStringLiteral("600519"), {171000, 2}}});
  portfolios->SetCells(kReturn, 0, QStringLiteral("7.00"));
  Refresh();
  EXPECT_EQ(RowOf(*portfolios, 0).mid(1, 6), List({"7.00", "", "", "", "", ""}));
}

TEST_F(DecompositionView, TheIndexLevelOfTheMomentCounts) {
  OpenExample();
  bench.host.dataCenter.indices[1] = {2000, 2190};
  Refresh();
  // Rm = 0: A = 0.0225 - 0.0225 x 0.8 = 0.0045, B = 0.0225 - 0.0225 x 1.2 = -0.0045: A - B = 0.009, R - A = 0.1155;
  // 11.55 + 0.90 = 12.45; 9.75 - 12.45 = -2.70
  EXPECT_EQ(RowOf(*portfolios, 0).mid(1, 6), List({"12.00", "9.75", "-2.70", "12.45", "0.90", "11.55"}));
}

// What is missing is said; the figure stays what it is.

TEST_F(DecompositionView, NoLevelAtThePurchase) {
  AddExample();
  SetFigures(2, "ZSCLOSEPRICE = 0");
  OpenWithPrices();
  EXPECT_EQ(RowOf(*portfolios, 0).mid(1, 6), List({"12.00", "9.75", "117.30", "-107.55", "-39.10", "-68.45"}));
  bench.ClickNode(2002);
  bench.ClickNode(3002);
  EXPECT_EQ(Notice().text(), QStringLiteral("1 个组合的数据不完整"));
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("没有买入时的上证指数")));
}

TEST_F(DecompositionView, NoDeviationOfTheMarket) {
  AddExample();
  Execute("delete from alg_stockstatistic where secucode = 1");
  SetFigures(2, "ZHBZC = 0.04");
  OpenWithPrices();
  EXPECT_EQ(RowOf(*portfolios, 0).mid(1, 6), List({"12.00", "9.75", "9.30", "0.45", "-8.99", "9.44"}));
  bench.ClickNode(2002);
  bench.ClickNode(3002);
  EXPECT_TRUE(Notice().text().endsWith(QStringLiteral("数据不完整")));
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("没有上证指数的标准差")));
}

TEST_F(DecompositionView, NoLevelNowAndNoRate) {
  AddExample();
  Execute("delete from alg_rmbinterestrate");
  bench.host.dataCenter.indices.clear();
  OpenWithPrices();
  EXPECT_EQ(portfolios->Cells(kRiskFree, 0), QStringLiteral("0.00"));
  // Rm = -1: A = -0.8, B = -1.2: A - B = 0.4, R - A = 0.92; 92 + 40 = 132; 12 - 132 = -120
  EXPECT_EQ(RowOf(*portfolios, 0).mid(1, 6), List({"12.00", "12.00", "-120.00", "132.00", "40.00", "92.00"}));
  bench.ClickNode(2002);
  bench.ClickNode(3002);
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("没有上证指数的当前点位")));
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("没有一年期定期存款利率")));
}

TEST_F(DecompositionView, NothingPaid) {
  AddExample();
  Execute("update alg_comdetail set BUYPRICE = 0 where MAINID = 2");
  OpenWithPrices();
  EXPECT_EQ(RowOf(*portfolios, 0).mid(1, 6), List({"0.00", "-2.25", "9.30", "-11.55", "-3.10", "-8.45"}));
  bench.ClickNode(2002);
  bench.ClickNode(3002);
  EXPECT_EQ(Notice().text(), QStringLiteral("1 个组合的数据不完整"));
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("没有买入成本")));
}

TEST_F(DecompositionView, WhatIsNotStoredCountsNothing) {
  AddExample();
  SetFigures(2, "ZSCLOSEPRICE = null, BETA = null, ZHBZC = null");
  OpenWithPrices();
  EXPECT_EQ(RowOf(*portfolios, 0).mid(kId), List({"2", "2.25", "0.00", "", ""}));
  // Rm = 1, beta and deviation 0: A = B = rf.
  EXPECT_EQ(RowOf(*portfolios, 0).mid(1, 6), List({"12.00", "9.75", "0.00", "9.75", "0.00", "9.75"}));
  bench.ClickNode(2002);
  bench.ClickNode(3002);
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("进取：没有买入时的上证指数")));
}

TEST_F(DecompositionView, OnlyWhatThePageRestsOnIsMissed) {
  OpenExample();
  bench.ClickNode(2001);
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("平安银行(000001)没有上周收盘价")));
  bench.ClickNode(3002);
  EXPECT_EQ(Notice().text(), QString()) << "no close of a week or month is on it";
}

TEST_F(DecompositionView, IsToldWhenPricesWereReadAgain) {
  OpenExample();
  MessageSpy spy(*frame);
  QTest::qWait(3300);
  EXPECT_GE(spy.Count(FrameMessage::ReflashNowPrice), 1);
}

// A file that comes empties the list of deviations.
TEST_F(DecompositionView, ARiskFileThatArrivesHasTheDeviationsReadAgain) {
  OpenExample();
  Execute("update alg_stockstatistic set sylbzc = 0.05 where secucode = 1");
  g_AllStockData->Set_SZZS();
  MessageSpy spy(*frame);
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  table.SetText(table.AppendRow(), code, "600000");
  bench.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"))
      ->WriteAndReceive(QStringLiteral("QMTL\\TZZH\\风险计量\\SZ.dat"), EncodePacket(table));
  EXPECT_EQ(spy.Count(FrameMessage::ReflashNowPrice), 1);
  // A = 0.0225 + 0.0775 x 0.4 = 0.0535, B = 0.1155: A - B = -0.062, R - A = 0.0665.
  EXPECT_EQ(RowOf(*portfolios, 0).mid(1, 6), List({"12.00", "9.75", "9.30", "0.45", "-6.20", "6.65"}));
  EXPECT_EQ(Notice().text(), QString());
}

TEST_F(DecompositionView, AFailingStatementReachesTheSenderAndChangesNothing) {
  OpenExample();
  UserDataServices* const database = FDBServer;
  FDBServer = &bench.host.fakeUserData;
  EXPECT_THROW(SendFrameMessage(*frame, FrameMessage::Init), Error);
  EXPECT_EQ(portfolios->Cells(kReturn, 0), QStringLiteral("12.00"));
  FDBServer = database;
}

// The chart.

TEST_F(DecompositionView, TheChartShowsTheSelectedPortfolioInTheThemesColours) {
  OpenExample();
  for (const char* theme : {"first", "second"}) {
    Chart().repaint();
    for (int step = 0; step < kSteps; ++step) {
      EXPECT_EQ(PaintedAt(BarOf(step, 1).center()), Color("Qm_KlineYellowColor")) << theme << step;
    }
    EXPECT_EQ(PaintedAt(BarOf(0, 0).center()), Color("Qm_KlineBlueColor")) << theme;
    EXPECT_EQ(PaintedAt(BarOf(0, 2).center()), Color("Qm_KlineRedColor")) << theme;
    EXPECT_EQ(PaintedAt(BarOf(1, 0).center()), Color("Qm_KlineRedColor")) << "what is split keeps its colour";
    EXPECT_EQ(PaintedAt(BarOf(2, 2).center()), Color("Qm_KlineRedColor")) << theme;
    EXPECT_EQ(PaintedAt({1, Chart().height() - 2}), Color("Qm_BGCorlor")) << theme;
    const StepPlaces& last = Chart().Places().steps[2];
    EXPECT_EQ(PaintedAt({last.plot.left() + 1, last.zeroY}), Color("Invest_YJFJ_ZeroLine")) << theme;
    bench.host.theme.Switch();
    bench.mainFrame->MakeSkin();
  }
}

TEST_F(DecompositionView, ANegativePartHangsFromTheZeroLine) {
  OpenExample();
  const StepPlaces& last = Chart().Places().steps[2];
  EXPECT_EQ(last.bars[1].bar.top(), last.zeroY + 1) << "-3.10";
  EXPECT_EQ(last.bars[2].bar.bottom(), last.zeroY - 1) << "3.55";
}

TEST_F(DecompositionView, AnotherRowChangesTheChart) {
  OpenExample();
  const QRect before = BarOf(0, 0);
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_Down);
  QTest::qWait(50);
  EXPECT_NE(BarOf(0, 0), before);
  EXPECT_EQ(BarOf(0, 0).top(), Chart().Places().steps[0].zeroY + 1) << "-50.00";
}

TEST_F(DecompositionView, NewPricesChangeTheChart) {
  OpenExample();
  const QImage before = Chart().grab().toImage();
  bench.DeliverPrices({{QStringLiteral("600000"), {500, 2}}, {QStringLiteral("000001"), {1200, 2}}});
  Refresh();
  QTest::qWait(50);
  EXPECT_EQ(portfolios->Cells(kReturn, 0), QStringLiteral("-38.00")) << "62000 of 100000";
  EXPECT_NE(Chart().grab().toImage(), before);
}

TEST_F(DecompositionView, EveryBarSaysItsCellUnderTheMouse) {
  OpenExample();
  const QStringList hints =
      List({"回报率:12.00", "无风险回报率:2.25", "超额回报率:9.75", "超额回报率:9.75", "风险增溢:9.30",
            "选择回报率:0.45", "选择回报率:0.45", "多样化增溢:-3.10", "净选择回报率:3.55"});
  for (int bar = 0; bar < kBars; ++bar) {
    QTest::mouseMove(&Chart(), BarOf(bar / 3, bar % 3).center());
    EXPECT_TRUE(QToolTip::isVisible());
    EXPECT_EQ(QToolTip::text(), hints[bar]);
  }
  QTest::mouseMove(&Chart(), {2, 2});
  QTest::qWait(400);
  EXPECT_FALSE(QToolTip::isVisible());
}

TEST_F(DecompositionView, WithoutPortfoliosTheChartIsEmpty) {
  Open();
  Refresh();
  QTest::qWait(20);
  EXPECT_TRUE(portfolios->IsEmpty());
  for (int bar = 0; bar < kBars; ++bar) EXPECT_TRUE(BarOf(bar / 3, bar % 3).isEmpty());
  const StepChart chart = Chart().OnRead();
  for (const ChartStep& step : chart.steps) EXPECT_EQ(step.total.text, QStringLiteral("0"));
  EXPECT_EQ(Notice().text(), QString());
}

TEST_F(DecompositionView, TheChartOfAPortfolioWithoutAValueSaysSo) {
  AddExample();
  bench.AddPortfolio(3, QStringLiteral("空"), {});
  OpenWithPrices();
  ASSERT_EQ(portfolios->Row(), 0);
  EXPECT_EQ(RowOf(*portfolios, 0).mid(0, 7), List({"空", "", "", "", "", "", ""}));
  const StepChart chart = Chart().OnRead();
  // What the row lacks is read as 0: the risk-free rate alone is left.
  EXPECT_EQ(chart.steps[0].left.text, QStringLiteral("2.25"));
  EXPECT_EQ(chart.steps[0].total.text, QStringLiteral("2.25"));
  EXPECT_EQ(chart.steps[0].right.text, QStringLiteral("0"));
  EXPECT_EQ(chart.note, QStringLiteral("“空”没有市值，回报率没有计算：只画出无风险利率，其余按 0 画。"));
  const QRect note = Chart().Places().note;
  const QImage picture = Chart().grab().toImage();
  int inked = 0;
  for (int x = note.left(); x <= note.right(); ++x)
    for (int y = note.top(); y <= note.bottom(); ++y) inked += picture.pixelColor(x, y) == Color("QM_TitleFontColor");
  EXPECT_GT(inked, 20);
  EXPECT_LT(note.bottom(), Chart().Places().steps[0].area.top());
  Click(*portfolios, kName, 1);
  EXPECT_EQ(Chart().OnRead().note, QString());
  QTest::qWait(20);
  EXPECT_TRUE(Chart().Places().note.isEmpty());
}

TEST_F(DecompositionView, TheChartsTextsAreShortestForPartsAndTwoDecimalsForTotals) {
  OpenExample();
  const StepChart chart = Chart().OnRead();
  EXPECT_EQ(chart.steps[0].caption, QStringLiteral("回报率分解"));
  EXPECT_EQ(chart.steps[1].caption, QStringLiteral("超额回报率分解"));
  EXPECT_EQ(chart.steps[2].caption, QStringLiteral("选择回报率分解"));
  EXPECT_EQ(chart.steps[1].left.text, QStringLiteral("9.3"));
  EXPECT_EQ(chart.steps[1].right.text, QStringLiteral("0.45"));
  EXPECT_EQ(chart.steps[1].total.text, QStringLiteral("9.75"));
  EXPECT_EQ(chart.steps[2].left.text, QStringLiteral("-3.1"));
  EXPECT_EQ(FormulaOf(chart.steps[0]), QStringLiteral("回报率■ = 无风险回报率■ + 超额回报率■"));
  EXPECT_EQ(FormulaOf(chart.steps[1]), QStringLiteral("超额回报率■ = 风险增溢■ + 选择回报率■"));
  EXPECT_EQ(FormulaOf(chart.steps[2]), QStringLiteral("选择回报率■ = 多样化增溢■ + 净选择回报率■"));
}

TEST_F(DecompositionView, TheCatalogueSelectsAndHasNoHoldings) {
  OpenExample();
  ASSERT_TRUE(frame->SelectPortfolio(QStringLiteral("1")));
  EXPECT_EQ(portfolios->Row(), 1);
  EXPECT_EQ(frame->HoldingsGrid().gridName, QString());
  ASSERT_EQ(frame->CatalogueGrids().size(), 1U);
  EXPECT_EQ(frame->CatalogueGrids().front()->ToGridText().rows.front().size(), kColumns) << "hidden ones included";
  for (int column = kId; column < kColumns; ++column) EXPECT_TRUE(portfolios->isColumnHidden(column));
}

TEST_F(DecompositionView, TheChartTakesTheRoomThatIsLeft) {
  for (const int width : {500, 1000, 1900}) {
    if (bench.mainFrame == nullptr) OpenExample(width);
    bench.mainFrame->resize(width, 900);
    QTest::qWait(50);
    EXPECT_EQ(portfolios->parentWidget()->height(), 201);
    EXPECT_EQ(Chart().height(), frame->height() - 201);
    EXPECT_FALSE(BarOf(2, 2).isEmpty());
  }
}

}  // namespace
}  // namespace holdwise::test
