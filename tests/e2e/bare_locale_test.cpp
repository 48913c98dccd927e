// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>

#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/text_file.h"
#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

/// A container's or a plain ssh's environment: no character set is named, or that of "C".
class BareLocale : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    for (const QString& name : environment_.keys())
      if (name.startsWith("LC_") || name.startsWith("LANG")) environment_.remove(name);
    if (*GetParam() != '\0') environment_.insert("LC_ALL", GetParam());
    CopyFolder(SharedMarket().Data(), bench_.File("数据"));
  }
  [[nodiscard]] Outcome Start(const QStringList& more) const { return RunTerminal(Arguments(more), environment_); }
  [[nodiscard]] QStringList Arguments(const QStringList& more) const {
    return QStringList{"--data", bench_.File("数据"), "--work", bench_.File("工作")} + more;
  }
  /// Names and values of the exported portfolios.
  [[nodiscard]] static QStringList Values(const QString& folder) {
    QStringList values;
    for (const QStringList& row : ReadCsv(folder + "/2001-strngrd.csv")) values.append(row.value(0) + row.value(2));
    return values.mid(1);
  }

  const Bench bench_;
  QProcessEnvironment environment_ = BareEnvironment();
};

INSTANTIATE_TEST_SUITE_P(NoneAndC, BareLocale, testing::Values("", "C"));

TEST_P(BareLocale, FoldersMayHaveChineseNames) {
  const QString file = bench_.Write("组合.csv", TwoPortfolios());
  const Outcome first = Start({"--import", file, "--export", bench_.File("导出")});
  ASSERT_EQ(first.exitCode, 0) << first.err.toStdString();
  EXPECT_TRUE(first.out.contains("已导出到“" + bench_.File("导出") + "”")) << first.out.toStdString();
  EXPECT_TRUE(QFileInfo(bench_.File("工作/holdwise.fdb")).isFile());
  // 1000 x 10.60 + 300 x 12.60 = 14380; 100 x 1.60 + 200 x 2.60 = 680.
  const QStringList expected = {"乙14380.00", "甲680.00"};
  EXPECT_EQ(Values(bench_.File("导出")), expected);
  const QString log = QString::fromUtf8(ReadTextFile(bench_.File("工作/log/terminal.log")));
  EXPECT_TRUE(log.contains("已导出到“" + bench_.File("导出") + "”")) << log.toStdString();

  // After a hard end the helper process tries the database first.
  {
    RunningTerminal running(Arguments({}), environment_);
    ASSERT_TRUE(running.WaitForWindow());
    QFile maps(QStringLiteral("/proc/%1/maps").arg(running.Process().processId()));
    ASSERT_TRUE(maps.open(QIODevice::ReadOnly));
    EXPECT_TRUE(maps.readAll().contains("/qtbase_zh_CN.qm")) << "Qt's own texts are Chinese";
    ASSERT_GE(running.Signal(SIGKILL), 0);
  }
  const Outcome second = Start({"--export", bench_.File("再次")});
  ASSERT_EQ(second.exitCode, 0) << second.err.toStdString();
  EXPECT_EQ(Values(bench_.File("再次")), expected);
}

TEST_P(BareLocale, ADatabaseMayStandUnderAChineseName) {
  const QString database = bench_.File("库.fdb");
  const Outcome outcome = Start({"--db", database, "--export", bench_.File("导出")});
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  EXPECT_TRUE(QFileInfo(database).isFile());
}

TEST_P(BareLocale, MessagesNameFilesAsTheyAre) {
  const Outcome outcome = Start({"--import", bench_.File("没有.csv"), "--export", bench_.File("导出")});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains(bench_.File("没有.csv"))) << outcome.err.toStdString();
}

}  // namespace
}  // namespace holdwise::e2e
