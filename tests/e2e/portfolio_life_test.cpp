// SPDX-License-Identifier: MIT
// The life of a portfolio, with keys typed into the real terminal's window: picked together, confirmed, calculated,
// saved, followed, kept in the exchange files, and read back into a fresh database. Needs Xvfb and xdotool.
#include <gtest/gtest.h>

#include <QFile>
#include <QPoint>
#include <QStandardPaths>
#include <csignal>

#include "screen.h"

namespace holdwise::e2e {
namespace {

constexpr QPoint kNameField = {410, 147};  // of the window, which begins at the screen's corner

/// 600001 to 600005, whose last closes are 1.60 to 5.60, with the prices and quantities that are typed below.
struct Typed {
  const char* price;
  const char* quantity;
};
constexpr Typed kTyped[] = {{"1.60", "100"}, {"2", "200"}, {"3.5", "300"}, {"4.25", "400"}, {"5", "500"}};
// 160 + 520 + 1080 + 1840 + 2800, and less the cost of 160 + 400 + 1050 + 1700 + 2500.
constexpr const char* kValue = "6400.00";
constexpr const char* kGain = "590.00";

TEST(PortfolioLife, TypedSavedFollowedAndReadBack) {
  for (const char* program : {"Xvfb", "xdotool"})
    if (QStandardPaths::findExecutable(program).isEmpty()) GTEST_SKIP() << program << " is missing";
  const Screen screen;
  ASSERT_TRUE(screen.IsThere());
  Bench bench;
  {
    RunningTerminal running(bench.Arguments({"--address", "投资组合", "--parameter", "Skip自选配置"}),
                            screen.Environment());
    ASSERT_TRUE(running.WaitForWindow());
    ASSERT_TRUE(screen.Enter(QStringLiteral("Holdwise")));
    screen.Click(kNameField.x(), kNameField.y());
    screen.Type(QStringLiteral("life-1"));
    screen.Keys({"Return", "shift+Down", "shift+Down", "shift+Down", "shift+Down", "Return"});
    // The first quantity that is missing is opened.
    screen.Keys({"ctrl+Return"});
    ASSERT_TRUE(screen.Enter(QStringLiteral("提示")));
    screen.Keys({"Return"});
    ASSERT_TRUE(screen.IsGone(QStringLiteral("提示")));
    ASSERT_TRUE(screen.Enter(QStringLiteral("Holdwise")));
    for (const auto& [price, quantity] : kTyped) {
      if (price != kTyped[0].price) {
        screen.Type(QString::fromLatin1(price));
        screen.Keys({"Tab"});
      }
      screen.Type(QString::fromLatin1(quantity));
      if (price != kTyped[4].price) screen.Keys({"Tab"});
    }
    screen.Keys({"ctrl+Return"});
    QThread::sleep(2);
    ASSERT_TRUE(screen.IsGone(QStringLiteral("^投资组合$"))) << "the statistics have run";
    ASSERT_TRUE(screen.Enter(QStringLiteral("Holdwise")));
    screen.Keys({"Tab", "Tab", "Tab", "F4"});
    ASSERT_TRUE(screen.Enter(QStringLiteral("提示")));
    screen.Keys({"Return"});
    ASSERT_TRUE(screen.IsGone(QStringLiteral("提示")));
    EXPECT_GE(running.Signal(SIGTERM), 0);
  }
  const auto expect = [](const std::vector<QStringList>& rows) {
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0][0], QStringLiteral("life-1"));
    EXPECT_EQ(rows[0][2], QString::fromLatin1(kValue));
    EXPECT_EQ(rows[0][6], QString::fromLatin1(kGain));
  };
  expect(bench.Export(QStringLiteral("2001-strngrd")));
  const Bench fresh;
  QDir().mkpath(fresh.Work());
  for (const char* file : {"/TZZHMerge.dat", "/TZZHDetail.dat"}) {
    ASSERT_TRUE(QFile::copy(bench.Work() + file, fresh.Work() + file)) << file;
  }
  expect(fresh.Export(QStringLiteral("2001-strngrd")));
}

}  // namespace
}  // namespace holdwise::e2e
