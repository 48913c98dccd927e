// SPDX-License-Identifier: MIT
// The data folder under a running terminal becomes one of a later date.
#include <signal.h>

#include <QDir>

#include "other_data_fixture.h"
#include "screen.h"

namespace holdwise::e2e {
namespace {

constexpr int kLongest = 30'000;  ///< milliseconds until a change that nothing stands in the way of
constexpr int kWhile = 6000;      ///< in which one would have come

class NewDay : public OtherData {
 protected:
  /// Of the terminal that runs on this bench.
  [[nodiscard]] bool Shows(const QString& date) const {
    return RunTerminal(bench_.Arguments({"--check"})).out.contains(date + QStringLiteral("的行情"));
  }
  [[nodiscard]] bool Takes(const QString& date) const {
    return Until([&] { return Shows(date); }, kLongest);
  }
  [[nodiscard]] QString Log() const { return QString::fromUtf8(Bytes(bench_.Work() + "/log/terminal.log")); }
};

/// Twice, with the figures of a terminal that knows only that day each time.
TEST_F(NewDay, IsTakenAndCalculatedByTheRunningTerminal) {
  Build("2024-05-23");
  RunningTerminal running(bench_.Arguments({"--parameter", "Skip风险计量"}));
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(Export(Import()).exitCode, 0);
  auto before = Risk();
  for (const char* date : {"2024-05-24", "2024-05-31"}) {
    Build(date);
    ASSERT_TRUE(Takes(date)) << date;
    const Outcome taken = ExportWhenWhole(bench_);
    EXPECT_EQ(taken.exitCode, 0) << taken.err.toStdString();
    EXPECT_NE(Risk(), before) << date;
    before = Risk();
    EXPECT_EQ(before, WholeRisk(bench_.data)) << date;
    EXPECT_TRUE(Log().contains(QStringLiteral("已换到 %1 的行情").arg(date))) << Log().toStdString();
  }
  EXPECT_GE(running.Signal(SIGTERM), 0);
  EXPECT_EQ(running.Process().exitCode(), 0);
}

TEST_F(NewDay, AnEarlierDayWaitsForARestart) {
  Build("2024-05-31");
  RunningTerminal running(bench_.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  Build("2024-05-24");
  QThread::msleep(kWhile);
  EXPECT_TRUE(Shows("2024-05-31"));
  EXPECT_TRUE(Log().contains("重新启动终端后生效")) << Log().toStdString();
  EXPECT_FALSE(Log().contains("已换到")) << Log().toStdString();
}

/// A folder that names a later date but cannot be read is not taken; a good one then is.
TEST_F(NewDay, WhatCannotBeReadIsNotTaken) {
  Build("2024-05-24");
  RunningTerminal running(bench_.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  const QString later = bench_.File("later");
  market_.Build(later, {"--date", "2024-05-31"});
  const QString away = bench_.File("securities");
  ASSERT_TRUE(QFile::rename(later + "/securities.dat", away));
  ASSERT_TRUE(QFile::rename(bench_.data, bench_.data + ".old"));
  ASSERT_TRUE(QFile::rename(later, bench_.data));
  ASSERT_TRUE(Until([this] { return Log().contains("没有换到 2024-05-31 的行情"); }, kLongest)) << Log().toStdString();
  EXPECT_TRUE(Shows("2024-05-24"));
  EXPECT_TRUE(Log().contains("securities.dat")) << Log().toStdString();
  ASSERT_TRUE(QFile::rename(away, bench_.data + "/securities.dat"));
  EXPECT_TRUE(Takes("2024-05-31"));
}

class NewDayOnAScreen : public NewDay {
 protected:
  void SetUp() override {
    if (const QString missing = MissingProgram(); !missing.isEmpty()) GTEST_SKIP() << missing.toStdString();
    ASSERT_TRUE(screen_.IsThere());
    Build("2024-05-24");
  }
  const Screen screen_;
};

/// A nightly job replaces the bars, the producer follows them, and the terminal follows the producer.
TEST_F(NewDayOnAScreen, ComesFromAWatchingProducer) {
  market_.WriteBars("2024-05-24");
  ASSERT_TRUE(QDir(bench_.data).removeRecursively());
  QProcess producer;
  producer.setProcessEnvironment(BareEnvironment());
  producer.start(Program("holdwise-market"), market_.BuildArguments(bench_.data) + QStringList{"--watch"});
  ASSERT_TRUE(Until([this] { return QFile::exists(bench_.data + "/market.dat"); }, kLongest));
  RunningTerminal running(bench_.Arguments({}), screen_.Environment());
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(Export(Import()).exitCode, 0);
  ASSERT_TRUE(Shows("2024-05-24"));
  market_.WriteBars();
  EXPECT_TRUE(Takes("2024-05-31")) << Log().toStdString();
  EXPECT_EQ(ExportWhenWhole(bench_).exitCode, 0);
  EXPECT_EQ(Risk(), WholeRisk(bench_.data));
  producer.terminate();
  EXPECT_TRUE(producer.waitForFinished(30'000 * kSlowness));
}

TEST_F(NewDayOnAScreen, ThePageStays) {
  const auto picture = [this](const QString& page) {
    RunningTerminal running(bench_.Arguments({"--parameter", "Skip" + page}), screen_.Environment());
    EXPECT_TRUE(running.WaitForWindow());
    QThread::msleep(1500);
    return screen_.PictureAbove();
  };
  const QByteArray first = picture("组合表现");
  RunningTerminal running(bench_.Arguments({"--parameter", "Skip自选配置"}), screen_.Environment());
  ASSERT_TRUE(running.WaitForWindow());
  QThread::msleep(1500);
  const QByteArray before = screen_.PictureAbove();
  ASSERT_NE(before, first);
  Build("2024-05-31");
  ASSERT_TRUE(Takes("2024-05-31"));
  EXPECT_TRUE(Until([&] { return screen_.PictureAbove() == before; }, 3000));
}

TEST_F(NewDayOnAScreen, WaitsForAPortfolioThatIsBeingMade) {
  RunningTerminal running(bench_.Arguments({"--parameter", "Skip自选配置"}), screen_.Environment());
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("Holdwise"));
  screen_.Keys({"Tab", "Tab"});  // to the pages' tree, then to the name
  screen_.Type("mine");
  Build("2024-05-31");
  QThread::msleep(kWhile);
  ASSERT_TRUE(Log().contains("2024-05-31 的行情已到")) << Log().toStdString();
  EXPECT_TRUE(Shows("2024-05-24"));
  // Asked, and refused with the key that is nearest.
  ASSERT_TRUE(screen_.Enter("Holdwise"));
  screen_.Keys({"alt+n"});
  ASSERT_TRUE(screen_.Enter("询问"));
  screen_.Keys({"Return"});
  ASSERT_TRUE(screen_.IsGone("询问"));
  QThread::msleep(kWhile);
  EXPECT_TRUE(Shows("2024-05-24"));
  // Given up: it comes by itself.
  ASSERT_TRUE(screen_.Enter("Holdwise"));
  screen_.Keys({"ctrl+a", "Delete"});
  EXPECT_TRUE(Takes("2024-05-31"));
}

TEST_F(NewDayOnAScreen, IsTakenAtOnceWhenAskedFor) {
  RunningTerminal running(bench_.Arguments({"--parameter", "Skip自选配置"}), screen_.Environment());
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("Holdwise"));
  screen_.Keys({"Tab", "Tab"});
  screen_.Type("mine");
  Build("2024-05-31");
  ASSERT_TRUE(Until([this] { return Log().contains("2024-05-31 的行情已到"); }, kLongest));
  QThread::msleep(1000);
  screen_.Keys({"alt+n"});
  ASSERT_TRUE(screen_.Enter("询问"));
  screen_.Keys({"Tab", "Return"});
  ASSERT_TRUE(screen_.IsGone("询问"));
  EXPECT_TRUE(Until([this] { return Log().contains("已换到 2024-05-31 的行情"); }, 3000)) << Log().toStdString();
  EXPECT_TRUE(Shows("2024-05-31"));
}

/// The report of an import that was refused stands in a dialog.
TEST_F(NewDayOnAScreen, WaitsForADialog) {
  RunningTerminal running(bench_.Arguments({"--import", bench_.Write("bad.csv", "name\n")}), screen_.Environment());
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("导入组合"));
  Build("2024-05-31");
  QThread::msleep(kWhile);
  EXPECT_TRUE(Shows("2024-05-24"));
  ASSERT_TRUE(screen_.Enter("导入组合"));
  screen_.Keys({"Return"});
  EXPECT_TRUE(Takes("2024-05-31"));
}

}  // namespace
}  // namespace holdwise::e2e
