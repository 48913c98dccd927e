// SPDX-License-Identifier: MIT
#include "views/ztpj/evaluation_figures.h"

#include <gtest/gtest.h>

// Expected figures were worked out by hand; each stands beside its arithmetic.

namespace holdwise::evaluation {
namespace {

TEST(EvaluationFigures, TheReturnAndWhatIsAboveTheRate) {
  const auto texts = LiveTextsOf(10.50, 10.00, QStringLiteral("2.25"));
  ASSERT_TRUE(texts);
  EXPECT_EQ(texts->gain, "5.00") << "0.5 / 10";
  EXPECT_EQ(texts->excess, "2.75") << "5.00 - 2.25";
}

TEST(EvaluationFigures, WithoutABaseTheReturnIsThePlainZeroAndTheExcessMinusTheRate) {
  const auto texts = LiveTextsOf(10.50, 0, QStringLiteral("2.25"));
  ASSERT_TRUE(texts);
  EXPECT_EQ(texts->gain, "0");
  EXPECT_EQ(texts->excess, "-2.25");
}

TEST(EvaluationFigures, WithoutAPriceThereAreNone) {
  EXPECT_FALSE(LiveTextsOf(0, 10, QStringLiteral("2.25")));
}

TEST(EvaluationFigures, TheExcessIsTheDifferenceOfWhatIsPrinted) {
  // 1 / 3 = 33.333... %: printed 33.33; 33.33 - 1.50 = 31.83. -1 / 3: -33.33 - 1.50 = -34.83.
  EXPECT_EQ(LiveTextsOf(4, 3, QStringLiteral("1.50"))->excess, "31.83");
  EXPECT_EQ(LiveTextsOf(2, 3, QStringLiteral("1.50"))->excess, "-34.83");
  // 66.666... % is printed 66.67; what is not printed is not in the difference: 66.67 - 66.67 = 0.
  EXPECT_EQ(LiveTextsOf(5, 3, QStringLiteral("66.67"))->excess, "0.00");
}

TEST(EvaluationFigures, ARateThatIsNoNumberCountsNothing) {
  EXPECT_EQ(LiveTextsOf(11, 10, QString())->excess, "10.00");
  EXPECT_EQ(LiveTextsOf(11, 10, QStringLiteral("x"))->excess, "10.00");
}

TEST(EvaluationFigures, TheRateIsShownAsItIsStored) {
  EXPECT_EQ(RateText(1.5), "1.50");
  EXPECT_EQ(RateText(0), "0.00");
  EXPECT_EQ(FigureText(-0.0000126), "-0.000013");
}

}  // namespace
}  // namespace holdwise::evaluation
