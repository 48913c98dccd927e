// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>

#include "terminal_process.h"

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
  EXPECT_EQ(outcome.out.trimmed().split('\n').size(), 8) << outcome.out.toStdString();
  EXPECT_TRUE(LineOf(outcome.out, "数据库检查").contains(QDate::currentDate().toString(Qt::ISODate)));
  EXPECT_TRUE(LineOf(outcome.out, "镜像文件").contains("写于"));
  EXPECT_TRUE(LineOf(outcome.out, "数据目录").contains("2024-05-31"));
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
