// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <algorithm>
#include <csignal>

#include "holdwise/packet/packet_file.h"
#include "screen.h"

namespace holdwise::e2e {
namespace {

const QStringList kPair = {QStringLiteral("TZZHDetail.dat"), QStringLiteral("TZZHMerge.dat")};

class ExchangeFiles : public testing::Test {
 protected:
  /// Two portfolios with their figures, shown in "before"; the database is lost afterwards.
  void SetUp() override {
    const Outcome outcome = bench_.Import(TwoPortfolios(), "before");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    // There are figures that could be lost.
    for (const QStringList& row : Rows("before", "2002-strngrd")) EXPECT_NE(row.value(4).toDouble(), 0);
    ASSERT_TRUE(QFile::remove(bench_.Work() + "/holdwise.fdb"));
    for (const QString& name : kPair) ASSERT_TRUE(QFile::exists(Work(name))) << name.toStdString();
  }
  [[nodiscard]] QString Work(const QString& name) const { return bench_.Work() + '/' + name; }
  [[nodiscard]] std::vector<QStringList> Rows(const QString& folder, const QString& grid) const {
    std::vector<QStringList> rows = ReadCsv(bench_.File(folder + '/' + grid + ".csv"));
    if (!rows.empty()) rows.erase(rows.begin());
    return rows;
  }
  /// Largest and number of different ids in one of the files.
  [[nodiscard]] std::pair<std::int64_t, std::size_t> Ids(const QString& name) const {
    const ResultSet table = ReadPacketFile(Work(name));
    std::vector<std::int64_t> ids = table.Integers(table.Column("ID"));
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return {ids.empty() ? 0 : ids.back(), ids.size()};
  }

  Bench bench_;
};

TEST_F(ExchangeFiles, BringEverythingBackWhenTheDatabaseIsLost) {
  const auto oldPortfolios = Ids(kPair[1]);
  const auto oldHoldings = Ids(kPair[0]);
  EXPECT_EQ(oldPortfolios.second, 2U);
  EXPECT_EQ(oldHoldings.second, 4U);
  const Outcome outcome = bench_.Import(OneMore(), "after");
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();

  // The newest stands first, under ids of its own; below it everything is as it was, the figures too.
  for (const char* grid : {"2001-strngrd", "2002-strngrd"}) {
    std::vector<QStringList> rows = Rows("after", grid);
    ASSERT_EQ(rows.size(), 3U) << grid;
    EXPECT_EQ(rows.front().first(), QStringLiteral("丙"));
    EXPECT_EQ(rows.front().last().toLongLong(), oldPortfolios.first + 1);
    rows.erase(rows.begin());
    EXPECT_EQ(rows, Rows("before", grid)) << grid;
  }
  for (const QStringList& portfolio : Rows("before", "2001-strngrd")) {
    for (const char* view : {"2001", "2002"}) {
      const QString grid = QStringLiteral("%1-StringGrid1-%2").arg(view, portfolio.last());
      const auto rows = Rows("before", grid);
      EXPECT_EQ(rows.size(), 2U);
      EXPECT_EQ(Rows("after", grid), rows) << grid.toStdString();
    }
  }
  EXPECT_EQ(Ids(kPair[0]), (std::pair<std::int64_t, std::size_t>(oldHoldings.first + 2, 6)));
}

TEST_F(ExchangeFiles, ThatAreDamagedAreNotHalfRead) {
  QByteArray merge = Bytes(Work(kPair[1]));
  const QByteArray detail = Bytes(Work(kPair[0]));
  merge[merge.size() / 2] = static_cast<char>(~merge[merge.size() / 2]);
  WriteFileAtomically(Work(kPair[1]), merge, Durability::Replaceable);

  const Outcome exported = RunTerminal(bench_.Arguments({"--export", bench_.File("after")}));
  EXPECT_EQ(exported.exitCode, 1);
  EXPECT_TRUE(exported.err.contains("退出时保存的组合没有读入")) << exported.err.toStdString();
  EXPECT_TRUE(Rows("after", "2001-strngrd").empty());
  const auto kept = [this](const QString& name) {
    const QStringList files = QDir(bench_.Work()).entryList({name + ".2*.bad"});
    return files.size() == 1 ? Bytes(Work(files[0])) : QByteArray("(not one)");
  };
  EXPECT_EQ(kept(kPair[0]), detail);
  EXPECT_EQ(kept(kPair[1]), merge);
  EXPECT_EQ(Ids(kPair[0]).second, 0U) << "holdings were left behind";
  const QString log = QString::fromUtf8(Bytes(bench_.Work() + "/log/terminal.log"));
  EXPECT_TRUE(log.contains("Holdwise.bpl->Untcommon->LoadZHFile 发生错误!错误信息:")) << log.toStdString();
  EXPECT_TRUE(log.contains(kPair[1])) << log.toStdString();
}

TEST_F(ExchangeFiles, ThatBringEverythingBackLeaveNoDoubtBehind) {
  for (const char* time : {"again", "later"}) {
    const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File(time)}));
    EXPECT_EQ(outcome.exitCode, 0) << time << outcome.err.toStdString();
    EXPECT_EQ(outcome.err.contains("数据库与最近的备份不同"), QString(time) == "again") << outcome.err.toStdString();
  }
  EXPECT_EQ(RunTerminal(bench_.Arguments({"--check"})).exitCode, 0);
}

