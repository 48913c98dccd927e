// SPDX-License-Identifier: MIT
#include "common/series/stress_arithmetic.h"

#include <gtest/gtest.h>

namespace holdwise::stress {
namespace {

/// Beta 0.5 at +20 %, previous close 12.50, 500 shares bought at 12.00 that are a quarter of the portfolio, by hand.
TEST(StressArithmetic, AHolding) {
  const Holding holding{500, 12.0, 0.25};
  const double change = ExpectedChange(0.5, 0.2);
  EXPECT_DOUBLE_EQ(change, 0.1);
  EXPECT_DOUBLE_EQ(ExpectedPrice(change, 12.5), 13.75);
  // 0.50 x 500 up to now, 1.25 x 500 by the change
  EXPECT_DOUBLE_EQ(ExpectedProfit(holding, change, 12.5), 875);
}

TEST(StressArithmetic, WithoutAMoveThePriceIsThePreviousClose) {
  for (const double beta : {-1.5, 0.0, 0.7, 3.0}) {
    EXPECT_EQ(ExpectedChange(beta, 0), 0);
    EXPECT_EQ(ExpectedPrice(ExpectedChange(beta, 0), 11.25), 11.25);
  }
}

TEST(StressArithmetic, AMoveThatLeavesNothingIsRefusedAtTheEdgeToo) {
  EXPECT_TRUE(IsWipedOut(ExpectedChange(1, -1)));
  EXPECT_FALSE(IsWipedOut(ExpectedChange(1, -0.5)));
  EXPECT_EQ(ExpectedPrice(ExpectedChange(1, -0.5), 30), 15);
  EXPECT_TRUE(IsWipedOut(ExpectedChange(2, -0.5)));
  EXPECT_FALSE(IsWipedOut(ExpectedChange(2, -0.499)));
  EXPECT_TRUE(IsWipedOut(ExpectedChange(-0.5, 2))) << "a negative beta falls when the index rises";
  EXPECT_FALSE(IsWipedOut(ExpectedChange(0, -100)));
}

TEST(StressArithmetic, TotalsAddValueWeightedChangeAndProfit) {
  Totals totals;
  totals.Add({500, 12.0, 0.25}, 0.1, 13.75, 875);
  totals.Add({1000, 9.0, 0.75}, -0.2, 8, -1000);
  EXPECT_DOUBLE_EQ(totals.value, 6875 + 8000);
  EXPECT_DOUBLE_EQ(totals.change, 0.025 - 0.15);
  EXPECT_DOUBLE_EQ(totals.profit, -125);
}

TEST(StressArithmetic, AnIndexChangesAgainstAPositiveCloseOnly) {
  EXPECT_DOUBLE_EQ(IndexChange(3300, 3000), 0.1);
  EXPECT_DOUBLE_EQ(IndexChange(2700, 3000), -0.1);
  EXPECT_EQ(IndexChange(3000, 0), 0);
  EXPECT_EQ(IndexChange(3000, -1), 0);
}

}  // namespace
}  // namespace holdwise::stress
