#include <gtest/gtest.h>

#include <cmath>

#include "holdwise/market/risk_figures.h"
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
  for (const DayReturn& day : days) series.rows.push_back({day.date, 11, 10, day.value});
  return series;
}

IndexReturns Index(const std::vector<DayReturn>& days) {
  return ReturnsOf(Series(days));
}

void ExpectFigures(const RiskFigures& figures, double beta, double alpha, double treynor, double sharpe) {
  EXPECT_NEAR(figures.beta, beta, kTolerance);
  EXPECT_NEAR(figures.alpha, alpha, kTolerance);
  EXPECT_NEAR(figures.treynor, treynor, kTolerance);
  EXPECT_NEAR(figures.sharpe, sharpe, kTolerance);
}

TEST(RiskFigures, FollowTheirDefinitions) {
  // Index 0.01, -0.01, 0.03: mean 0.01, centred 0, -0.02, 0.02, squares 0.0008.
  // Security 0.02, 0, 0.07: mean 0.03, centred -0.01, -0.03, 0.04, squares 0.0026, products 0.0014.
  // Beta 0.0014 / 0.0008 = 1.75; alpha 0.03 - (0.002 + 1.75 x 0.008) = 0.014; Treynor 0.028 / 1.75 = 0.016;
  // Sharpe 0.028 / sqrt(0.0026 / 2).
  const IndexReturns index = Index({{20240102, 0.01}, {20240103, -0.01}, {20240104, 0.03}});
  const PeriodSeries security = Series({{20240102, 0.02}, {20240103, 0}, {20240104, 0.07}});
  ExpectFigures(ComputeRisk(security, index, 0.002), 1.75, 0.014, 0.016, 0.028 / std::sqrt(0.0013));
}

TEST(RiskFigures, OfTheIndexItselfAreThoseOfTheMarket) {
  // Mean 0.01, variance 0.0008 / 2.
  const std::vector<DayReturn> days = {{20240102, 0.01}, {20240103, -0.01}, {20240104, 0.03}};
  ExpectFigures(ComputeRisk(Series(days), Index(days), 0.001), 1, 0, 0.009, 0.009 / 0.02);
}

TEST(RiskFigures, OnlyTheIndexDaysCountAndAMissingOneIsZero) {
  // Of the security's days only the 3rd and the 5th count: 0, 0.06, 0, 0.02 with mean 0.02; centred -0.02, 0.04, -0.02,
  // 0; squares 0.0024. Index 0.02, 0.04, 0, -0.02 with mean 0.01; centred 0.01, 0.03, -0.01, -0.03; squares 0.002;
  // products -0.0002 + 0.0012 + 0.0002 = 0.0012. Beta 0.6; alpha 0.02 - 0.6 x 0.01.
  const IndexReturns index = Index({{20240102, 0.02}, {20240103, 0.04}, {20240104, 0}, {20240105, -0.02}});
  const PeriodSeries security =
      Series({{20231229, 9}, {20240101, 9}, {20240103, 0.06}, {20240105, 0.02}, {20240108, 9}});
  ExpectFigures(ComputeRisk(security, index, 0), 0.6, 0.014, 0.02 / 0.6, 0.02 / std::sqrt(0.0008));
}

TEST(RiskFigures, ZeroDivisorsGiveZero) {
  const IndexReturns moving = Index({{20240102, 0.01}, {20240103, -0.01}, {20240104, 0.03}});
  const IndexReturns still = Index({{20240102, 0.1}, {20240103, 0.1}, {20240104, 0.1}});
  const PeriodSeries security = Series({{20240102, 0.02}, {20240103, 0}, {20240104, 0.07}});
  const PeriodSeries constant = Series({{20240102, 0.1}, {20240103, 0.1}, {20240104, 0.1}});
  // Without beta alpha is the return above the risk-free rate: 0.03 - 0.001, 0.1 - 0.001, 0 - 0.001.
  ExpectFigures(ComputeRisk(security, still, 0.001), 0, 0.029, 0, 0.029 / std::sqrt(0.0013));
  ExpectFigures(ComputeRisk(constant, moving, 0.001), 0, 0.099, 0, 0);
  ExpectFigures(ComputeRisk({}, moving, 0.001), 0, -0.001, 0, 0);
}

TEST(RiskFigures, OfOneDayAndOfNone) {
  ExpectFigures(ComputeRisk(Series({{20240102, 0.02}}), Index({{20240102, 0.01}}), 0.001), 0, 0.019, 0, 0);
  EXPECT_EQ(ComputeRisk(Series({{20240102, 0.02}}), {}, 0.001), RiskFigures());
}

TEST(RiskFigures, ABarWithoutAPreviousCloseIsNoDayOfTheIndex) {
  PeriodSeries series = Series({{20240102, 0}, {20240103, 0.01}});
  series.rows.front().previousClose = 0;
  const IndexReturns index = ReturnsOf(series);
  EXPECT_EQ(index.dates, std::vector<int>{20240103});
  EXPECT_EQ(index.returns, std::vector<double>{0.01});
}

TEST(RiskFigures, TableHasOneRowASecurity) {
  // The view shows them as they stand: without the digits that only the arithmetic has left.
  const ResultSet table = RiskTable({{"000001", {1.5, -0.25, 0.01400000000000001, 2.0 / 3}}, {"600519", {}}});
  EXPECT_EQ(ResultSetToCsv(table),
            "code:text,beta:real,alpha:real,treynor:real,sharpe:real\n000001,1.5,-0.25,0.014,0.666666666667\n"
            "600519,0,0,0,0\n");
}

}  // namespace
}  // namespace holdwise