/// The same at a window.
class ExchangeFilesAtAWindow : public ExchangeFiles {
 protected:
  void SetUp() override {
    if (!MissingProgram().isEmpty()) GTEST_SKIP() << MissingProgram().toStdString();
    ASSERT_TRUE(screen_.IsThere());
    ExchangeFiles::SetUp();
  }
  [[nodiscard]] bool CheckSays(const char* text) const {
    return Until([&] { return RunTerminal(bench_.Arguments({"--check"})).out.contains(text); }, 30'000);
  }

  const Screen screen_;
};

TEST_F(ExchangeFilesAtAWindow, BringEverythingBackUnasked) {
  {
    RunningTerminal terminal(bench_.Arguments({}), screen_.Environment());
    ASSERT_TRUE(terminal.WaitForWindow());
    EXPECT_TRUE(CheckSays("正常  与备份比较：")) << "once the backup of it has been written";
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
  }
  EXPECT_TRUE(Bytes(bench_.Work() + "/log/terminal.log").contains("数据库文件不在原处，已新建"));
  const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File("after")}));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  for (const char* grid : {"2001-strngrd", "2002-strngrd"}) EXPECT_EQ(Rows("after", grid), Rows("before", grid));
}

/// Sound ones that hold nothing leave the choice to the next start.
TEST_F(ExchangeFilesAtAWindow, WhatTheyDoNotBringBackIsAskedAboutLater) {
  const Bench empty;
  ASSERT_EQ(RunTerminal(empty.Arguments({"--export", empty.File("out")})).exitCode, 0);
  for (const QString& name : kPair) {
    ASSERT_TRUE(QFile::remove(Work(name)));
    ASSERT_TRUE(QFile::copy(empty.Work() + '/' + name, Work(name)));
  }
  {
    RunningTerminal terminal(bench_.Arguments({}), screen_.Environment());
    ASSERT_TRUE(terminal.WaitForWindow());
    EXPECT_TRUE(CheckSays("注意  与备份比较："));
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
  }
  {
    RunningTerminal terminal(bench_.Arguments({}), screen_.Environment());
    ASSERT_TRUE(screen_.Enter("数据库与最近的备份不同")) << terminal.Process().readAllStandardError().toStdString();
    screen_.Keys({"Tab", "space"});
    ASSERT_TRUE(screen_.Enter("^询问$"));
    screen_.Keys({"Tab", "space"});
    ASSERT_TRUE(terminal.WaitForWindow());
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
  }
  EXPECT_EQ(RunTerminal(bench_.Arguments({"--export", bench_.File("after")})).exitCode, 0);
  EXPECT_EQ(Rows("after", "2001-strngrd"), Rows("before", "2001-strngrd"));
}

TEST_F(ExchangeFiles, BelongToOneDatabase) {
  const QString csv = bench_.Write("more.csv", OneMore());
  // The lost one, made anew, inherits.
  ASSERT_EQ(RunTerminal(bench_.Arguments({"--export", bench_.File("again")})).exitCode, 0);
  EXPECT_EQ(Rows("again", "2001-strngrd"), Rows("before", "2001-strngrd"));
  const QByteArray own = Bytes(Work(kPair[0])) + Bytes(Work(kPair[1]));
  const Outcome other = RunTerminal(
      bench_.Arguments({"--db", bench_.File("other.fdb"), "--import", csv, "--export", bench_.File("other")}));
  EXPECT_EQ(other.exitCode, 0) << other.err.toStdString();
  EXPECT_TRUE(other.err.contains("属于另一个数据库")) << other.err.toStdString();
  ASSERT_EQ(Rows("other", "2001-strngrd").size(), 1U) << "it has not inherited";
  EXPECT_EQ(Bytes(Work(kPair[0])) + Bytes(Work(kPair[1])), own) << "nor written";
}

}  // namespace
}  // namespace holdwise::e2e
