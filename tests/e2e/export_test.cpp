// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFileInfo>
#include <QImage>

#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/text_file.h"
#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

unsigned ModeOf(const QString& path) {
  struct stat status {};
  EXPECT_EQ(stat(QFile::encodeName(path).constData(), &status), 0) << path.toStdString();
  return status.st_mode & 0777U;
}

QStringList Column(const std::vector<QStringList>& rows, int column) {
  QStringList texts;
  for (const QStringList& row : rows) texts.append(row.value(column));
  return texts;
}

double MeanLightness(const QString& path) {
  const QImage image(path);
  EXPECT_FALSE(image.isNull()) << path.toStdString();
  double sum = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) sum += image.pixelColor(x, y).lightnessF();
  return sum / image.width() / image.height();
}

TEST(Export, ShowsImportedPortfoliosWithTheirValues) {
  const Bench bench;
  const Outcome outcome = bench.Import();
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  EXPECT_TRUE(outcome.out.contains("2 个组合")) << outcome.out.toStdString();

  const std::vector<QStringList> portfolios = ReadCsv(bench.File("out/2001-strngrd.csv"));
  ASSERT_EQ(portfolios.size(), 3U);
  EXPECT_EQ(portfolios[0].mid(0, 3), QStringList({"组合名称", "创建日期", "最新市值(元)"}));
  EXPECT_EQ(portfolios[0].last(), "#9");
  // Newest first. 1000 x 10.60 + 300 x 12.60 = 14380; 100 x 1.60 + 200 x 2.60 = 680.
  EXPECT_EQ(Column(portfolios, 0).mid(1), QStringList({"乙", "甲"}));
  EXPECT_EQ(Column(portfolios, 2).mid(1), QStringList({"14380.00", "680.00"}));
  // Gain since purchase: 14380 - 13600 and 680 - 500.
  EXPECT_EQ(Column(portfolios, 6).mid(1), QStringList({"780.00", "180.00"}));

  const QString firstId = portfolios[2].last();
  const std::vector<QStringList> holdings = ReadCsv(bench.File("out/2001-StringGrid1-" + firstId + ".csv"));
  ASSERT_EQ(holdings.size(), 3U);
  EXPECT_EQ(Column(holdings, 0).mid(1), QStringList({"600001", "600002"}));
  EXPECT_EQ(Column(holdings, 3).mid(1), QStringList({"1.60", "2.60"}));
  const QImage picture(bench.File("out/2001.png"));
  EXPECT_GE(picture.width(), 1000);
  EXPECT_GE(picture.height(), 500);
}

TEST(Export, ShowsEvaluationAndDecomposition) {
  const Bench bench;
  ASSERT_EQ(bench.Import().exitCode, 0);
  const std::vector<QStringList> list = ReadCsv(bench.File("out/3001-strngrd.csv"));
  ASSERT_EQ(list.size(), 3U);
  EXPECT_EQ(list[0].last(), "#7");
  // 180 / 500 = 36 % and 780 / 13600 = 5.735 %; the rate is 1.50.
  EXPECT_EQ(list[2].mid(0, 4), QStringList({"甲", "36.00", "1.50", "34.50"}));
  EXPECT_EQ(list[1].mid(0, 4), QStringList({"乙", "5.74", "1.50", "4.24"}));
  const std::vector<QStringList> holdings = ReadCsv(bench.File("out/3001-StringGrid1-" + list[2].last() + ".csv"));
  ASSERT_EQ(holdings.size(), 3U);
  EXPECT_EQ(holdings[1].size(), 9) << "the buy price is exported too";

  const std::vector<QStringList> parts = ReadCsv(bench.File("out/3002-strngrd.csv"));
  ASSERT_EQ(parts.size(), 3U);
  EXPECT_EQ(parts[0].mid(7), QStringList({"#7", "#8", "#9", "#10", "#11"}));
  EXPECT_EQ(parts[2].mid(0, 3), QStringList({"甲", "36.00", "34.50"}));
  EXPECT_EQ(parts[2][8], "1.50");
  const QImage picture(bench.File("out/3002.png"));
  int ofBars = 0;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) ofBars += picture.pixelColor(x, y) == QColor(0x5a, 0xa8, 0xf5) ? 1 : 0;
  EXPECT_GT(ofBars, 2000) << "the chart is in the picture";
}

