// SPDX-License-Identifier: MIT
#include "views/ylcs/stress_figures.h"

#include <gtest/gtest.h>

namespace holdwise::stress {
namespace {

TEST(StressFigures, TheRateOfReturnHasFourDecimalsAndTwoWithoutCost) {
  EXPECT_EQ(ReturnRateText(50, 33000), QStringLiteral("0.1515"));
  EXPECT_EQ(ReturnRateText(-1, 3), QStringLiteral("-33.3333"));
  EXPECT_EQ(ReturnRateText(0, 3), QStringLiteral("0.0000"));
  EXPECT_EQ(ReturnRateText(5, 0), QStringLiteral("0.00"));
}

/// Every percentage with two decimals comes back from the fraction as it was typed.
TEST(StressFigures, AMoveComesBackAsItWasTyped) {
  for (int hundredths = -30000; hundredths <= 30000; ++hundredths) {
    const int whole = std::abs(hundredths) / 100;
    const int part = std::abs(hundredths) % 100;
    QString typed = hundredths < 0 ? QStringLiteral("-") : QString();
    typed += QString::number(whole);
    if (part != 0)
      typed += part % 10 == 0 ? QStringLiteral(".%1").arg(part / 10)
                              : QStringLiteral(".%1").arg(part, 2, 10, QLatin1Char('0'));
    ASSERT_EQ(PercentText(typed.toDouble() / 100), typed);
  }
}

TEST(StressFigures, OnlyWhatCanBeTypedIsAMove) {
  for (const char* text : {"0", "-10", "5.5", ".5", "-.5", "5.", "123456789012"})
    EXPECT_TRUE(IsMove(QString::fromUtf8(text))) << text;
  for (const char* text : {"", "-", ".", "1e2", "+5", "1.2.3", "--5", " 5", "５", "nan", "1234567890123"})
    EXPECT_FALSE(IsMove(QString::fromUtf8(text))) << text;
}

TEST(StressFigures, AScenarioNamesIndexAndMove) {
  EXPECT_EQ(ScenarioText(IT_HuShen, -0.1), QStringLiteral("沪深300 -10%"));
  EXPECT_EQ(ScenarioText(IT_ShangHai, 0), QStringLiteral("上证指数 0%"));
}

}  // namespace
}  // namespace holdwise::stress
