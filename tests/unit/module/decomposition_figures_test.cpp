// SPDX-License-Identifier: MIT
#include "views/yjfj/decomposition_figures.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "holdwise/packet/number_text.h"

namespace holdwise::decomposition {
namespace {

/// rf 2.25 %, beta 1.2, deviations 0.02 and 0.025, index from 2000 to 2200, 100000 that became 112000.
RowInput Example() {
  return {.riskFreePercent = 2.25,
          .beta = 1.2,
          .deviation = 0.02,
          .marketDeviation = 0.025,
          .indexAtPurchase = 2000,
          .indexNow = 2200,
          .value = 112000,
          .cost = 100000};
}

QStringList TextsOfRow(const RowInput& row) {
  const auto inputs = InputsOf(row);
  if (!inputs) return {};
  const Texts texts = TextsOf(Decompose(*inputs));
  return {texts.total, texts.excess, texts.riskPremium, texts.selection, texts.diversification, texts.netSelection};
}

// The expected texts were worked out by hand; the arithmetic stands beside them.

TEST(Decomposition, SplitsTheReturn) {
  // Rm = 0.1, R = 0.12, A = 0.0225 + 0.0775 x 0.8 = 0.0845, B = 0.0225 + 0.0775 x 1.2 = 0.1155: R - rf = 0.0975,
  // A - B = -0.031, R - A = 0.0355; 3.55 - 3.10 = 0.45; 9.75 - 0.45 = 9.30.
  EXPECT_EQ(TextsOfRow(Example()), (QStringList{"12.00", "9.75", "9.30", "0.45", "-3.10", "3.55"}));
}

TEST(Decomposition, ThePartsAreThoseOfTheFormulas) {
  const Parts parts = Decompose({.portfolioReturn = 0.12,
                                 .riskFree = 0.0225,
                                 .marketReturn = 0.1,
                                 .beta = 1.2,
                                 .deviation = 0.02,
                                 .marketDeviation = 0.025});
  EXPECT_DOUBLE_EQ(parts.total, 0.12);
  EXPECT_NEAR(parts.excess, 0.0975, 1e-15);
  EXPECT_NEAR(parts.riskPremium, 0.093, 1e-15);
  EXPECT_NEAR(parts.selection, 0.0045, 1e-15);
  EXPECT_NEAR(parts.diversification, -0.031, 1e-15);
  EXPECT_NEAR(parts.netSelection, 0.0355, 1e-15);
}

TEST(Decomposition, WithoutACostTheReturnIsNothing) {
  RowInput row = Example();
  row.cost = 0;
  // R = 0: -2.25; A and B as before: 0.0845 - 0.1155; 0 - 0.0845; -8.45 - 3.10; -2.25 + 11.55
  EXPECT_EQ(TextsOfRow(row), (QStringList{"0.00", "-2.25", "9.30", "-11.55", "-3.10", "-8.45"}));
}

TEST(Decomposition, WithoutAnIndexLevelAtThePurchaseTheMarketHasDoubled) {
  RowInput row = Example();
  row.indexAtPurchase = 0;
  // Rm = 1: A = 0.0225 + 0.9775 x 0.8 = 0.8045, B = 0.0225 + 0.9775 x 1.2 = 1.1955: A - B = -0.391, R - A = -0.6845;
  // -68.45 - 39.10 = -107.55; 9.75 + 107.55 = 117.30
  EXPECT_EQ(TextsOfRow(row), (QStringList{"12.00", "9.75", "117.30", "-107.55", "-39.10", "-68.45"}));
}

TEST(Decomposition, WithoutAMarketDeviationThePortfoliosIsDividedByOne) {
  RowInput row = Example();
  row.marketDeviation = 0;
  row.deviation = 0.04;
  // A = 0.0225 + 0.0775 x 0.04 = 0.0256: A - B = -0.0899, R - A = 0.0944; 9.44 - 8.99 = 0.45; 9.75 - 0.45 = 9.30
  EXPECT_EQ(TextsOfRow(row), (QStringList{"12.00", "9.75", "9.30", "0.45", "-8.99", "9.44"}));
}

TEST(Decomposition, WithoutAValueThereIsNone) {
  RowInput row = Example();
  row.value = 0;
  EXPECT_FALSE(InputsOf(row));
}

TEST(Decomposition, TheRateIsTakenAsItIsWhateverTheTimeSinceThePurchase) {
  const auto inputs = InputsOf(Example());
  ASSERT_TRUE(inputs);
  EXPECT_DOUBLE_EQ(inputs->riskFree, 0.0225);
}

/// Hundredths of a text with exactly two decimals.
std::int64_t Hundredths(const QString& text) {
  EXPECT_EQ(text[text.size() - 3], QLatin1Char('.')) << text.toStdString();
  QString digits = text;
  return IntegerOr(digits.remove(text.size() - 3, 1), INT64_MIN);
}

TEST(Decomposition, ThePrintedPartsAlwaysAddUp) {
  std::mt19937_64 random(20240529);
  std::uniform_real_distribution<double> rate(0, 12), beta(-1, 3), deviation(0, 0.09), level(500, 6500), yuan(1, 1e8);
  int neverExact = 0;
  for (int turn = 0; turn < 100000; ++turn) {
    const RowInput row{.riskFreePercent = std::round(rate(random) * 100) / 100,
                       .beta = beta(random),
                       .deviation = deviation(random),
                       .marketDeviation = turn % 10 == 0 ? 0 : deviation(random),
                       .indexAtPurchase = turn % 17 == 0 ? 0 : level(random),
                       .indexNow = level(random),
                       .value = yuan(random),
                       .cost = turn % 23 == 0 ? 0 : yuan(random)};
    const Texts texts = TextsOf(Decompose(*InputsOf(row)));
    const std::int64_t total = Hundredths(texts.total), excess = Hundredths(texts.excess);
    const std::int64_t premium = Hundredths(texts.riskPremium), selection = Hundredths(texts.selection);
    const std::int64_t diversification = Hundredths(texts.diversification), net = Hundredths(texts.netSelection);
    ASSERT_EQ(excess, premium + selection) << turn;
    ASSERT_EQ(selection, diversification + net) << turn;
    // The return and the rate are rounded by themselves.
    ASSERT_LE(std::abs(total - excess - std::llround(row.riskFreePercent * 100)), 1) << turn;
    // Rounding each part by itself would not add up every time: the property says something.
    const Parts parts = Decompose(*InputsOf(row));
    neverExact += Hundredths(FormatFixed(parts.selection * 100, 2)) != selection ? 1 : 0;
  }
  EXPECT_GT(neverExact, 1000);
}

// A published case: 24 months of a portfolio and its benchmark.

struct Months {
  std::vector<double> portfolio, benchmark;  ///< fractions
};

Months ReadMonths(const QString& path) {
  Months months;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return months;
  file.readLine();
  while (!file.atEnd()) {
    const auto fields = QString::fromUtf8(file.readLine()).trimmed().split(QLatin1Char(','));
    if (fields.size() != 3) continue;
    months.portfolio.push_back(RealOr(fields[1]) / 100);
    months.benchmark.push_back(RealOr(fields[2]) / 100);
  }
  return months;
}

double Annualised(const std::vector<double>& months) {
  double growth = 1;
  for (const double month : months) growth *= 1 + month;
  return std::pow(growth, 12.0 / static_cast<double>(months.size())) - 1;
}

double Covariance(const std::vector<double>& a, const std::vector<double>& b) {
  double sumA = 0, sumB = 0, products = 0;
  for (std::size_t i = 0; i < a.size(); ++i) sumA += a[i], sumB += b[i];
  const auto count = static_cast<double>(a.size());
  for (std::size_t i = 0; i < a.size(); ++i) products += (a[i] - sumA / count) * (b[i] - sumB / count);
  return products / (count - 1);
}

/// A figure as books print it: cut, not rounded.
double Cut(double value, int decimals) {
  const double power = std::pow(10, decimals);
  return std::trunc(value * power) / power;
}

TEST(Decomposition, GivesThePublishedFiguresOfAFund) {
  const QString data = qEnvironmentVariable("HOLDWISE_MARKET_DATA");
  const QString path = QFileInfo(data).path() + QStringLiteral("/reference/fama.csv");
  if (data.isEmpty() || !QFile::exists(path)) GTEST_SKIP() << "no reference figures";
  const Months months = ReadMonths(path);
  ASSERT_EQ(months.portfolio.size(), 24U);
  const double variance = Covariance(months.benchmark, months.benchmark);
  const Inputs inputs{.portfolioReturn = Annualised(months.portfolio),
                      .riskFree = 0,
                      .marketReturn = Annualised(months.benchmark),
                      .beta = Covariance(months.portfolio, months.benchmark) / variance,
                      .deviation = std::sqrt(Covariance(months.portfolio, months.portfolio)),
                      .marketDeviation = std::sqrt(variance)};
  const Parts parts = Decompose(inputs);
  EXPECT_DOUBLE_EQ(Cut(inputs.deviation / inputs.marketDeviation, 2), 1.03);
  EXPECT_DOUBLE_EQ(Cut(parts.selection, 4), -0.0141);
  EXPECT_DOUBLE_EQ(Cut(parts.netSelection, 3), -0.017);
  EXPECT_NEAR(parts.selection - parts.diversification, parts.netSelection, 1e-15);
}

}  // namespace
}  // namespace holdwise::decomposition