// Stock 600001 has no bar from 1 April to 26 May 2024: its price of week and month before is that of 29 March, the
// market's 15th day, 1.15; of 600002 they are those of the 55th and the 37th day. 100 x 1.60 + 200 x 2.60 = 680 against
// 115 + 510 = 625 and 115 + 474 = 589.
TEST(Export, AStockThatDidNotTradeForWeeksHasThePriceItHadBefore) {
  const Market market;
  market.RemoveBars("600001", "2024-04-01", "2024-05-26");
  market.Build(market.Data());
  Bench bench;
  bench.data = market.Data();
  const Outcome outcome = bench.Import();
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  const std::vector<QStringList> portfolios = ReadCsv(bench.File("out/2001-strngrd.csv"));
  ASSERT_EQ(portfolios.size(), 3U);
  EXPECT_EQ(portfolios[2].mid(2, 4), QStringList({"680.00", "0.44", "8.80", "15.45"}));
}

/// The exchange files of a terminal that had the two portfolios, neither of them saved.
void GiveUnsavedPortfolios(const Bench& bench) {
  const Bench other;
  ASSERT_EQ(other.Import(TwoPortfolios("2024-05-06")).exitCode, 0);
  QDir().mkpath(bench.Work());
  ASSERT_TRUE(QFile::copy(other.Work() + "/TZZHDetail.dat", bench.Work() + "/TZZHDetail.dat"));
  ResultSet portfolios = ReadPacketFile(other.Work() + "/TZZHMerge.dat");
  ASSERT_EQ(portfolios.RowCount(), 2);
  for (int row = 0; row < portfolios.RowCount(); ++row) portfolios.SetInteger(row, portfolios.Column("SAVEFLAG"), 0);
  WritePacketFile(bench.Work() + "/TZZHMerge.dat", portfolios, Durability::Replaceable);
}

// Weights at purchase: 100 and 400 of 500 yuan, 10000 and 3600 of 13600.
TEST(Export, ShowsThePortfoliosOfTheEditor) {
  const Bench bench;
  GiveUnsavedPortfolios(bench);
  const Outcome outcome = RunTerminal(bench.Arguments({"--export", bench.File("out")}));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  const std::vector<QStringList> list = ReadCsv(bench.File("out/1002-strngrd.csv"));
  ASSERT_EQ(list.size(), 3U);
  EXPECT_EQ(list[0],
            QStringList({"序号", "组合名称", "创建日期", "组合风格", "目标收益率(%)", "方差", "Beta系数", "操作"}));
  EXPECT_EQ(list[1].mid(0, 5), QStringList({"1", "甲", "2024-05-06", "", "0.00"}));
  EXPECT_EQ(list[2].mid(0, 5), QStringList({"2", "乙", "2024-05-06", "", "0.00"}));
  const std::vector<QStringList> first = ReadCsv(bench.File("out/1002-StringGrid1-1.csv"));
  const std::vector<QStringList> second = ReadCsv(bench.File("out/1002-StringGrid1-2.csv"));
  EXPECT_EQ(first, (std::vector<QStringList>{{"代码", "名称", "数量(股)", "比例(%)", "#4"},
                                             {"600001", "股票1", "100", "20.00", "1"},
                                             {"600002", "股票2", "200", "80.00", "2"}}));
  ASSERT_EQ(second.size(), 3U);
  EXPECT_EQ(second[1], QStringList({"600010", "股票10", "1000", "73.53", "10"}));
  EXPECT_EQ(second[2], QStringList({"600012", "股票12", "300", "26.47", "12"}));
  const QImage picture(bench.File("out/1002.png"));
  EXPECT_GE(picture.width(), 1000);
  EXPECT_GE(picture.height(), 500);
  EXPECT_TRUE(ReadCsv(bench.File("out/2001-strngrd.csv")).size() == 1) << "none is followed";
}

TEST(Export, KeepsEverythingPrivate) {
  const Bench bench;
  ASSERT_EQ(bench.Import().exitCode, 0);
  EXPECT_EQ(ModeOf(bench.Work()), 0700U);
  EXPECT_EQ(ModeOf(bench.Work() + "/holdwise.fdb"), 0600U);
  EXPECT_EQ(ModeOf(bench.Work() + "/log/terminal.log"), 0600U);
}

TEST(Export, PortfoliosOutliveTheTerminal) {
  const Bench bench;
  ASSERT_EQ(bench.Import().exitCode, 0);
  EXPECT_EQ(Column(bench.Export("2001-strngrd"), 0), QStringList({"乙", "甲"}));
}

TEST(Import, RefusesAsAWholeAndNamesEveryBadLine) {
  const Bench bench;
  const Outcome outcome = bench.Import(TwoPortfolios() + "丙,600099,100,1.00\n丙,600003,many,1.00\n");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("第 6 行")) << outcome.err.toStdString();
  EXPECT_TRUE(outcome.err.contains("第 7 行")) << outcome.err.toStdString();
  EXPECT_FALSE(QFileInfo::exists(bench.File("out")));
  EXPECT_TRUE(bench.Export("2001-strngrd").empty());
}

