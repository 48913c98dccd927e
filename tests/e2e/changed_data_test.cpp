// SPDX-License-Identifier: MIT
// Data that do not fit what was saved, or one another.
#include <QFile>

#include "other_data_fixture.h"

namespace holdwise::e2e {
namespace {

TEST_F(OtherData, AFolderOlderThanThePurchaseIsSaid) {
  Build("2024-05-31");
  ASSERT_EQ(Export(Incomplete::Import()).exitCode, 0);
  Build("2024-05-24");
  const Outcome older = Export();
  EXPECT_EQ(older.exitCode, 1);
  for (const char* name : {"甲", "乙"}) {
    EXPECT_TRUE(
        older.err.contains(QString(name) + "：买入日期 2024-05-31 晚于行情日期 2024-05-24，请换用较新的数据目录"))
        << older.err.toStdString();
  }
  Build("2024-05-31");
  EXPECT_EQ(Export().exitCode, 0);
}

/// The stored level stays, as it was bought; the portfolio bought on another day has nothing to say.
TEST_F(OtherData, ACorrectedIndexCloseOfTheDayOfPurchaseIsSaid) {
  Build("2024-05-31");
  ASSERT_EQ(Export(Import()).exitCode, 0);
  const QByteArray third =
      "name,code,quantity,price,date\n丙,600003,100,3.00,2024-05-21\n丙,600004,100,4.00,2024-05-21\n";
  ASSERT_EQ(Export({"--import", bench_.Write("third.csv", third)}).exitCode, 0);
  const auto levels = [this] {
    QStringList column;
    for (const QStringList& row : ReadCsv(bench_.File("out/3002-strngrd.csv"))) column.append(row[9]);
    return column.mid(1);
  };
  // 60 weekdays up to 31 May close at 3000.01 to 3000.60: the 51st and the 52nd.
  const QStringList stored{"3000.52", "3000.51", "3000.51"};
  EXPECT_EQ(levels(), stored);
  market_.CorrectIndex("2024-05-20", "3001.25");
  Build("2024-05-31");
  const Outcome corrected = Export();
  EXPECT_EQ(corrected.exitCode, 1);
  for (const char* name : {"甲", "乙"}) {
    EXPECT_TRUE(corrected.err.contains(
        QString(name) + "：2024-05-20 的上证指数收盘已更正为 3001.25，组合仍按买入时保存的 3000.51 计算"))
        << corrected.err.toStdString();
  }
  EXPECT_FALSE(corrected.err.contains("丙：")) << corrected.err.toStdString();
  EXPECT_EQ(levels(), stored);
}

/// A folder put together from two builds: single files of the other one.
TEST_F(OtherData, FilesOfAnotherBuildAreNamed) {
  Build("2024-05-31");
  ASSERT_EQ(Export(Import()).exitCode, 0);
  const QString other = bench_.File("second");
  market_.RemoveBars("600002", "2024-05-01", "2024-05-14");
  market_.Build(other, {"--date", "2024-05-31"});
  for (const auto& [name, said] : {std::pair("QMTL/TZZH/风险计量/SH.dat", "风险文件是随另一份数据生成的"),
                                   std::pair("quotes.dat", "是随另一份数据生成的，与market.dat不符")}) {
    const QString path = bench_.data + '/' + name;
    ASSERT_TRUE(QFile::rename(path, path + ".away"));
    ASSERT_TRUE(QFile::copy(other + '/' + name, path));
    const Outcome mixed = Export();
    EXPECT_EQ(mixed.exitCode, 1) << name;
    EXPECT_TRUE(mixed.err.contains(said)) << mixed.err.toStdString();
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QFile::rename(path + ".away", path));
    EXPECT_EQ(Export().exitCode, 0) << name;
  }
}

/// What is read for the first time, and again when the right file is back.
TEST_F(OtherData, FilesOfAnotherBuildAreNotCalculatedWith) {
  Build("2024-05-31");
  const auto whole = WholeRisk(bench_.data);
  const QString other = bench_.File("second");
  market_.RemoveBars("600002", "2024-05-01", "2024-05-14");
  market_.Build(other, {"--date", "2024-05-31"});
  struct {
    const char* name;
    const char* said;
    bool isOfAll;  // not of the first portfolio alone
  } const files[] = {{"Day250/股票/600002.dat", "甲：股票2(600002)没有统计数据", false},
                     {"Day250/指数/allzs.dat", "甲：上证指数没有统计数据", true},
                     {"InterestRate.Dat", "利率文件 InterestRate.Dat 不能使用：是随另一份数据生成的", true}};
  for (const auto& [name, said, isOfAll] : files) {
    const Bench work;
    const QString path = bench_.data + "/QMTL/TZZH/" + name;
    ASSERT_TRUE(QFile::rename(path, path + ".away"));
    ASSERT_TRUE(QFile::copy(other + "/QMTL/TZZH/" + name, path));
    const Outcome mixed = ExportIn(work, Incomplete::Import());
    EXPECT_EQ(mixed.exitCode, 1) << name;
    EXPECT_TRUE(mixed.err.contains(said)) << mixed.err.toStdString();
    EXPECT_EQ(mixed.err.contains("乙"), isOfAll) << mixed.err.toStdString();
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QFile::rename(path + ".away", path));
    const Outcome healed = ExportIn(work);
    EXPECT_EQ(healed.exitCode, 0) << name << healed.err.toStdString();
    EXPECT_EQ(Risk(), whole) << name;
  }
}

TEST_F(OtherData, ASimulatedMarketIsSaidByTheExport) {
  Build("2024-05-31");
  const Outcome real = Export(Import());
  EXPECT_FALSE(real.out.contains("模拟行情")) << real.out.toStdString();
  EXPECT_FALSE(QFile::exists(bench_.File("out/模拟行情.txt")));
  market_.Build(bench_.data, {"--date", "2024-05-31", "--simulated", "--replace"});
  const Outcome simulated = Export();
  EXPECT_EQ(simulated.exitCode, 0) << simulated.err.toStdString();
  EXPECT_TRUE(simulated.out.contains("（模拟行情）")) << simulated.out.toStdString();
  EXPECT_TRUE(QFile::exists(bench_.File("out/模拟行情.txt")));
}

/// Everything has been read, but nothing is the latest any more.
TEST_F(Incomplete, AnExportWithoutTheDataFolderIsSaid) {
  ASSERT_EQ(Export(Import()).exitCode, 0);
  RunningTerminal running(bench_.Arguments({"--parameter", "Skip风险计量"}));
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(Export().exitCode, 0);
  ASSERT_TRUE(QFile::rename(bench_.data, bench_.data + ".away"));
  const Outcome gone = Export();
  EXPECT_EQ(gone.exitCode, 1);
  EXPECT_TRUE(gone.err.contains("行情没有更新") && gone.err.contains("不在了")) << gone.err.toStdString();
  ASSERT_TRUE(QFile::rename(bench_.data + ".away", bench_.data));
  const Outcome back = ExportWhenWhole(bench_);
  EXPECT_EQ(back.exitCode, 0) << back.err.toStdString();
}

}  // namespace
}  // namespace holdwise::e2e
