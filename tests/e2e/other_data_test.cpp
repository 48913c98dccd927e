// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>
#include <QThread>
#include <tuple>

#include "incomplete_fixture.h"

namespace holdwise::e2e {
namespace {

/// A market whose data folder is made again beside or under a terminal.
class OtherData : public Incomplete {
 protected:
  OtherData() { bench_.data = bench_.File("other"); }
  /// The folder as of a day, with 600002's bars of the first two weeks of May or without them.
  void Build(const QString& date, bool isCorrected = false) {
    if (isCorrected) market_.RemoveBars("600002", "2024-05-01", "2024-05-14");
    market_.Build(bench_.data, {"--date", date});
  }
  /// Bought on a day that every folder here has reached.
  [[nodiscard]] QStringList Import() const { return {"--import", bench_.Write("p.csv", TwoPortfolios("2024-05-20"))}; }
  /// What a running terminal exports once its figures are whole again.
  [[nodiscard]] Outcome ExportWhenWhole() const {
    Outcome outcome = Export();
    for (int time = 0; time < 20 && outcome.exitCode != 0; ++time) {
      QThread::msleep(1000);
      outcome = Export();
    }
    return outcome;
  }

  const Market market_;
};

TEST_F(OtherData, AnOlderFolderOnAnOldWorkFolderIsCalculatedAgain) {
  Build("2024-05-31");
  ASSERT_EQ(Export(Import()).exitCode, 0);
  const auto newer = Risk();
  Build("2024-05-24");
  const Outcome older = Export();
  EXPECT_EQ(older.exitCode, 0) << older.err.toStdString();
  EXPECT_NE(Risk(), newer);
  EXPECT_EQ(Risk(), WholeRisk(bench_.data));
}

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

TEST_F(OtherData, WhatOfAnOlderFolderIsMissingIsSaid) {
  Build("2024-05-31");
  ASSERT_EQ(Export(Import()).exitCode, 0);
  Build("2024-05-24");
  TakeAway("指数/allzs.dat");
  const Outcome outcome = Export();
  EXPECT_EQ(outcome.exitCode, 1);
  for (const char* text : {"甲：上证指数的统计数据已到 2024-05-31，晚于行情日期", "乙：上证指数的统计数据已到"}) {
    EXPECT_TRUE(outcome.err.contains(text)) << outcome.err.toStdString();
  }
  PutBack("指数/allzs.dat");
  EXPECT_EQ(Export().exitCode, 0);
  EXPECT_EQ(Risk(), WholeRisk(bench_.data));
}

TEST_F(OtherData, CorrectedBarsOfTheSameDateAreCalculatedAgain) {
  Build("2024-05-31");
  ASSERT_EQ(Export(Import()).exitCode, 0);
  const auto before = Risk();
  Build("2024-05-31", true);
  TakeAway("股票/600002.dat");
  const Outcome lacking = Export();
  EXPECT_EQ(lacking.exitCode, 1);
  EXPECT_TRUE(lacking.err.contains("甲：股票2(600002)的统计数据没有随当前数据更新")) << lacking.err.toStdString();
  EXPECT_FALSE(lacking.err.contains("乙：")) << lacking.err.toStdString();
  PutBack("股票/600002.dat");
  const Outcome whole = Export();
  EXPECT_EQ(whole.exitCode, 0) << whole.err.toStdString();
  EXPECT_NE(Risk(), before);
  EXPECT_EQ(Risk(), WholeRisk(bench_.data));
}

TEST_F(OtherData, CorrectedBarsAreTakenUpWhileTheTerminalRuns) {
  Build("2024-05-31");
  ASSERT_EQ(Export(Import()).exitCode, 0);
  const auto before = Risk();
  RunningTerminal running(bench_.Arguments({"--parameter", "Skip风险计量"}));
  ASSERT_TRUE(running.WaitForWindow());
  Build("2024-05-31", true);
  const auto corrected = WholeRisk(bench_.data);
  EXPECT_NE(corrected, before);
  for (int time = 0; time < 20 && Risk() != corrected; ++time) {
    QThread::msleep(1000);
    EXPECT_EQ(Export().exitCode, 0);
  }
  EXPECT_EQ(Risk(), corrected);
  // The securities' own figures come from files that are fetched again.
  const auto securities = [](const QString& folder) { return ReadCsv(folder + "/2002-StringGrid1-1.csv"); };
  const Bench whole;
  ASSERT_EQ(
      RunTerminal(QStringList{"--data", bench_.data, "--work", whole.Work(), "--export", whole.File("out")} + Import())
          .exitCode,
      0);
  EXPECT_EQ(securities(bench_.File("out")), securities(whole.File("out")));
}

/// Its quotes stay those of its date until it is started again, so figures of another date are not whole.
TEST_F(OtherData, ImportedWhileTheFolderHasAnotherDateIsSaidUntilTheRestart) {
  for (const auto& [first, second, said] :
       {std::tuple("2024-05-24", "2024-05-31", "上证指数的统计数据已到 2024-05-31，晚于行情日期，请重新启动终端"),
        std::tuple("2024-05-31", "2024-05-24", "上证指数的统计数据只到 2024-05-24")}) {
    const Bench work;
    const auto run = [&](const QStringList& more) {
      return RunTerminal(QStringList{"--data", bench_.data, "--work", work.Work(), "--export", bench_.File("out")} +
                         more);
    };
    Build(first);
    {
      RunningTerminal running({"--data", bench_.data, "--work", work.Work()});
      ASSERT_TRUE(running.WaitForWindow());
      Build(second);
      const Outcome imported = run(Import());
      EXPECT_EQ(imported.exitCode, 1);
      for (const char* name : {"甲：", "乙："}) {
        EXPECT_TRUE(imported.err.contains(QString(name) + said)) << imported.err.toStdString();
      }
      EXPECT_EQ(run({}).exitCode, 1) << "nothing has changed";
    }
    const Outcome restarted = run({});
    EXPECT_EQ(restarted.exitCode, 0) << restarted.err.toStdString();
    EXPECT_EQ(Risk(), WholeRisk(bench_.data));
  }
}

/// The folder of the running terminal's own date comes back: its figures are whole without a restart.
TEST_F(OtherData, AnOlderFolderThatIsReplacedAgainIsHealedWithoutARestart) {
  Build("2024-05-31");
  RunningTerminal running(bench_.Arguments({"--parameter", "Skip风险计量"}));
  ASSERT_TRUE(running.WaitForWindow());
  Build("2024-05-24");
  EXPECT_EQ(Export(Import()).exitCode, 1);
  Build("2024-05-31");
  const Outcome healed = ExportWhenWhole();
  EXPECT_EQ(healed.exitCode, 0) << healed.err.toStdString();
  EXPECT_EQ(Risk(), WholeRisk(bench_.data));
}

}  // namespace
}  // namespace holdwise::e2e
