// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>

#include "holdwise/packet/packet_file.h"
#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

using Rows = std::vector<QStringList>;

/// A risk file that knows the two stocks of the first portfolio and the two of the second.
void WriteRiskFile(const QString& path, const std::vector<std::pair<const char*, double>>& betas) {
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  const int beta = table.AddColumn("beta", ColumnType::Real);
  for (const auto& [stock, value] : betas) {
    const int row = table.AppendRow();
    table.SetText(row, code, stock);
    table.SetReal(row, beta, value);
  }
  WritePacketFile(path, table, Durability::Replaceable);
}

class Stress : public testing::Test {
 protected:
  Stress() {
    const QString data = bench_.File("data");
    CopyFolder(SharedMarket().Data(), data);
    bench_.data = data;
    WriteRiskFile(RiskFile("SH"), {{"600001", 1}, {"600002", 2}, {"600010", 1}, {"600012", 1}});
    WriteRiskFile(RiskFile("SZ"), {{"600001", 0.5}, {"600002", 1}, {"600010", 1}, {"600012", 1}});
    WriteRiskFile(RiskFile("HS"), {{"600001", -0.25}, {"600002", 0}, {"600010", 1}, {"600012", 1}});
    const Outcome outcome = bench_.Import(TwoPortfolios(), "first");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  }
  [[nodiscard]] Outcome Export(const QStringList& more) const {
    return RunTerminal(bench_.Arguments(QStringList{"--export", bench_.File("out")} + more));
  }
  [[nodiscard]] Rows Read(const QString& grid) const { return ReadCsv(bench_.File("out/2003-" + grid + ".csv")); }
  [[nodiscard]] QString RiskFile(const QString& index) const {
    return bench_.data + "/QMTL/TZZH/风险计量/" + index + ".dat";
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
  // 甲 holds 100 of 600001 and 200 of 600002; their previous closes are 1.59 and 2.59.
  struct Expected {
    const char* index;
    const char* value;
    const char* change;  ///< of 600001, percent
  };
  for (const auto& [index, value, change] :
       // 159 x 0.9 + 518 x 0.8; 159 x 0.95 + 518 x 0.9
       {Expected{"1", "557.50", "-10.00"}, Expected{"399001", "617.25", "-5.00"}, Expected{"399300", "", "2.50"}}) {
    const Outcome outcome = Export({"--stress", "-10", "--stress-index", index});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    const Rows rows = Read("strngrd");
    ASSERT_EQ(rows.size(), 3U);
    if (*value != 0)
      EXPECT_EQ(rows[2][2], value) << index;
    else
      EXPECT_NEAR(rows[2][2].toDouble(), 159 * 1.025 + 518, 0.0051) << "half a fen is cut where the double says so";
    const Rows holdings = Read("StringGrid1-" + rows[2][6]);
    ASSERT_EQ(holdings.size(), 3U);
    EXPECT_EQ(holdings[1][3], change) << index;
  }
}

TEST_F(Stress, TheTablesSayWhatTheyRestOn) {
  const auto inputs = [this](const char* folder) { return ReadCsv(bench_.File(folder) + "/2003-inputs.csv"); };
  EXPECT_EQ(inputs("first"),
            Rows({{"输入项", "控件", "值"}, {"参考指数", "ComboBox11", "1"}, {"预期涨跌幅(%)", "Edit1", "0"}}));
  ASSERT_EQ(Export({"--stress", "-7.5", "--stress-index", "399300"}).exitCode, 0);
  EXPECT_EQ(inputs("out"),
            Rows({{"输入项", "控件", "值"}, {"参考指数", "ComboBox11", "399300"}, {"预期涨跌幅(%)", "Edit1", "-7.5"}}));
}

TEST_F(Stress, AllViewsOfAnExportAreAgainstTheSameIndex) {
  for (const auto& [index, beta] : {std::pair{"1", "2"}, std::pair{"399001", "1"}}) {
    const QString id = ReadCsv(bench_.File("first/2003-strngrd.csv"))[2][6];
    ASSERT_EQ(Export({"--stress-index", index}).exitCode, 0);
    const Rows risk = ReadCsv(bench_.File("out/2002-StringGrid1-" + id + ".csv"));
    EXPECT_EQ(risk[2][5], beta) << index << ": 600002";
    const Rows evaluation = ReadCsv(bench_.File("out/3001-StringGrid1-" + id + ".csv"));
    EXPECT_EQ(evaluation[2][7], QString(beta) + ".000000") << index;
  }
}

TEST_F(Stress, ARefusedMoveIsSaidWithItsBoundAndTheOtherViewsAreWritten) {
  const Outcome outcome = Export({"--stress", "-50"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("视图“压力测试”没有导出：涨跌幅超出界限值，请重新输入!（"))
      << outcome.err.toStdString();
  EXPECT_TRUE(outcome.err.contains("(600002)相对上证指数的贝塔系数是 2，涨跌幅要大于 -50%）"))
      << outcome.err.toStdString();
  EXPECT_FALSE(QFile::exists(bench_.File("out/2003-strngrd.csv")));
  EXPECT_FALSE(QFile::exists(bench_.File("out/2003.png")));
  for (const char* view : {"2001", "2002", "3001", "3002"})
    EXPECT_TRUE(QFile::exists(bench_.File("out") + "/" + view + ".png")) << view;
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
  EXPECT_EQ(Read("strngrd")[2][2], "557.50");
  EXPECT_EQ(Export({"--stress", "-50", "--stress-index", "399001"}).exitCode, 0);
  EXPECT_EQ(Export({"--stress", "-50"}).exitCode, 1) << "no message box waits for an answer; the index is as before";
  EXPECT_EQ(Export({}).exitCode, 0);
  EXPECT_EQ(Read("strngrd")[2][2], "677.00") << "what the user has set there is as before";
  EXPECT_EQ(running.Process().state(), QProcess::Running);
}

TEST_F(Stress, ARiskFileThatDoesNotComeIsSaid) {
  ASSERT_TRUE(QFile::remove(RiskFile("SZ")));
  const Outcome outcome = Export({"--stress", "-10", "--stress-index", "399001"});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("风险文件没有取得")) << outcome.err.toStdString();
  EXPECT_EQ(Read("strngrd")[2][2], "677.00") << "betas count as 0";
}

}  // namespace
}  // namespace holdwise::e2e
