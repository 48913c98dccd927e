// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFileInfo>

#include "screen.h"

namespace holdwise::e2e {
namespace {

/// Tabs, GB18030 (encoded by Python): two lines above the table; 1000 of 600001 at 1.123 and 500 of 600002 at 2.5, of
/// which 400 are settled; 600003 sold out, at a cost below 0; a fund; the sum.
constexpr char kStatement[] =
    // clang-format off
    "\xd7\xca\xbd\xf0\xd5\xcb\xba\xc5\xa3\xba" "8800123\n"
    "\xc8\xcb\xc3\xf1\xb1\xd2: \xd3\xe0\xb6\xee:100.00\n"
    "\xd6\xa4\xc8\xaf\xb4\xfa\xc2\xeb\t\xd6\xa4\xc8\xaf\xc3\xfb\xb3\xc6\t\xb9\xc9\xc6\xb1\xd3\xe0\xb6\xee\t\xb5\xb1\xc7\xb0\xb3\xd6\xb2\xd6\t\xb3\xc9\xb1\xbe\xbc\xdb\t\xca\xd0\xbc\xdb\n"
    "600001\t\xb9\xc9\xc6\xb1" "1\t1000\t1000\t1.123\t1.60\n"
    "600002\t\xb9\xc9\xc6\xb1" "2\t400\t500\t2.500\t2.60\n"
    "600003\t\xb9\xc9\xc6\xb1" "3\t0\t0\t-1.20\t3.60\n"
    "510300\t\xbb\xa6\xc9\xee" "300ETF\t100\t100\t3.9\t3.8\n"
    "\xba\xcf\xbc\xc6\t\t\t\t\t2900.00\n";
// clang-format on

class Statement : public testing::Test {
 protected:
  [[nodiscard]] Outcome Import(const QStringList& more = {}) const {
    return RunTerminal(bench_.Arguments(
        QStringList{"--import", bench_.Write("我的 持仓.xls", kStatement), "--export", bench_.File("out")} + more));
  }

  const Bench bench_;
};

// The last closes are 1.60 and 2.60: 1000 x 1.60 + 500 x 2.60 = 2900, bought for 1123 + 1250 = 2373.
TEST_F(Statement, IsOnTheScreenWithItsValueAndGain) {
  const Outcome outcome = Import({"--skip-unknown"});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  for (const char* said : {"券商持仓表，制表符分隔，表头在第 3 行", "数量=“当前持仓”", "成本价=“成本价”",
                           "组合“我的_持仓”：2 只股票，总成本 2373.00 元", "第 7 行：510300 沪深300ETF（基金）",
                           "第 6 行：600003 股票3（数量为0）", "第 8 行：合计（合计）", "另一列数量与它不同的有第 5 行",
                           "已导入 1 个组合，2 条持仓。"}) {
    EXPECT_TRUE(outcome.out.contains(QString::fromUtf8(said))) << said << '\n' << outcome.out.toStdString();
  }
  EXPECT_EQ(outcome.out.count("券商持仓表"), 1);
  EXPECT_LT(outcome.out.indexOf("券商持仓表"), outcome.out.indexOf("已导入"));
  const std::vector<QStringList> portfolios = ReadCsv(bench_.File("out/2001-strngrd.csv"));
  ASSERT_EQ(portfolios.size(), 2U);
  EXPECT_EQ(portfolios[1][0], "我的_持仓");
  EXPECT_EQ(portfolios[1][2], "2900.00");
  EXPECT_EQ(portfolios[1][6], "527.00");
  const std::vector<QStringList> holdings =
      ReadCsv(bench_.File("out/2001-StringGrid1-" + portfolios[1].last() + ".csv"));
  ASSERT_EQ(holdings.size(), 3U);
  EXPECT_EQ(holdings[1][0], "600001");
  EXPECT_EQ(holdings[2][0], "600002");
}

TEST_F(Statement, TakesTheNameThatIsGiven) {
  ASSERT_EQ(Import({"--skip-unknown", "--import-as", "长线"}).exitCode, 0);
  EXPECT_EQ(ReadCsv(bench_.File("out/2001-strngrd.csv")).at(1)[0], "长线");
}

TEST_F(Statement, IsRefusedWithoutConsentAndLeavesNothing) {
  const Outcome outcome = Import();
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("第 7 行：510300 沪深300ETF：基金，不能导入")) << outcome.err.toStdString();
  EXPECT_TRUE(outcome.err.contains("--skip-unknown")) << outcome.err.toStdString();
  EXPECT_FALSE(QFileInfo::exists(bench_.File("out")));
  EXPECT_TRUE(bench_.Export("2001-strngrd").empty());
}

TEST_F(Statement, MayHaveMoreStocksThanTheEditorTakes) {
  QByteArray text = "证券代码,证券名称,持仓数量,成本价\n";
  for (int number = 1; number <= 12; ++number)
    text += QByteArray::number(600000 + number) + ",股票" + QByteArray::number(number) + ",100,1.5\n";
  const Outcome outcome = bench_.Import(text);
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  // 100 x (1.60 + 2.60 + ... + 12.60) = 100 x 85.2.
  const std::vector<QStringList> portfolios = ReadCsv(bench_.File("out/2001-strngrd.csv"));
  ASSERT_EQ(portfolios.size(), 2U);
  EXPECT_EQ(portfolios[1][2], "8520.00");
  EXPECT_EQ(ReadCsv(bench_.File("out/2001-StringGrid1-" + portfolios[1].last() + ".csv")).size(), 13U);
}

/// From the menu, with keys: the preview is shown, nothing can be imported until the fund is agreed to be left out, and
/// the name is typed over.
TEST_F(Statement, IsShownBeforeItIsWrittenFromTheMenu) {
  if (const QString missing = MissingProgram(); !missing.isEmpty()) GTEST_SKIP() << missing.toStdString();
  const Screen screen;
  ASSERT_TRUE(screen.IsThere());
  const QString file = bench_.Write("p.xls", kStatement);
  RunningTerminal terminal(bench_.Arguments({}), screen.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  const auto askFor = [&] {
    ASSERT_TRUE(screen.Enter("Holdwise"));
    screen.Keys({"ctrl+o"});
    ASSERT_TRUE(screen.Enter("导入组合"));
    screen.Type(file);
    screen.Keys({"Return"});
    ASSERT_TRUE(screen.Enter("导入预览"));
  };
  askFor();
  screen.Keys({"alt+i"});  // not agreed yet
  screen.Keys({"Escape"});
  ASSERT_TRUE(screen.IsGone("导入预览"));
  ASSERT_TRUE(screen.Enter("导入组合"));
  screen.Keys({"Return"});
  ASSERT_TRUE(screen.IsGone("导入组合"));
  EXPECT_EQ(bench_.Export("2001-strngrd").size(), 0U) << "given up";
  askFor();
  screen.Keys({"alt+n", "ctrl+a"});
  screen.Type("mine");
  screen.Keys({"alt+s", "alt+i"});
  ASSERT_TRUE(screen.IsGone("导入预览"));
  ASSERT_TRUE(screen.Enter("导入组合"));
  screen.Keys({"Return"});
  const std::vector<QStringList> portfolios = bench_.Export("2001-strngrd");
  ASSERT_EQ(portfolios.size(), 1U);
  EXPECT_EQ(portfolios[0][0], "mine");
  EXPECT_EQ(portfolios[0][2], "2900.00");
}

}  // namespace
}  // namespace holdwise::e2e
