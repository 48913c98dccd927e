// SPDX-License-Identifier: MIT
#include "views/zhbx/performance_figures.h"

#include <gtest/gtest.h>

#include <numeric>

#include "views/zhbx/performance_layout.h"

// Expected figures were worked out by hand; each stands beside its arithmetic.

namespace holdwise {
namespace {

QStringList Texts(const HoldingFigures& figures) {
  return {figures.price, figures.change,  figures.dayContribution, figures.weekContribution, figures.monthContribution,
          figures.gain,  figures.gainRate};
}

QStringList List(std::initializer_list<const char*> texts) {
  QStringList list;
  for (const char* text : texts) list << QString::fromUtf8(text);
  return list;
}

TEST(HoldingFiguresTest, EveryFigureFollowsFromPriceAndBase) {
  // (10 - 9.8) / 9.8 = 2.0408 %; 0.2 x 1000; 0.5 x 1000; 1 x 1000; 1 x 1000; 1 / 9 = 11.11 %
  const auto figures = FiguresOf(HoldingInput{10, 9.8, 9.5, 9, 9, 1000});
  ASSERT_TRUE(figures);
  EXPECT_EQ(Texts(*figures), List({"10.00", "2.04", "200.00", "500.00", "1000.00", "1000.00", "11.11"}));
}

TEST(HoldingFiguresTest, LossesCarryTheirSign) {
  // -0.5 / 12.5 = -4 %; -0.5 x 500; -1 x 500; -3 x 500; -2.4 x 500; -2.4 / 14.4 = -16.67 %
  const auto figures = FiguresOf(HoldingInput{12, 12.5, 13, 15, 14.4, 500});
  ASSERT_TRUE(figures);
  EXPECT_EQ(Texts(*figures), List({"12.00", "-4.00", "-250.00", "-500.00", "-1500.00", "-1200.00", "-16.67"}));
}

TEST(HoldingFiguresTest, WithoutAPriceThereAreNone) {
  EXPECT_FALSE(FiguresOf(HoldingInput{0, 9.8, 9.5, 9, 9, 1000}));
}

TEST(HoldingFiguresTest, ZeroBasesGiveThePlainZeroExceptForTheGain) {
  // Without a buy price the gain is 8 x 300.
  const auto figures = FiguresOf(HoldingInput{8, 0, 0, 0, 0, 300});
  ASSERT_TRUE(figures);
  EXPECT_EQ(Texts(*figures), List({"8.00", "0", "0", "0", "0", "2400.00", "0"}));
}

TEST(HoldingFiguresTest, NothingHeldContributesNothing) {
  const auto figures = FiguresOf(HoldingInput{8, 7, 6, 5, 4, 0});
  ASSERT_TRUE(figures);
  EXPECT_EQ(figures->dayContribution, QStringLiteral("0.00"));
  EXPECT_EQ(figures->weekContribution, QStringLiteral("0.00"));
  EXPECT_EQ(figures->gain, QStringLiteral("0.00"));
}

TEST(PortfolioFiguresTest, EveryChangeHasItsOwnBase) {
  // 50 / 33050 = 0.1513 %; 7100 / 26000 = 27.3077 %; 24100 / 9000 = 267.7778 %; 100 / 33000 = 0.3030 %
  const auto figures = FiguresOf(PortfolioInput{33100, 33050, 26000, 9000, 33000});
  ASSERT_TRUE(figures);
  EXPECT_EQ(figures->value, QStringLiteral("33100.00"));
  EXPECT_EQ(figures->dayChange, QStringLiteral("0.15"));
  EXPECT_EQ(figures->weekChange, QStringLiteral("27.31"));
  EXPECT_EQ(figures->monthChange, QStringLiteral("267.78"));
  EXPECT_EQ(figures->gain, QStringLiteral("100.00"));
  EXPECT_EQ(figures->gainRate, QStringLiteral("0.30"));
}

TEST(PortfolioFiguresTest, ZeroBasesGiveThePlainZeroButNoGainRate) {
  const auto figures = FiguresOf(PortfolioInput{5000, 0, 0, 0, 0});
  ASSERT_TRUE(figures);
  EXPECT_EQ(figures->dayChange, QStringLiteral("0"));
  EXPECT_EQ(figures->weekChange, QStringLiteral("0"));
  EXPECT_EQ(figures->monthChange, QStringLiteral("0"));
  EXPECT_EQ(figures->gain, QStringLiteral("5000.00"));
  EXPECT_FALSE(figures->gainRate);
}

TEST(PortfolioFiguresTest, WithoutAValueThereAreNone) {
  EXPECT_FALSE(FiguresOf(PortfolioInput{0, 1, 1, 1, 1}));
}

TEST(WeightTextTest, IsThePercentageOfTheFraction) {
  EXPECT_EQ(WeightText(0.3333), QStringLiteral("33.33"));
  EXPECT_EQ(WeightText(1), QStringLiteral("100.00"));
  EXPECT_EQ(WeightText(0), QStringLiteral("0.00"));
}

TEST(PerformanceLayoutTest, PortfolioColumnsFillTheWidth) {
  // 1000 = 9 x 111 + 1
  EXPECT_EQ(WidthsOf(performance::PortfolioTable(), 1000),
            std::vector<int>({141, 111, 111, 111, 111, 111, 111, 111, 82, 0}));
  for (int width = 200; width < 2000; width += 7) {
    const auto widths = WidthsOf(performance::PortfolioTable(), width);
    EXPECT_EQ(std::accumulate(widths.begin(), widths.end(), 0), width);
  }
}

TEST(PerformanceLayoutTest, HoldingColumnsExceedTheWidthByTheirAdditions) {
  // 1000 = 12 x 83 + 4; the additions are -10 + 16 - 5 + 5 + 10 = 16.
  EXPECT_EQ(WidthsOf(performance::HoldingTable(), 1000),
            std::vector<int>({73, 83, 99, 83, 78, 83, 83, 83, 83, 83, 88, 97, 0, 0, 0}));
  for (int width = 200; width < 2000; width += 7) {
    const auto widths = WidthsOf(performance::HoldingTable(), width);
    EXPECT_EQ(std::accumulate(widths.begin(), widths.end(), 0), width + 16);
  }
}

TEST(PerformanceLayoutTest, TitlesAreTwentyOne) {
  EXPECT_EQ(TitlesOf(performance::PortfolioTable()).size(), 9);
  EXPECT_EQ(TitlesOf(performance::HoldingTable()).size(), 12);
}

}  // namespace
}  // namespace holdwise
