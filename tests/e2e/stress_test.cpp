// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>

#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

using Rows = std::vector<QStringList>;

/// The beta of a stock in a risk file, read with the producer's own reader of such files.
double BetaOf(const Bench& bench, const QString& index, const QString& code) {
  const QString file = bench.data + "/QMTL/TZZH/风险计量/" + index + ".dat";
  const Outcome table = Run(Program("holdwise-market"), {"packet", "to-csv", file});
  EXPECT_EQ(table.exitCode, 0) << table.err.toStdString();
  for (const QString& line : table.out.split('\n'))
    if (line.startsWith(code + ',')) return line.split(',')[1].toDouble();
  ADD_FAILURE() << code.toStdString() << " is not in the file";
  return 0;
}

class Stress : public testing::Test {
 protected:
  Stress() {
    const Outcome outcome = RunTerminal(
        bench_.Arguments({"--import", bench_.Write("p.csv", TwoPortfolios()), "--export", bench_.File("first")}));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  }
  [[nodiscard]] Outcome Export(const QStringList& more) const {
    return RunTerminal(bench_.Arguments(QStringList{"--export", bench_.File("out")} + more));
  }
  [[nodiscard]] Rows Read(const QString& grid) const { return ReadCsv(bench_.File("out/2003-" + grid + ".csv")); }
  /// 甲 holds 100 of 600001 and 200 of 600002; their previous closes are 1.59 and 2.59.
  [[nodiscard]] double ExpectedValueOfFirst(const QString& index, double move) const {
    return 100 * 1.59 * (1 + BetaOf(bench_, index, "600001") * move) +
           200 * 2.59 * (1 + BetaOf(bench_, index, "600002") * move);
  }

  /// A move that leaves nothing of 600001.
  [[nodiscard]] QString RuinousMove() const {
    const double beta = BetaOf(bench_, "SH", "600001");
    EXPECT_NE(beta, 0);
    return beta > 0 ? "-99999999" : "99999999";
  }

  Bench bench_;
};

TEST_F(Stress, WithoutOptionsTheViewIsExportedWithoutAMove) {
  const Rows rows = ReadCsv(bench_.File("first/2003-strngrd.csv"));
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0], QStringList({"组合名称", "创建日期", "预期市值(元)", "预期涨跌幅(%)", "预期收益(元)",
                                  "预期收益率(%)", "#6"}));
  // 159 + 518; gain 59 + 118 on a cost of 500.
  EXPECT_EQ(rows[2].mid(2, 4), QStringList({"677.00", "0.00", "177.00", "35.4000"}));
  EXPECT_TRUE(QFile::exists(bench_.File("first/2003.png")));
}

TEST_F(Stress, MoveAndIndexAreSetBeforeTheViewIsExported) {
  for (const auto& [index, file] : {std::pair{"1", "SH"}, {"399001", "SZ"}, {"399300", "HS"}}) {
    const Outcome outcome = Export({"--stress", "-10", "--stress-index", index});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    const Rows rows = Read("strngrd");
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_NEAR(rows[2][2].toDouble(), ExpectedValueOfFirst(file, -0.1), 0.005 + 1e-9) << index;
    const Rows holdings = Read("StringGrid1-" + rows[2][6]);
    ASSERT_EQ(holdings.size(), 3U);
    EXPECT_NEAR(holdings[1][3].toDouble(), BetaOf(bench_, file, "600001") * -10, 0.005 + 1e-9) << index;
  }
}

TEST_F(Stress, ARefusedMoveEndsTheExportWithItsMessage) {
  const Outcome outcome = Export({"--stress", RuinousMove()});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("视图“压力测试”：涨跌幅超出界限值，请重新输入!")) << outcome.err.toStdString();
  EXPECT_FALSE(QFile::exists(bench_.File("out/2003-strngrd.csv")));
}

TEST_F(Stress, ABadNumberIsRefusedAtOnce) {
  const Outcome outcome = Export({"--stress", "ten"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(outcome.err.contains("“ten”")) << outcome.err.toStdString();
  EXPECT_FALSE(QFile::exists(bench_.File("out")));
}

TEST_F(Stress, ARunningTerminalTakesTheMoveToo) {
  RunningTerminal running(bench_.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(Export({"--stress", "-10"}).exitCode, 0);
  EXPECT_NEAR(Read("strngrd")[2][2].toDouble(), ExpectedValueOfFirst("SH", -0.1), 0.005 + 1e-9);
  EXPECT_EQ(Export({"--stress", RuinousMove()}).exitCode, 1) << "no message box waits for an answer";
  EXPECT_EQ(running.Process().state(), QProcess::Running);
}

TEST_F(Stress, ARiskFileThatDoesNotComeIsSaid) {
  const QString data = bench_.File("data");
  CopyFolder(bench_.data, data);
  bench_.data = data;
  ASSERT_TRUE(QFile::remove(data + "/QMTL/TZZH/风险计量/SZ.dat"));
  const Outcome outcome = Export({"--stress", "-10", "--stress-index", "399001"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("风险文件没有取得")) << outcome.err.toStdString();
  EXPECT_EQ(Read("strngrd")[2][2], "677.00") << "betas count as 0";
}

}  // namespace
}  // namespace holdwise::e2e
