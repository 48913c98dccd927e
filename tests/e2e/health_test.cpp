// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <csignal>
#include <utility>

#include "screen.h"

namespace holdwise::e2e {
namespace {

/// The line of a subject.
QString LineOf(const QString& table, const QString& subject) {
  for (const QString& line : table.split('\n'))
    if (line.contains("  " + subject + "：")) return line;
  return {};
}

class HealthCheck : public testing::Test {
 protected:
  HealthCheck() { EXPECT_EQ(bench_.Import().exitCode, 0); }
  Bench bench_;
};

TEST_F(HealthCheck, AtRestAllIsWellAndTheDatabaseHasBeenRead) {
  const Outcome outcome = RunTerminal(bench_.Arguments({"--check"}));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.out.toStdString() << outcome.err.toStdString();
  EXPECT_EQ(outcome.out.trimmed().split('\n').size(), 9) << outcome.out.toStdString();
  EXPECT_TRUE(LineOf(outcome.out, "数据库检查").contains(QDate::currentDate().toString(Qt::ISODate)));
  EXPECT_TRUE(LineOf(outcome.out, "镜像文件").contains("写于"));
  EXPECT_TRUE(LineOf(outcome.out, "数据目录").contains("2024-05-31"));
  EXPECT_TRUE(LineOf(outcome.out, "与备份比较").contains("数据库与最近的备份一致"));
}

/// What has been chosen in the window is what the next one opens.
TEST_F(HealthCheck, AtRestTheDataFolderIsTheOneThatIsRemembered) {
  {
    QSettings settings(bench_.Work() + "/settings.ini", QSettings::IniFormat);
    settings.setValue("data", SharedMarket().Data());
  }
  const Outcome outcome = RunTerminal({"--work", bench_.Work(), "--check"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.out.toStdString() << outcome.err.toStdString();
  EXPECT_TRUE(LineOf(outcome.out, "数据目录").contains(SharedMarket().Data())) << outcome.out.toStdString();
  const Outcome asked = RunTerminal({"--work", bench_.Work(), "--data", bench_.File("none"), "--check"});
  EXPECT_TRUE(LineOf(asked.out, "数据目录").contains(bench_.File("none"))) << asked.out.toStdString();
}

TEST_F(HealthCheck, ADifferenceFromTheNewestBackupIsShownWithBothSides) {
  const QString backups = bench_.Work() + "/backups";
  CopyFolder(backups, bench_.File("earlier"));
  ASSERT_EQ(bench_.Import(OneMore(), "out2").exitCode, 0);
  ASSERT_TRUE(QDir(backups).removeRecursively());
  CopyFolder(bench_.File("earlier"), backups);
  const Outcome outcome = RunTerminal(bench_.Arguments({"--check"}));
  EXPECT_EQ(outcome.exitCode, 1);
  const QString line = LineOf(outcome.out, "与备份比较");
  EXPECT_TRUE(line.startsWith("注意")) << outcome.out.toStdString();
  EXPECT_TRUE(line.contains("数据库：3 个组合，6 条持股；最近的备份：")) << line.toStdString();
  EXPECT_TRUE(line.contains("（2 个组合，4 条持股）")) << line.toStdString();
  EXPECT_TRUE(line.contains("去掉1个组合：丙")) << line.toStdString();
}

TEST_F(HealthCheck, AtRestLeavesTheMarkOfAnUncleanEnd) {
  {
    RunningTerminal running(bench_.Arguments({}));
    ASSERT_TRUE(running.WaitForWindow());
    const QString more = bench_.Write("more.csv", OneMore());
    ASSERT_EQ(RunTerminal(bench_.Arguments({"--import", more})).exitCode, 0);
    (void)running.Signal(SIGKILL);
  }
  const Outcome outcome = RunTerminal(bench_.Arguments({"--check"}));
  EXPECT_TRUE(LineOf(outcome.out, "与备份比较").startsWith("正常")) << outcome.out.toStdString();
  EXPECT_TRUE(QFile::exists(bench_.Work() + "/holdwise.fdb.open"));
  const Outcome next = RunTerminal(bench_.Arguments({"--export", bench_.File("out2")}));
  EXPECT_EQ(next.exitCode, 0);
  EXPECT_FALSE(next.err.contains("与最近的备份不同")) << next.err.toStdString();
}

TEST_F(HealthCheck, FilesMissingInTheDataFolderAreNamedAtRestAndWhileRunning) {
  const QString data = bench_.File("data");
  CopyFolder(SharedMarket().Data(), data);
  bench_.data = data;
  RunningTerminal running(bench_.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_TRUE(QFile::remove(data + "/QMTL/TZZH/风险计量/HS.dat"));
  const QString expected = "缺少 QMTL/TZZH/风险计量/HS.dat，";
  EXPECT_TRUE(LineOf(RunTerminal(bench_.Arguments({"--check"})).out, "数据目录").contains(expected));
  ASSERT_GE(running.Signal(SIGTERM), 0);
  const Outcome atRest = RunTerminal(bench_.Arguments({"--check"}));
  EXPECT_EQ(atRest.exitCode, 1);
  EXPECT_TRUE(LineOf(atRest.out, "数据目录").contains(expected)) << atRest.out.toStdString();
}

TEST_F(HealthCheck, ThePageIsInTheHelpMenu) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "no Xvfb";
  RunningTerminal running(bench_.Arguments({}), screen.Environment());
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_TRUE(screen.Enter("Holdwise"));
  screen.Keys({"alt+h", "s"});
  ASSERT_TRUE(screen.Enter("^状态$"));
  screen.Keys({"Escape"});
  EXPECT_TRUE(screen.IsGone("^状态$"));
  EXPECT_GE(running.Signal(SIGTERM), 0);
}

TEST_F(HealthCheck, TheStatusBarIsAmberWhileSomethingIsNotWell) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "no Xvfb";
  RunningTerminal running(bench_.Arguments({"--theme", "dark"}), screen.Environment());
  ASSERT_TRUE(running.WaitForWindow());
  const QColor amber(0xE6, 0xB8, 0x4C);
  constexpr int kSign = 200;
  // The line of the prices is amber too: the market is one of years ago.
  int atRest = 0;
  const auto isAtRest = [&] {
    const int before = std::exchange(atRest, screen.PointsBelow(amber));
    return atRest == before && atRest > 0;
  };
  ASSERT_TRUE(Until(isAtRest, 30'000));
  const auto isShown = [&] { return screen.PointsBelow(amber) >= atRest + kSign; };
  const QString merge = bench_.Work() + "/TZZHMerge.dat";
  ASSERT_TRUE(QFile::rename(merge, bench_.File("away")));
  EXPECT_TRUE(Until(isShown, 30'000));
  ASSERT_TRUE(QFile::rename(bench_.File("away"), merge));
  EXPECT_TRUE(Until([&] { return !isShown(); }, 30'000));
  EXPECT_GE(running.Signal(SIGTERM), 0);
}

TEST_F(HealthCheck, AnEmptiedMirrorIsSaidAndTheEndWritesItAnew) {
  const QString work = bench_.Work();
  for (const char* name : {"/TZZHDetail.dat", "/TZZHMerge.dat"}) {
    QFile file(work + name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
  }
  const Outcome ill = RunTerminal(bench_.Arguments({"--check"}));
  EXPECT_EQ(ill.exitCode, 1);
  EXPECT_TRUE(LineOf(ill.out, "镜像文件").startsWith("注意")) << ill.out.toStdString();
  {
    RunningTerminal running(bench_.Arguments({}));
    ASSERT_TRUE(running.WaitForWindow());
    EXPECT_EQ(RunTerminal(bench_.Arguments({"--check"})).exitCode, 1);
    ASSERT_GE(running.Signal(SIGTERM), 0);
  }
  EXPECT_EQ(RunTerminal(bench_.Arguments({"--check"})).exitCode, 0);
  const QString log = QString::fromUtf8(Bytes(work + "/log/terminal.log"));
  EXPECT_TRUE(log.contains("原先保存的组合文件读不出来")) << log.toStdString();
  EXPECT_FALSE(log.contains("比原先的少"));
}

TEST_F(HealthCheck, TheRunningTerminalAnswers) {
  RunningTerminal running(bench_.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  const Outcome well = RunTerminal(bench_.Arguments({"--check"}));
  EXPECT_EQ(well.exitCode, 0) << well.out.toStdString();
  EXPECT_TRUE(LineOf(well.out, "行情").contains("正在跟踪")) << well.out.toStdString();
  ASSERT_TRUE(QFile::rename(bench_.Work() + "/holdwise.fdb", bench_.File("away.fdb")));
  const Outcome ill = RunTerminal(bench_.Arguments({"--check"}));
  EXPECT_EQ(ill.exitCode, 1);
  EXPECT_TRUE(LineOf(ill.out, "数据库").startsWith("注意")) << ill.out.toStdString();
}

TEST_F(HealthCheck, ADamagedDatabaseAndAMissingDataFolderAreRowsOfTheTable) {
  QFile file(bench_.Work() + "/holdwise.fdb");
  const qint64 cut = file.size() / 3;
  ASSERT_TRUE(file.resize(cut));
  bench_.data = bench_.File("none");
  const Outcome outcome = RunTerminal(bench_.Arguments({"--check"}));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(LineOf(outcome.out, "数据库").startsWith("注意")) << outcome.out.toStdString();
  EXPECT_TRUE(LineOf(outcome.out, "数据库").contains("损坏")) << outcome.out.toStdString();
  EXPECT_TRUE(LineOf(outcome.out, "数据目录").startsWith("注意")) << outcome.out.toStdString();
  EXPECT_EQ(QFileInfo(file.fileName()).size(), cut);
}

TEST(HealthOption, GoesWithNothingElse) {
  const Outcome outcome = RunTerminal({"--check", "--export", "/tmp/none"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.contains("--check")) << outcome.err.toStdString();
}

}  // namespace
}  // namespace holdwise::e2e
