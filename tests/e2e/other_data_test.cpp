// SPDX-License-Identifier: MIT
#include "other_data_fixture.h"

namespace holdwise::e2e {
namespace {

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

/// What is imported while the quotes are of another date than the folder has no whole figures: of an earlier date until
/// the terminal is started again, of a later one until it has taken that.
TEST_F(OtherData, ImportedWhileTheFolderHasAnotherDateIsSaid) {
  const char* const interest = "InterestRate.Dat 不能使用：是随另一份数据生成的，请重新启动终端";
  struct {
    const char* first;
    const char* second;
    const char* said;
    bool isHealed;
  } const folders[] = {{"2024-05-24", "2024-05-31", "还没有换上", true},
                       {"2024-05-31", "2024-05-24", "重新启动终端后生效", false}};
  for (const auto& [first, second, said, isHealed] : folders) {
    const Bench work;
    Build(first);
    {
      RunningTerminal running({"--data", bench_.data, "--work", work.Work()});
      ASSERT_TRUE(running.WaitForWindow());
      Build(second);
      const Outcome imported = ExportIn(work, Import());
      EXPECT_EQ(imported.exitCode, 1);
      // Nothing of the other folder is calculated with.
      for (const char* part : {said, interest, "乙、甲：没有计算"})
        EXPECT_TRUE(imported.err.contains(part)) << imported.err.toStdString();
      if (isHealed)
        EXPECT_EQ(ExportWhenWhole(work).exitCode, 0);
      else
        EXPECT_EQ(ExportIn(work).exitCode, 1) << "nothing has changed";
    }
    const Outcome restarted = ExportIn(work);
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
  const Outcome healed = ExportWhenWhole(bench_);
  EXPECT_EQ(healed.exitCode, 0) << healed.err.toStdString();
  EXPECT_EQ(Risk(), WholeRisk(bench_.data));
}

}  // namespace
}  // namespace holdwise::e2e
