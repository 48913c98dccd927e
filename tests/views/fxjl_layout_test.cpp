// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <numeric>

#include "views/fxjl/risk_layout.h"

// Expected figures were worked out by hand; each stands beside its arithmetic.

namespace holdwise::risk {
namespace {

TEST(RiskLayoutTest, ColumnsAreEqualSharesAndTheLastTakesTheRest) {
  // 1003 = 5 x 200 + 3 = 6 x 167 + 1
  EXPECT_EQ(WidthsOf(PortfolioTable(), 1003), std::vector<int>({200, 200, 200, 200, 203, 0}));
  EXPECT_EQ(WidthsOf(SecurityTable(), 1003), std::vector<int>({167, 167, 167, 167, 167, 168}));
  for (int width = 0; width < 2000; width += 7) {
    const auto portfolios = WidthsOf(PortfolioTable(), width);
    const auto securities = WidthsOf(SecurityTable(), width);
    EXPECT_EQ(portfolios.size(), static_cast<std::size_t>(kPortfolioColumns));
    EXPECT_EQ(securities.size(), static_cast<std::size_t>(kSecurityColumns));
    EXPECT_EQ(std::accumulate(portfolios.begin(), portfolios.end(), 0), width);
    EXPECT_EQ(std::accumulate(securities.begin(), securities.end(), 0), width);
  }
}

TEST(RiskLayoutTest, TitlesAreEleven) {
  EXPECT_EQ(TitlesOf(PortfolioTable()),
            QStringList({QStringLiteral("组合名称"), QStringLiteral("方差"), QStringLiteral("标准差"),
                         QStringLiteral("Alpha系数"), QStringLiteral("BETA系数")}));
  EXPECT_EQ(TitlesOf(SecurityTable()),
            QStringList({QStringLiteral("股票代码"), QStringLiteral("股票名称"), QStringLiteral("方差"),
                         QStringLiteral("标准差"), QStringLiteral("Alpha系数"), QStringLiteral("BETA系数")}));
}

TEST(RiskLayoutTest, EveryFigureIsDrawnWithSixDecimalsAndNothingElse) {
  const QStringList figures{QStringLiteral("方差"), QStringLiteral("标准差"), QStringLiteral("Alpha系数"),
                            QStringLiteral("BETA系数")};
  for (const ColumnTable& table : {PortfolioTable(), SecurityTable()}) {
    for (const Column& column : table) {
      EXPECT_EQ(column.decimals, figures.contains(column.title) ? 6 : TStringGrid::kWholeText)
          << column.title.toStdString();
    }
  }
}

TEST(RiskFiguresTest, HaveSixDecimals) {
  EXPECT_EQ(FigureText(0.00012345), QStringLiteral("0.000123"));
  EXPECT_EQ(FigureText(-0.0000126), QStringLiteral("-0.000013"));
  EXPECT_EQ(FigureText(-0.0000001), QStringLiteral("0.000000"));
  EXPECT_EQ(FigureText(1.5), QStringLiteral("1.500000"));
}

TEST(RiskFiguresTest, TheVarianceIsTheSquareOfTheUnroundedDeviation) {
  const auto texts = [](double deviation) {
    const DeviationTexts both = TextsOfDeviation(deviation);
    return QStringList({both.variance, both.deviation});
  };
  EXPECT_EQ(texts(0.001), QStringList({QStringLiteral("0.000001"), QStringLiteral("0.001000")}));
  // 0.0004 squared is 0.00000016.
  EXPECT_EQ(texts(0.0004), QStringList({QStringLiteral("0.000000"), QStringLiteral("0.000400")}));
  // 1.23456749 squared is 1.524156887; the shown 1.234567 squared would be 1.524155677.
  EXPECT_EQ(texts(1.23456749), QStringList({QStringLiteral("1.524157"), QStringLiteral("1.234567")}));
  EXPECT_EQ(texts(0), QStringList({QStringLiteral("0.000000"), QStringLiteral("0.000000")}));
}

}  // namespace
}  // namespace holdwise::risk
