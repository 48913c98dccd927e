// SPDX-License-Identifier: MIT
// Sums under the grids of the performance view, worked out by hand.
#include "views/zhbx/performance_totals.h"

#include <QLabel>

#include "common/frames/totals_strip.h"
#include "performance_view_fixture.h"

namespace holdwise::test {
namespace {

const QString kWhat = QStringLiteral("个组合");

QStringList TextsOf(const std::vector<Total>& totals) {
  QStringList texts;
  for (const Total& total : totals) texts << total.text;
  return texts;
}

QStringList RemarksOf(const std::vector<Total>& totals) {
  QStringList remarks;
  for (const Total& total : totals) remarks << total.remark;
  return remarks;
}

TEST(Totals, AreSumsOfTheRowsAndTheRateIsOfWhatWasPaid) {
  // 1100 + 400 = 1500; (1100 - 1000) + (400 - 410) = 90; (1100 - 800) + (400 - 500) = 200; 200 / 1300 = 15.3846 percent
  const auto totals = TotalsOf({{"甲", 1100, 1000, 800}, {"乙", 400, 410, 500}}, kWhat);
  EXPECT_EQ(TextsOf(totals), List({"1500.00", "90.00", "200.00", "15.38"}));
  EXPECT_EQ(RemarksOf(totals), QStringList({"", "", "", ""}));
  EXPECT_FALSE(totals[0].isSigned);
  for (const int place : {1, 2, 3}) EXPECT_TRUE(totals[static_cast<std::size_t>(place)].isSigned);
}

TEST(Totals, ALossIsOne) {
  // 90 - 100 = -10 on the day; 90 - 120 = -30; -30 / 120 = -25 percent
  EXPECT_EQ(TextsOf(TotalsOf({{"甲", 90, 100, 120}}, kWhat)), List({"90.00", "-10.00", "-30.00", "-25.00"}));
}

TEST(Totals, CentsAreSummedBeforeTheyAreRounded) {
  // Three times 0.004: each alone would be 0.00.
  const TotalInput one{"甲", 1.004, 1, 1};
  EXPECT_EQ(TextsOf(TotalsOf({one, one, one}, kWhat)), List({"3.01", "0.01", "0.01", "0.40"}));
}

TEST(Totals, ARowThatLacksSomethingIsLeftOutOfThatSumAndNamed) {
  const auto totals =
      TotalsOf({{"甲", 1100, 1000, 800}, {"乙", 0, 410, 500}, {"丙", 200, 0, 150}, {"丁", 300, 290, 0}}, kWhat);
  // Value: all but 乙. Day: 100 + 10. Gain: 300 + 50 on 950 paid, 36.8421 percent.
  EXPECT_EQ(TextsOf(totals), List({"1600.00", "110.00", "350.00", "36.84"}));
  EXPECT_EQ(totals[0].remark, QStringLiteral("“乙”没有现价，没有计入市值"));
  EXPECT_EQ(totals[1].remark, QStringLiteral("“乙”、“丙”缺少现价或昨收盘价，没有计入日盈亏"));
  EXPECT_EQ(totals[2].remark, QStringLiteral("“乙”、“丁”缺少现价或买入价，没有计入总盈亏和收益率"));
  EXPECT_EQ(totals[3].remark, totals[2].remark);
}

TEST(Totals, APartialValueCountsForTheValueAlone) {
  const auto totals = TotalsOf({{"甲", 600, 1000, 800, true}, {"乙", 400, 410, 500}}, kWhat);
  EXPECT_EQ(TextsOf(totals), List({"1000.00", "-10.00", "-100.00", "-20.00"}));
  EXPECT_EQ(totals[0].remark, QStringLiteral("“甲”有股票没有现价，市值没有计入这些股票"));
  EXPECT_TRUE(totals[1].remark.startsWith(QStringLiteral("“甲”缺少")));
}

TEST(Totals, OfNothingKnownThereIsNoFigure) {
  EXPECT_TRUE(TotalsOf({}, kWhat).empty());
  const auto totals = TotalsOf({{"甲", 0, 0, 0}}, kWhat);
  EXPECT_EQ(TextsOf(totals), List({"—", "—", "—", "—"}));
  EXPECT_FALSE(totals[3].remark.isEmpty());
}

TEST(Totals, ManyNamesAreCounted) {
  std::vector<TotalInput> rows(7);
  for (std::size_t row = 0; row < rows.size(); ++row) rows[row].name = QString::number(row);
  EXPECT_TRUE(TotalsOf(rows, kWhat)[0].remark.startsWith(QStringLiteral("“0”、“1”、“2”、“3”、“4”等 7 个组合没有现价")));
}

// In the view.

class PerformanceSums : public PerformanceView {
 protected:
  [[nodiscard]] std::vector<TotalsStrip*> Strips() const {
    const auto found = frame->findChildren<TotalsStrip*>();
    std::vector<TotalsStrip*> strips(found.begin(), found.end());
    std::sort(strips.begin(), strips.end(),
              [this](auto* a, auto* b) { return a->mapTo(frame, QPoint()).y() < b->mapTo(frame, QPoint()).y(); });
    return strips;
  }
  QString HintOver(const TotalsStrip& strip, const QString& title) const {
    for (const QLabel* label : strip.findChildren<QLabel*>())
      if (label->accessibleName() == QStringLiteral("合计 ") + title) return label->toolTip();
    return QStringLiteral("no such sum");
  }
};

// 进取 33100 now, 33050 before, 33000 paid; 稳健 2000, 1960, 1900.
TEST_F(PerformanceSums, StandUnderBothGridsAndFollowThePrices) {
  OpenWithTwo();
  const auto strips = Strips();
  ASSERT_EQ(strips.size(), 2U);
  EXPECT_EQ(strips[0]->Texts(), List({"35100.00", "90.00", "200.00", "0.57"}));
  EXPECT_EQ(strips[1]->Texts(), List({"33100.00", "50.00", "100.00", "0.30"}));
  EXPECT_GE(strips[0]->mapTo(frame, QPoint()).y(), portfolios->mapTo(frame, QPoint(0, portfolios->height())).y());
  EXPECT_GE(strips[1]->mapTo(frame, QPoint()).y(), holdings->mapTo(frame, QPoint(0, holdings->height())).y());
  bench.DeliverPrices({{QStringLiteral("600000"), {1100, 2}},
                       {QStringLiteral("000001"), {1200, 2}},
                       {QStringLiteral("600519"), {171000, 2}}});
  Refresh();
  // One yuan more on 1000 shares of 进取 and on 200 of 稳健.
  EXPECT_EQ(strips[0]->Texts(), List({"36300.00", "1290.00", "1400.00", "4.01"}));
  EXPECT_EQ(strips[1]->Texts(), List({"34100.00", "1050.00", "1100.00", "3.33"}));
  Click(*portfolios, performance::kName, 1);
  EXPECT_EQ(strips[1]->Texts(), List({"2200.00", "240.00", "300.00", "15.79"}));
}

/// Counts what a widget draws.
class Paints : public QObject {
 public:
  explicit Paints(QWidget& of) : QObject(&of) { of.installEventFilter(this); }
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    count += event->type() == QEvent::Paint ? 1 : 0;
    return false;
  }
  int count = 0;
};

TEST_F(PerformanceSums, PricesThatChangeNothingDrawNothing) {
  OpenWithTwo();
  QTest::qWait(20);
  TotalsStrip* strip = Strips()[0];
  const auto& paints = *new Paints(*strip);
  bench.DeliverPrices(PricesOfThree());
  Refresh();
  QTest::qWait(20);
  EXPECT_EQ(paints.count, 0);
  bench.DeliverPrices({{QStringLiteral("600000"), {1100, 2}}});
  Refresh();
  QTest::qWait(20);
  EXPECT_GT(paints.count, 0);
}

TEST_F(PerformanceSums, AreNoRows) {
  OpenWithTwo();
  EXPECT_EQ(portfolios->RowCount(), 2);
  EXPECT_EQ(holdings->RowCount(), 3);
  for (const TStringGrid* grid : frame->CatalogueGrids()) {
    for (const QStringList& row : grid->ToGridText().rows) EXPECT_FALSE(row.contains(QStringLiteral("35100.00")));
  }
}

TEST_F(PerformanceSums, WhatIsLeftOutIsMarked) {
  bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 200, 1, 9.5}});
  bench.AddPortfolio(2, QStringLiteral("新股"), {{1600000, 100, 0.5, 9}, {1000002, 100, 0.5, 7}});
  Open();
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}, {QStringLiteral("000002"), {800, 2}}});
  Refresh();
  const auto strips = Strips();
  // 000002 has no previous close: 2000 - 1960 is left of the day for both, 1000 - 980 for the holdings.
  EXPECT_EQ(strips[0]->Texts(), List({"3800.00", "40.00", "300.00", "8.57"}));
  EXPECT_EQ(strips[1]->Texts(), List({"1800.00", "20.00", "200.00", "12.50"}));
  EXPECT_TRUE(HintOver(*strips[0], QStringLiteral("日盈亏(元)")).contains(QStringLiteral("“新股”缺少现价或昨收盘价")));
  EXPECT_TRUE(HintOver(*strips[1], QStringLiteral("日盈亏(元)")).contains(QStringLiteral("“万科A”缺少现价或昨收盘价")));
  EXPECT_EQ(HintOver(*strips[0], QStringLiteral("市值(元)")), QString());
}

TEST_F(PerformanceSums, AHoldingWithoutAPriceLeavesItsPortfolioOutOfTheGains) {
  AddTwo();
  Open();
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}, {QStringLiteral("000001"), {1200, 2}}});
  Refresh();
  const auto strips = Strips();
  // Without 600519 进取 is worth 16000 as far as known; only 稳健's 40 and 100 on 1900 are gains.
  EXPECT_EQ(strips[0]->Texts(), List({"18000.00", "40.00", "100.00", "5.26"}));
  EXPECT_TRUE(HintOver(*strips[0], QStringLiteral("市值(元)")).contains(QStringLiteral("“进取”有股票没有现价")));
  // Of the holdings those with prices count: 200 - 250, 1000 + 0 on 15000 paid.
  EXPECT_EQ(strips[1]->Texts(), List({"16000.00", "-50.00", "1000.00", "6.67"}));
}

TEST_F(PerformanceSums, WithoutPortfoliosOrPricesThereIsNothingToSum) {
  Open();
  EXPECT_EQ(Strips()[0]->Texts(), QStringList());
  AddTwo();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Strips()[0]->Texts(), QStringList()) << "no prices yet";
}

}  // namespace
}  // namespace holdwise::test
