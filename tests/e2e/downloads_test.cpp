// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QThread>
#include <csignal>

#include "hung_file.h"
#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

class Downloads : public testing::Test {
 protected:
  Downloads() {
    bench_.data = bench_.File("data");
    CopyFolder(SharedMarket().Data(), bench_.data);
  }
  [[nodiscard]] QString Rates() const { return bench_.data + "/QMTL/TZZH/InterestRate.Dat"; }
  [[nodiscard]] static bool AreCalculated(const std::vector<QStringList>& portfolios) {
    for (const QStringList& row : portfolios) {
      if (row.value(4).toDouble() == 0) return false;
    }
    return portfolios.size() == 2;
  }
  Bench bench_;
};

TEST_F(Downloads, OneThatHangsDoesNotKeepTheTerminalFromEnding) {
  test::HungFile rates(Rates());
  if (!rates.IsHung()) GTEST_SKIP() << "no leases on this file system";
  {
    RunningTerminal running(
        bench_.Arguments({"--import", bench_.Write("p.csv", TwoPortfolios()), "--parameter", "Skip风险计量"}));
    ASSERT_TRUE(running.WaitForWindow());
    QThread::msleep(2500);  // the calculation dialog is up and waits
    const qint64 took = running.Signal(SIGTERM);
    EXPECT_GE(took, 0);
    EXPECT_LE(took, 3000);
    EXPECT_EQ(running.Process().exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(running.Process().exitCode(), 0);
  }
  rates.Release();
  EXPECT_TRUE(AreCalculated(bench_.Export("2002-strngrd"))) << "the next start takes the work up";
}

TEST_F(Downloads, AMissingFileIsNamedAndTheExportSaysThatItsFiguresAreOld) {
  ASSERT_TRUE(QFile::rename(Rates(), Rates() + ".away"));
  const Outcome outcome = bench_.Import();
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("2 个组合的风险数据没有算完")) << outcome.err.toStdString();
  EXPECT_TRUE(QFile::exists(bench_.File("out/2002.png"))) << "everything is written all the same";
  EXPECT_TRUE(Bytes(bench_.Work() + "/log/terminal.log").contains("InterestRate.Dat”没有取得"));
  ASSERT_TRUE(QFile::rename(Rates() + ".away", Rates()));
  EXPECT_TRUE(AreCalculated(bench_.Export("2002-strngrd")));
}

TEST_F(Downloads, AMissingRiskFileIsNoCompleteExport) {
  ASSERT_TRUE(QFile::remove(bench_.data + "/QMTL/TZZH/风险计量/SH.dat"));
  const Outcome outcome = bench_.Import();
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("风险文件没有取得")) << outcome.err.toStdString();
  EXPECT_TRUE(QFile::exists(bench_.File("out/2002.png"))) << "everything is written all the same";
}

}  // namespace
}  // namespace holdwise::e2e
