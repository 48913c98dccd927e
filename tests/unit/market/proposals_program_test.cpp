// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "market_files.h"
#include "market_program.h"

// The proposals of the real program against numpy: stock pool, capital limits, figures, weights, what can be bought.

namespace holdwise {
namespace {

using test::MarketFiles;

struct Expected {
  QString date = QStringLiteral("-");
  int leastReturns = 200;
  int poolSize = 300;
  QString yearRate;
};

void ExpectProposals(const QString& source, const QString& data, const Expected& expected) {
  const Result checked =
      Execute(kPython, {Script("check_proposals.py"), source, data, expected.date, QStringLiteral("250"),
                        QString::number(expected.leastReturns), QString::number(expected.poolSize), expected.yearRate});
  EXPECT_EQ(checked.exitCode, 0) << checked.error.constData();
  EXPECT_TRUE(checked.out.contains(" values, worst relative difference ")) << checked.out.constData();
  testing::Test::RecordProperty("check", checked.out.trimmed().toStdString());
}

class RealProposals : public testing::TestWithParam<const char*> {};

TEST_P(RealProposals, AreNumpys) {
  const QString source = qEnvironmentVariable("HOLDWISE_MARKET_DATA");
  if (source.isEmpty()) GTEST_SKIP() << "no real bars at hand";
  const QString date = QString::fromUtf8(GetParam());
  const MarketFiles files;
  QStringList arguments = BuildArguments(source, files.Path(QStringLiteral("data")));
  if (date != QStringLiteral("-")) arguments << QStringLiteral("--date") << date;
  const Result built = RunProgram(arguments);
  ASSERT_EQ(built.exitCode, 0) << built.error.constData();
  EXPECT_TRUE(built.out.contains("候选组合：45\n")) << built.out.constData();
  ExpectProposals(source, files.Path(QStringLiteral("data")), {.date = date, .yearRate = QStringLiteral("1.5")});
}

INSTANTIATE_TEST_SUITE_P(Dates, RealProposals, testing::Values("-", "2025-01-15", "2025-06-30"));

// All boards, suspended and late stocks, and more than the pool takes.
TEST(SimulatedProposals, AreNumpys) {
  const MarketFiles files;
  const QString source = files.Path(QStringLiteral("market"));
  ASSERT_EQ(RunProgram(SimulateArguments(source, 400, 300, 3)).exitCode, 0);
  QStringList arguments = BuildArguments(source, files.Path(QStringLiteral("data")));
  arguments << QStringLiteral("--estimates") << source + QStringLiteral("/estimates.csv");
  arguments << QStringLiteral("--simulated") << QStringLiteral("--rates")
            << source + QStringLiteral("/deposit_rates.csv") << QStringLiteral("--pool-size") << QStringLiteral("150");
  const Result built = RunProgram(arguments);
  ASSERT_EQ(built.exitCode, 0) << built.error.constData();
  EXPECT_TRUE(built.out.contains("\n股票池 150 只，未收：科创板 ")) << built.out.constData();
  EXPECT_FALSE(built.out.contains("没有估值")) << built.out.constData();
  ExpectProposals(source, files.Path(QStringLiteral("data")), {.poolSize = 150, .yearRate = QStringLiteral("1.35")});
}

// Stocks with holes and no volumes, industries or betas.
TEST(MadeUpProposals, AreNumpys) {
  const MarketFiles files;
  const QString source = files.Path(QStringLiteral("source"));
  ASSERT_EQ(Execute(kPython, {Script("made_up_market.py"), QStringLiteral("write"), source, QStringLiteral("2"),
                              QStringLiteral("200")})
                .exitCode,
            0);
  QStringList arguments = BuildArguments(source, files.Path(QStringLiteral("data")));
  arguments << QStringLiteral("--rates") << source + QStringLiteral("/rates.csv") << QStringLiteral("--pool-returns")
            << QStringLiteral("120") << QStringLiteral("--pool-size") << QStringLiteral("60");
  const Result built = RunProgram(arguments);
  ASSERT_EQ(built.exitCode, 0) << built.error.constData();
  EXPECT_TRUE(built.out.contains("行情没有成交量，无法比较成交额")) << built.out.constData();
  EXPECT_TRUE(built.out.contains("10 只股票的组合里没有稳进型、平衡型、进取型")) << built.out.constData();
  ExpectProposals(source, files.Path(QStringLiteral("data")),
                  {.leastReturns = 120, .poolSize = 60, .yearRate = QStringLiteral("1.75")});
}

}  // namespace
}  // namespace holdwise
