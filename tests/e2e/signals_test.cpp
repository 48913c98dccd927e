// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <signal.h>

#include <QElapsedTimer>
#include <QThread>
#include <csignal>
#include <random>

#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

constexpr int kManyPortfolios = 60;
constexpr qint64 kLongestEnd = qint64{3000} * kSlowness;
constexpr qint64 kGrace = 2500;

QByteArray ManyPortfolios() {
  QByteArray text = "name,code,quantity,price\n";
  for (int portfolio = 0; portfolio < kManyPortfolios; ++portfolio)
    for (int stock = 1; stock <= 10; ++stock)
      text += "P" + QByteArray::number(portfolio) + ',' + QByteArray::number(600000 + stock) + ",100,1.50\n";
  return text;
}

class SignalTest : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(All, SignalTest, testing::Values(SIGTERM, SIGINT, SIGHUP, SIGQUIT));

TEST_P(SignalTest, EndsTheWindowInOrder) {
  const Bench bench;
  RunningTerminal running(bench.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  const qint64 took = running.Signal(GetParam());
  EXPECT_GE(took, 0);
  EXPECT_LE(took, kLongestEnd);
  EXPECT_EQ(running.Process().exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(running.Process().exitCode(), 0);
}

TEST(Fault, SaysWhatToDoNextAndEndsTheProcessAsBefore) {
  const Bench bench;
  RunningTerminal running(bench.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_GE(running.Signal(SIGABRT), 0);
  EXPECT_EQ(running.Process().exitStatus(), QProcess::CrashExit);
  EXPECT_EQ(running.Process().exitCode(), SIGABRT);
  const QString said = QString::fromUtf8(running.Process().readAllStandardError());
  EXPECT_TRUE(said.contains("请再启动一次")) << said.toStdString();
}

TEST_P(SignalTest, SentTwiceAtOnceStillEndsInOrder) {
  const Bench bench;
  RunningTerminal running(bench.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(kill(static_cast<pid_t>(running.Process().processId()), GetParam()), 0);
  EXPECT_GE(running.Signal(GetParam()), 0);
  EXPECT_EQ(running.Process().exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(running.Process().exitCode(), 0);
}

TEST_P(SignalTest, EndsATerminalThatWaitsForItsUser) {
  const Bench bench;
  // The refused import stands in a dialog.
  RunningTerminal running(bench.Arguments({"--import", bench.Write("bad.csv", "name\n")}));
  ASSERT_TRUE(running.WaitForWindow());
  QThread::msleep(700);
  const qint64 took = running.Signal(GetParam());
  EXPECT_GE(took, 0);
  EXPECT_LE(took, kLongestEnd);
  EXPECT_EQ(running.Process().exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(running.Process().exitCode(), 0);
}

TEST(Signals, ATerminalThatIsToOutliveItsSessionDoes) {
  const Bench bench;
  RunningTerminal running(bench.Arguments({}), BareEnvironment(),
                          [] { (void)std::signal(SIGHUP, SIG_IGN); });  // as nohup does
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(kill(static_cast<pid_t>(running.Process().processId()), SIGHUP), 0);
  EXPECT_FALSE(running.Process().waitForFinished(4000));
  const qint64 took = running.Signal(SIGTERM);
  EXPECT_GE(took, 0);
  EXPECT_LE(took, kLongestEnd);
}

TEST(Signals, AClosedPipeEndsNothing) {
  const Bench bench;
  RunningTerminal running(bench.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  running.Process().closeReadChannel(QProcess::StandardOutput);
  running.Process().closeReadChannel(QProcess::StandardError);
  ASSERT_TRUE(QFile::remove(bench.Work() + "/holdwise.fdb"));  // said on standard error too
  ASSERT_EQ(kill(static_cast<pid_t>(running.Process().processId()), SIGPIPE), 0);
  EXPECT_FALSE(running.Process().waitForFinished(2000));
}

TEST(Signals, AStoppedTerminalIsWaitedForFiveSeconds) {
  const Bench bench;
  RunningTerminal running(bench.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  const auto process = static_cast<pid_t>(running.Process().processId());
  ASSERT_EQ(kill(process, SIGSTOP), 0);
  QElapsedTimer timer;
  timer.start();
  const Outcome second =
      RunTerminal(bench.Arguments({"--import", bench.Write("p.csv", TwoPortfolios()), "--address", "投资组合"}));
  EXPECT_LE(timer.elapsed(), 5000 + kLongestEnd);
  EXPECT_EQ(second.exitCode, 1);
  EXPECT_TRUE(second.err.contains(QStringLiteral("（进程 %1）被暂停了").arg(process))) << second.err.toStdString();
  ASSERT_EQ(kill(process, SIGCONT), 0);
  // What was given up is not done behind the user's back.
  EXPECT_EQ(RunTerminal(bench.Arguments({"--address", "工具条"})).exitCode, 0);
  ASSERT_GE(running.Signal(SIGTERM), 0);
  EXPECT_EQ(bench.Export("2001-strngrd").size(), 0U);
}

TEST(Signals, AtAnyMomentEndInTimeAndLoseNothing) {
  const Bench bench;
  ASSERT_EQ(bench.Import().exitCode, 0);
  std::mt19937 random(20240531);
  std::uniform_int_distribution<unsigned long> moment(0, 1500);
  for (int round = 0; round < 20; ++round) {
    const unsigned long delay = moment(random);
    RunningTerminal running(bench.Arguments({}));
    QThread::msleep(delay);
    const qint64 took = running.Signal(round % 2 == 0 ? SIGTERM : SIGINT);
    EXPECT_GE(took, 0) << "after " << delay << " ms";
    EXPECT_LE(took, kLongestEnd) << "after " << delay << " ms";
    // Before main has begun the system's own handling ends the process.
    if (running.Process().exitStatus() == QProcess::NormalExit) {
      // What takes too long is given up.
      const bool isGivenUp = took >= kGrace && running.Process().exitCode() == 1;
      EXPECT_TRUE(isGivenUp || running.Process().exitCode() == 0) << "after " << delay << " ms";
    } else {
      EXPECT_LT(delay, 100U);
    }
  }
  EXPECT_EQ(bench.Export("2001-strngrd").size(), 2U);
}

TEST(Signals, DuringAnExportSayThatItIsNotComplete) {
  const Bench bench;
  RunningTerminal running(
      bench.Arguments({"--import", bench.Write("p.csv", TwoPortfolios()), "--export", bench.File("out")}));
  // An export takes seconds, since each view has to stay quiet for a while.
  ASSERT_TRUE(Until([&] { return QFileInfo::exists(bench.File("out")); }, 10'000));
  ASSERT_GE(running.Signal(SIGTERM), 0);
  EXPECT_EQ(running.Process().exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(running.Process().exitCode(), 1);
  const QString told = QString::fromUtf8(running.Process().readAllStandardError());
  EXPECT_TRUE(told.contains("导出没有完成")) << told.toStdString();
}

TEST(Signals, DuringAnImportLeaveAllOrNothing) {
  for (const int delay : {100, 200, 300, 400, 600}) {
    const Bench bench;
    RunningTerminal running(bench.Arguments({"--import", bench.Write("p.csv", ManyPortfolios())}));
    QThread::msleep(static_cast<unsigned long>(delay));
    const qint64 took = running.Signal(SIGTERM);
    EXPECT_GE(took, 0) << "after " << delay << " ms";
    EXPECT_LE(took, kLongestEnd) << "after " << delay << " ms";
    const std::size_t portfolios = bench.Export("2001-strngrd").size();
    EXPECT_TRUE(portfolios == 0 || portfolios == kManyPortfolios) << portfolios << " after " << delay << " ms";
  }
}

TEST(Kill, DuringAnImportLeavesAllOrNothing) {
  bool wasEverInterrupted = false;
  for (int delay = 50; delay <= 800; delay += 75) {
    const Bench bench;
    RunningTerminal running(bench.Arguments({"--import", bench.Write("p.csv", ManyPortfolios())}));
    QThread::msleep(static_cast<unsigned long>(delay));
    ASSERT_GE(running.Signal(SIGKILL), 0);
    const std::size_t portfolios = bench.Export("2001-strngrd").size();
    EXPECT_TRUE(portfolios == 0 || portfolios == kManyPortfolios) << portfolios << " after " << delay << " ms";
    wasEverInterrupted = wasEverInterrupted || portfolios == 0;
  }
  EXPECT_TRUE(wasEverInterrupted);
}

TEST(Kill, LeavesNothingThatStopsTheNextStart) {
  const Bench bench;
  {
    RunningTerminal running(bench.Arguments({}));
    ASSERT_TRUE(running.WaitForWindow());
    ASSERT_GE(running.Signal(SIGKILL), 0);
  }
  RunningTerminal next(bench.Arguments({}));
  EXPECT_TRUE(next.WaitForWindow());
  // The new one answers on the socket that the killed one had left behind.
  EXPECT_EQ(RunTerminal(bench.Arguments({"--address", "工具条"})).exitCode, 0);
}

}  // namespace
}  // namespace holdwise::e2e
