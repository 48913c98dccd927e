// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "holdwise/market/statistics.h"
#include "holdwise/packet/csv_result_set.h"
#include "holdwise/packet/packet_file.h"

// Expected figures were worked out by hand; each stands beside its arithmetic.

namespace holdwise {
namespace {

constexpr double kTolerance = 1e-13;

struct DayReturn {
  int date;
  double value;
};

PeriodSeries Series(const std::vector<DayReturn>& days) {
  PeriodSeries series;
  for (const DayReturn& day : days) series.push_back({day.date, day.date, 11, 10, day.value});
  return series;
}

IndexReturns Index(const std::vector<DayReturn>& days) {
  return ReturnsOf(Series(days));
}

void ExpectFigures(const Figures& figures, double beta, double alpha, double treynor, double sharpe) {
  EXPECT_NEAR(figures.beta, beta, kTolerance);
  EXPECT_NEAR(figures.alpha, alpha, kTolerance);
  EXPECT_NEAR(figures.treynor, treynor, kTolerance);
  EXPECT_NEAR(figures.sharpe, sharpe, kTolerance);
}

TEST(Figures, FollowTheirDefinitions) {
  // Index 0.01, -0.01, 0.03: mean 0.01, centred 0, -0.02, 0.02, squares 0.0008.
  // Security 0.02, 0, 0.07: mean 0.03, centred -0.01, -0.03, 0.04, squares 0.0026, products 0.0014.
  // Beta 0.0014 / 0.0008 = 1.75; alpha 0.03 - (0.002 + 1.75 x 0.008) = 0.014; Treynor 0.028 / 1.75 = 0.016;
  // Sharpe 0.028 / sqrt(0.0026 / 2).
  const IndexReturns index = Index({{20240102, 0.01}, {20240103, -0.01}, {20240104, 0.03}});
  const PeriodSeries security = Series({{20240102, 0.02}, {20240103, 0}, {20240104, 0.07}});
  ExpectFigures(ComputeFigures(security, index, 0.002), 1.75, 0.014, 0.016, 0.028 / std::sqrt(0.0013));
}

TEST(Figures, OfTheIndexItselfAreThoseOfTheMarket) {
  // Mean 0.01, variance 0.0008 / 2.
  const std::vector<DayReturn> days = {{20240102, 0.01}, {20240103, -0.01}, {20240104, 0.03}};
  ExpectFigures(ComputeFigures(Series(days), Index(days), 0.001), 1, 0, 0.009, 0.009 / 0.02);
}

TEST(Figures, OnlyTheIndexDaysCountAndAMissingOneIsZero) {
  // Of the security's days only the 3rd and the 5th count: 0, 0.06, 0, 0.02 with mean 0.02; centred -0.02, 0.04, -0.02,
  // 0; squares 0.0024. Index 0.02, 0.04, 0, -0.02 with mean 0.01; centred 0.01, 0.03, -0.01, -0.03; squares 0.002;
  // products -0.0002 + 0.0012 + 0.0002 = 0.0012. Beta 0.6; alpha 0.02 - 0.6 x 0.01.
  const IndexReturns index = Index({{20240102, 0.02}, {20240103, 0.04}, {20240104, 0}, {20240105, -0.02}});
  const PeriodSeries security =
      Series({{20231229, 9}, {20240101, 9}, {20240103, 0.06}, {20240105, 0.02}, {20240108, 9}});
  ExpectFigures(ComputeFigures(security, index, 0), 0.6, 0.014, 0.02 / 0.6, 0.02 / std::sqrt(0.0008));
}

TEST(Figures, DaysBeforeTheFirstReturnDoNotCount) {
  // First bar on the 3rd, first return on the 4th: 0.02, 0 (no bar), 0.04 with mean 0.02, centred 0, -0.02, 0.02,
  // squares 0.0008. Index of these days 0.01, 0.04, 0.01 with mean 0.02, centred -0.01, 0.02, -0.01, squares 0.0006;
  // products -0.0004 - 0.0002. Beta -1; alpha 0.02 - 0.01 + 0.01 with 0.01 a day without risk.
  const IndexReturns index =
      Index({{20240102, 9}, {20240103, 9}, {20240104, 0.01}, {20240105, 0.04}, {20240108, 0.01}});
  PeriodSeries security = Series({{20240103, 0}, {20240104, 0.02}, {20240108, 0.04}});
  security.front().previousClose = 0;
  const Figures figures = ComputeFigures(security, index, 0.01);
  ExpectFigures(figures, -1, 0.02, -0.01, 0.01 / 0.02);
  EXPECT_EQ(figures.count, 3);
  EXPECT_NEAR(figures.meanReturn, 0.02, kTolerance);
  EXPECT_NEAR(figures.variance, 0.0004, kTolerance);
  EXPECT_NEAR(figures.deviation, 0.02, kTolerance);
}

TEST(Figures, AWeekOrMonthWithoutABarIsZeroToo) {
  // Weeks ending 2024-03-08, -15, -22, -29; the stock has none in the second, and its bar of the third on a Tuesday.
  const Bar market[] = {{20240229, 10}, {20240308, 11}, {20240315, 11}, {20240322, 22}, {20240329, 11}};
  const Bar stock[] = {{20240229, 10}, {20240307, 12}, {20240319, 18}, {20240329, 9}};
  const Window window{20240304, 20240329};
  const MarketReturns index = ReturnsOf(market, window);
  // Returns 0.2, 0, 0.5, -0.5: mean 0.05; centred 0.15, -0.05, 0.45, -0.55, squares 0.53.
  const Figures weeks = ComputeFigures(ComputeSeries(stock, PeriodType::Week, window), index[1]);
  EXPECT_EQ(weeks.count, 4);
  EXPECT_NEAR(weeks.meanReturn, 0.05, kTolerance);
  EXPECT_NEAR(weeks.variance, 0.53 / 3, kTolerance);
  // One month with a return: 9 / 10 - 1.
  const Figures months = ComputeFigures(ComputeSeries(stock, PeriodType::Month, window), index[2]);
  EXPECT_EQ(months.count, 1);
  EXPECT_NEAR(months.meanReturn, -0.1, kTolerance);
  EXPECT_EQ(months.deviation, 0);
}

TEST(Figures, ZeroDivisorsGiveZero) {
  const IndexReturns moving = Index({{20240102, 0.01}, {20240103, -0.01}, {20240104, 0.03}});
  const IndexReturns still = Index({{20240102, 0.1}, {20240103, 0.1}, {20240104, 0.1}});
  const PeriodSeries security = Series({{20240102, 0.02}, {20240103, 0}, {20240104, 0.07}});
  const PeriodSeries constant = Series({{20240102, 0.1}, {20240103, 0.1}, {20240104, 0.1}});
  // Without beta alpha is the return above the risk-free rate: 0.03 - 0.001, 0.1 - 0.001, 0 - 0.001.
  ExpectFigures(ComputeFigures(security, still, 0.001), 0, 0.029, 0, 0.029 / std::sqrt(0.0013));
  ExpectFigures(ComputeFigures(constant, moving, 0.001), 0, 0.099, 0, 0);
}

TEST(Figures, OfOneDayAndOfNone) {
  ExpectFigures(ComputeFigures(Series({{20240102, 0.02}}), Index({{20240102, 0.01}}), 0.001), 0, 0.019, 0, 0);
  EXPECT_EQ(ComputeFigures(Series({{20240102, 0.02}}), {}, 0.001), Figures());
  const IndexReturns index = Index({{20240102, 0.01}, {20240103, 0.02}});
  EXPECT_EQ(ComputeFigures({}, index, 0.001), Figures());
  EXPECT_EQ(ComputeFigures(Series({{20240104, 0.02}}), index, 0.001), Figures()) << "first return behind the index";
  PeriodSeries listing = Series({{20240103, 0}});
  listing.front().previousClose = 0;
  EXPECT_EQ(ComputeFigures(listing, index, 0.001), Figures()) << "a first bar has no return";
}

TEST(Figures, ABarWithoutAPreviousCloseIsNoDayOfTheIndex) {
  PeriodSeries series = Series({{20240102, 0}, {20240103, 0.01}});
  series.front().previousClose = 0;
  const IndexReturns index = ReturnsOf(series);
  EXPECT_EQ(index.periods, std::vector<int>{20240103});
  EXPECT_EQ(index.returns, std::vector<double>{0.01});
}

TEST(Figures, TableHasOneRowASecurity) {
  // The view shows them as they stand: without the digits that only the arithmetic has left.
  const ResultSet table = RiskTable(
      {{"000001", {.beta = 1.5, .alpha = -0.25, .treynor = 0.01400000000000001, .sharpe = 2.0 / 3}}, {"600519", {}}});
  EXPECT_EQ(ResultSetToCsv(table),
            "code:text,beta:real,alpha:real,treynor:real,sharpe:real\n000001,1.5,-0.25,0.014,0.666666666667\n"
            "600519,0,0,0,0\n");
}

}  // namespace
}  // namespace holdwise
