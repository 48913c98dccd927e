// SPDX-License-Identifier: MIT
// The page of a security's day in the real terminal: what stays of the day after its end, and the way there and back.
#include <gtest/gtest.h>

#include <QDirIterator>
#include <QtEndian>
#include <algorithm>
#include <csignal>
#include <map>

#include "holdwise/packet/packet_file.h"
#include "screen.h"

namespace holdwise::e2e {
namespace {

constexpr int kHeaderBytes = 24, kRowBytes = 28, kFirstStock = 1600001;

/// Seconds of trading and prices in hundredths, read by the layout of the file alone.
using Days = std::map<int, std::vector<std::pair<int, int>>>;
Days ReadTicks(const QString& path) {
  const QByteArray bytes = Bytes(path);
  Days days;
  for (qsizetype at = kHeaderBytes; at + kRowBytes <= bytes.size(); at += kRowBytes) {
    const char* row = bytes.constData() + at;
    const int second = qFromLittleEndian<quint16>(row + 4) & 0x7fff;
    auto& day = days[qFromLittleEndian<qint32>(row)];
    if (!day.empty() && day.back().first == second) day.pop_back();
    day.emplace_back(second, static_cast<int>(qFromLittleEndian<quint32>(row + 8)));
  }
  return days;
}

class Intraday : public testing::Test {
 protected:
  void SetUp() override {
    bench_.data = bench_.File("demo");
    SharedMarket().Build(bench_.data, {"--simulated"});
  }
  [[nodiscard]] QStringList Arguments() const {
    return bench_.Arguments({"--address", "分时走势", "--parameter", "600001", "--speed", "60"});
  }
  [[nodiscard]] QString File() const { return bench_.Work() + "/ticks.dat"; }
  [[nodiscard]] bool HasTicks(std::size_t count) const {
    return Until([&] { return ReadTicks(File())[kFirstStock].size() >= count; }, 30'000);
  }
  Bench bench_;
};

TEST_F(Intraday, ADayOfTicksGoesOnAfterARestart) {
  std::map<int, std::vector<std::pair<int, int>>> before;
  {
    RunningTerminal terminal(Arguments());
    ASSERT_TRUE(terminal.WaitForWindow());
    ASSERT_TRUE(HasTicks(4));
    ASSERT_GE(terminal.Signal(SIGTERM), 0);
    before = ReadTicks(File());
  }
  for (const int code : {1, 399001, 399300}) EXPECT_GE(before[code].size(), 4U) << "the indices are followed";
  EXPECT_EQ(before[kFirstStock].front(), std::pair(0, 160)) << "the day opens at the last close, 1.60";
  RunningTerminal terminal(Arguments());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(HasTicks(before[kFirstStock].size() + 3));
  ASSERT_EQ(kill(static_cast<pid_t>(terminal.Process().processId()), SIGKILL), 0);
  EXPECT_TRUE(terminal.Process().waitForFinished(10'000 * kSlowness));
  Days after = ReadTicks(File());
  for (auto& [code, day] : before) {
    for (std::size_t place = 0; place < day.size(); ++place) EXPECT_EQ(after[code][place], day[place]) << code;
    EXPECT_GT(after[code].size(), day.size());
    for (std::size_t place = 1; place < after[code].size(); ++place)
      EXPECT_LT(after[code][place - 1].first, after[code][place].first) << "no second twice";
  }
}

TEST_F(Intraday, AnotherDaysTicksAreDropped) {
  {
    RunningTerminal terminal(Arguments());
    ASSERT_TRUE(terminal.WaitForWindow());
    ASSERT_TRUE(HasTicks(3));
    ASSERT_GE(terminal.Signal(SIGTERM), 0);
  }
  const QByteArray before = Bytes(File()).first(kHeaderBytes);
  const Market other;
  other.WriteBars("2024-05-24");
  other.Build(bench_.data, {"--simulated"});
  RunningTerminal terminal(Arguments());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(Until([&] { return Bytes(File()).first(kHeaderBytes) != before; }, 30'000));
  ASSERT_GE(terminal.Signal(SIGTERM), 0);
  EXPECT_EQ(ReadTicks(File())[kFirstStock].front().first, 0) << "the other day opens anew";
}

TEST_F(Intraday, ABatchLeavesTheDayAlone) {
  EXPECT_EQ(bench_.Import().exitCode, 0);
  EXPECT_FALSE(QFile::exists(File()));
  EXPECT_FALSE(QFile::exists(bench_.Work() + "/simulation.dat"));
}

/// A market with more stocks than there are places, all of which the view of proposals asks prices for.
class LargeMarket : public Intraday {
 protected:
  void SetUp() override {
    const QString csv = bench_.File("csv");
    bench_.data = bench_.File("large");
    ASSERT_EQ(e2e::Run(Program("holdwise-market"),
                       {"simulate", "--securities", "700", "--days", "300", "--seed", "1", "--out", csv})
                  .exitCode,
              0);
    ASSERT_EQ(
        e2e::Run(Program("holdwise-market"),
                 {"build", "--bars", csv + "/bars", "--indices", csv + "/indices", "--securities",
                  csv + "/securities.csv", "--dates", csv + "/trading_dates.csv", "--rates", csv + "/deposit_rates.csv",
                  "--estimates", csv + "/estimates.csv", "--simulated", "--out", bench_.data})
            .exitCode,
        0);
    for (const QStringList& row : ReadCsv(csv + "/securities.csv")) codes_ += row.first();
    codes_.removeFirst();
  }
  /// How many stocks the pool has that the view has received.
  [[nodiscard]] int PoolSize() const {
    QDirIterator found(bench_.Work(), {"StockPool.dat"}, QDir::Files, QDirIterator::Subdirectories);
    return found.hasNext() ? ReadPacketFile(found.next()).RowCount() : 0;
  }
  [[nodiscard]] std::size_t TicksOf(const QString& code) const {
    return ReadTicks(File())[1'000'000 + code.toInt()].size();
  }
  QStringList codes_;
};

TEST_F(LargeMarket, WhatIsHeldOrLookedAtHasTicksThoughAPoolIsAskedFor) {
  ASSERT_GT(codes_.size(), 600);
  const QString held = codes_.back();
  ASSERT_EQ(bench_.Import("name,code,quantity,price\n甲," + held.toLatin1() + ",100,1.00\n").exitCode, 0);
  {
    RunningTerminal terminal(bench_.Arguments({"--parameter", "Skip智能配置", "--speed", "60"}));
    ASSERT_TRUE(terminal.WaitForWindow());
    EXPECT_TRUE(Until([&] { return PoolSize() >= 300; }, 60'000)) << PoolSize();
    EXPECT_TRUE(Until([&] { return TicksOf(held) >= 3; }, 30'000)) << "held";
    QThread::msleep(2000);
    ASSERT_GE(terminal.Signal(SIGTERM), 0);
  }
  const Days days = ReadTicks(File());
  EXPECT_LT(days.size(), 10U) << "the pool is nothing to record";
  const auto other = std::find_if(codes_.begin(), codes_.end(),
                                  [&](const QString& code) { return !days.contains(1'000'000 + code.toInt()); });
  ASSERT_NE(other, codes_.end());
  RunningTerminal terminal(bench_.Arguments({"--address", "分时走势", "--parameter", *other, "--speed", "60"}));
  ASSERT_TRUE(terminal.WaitForWindow());
  EXPECT_TRUE(Until([&] { return TicksOf(*other) >= 3; }, 30'000)) << other->toStdString();
  EXPECT_GE(terminal.Signal(SIGTERM), 0);
}

/// Typed, Enter, Escape: the view is the one that was left.
TEST_F(Intraday, EscapeComesBackToTheViewThatWasLeft) {
  if (const QString missing = MissingProgram(); !missing.isEmpty()) GTEST_SKIP() << missing.toStdString();
  const Screen screen;
  ASSERT_TRUE(screen.IsThere());
  const auto settingsAfter = [&](const QStringList& keys) {
    RunningTerminal terminal(bench_.Arguments({"--parameter", "Skip压力测试"}), screen.Environment());
    EXPECT_TRUE(terminal.WaitForWindow());
    EXPECT_TRUE(screen.Enter("Holdwise"));
    screen.Type("600005");
    screen.Keys(keys);
    QThread::msleep(500);
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
    return QString::fromUtf8(Bytes(bench_.Work() + "/settings.ini"));
  };
  EXPECT_TRUE(settingsAfter({"Return"}).contains("address=分时走势"));
  const QString back = settingsAfter({"Return", "Escape"});
  EXPECT_TRUE(back.contains("address=投资组合")) << back.toStdString();
  EXPECT_TRUE(back.contains("view=压力测试")) << back.toStdString();
}

}  // namespace
}  // namespace holdwise::e2e
