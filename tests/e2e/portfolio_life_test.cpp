// SPDX-License-Identifier: MIT
// The life of a portfolio, with nothing but keys typed into the real terminal's window: picked together, confirmed,
// calculated, changed, saved, followed, kept in the exchange files, and read back into a fresh database. Needs Xvfb and
// xdotool.
#include <gtest/gtest.h>

#include <QFile>
#include <cmath>
#include <csignal>
#include <numeric>
#include <span>

#include "screen.h"

namespace holdwise::e2e {
namespace {

/// 600001 to 600005, whose last closes are 1.60 to 5.60, with the prices and quantities that are typed below.
struct Typed {
  const char* price;
  const char* quantity;
};
constexpr Typed kTyped[] = {{"1.60", "100"}, {"2", "200"}, {"3.5", "300"}, {"4.25", "400"}, {"5", "500"}};
constexpr double kCosts[] = {160, 400, 1050, 1700, 2500};
// Then the last quantity becomes 600: 160 + 520 + 1080 + 1840 + 3360, and less 160 + 400 + 1050 + 1700 + 3000.
constexpr const char* kChangedQuantity = "600";
constexpr double kChangedCosts[] = {160, 400, 1050, 1700, 3000};
constexpr const char* kValue = "6960.00";
constexpr const char* kGain = "650.00";

/// Beta and standard deviation from the bars as Market makes them: stock k closes at k + day / 100 on day 1 to 60, the
/// index at 3000 + day / 100.
struct Figures {
  double beta = 0;
  double deviation = 0;
};
Figures FiguresOf(std::span<const double> costs) {
  constexpr int kDays = 60;
  const auto returnOn = [](int day, double base) {
    const auto close = [base](int of) { return base + of / 100.0; };
    return close(day) / close(day - 1) - 1;
  };
  std::vector<double> portfolio;
  std::vector<double> market;
  for (int day = 2; day <= kDays; ++day) {
    double weighted = 0;
    for (std::size_t stock = 0; stock < costs.size(); ++stock)
      weighted += costs[stock] * returnOn(day, static_cast<double>(stock) + 1);
    portfolio.push_back(weighted / std::accumulate(costs.begin(), costs.end(), 0.0));
    market.push_back(returnOn(day, 3000));
  }
  const auto mean = [](const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
  };
  const auto covariance = [&mean](const std::vector<double>& a, const std::vector<double>& b) {
    double sum = 0;
    for (std::size_t day = 0; day < a.size(); ++day) sum += (a[day] - mean(a)) * (b[day] - mean(b));
    return sum / static_cast<double>(a.size() - 1);
  };
  return {covariance(portfolio, market) / covariance(market, market), std::sqrt(covariance(portfolio, portfolio))};
}

class PortfolioLife : public testing::Test {
 protected:
  /// The figures that the running terminal shows once it has all that it waits for; the rows without the heading.
  [[nodiscard]] std::vector<QStringList> Shown(const QString& grid) {
    const QString folder = bench_.File(QStringLiteral("shown%1").arg(++exports_));
    const Outcome outcome = RunTerminal(bench_.Arguments({"--export", folder}));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    std::vector<QStringList> rows = ReadCsv(folder + '/' + grid + QStringLiteral(".csv"));
    if (!rows.empty()) rows.erase(rows.begin());
    return rows;
  }
  void CloseNotice() const {
    ASSERT_TRUE(screen_.Enter(QStringLiteral("提示")));
    screen_.Keys({"Return"});
    ASSERT_TRUE(screen_.IsGone(QStringLiteral("提示")));
    ASSERT_TRUE(screen_.Enter(QStringLiteral("Holdwise")));
  }
  /// Named, five stocks picked, their prices and quantities typed, confirmed.
  void Make() const {
    screen_.Keys({"Tab", "Tab"});  // to the pages' tree, then to the name
    screen_.Type(QStringLiteral("life-1"));
    screen_.Keys({"Return", "shift+Down", "shift+Down", "shift+Down", "shift+Down", "Return"});
    // The first quantity that is missing is opened.
    screen_.Keys({"ctrl+Return"});
    ASSERT_NO_FATAL_FAILURE(CloseNotice());
    for (const auto& [price, quantity] : kTyped) {
      if (price != kTyped[0].price) {
        screen_.Type(QString::fromLatin1(price));
        screen_.Keys({"Tab"});
      }
      screen_.Type(QString::fromLatin1(quantity));
      if (price != kTyped[4].price) screen_.Keys({"Tab"});
    }
    screen_.Keys({"ctrl+Return"});
  }
  /// From the holdings, which have the focus after confirming, to the list; back with the portfolio; the last quantity.
  void Change() const {
    screen_.Keys({"Tab", "Tab", "Tab", "F2", "shift+Tab", "shift+Tab", "shift+Tab", "End", "Return", "Tab"});
    screen_.Type(QString::fromLatin1(kChangedQuantity));
    screen_.Keys({"ctrl+Return"});
  }
  static void ExpectFollowed(const std::vector<QStringList>& rows) {
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0][0], QStringLiteral("life-1"));
    EXPECT_EQ(rows[0][2], QString::fromLatin1(kValue));
    EXPECT_EQ(rows[0][6], QString::fromLatin1(kGain));
  }
  static void ExpectBeta(const std::vector<QStringList>& rows, int column, double beta) {
    ASSERT_EQ(rows.size(), 1U);
    // The index hardly moves: of a return's change from day to day six digits are left.
    EXPECT_NEAR(rows[0].value(column).toDouble() / beta, 1, 1e-4);
  }