TEST(Import, SaysWhyAFileCannotBeRead) {
  const Bench bench;
  const Outcome outcome =
      RunTerminal(bench.Arguments({"--import", bench.File("none.csv"), "--export", bench.File("out")}));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("none.csv")) << outcome.err.toStdString();
}

TEST(Export, SaysWhyAFolderCannotBeWritten) {
  const Bench bench;
  const QString file = bench.Write("file", "x");
  const Outcome outcome = RunTerminal(bench.Arguments({"--export", file + "/out"}));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains("/file/out")) << outcome.err.toStdString();
}

TEST(HandOver, SwitchesTheThemeOfTheRunningTerminal) {
  const Bench bench;
  RunningTerminal running(bench.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  const Outcome light = RunTerminal(bench.Arguments({"--theme", "light", "--export", bench.File("light")}));
  ASSERT_EQ(light.exitCode, 0) << light.err.toStdString();
  const Outcome dark = RunTerminal(bench.Arguments({"--theme", "dark", "--export", bench.File("dark")}));
  ASSERT_EQ(dark.exitCode, 0) << dark.err.toStdString();
  EXPECT_GT(MeanLightness(bench.File("light/2001.png")), 0.8);
  EXPECT_LT(MeanLightness(bench.File("dark/2001.png")), 0.25);
  EXPECT_EQ(running.Process().state(), QProcess::Running);
  EXPECT_TRUE(QString::fromUtf8(ReadTextFile(bench.Work() + "/settings.ini")).contains("theme=dark"));
}

TEST(HandOver, RunsImportsAndAnswersTheirOutcome) {
  const Bench bench;
  RunningTerminal running(bench.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  const Outcome bad = RunTerminal(bench.Arguments({"--import", bench.Write("bad.csv", "name,code\n")}));
  EXPECT_EQ(bad.exitCode, 1);
  EXPECT_FALSE(bad.err.isEmpty());
  const Outcome good = bench.Import();
  EXPECT_EQ(good.exitCode, 0) << good.err.toStdString();
  EXPECT_TRUE(good.out.contains("2 个组合")) << good.out.toStdString();
  EXPECT_EQ(ReadCsv(bench.File("out/2001-strngrd.csv")).size(), 3U);
  const Outcome unknown = RunTerminal(bench.Arguments({"--address", "没有"}));
  EXPECT_EQ(unknown.exitCode, 2);
  EXPECT_TRUE(unknown.err.contains("没有地址“没有”")) << unknown.err.toStdString();
  EXPECT_EQ(RunTerminal(bench.Arguments({"--address", "分时走势"})).exitCode, 0);
  EXPECT_EQ(running.Process().state(), QProcess::Running);
}

TEST(HandOver, RefusesAnotherDataFolderOrDatabase) {
  const Bench bench;
  RunningTerminal terminal(bench.Arguments({}));
  ASSERT_TRUE(terminal.WaitForWindow());
  EXPECT_EQ(RunTerminal(bench.Arguments({})).exitCode, 0);
  for (const QStringList& other : {QStringList{"--data", bench.File("elsewhere")}, {"--db", bench.File("other.fdb")}}) {
    const Outcome outcome = RunTerminal(QStringList{"--work", bench.Work(), "--export", bench.File("out")} + other);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.err.contains("不是“" + other.constLast() + "”")) << outcome.err.toStdString();
  }
  EXPECT_FALSE(QFileInfo::exists(bench.File("out"))) << "nothing was exported from the wrong place";
}

TEST(Prices, ReachTheGridAfterTheQuotesAreReplaced) {
  Bench bench;
  const QString data = bench.File("data");
  CopyFolder(SharedMarket().Data(), data);
  bench.data = data;
  ASSERT_EQ(bench.Import().exitCode, 0);
  RunningTerminal running(bench.Arguments({"--parameter", "Skip组合表现"}));
  ASSERT_TRUE(running.WaitForWindow());

  ResultSet quotes = ReadPacketFile(data + "/quotes.dat");
  for (int row = 0; row < quotes.RowCount(); ++row)
    if (quotes.IntegerAt(row, quotes.Column("code_number")) == 1600001)
      quotes.SetReal(row, quotes.Column("price"), 2.0);
  WritePacketFile(data + "/quotes.dat", quotes, Durability::Replaceable);
  // One period of the view's timer and the watcher's pause.
  running.Process().waitForFinished(4000);
  ASSERT_EQ(running.Process().state(), QProcess::Running);
  ASSERT_EQ(RunTerminal(bench.Arguments({"--export", bench.File("b")})).exitCode, 0);
  // 100 x 2.00 + 200 x 2.60 = 720 instead of 680.
  EXPECT_EQ(Column(ReadCsv(bench.File("b/2001-strngrd.csv")), 2).last(), "720.00");
}

}  // namespace
}  // namespace holdwise::e2e