  const Screen screen_;
  Bench bench_;
  int exports_ = 0;
};

TEST_F(PortfolioLife, TypedChangedSavedFollowedAndReadBack) {
  if (const QString program = MissingProgram(); !program.isEmpty())
    GTEST_SKIP() << program.toStdString() << " is missing";
  ASSERT_TRUE(screen_.IsThere());
  {
    RunningTerminal running(bench_.Arguments({"--address", "投资组合", "--parameter", "Skip自选配置"}),
                            screen_.Environment());
    ASSERT_TRUE(running.WaitForWindow());
    ASSERT_TRUE(screen_.Enter(QStringLiteral("Holdwise")));
    ASSERT_NO_FATAL_FAILURE(Make());
    ExpectBeta(Shown(QStringLiteral("1002-strngrd")), 6, FiguresOf(kCosts).beta);
    ASSERT_TRUE(screen_.Enter(QStringLiteral("Holdwise")));
    Change();
    ExpectBeta(Shown(QStringLiteral("1002-strngrd")), 6, FiguresOf(kChangedCosts).beta);
    ASSERT_TRUE(screen_.Enter(QStringLiteral("Holdwise")));
    screen_.Keys({"Tab", "Tab", "Tab", "F4"});
    ASSERT_NO_FATAL_FAILURE(CloseNotice());
    ExpectFollowed(Shown(QStringLiteral("2001-strngrd")));
    const auto risks = Shown(QStringLiteral("2002-strngrd"));
    ExpectBeta(risks, 4, FiguresOf(kChangedCosts).beta);
    EXPECT_NEAR(risks.at(0).value(2).toDouble(), FiguresOf(kChangedCosts).deviation, 5.1e-7) << "six decimals";
    EXPECT_GE(running.Signal(SIGTERM), 0);
  }
  ExpectFollowed(bench_.Export(QStringLiteral("2001-strngrd")));
  const Bench fresh;
  QDir().mkpath(fresh.Work());
  for (const char* file : {"/TZZHMerge.dat", "/TZZHDetail.dat"}) {
    ASSERT_TRUE(QFile::copy(bench_.Work() + file, fresh.Work() + file)) << file;
  }
  ExpectFollowed(fresh.Export(QStringLiteral("2001-strngrd")));
}

}  // namespace
}  // namespace holdwise::e2e
