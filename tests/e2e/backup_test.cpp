// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <csignal>

#include "screen.h"
#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

class Backups : public testing::Test {
 protected:
  [[nodiscard]] QStringList Generations() const {
    return QDir(bench_.Work() + "/backups").entryList({"portfolios-*.csv"}, QDir::Files, QDir::Name);
  }
  [[nodiscard]] QByteArray Newest() const {
    return Bytes(bench_.Work() + "/backups/" + Generations().value(Generations().size() - 1));
  }
  void Import() const {
    const Outcome outcome = bench_.Import();
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  }
  /// A command without display and without a data folder, as after an accident.
  [[nodiscard]] Outcome Alone(const QStringList& more, const QString& work) const {
    return RunTerminal(QStringList{"--work", work, "--data", bench_.File("nowhere")} + more);
  }
  [[nodiscard]] QByteArray AllPortfolios(const QString& work) const {
    const Outcome outcome = Alone({"--backup", bench_.File("all.csv")}, work);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    EXPECT_EQ(outcome.err, QString()) << "the data folder that is missing is not needed";
    return Bytes(bench_.File("all.csv"));
  }

  Bench bench_;
};

TEST_F(Backups, AllPortfoliosGoThroughOneFile) {
  Import();
  const QByteArray file = AllPortfolios(bench_.Work());
  // What was bought, by hand: 甲 100 of 600001 at 1.00 and 200 of 600002 at 2.00, so a fifth and four fifths.
  EXPECT_TRUE(file.contains("\n甲,600001,100,1,")) << file.toStdString();
  EXPECT_TRUE(file.contains(",1,0.2\n"));
  EXPECT_TRUE(file.contains(",2,0.8\n"));
  EXPECT_TRUE(file.contains("\n合计,2,4,x"));

  const QString other = bench_.File("other");
  const QString saved = bench_.Write("saved.csv", file);
  const Outcome restored = Alone({"--restore", saved}, other);
  EXPECT_EQ(restored.exitCode, 0) << restored.err.toStdString();
  EXPECT_EQ(restored.err, QString());
  EXPECT_TRUE(restored.out.contains(QStringLiteral("恢复2个组合：甲、乙"))) << restored.out.toStdString();
  EXPECT_EQ(AllPortfolios(other), file);
}

TEST_F(Backups, AnOrderlyEndLeavesAGenerationAndOneWithoutChangesNone) {
  Import();
  // One of the import may be there as well, when the export took more than ten seconds.
  const QStringList first = Generations();
  ASSERT_FALSE(first.isEmpty());
  EXPECT_TRUE(first.back().endsWith("-2-4.csv"));
  EXPECT_EQ(Newest(), AllPortfolios(bench_.Work()));
  ASSERT_EQ(RunTerminal(bench_.Arguments({"--export", bench_.File("again")})).exitCode, 0);
  EXPECT_EQ(Generations(), first);
}

TEST_F(Backups, AFileThatIsNotWholeIsRefused) {
  Import();
  const QByteArray before = AllPortfolios(bench_.Work());
  QByteArray bad = before;
  bad.replace(",200,2,", ",300,2,");
  ASSERT_NE(bad, before);
  const Outcome outcome = Alone({"--restore", bench_.Write("bad.csv", bad)}, bench_.Work());
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains(QStringLiteral("没有恢复，组合没有改变"))) << outcome.err.toStdString();
  EXPECT_TRUE(outcome.err.contains(QStringLiteral("第6行：文件不完整或者被改动过")));
  EXPECT_EQ(AllPortfolios(bench_.Work()), before);
}

TEST_F(Backups, WithoutOneOfWhatIsThereNothingIsRestored) {
  Import();
  const QByteArray before = AllPortfolios(bench_.Work());
  Bench elsewhere;
  ASSERT_EQ(RunTerminal(elsewhere.Arguments({"--import",
                                             elsewhere.Write("p.csv",
                                                             "name,code,quantity,price\n丙,600003,10,3\n"
                                                             "丙,600004,10,4\n"),
                                             "--backup", bench_.File("other.csv")}))
                .exitCode,
            0);
  ASSERT_TRUE(QDir(bench_.Work() + "/backups").removeRecursively());
  (void)bench_.Write("work/backups", "x");
  const Outcome outcome = Alone({"--restore", bench_.File("other.csv")}, bench_.Work());
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains(QStringLiteral("没有恢复，组合没有改变"))) << outcome.err.toStdString();
  EXPECT_TRUE(outcome.err.contains(QStringLiteral("要先留一份备份"))) << outcome.err.toStdString();
  ASSERT_TRUE(QFile::remove(bench_.Work() + "/backups"));
  EXPECT_EQ(AllPortfolios(bench_.Work()), before);
}

TEST_F(Backups, WithoutOneOfWhatIsThereNothingIsRestoredFromTheMenu) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "no Xvfb";
  Import();
  const QByteArray before = AllPortfolios(bench_.Work());
  Bench other;
  ASSERT_EQ(RunTerminal(other.Arguments({"--import",
                                         other.Write("p.csv",
                                                     "name,code,quantity,price\n丙,600003,10,3\n"
                                                     "丙,600004,10,4\n"),
                                         "--backup", bench_.File("other.csv")}))
                .exitCode,
            0);
  {
    RunningTerminal running(bench_.Arguments({}), screen.Environment());
    ASSERT_TRUE(running.WaitForWindow());
    ASSERT_TRUE(screen.Enter("Holdwise"));
    screen.Keys({"alt+f", "r"});
    ASSERT_TRUE(screen.Enter("恢复组合"));
    screen.Keys({"alt+o"});
    ASSERT_TRUE(screen.Enter("选择备份"));
    screen.Keys({"ctrl+a"});
    screen.Type(bench_.File("other.csv"));
    screen.Keys({"Return"});
    ASSERT_TRUE(screen.Enter("恢复组合"));
    screen.Keys({"alt+a"});
    ASSERT_TRUE(QDir(bench_.Work() + "/backups").removeRecursively());
    (void)bench_.Write("work/backups", "x");
    screen.Keys({"alt+r"});
    ASSERT_TRUE(screen.Enter("恢复结果"));
    screen.Keys({"Return"});
    ASSERT_GE(running.Signal(SIGTERM), 0);
  }
  ASSERT_TRUE(QFile::remove(bench_.Work() + "/backups"));
  EXPECT_EQ(AllPortfolios(bench_.Work()), before);
}

class BackupsAtTheEnd : public Backups, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Signals, BackupsAtTheEnd, testing::Values(SIGTERM, SIGHUP, SIGQUIT));

TEST_P(BackupsAtTheEnd, ASignalLeavesAGeneration) {
  RunningTerminal running(bench_.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(RunTerminal(bench_.Arguments({"--import", bench_.Write("p.csv", TwoPortfolios())})).exitCode, 0);
  ASSERT_GE(running.Signal(GetParam()), 0);
  ASSERT_FALSE(Generations().isEmpty());
  EXPECT_EQ(Newest(), AllPortfolios(bench_.Work()));
}

TEST_F(Backups, TenSecondsAfterAChangeEvenAKilledTerminalHasOne) {
  RunningTerminal running(bench_.Arguments({}));
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(RunTerminal(bench_.Arguments({"--import", bench_.Write("p.csv", TwoPortfolios())})).exitCode, 0);
  EXPECT_TRUE(Until([this] { return !Generations().isEmpty(); }, 30'000));
  (void)running.Signal(SIGKILL);
  ASSERT_FALSE(Generations().isEmpty());
  EXPECT_TRUE(Generations()[0].endsWith("-2-4.csv"));
}

TEST_F(Backups, TheLossOfTheDisplayLeavesAGeneration) {
  auto screen = std::make_unique<Screen>();
  if (!screen->IsThere()) GTEST_SKIP() << "no Xvfb";
  RunningTerminal running(bench_.Arguments({}), screen->Environment());
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_EQ(RunTerminal(bench_.Arguments({"--import", bench_.Write("p.csv", TwoPortfolios())})).exitCode, 0);
  ASSERT_TRUE(Generations().isEmpty());
  screen.reset();
  ASSERT_TRUE(running.Process().waitForFinished(30'000 * kSlowness));
  ASSERT_EQ(Generations().size(), 1);
  EXPECT_TRUE(Generations()[0].endsWith("-2-4.csv"));
}

TEST_F(Backups, AreExportedFromTheMenuIntoAFileThatCanBeImported) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "no Xvfb";
  Import();
  const QByteArray all = AllPortfolios(bench_.Work());
  RunningTerminal running(bench_.Arguments({}), screen.Environment());
  ASSERT_TRUE(running.WaitForWindow());
  ASSERT_TRUE(screen.Enter("Holdwise"));
  screen.Keys({"alt+f", "p"});
  ASSERT_TRUE(screen.Enter("导出组合"));
  screen.Keys({"ctrl+a"});
  screen.Type(bench_.File("saved.csv"));
  screen.Keys({"Return"});
  EXPECT_TRUE(Until([this] { return QFileInfo::exists(bench_.File("saved.csv")); }, 10'000));
  ASSERT_TRUE(screen.Enter("导出组合"));  // what has come of it
  screen.Keys({"Return"});
  EXPECT_TRUE(screen.IsGone("导出组合"));
  EXPECT_EQ(Bytes(bench_.File("saved.csv")), all);
  Bench other;
  ASSERT_EQ(
      RunTerminal(other.Arguments({"--import", bench_.File("saved.csv"), "--export", other.File("out")})).exitCode, 0);
  const auto rows = other.Export("2001-strngrd");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows, bench_.Export("2001-strngrd"));
}

TEST_F(Backups, ADeletionIsUndoneFromTheMenu) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "no Xvfb";
  Import();
  const QByteArray both = AllPortfolios(bench_.Work());
  // 乙 goes: what a deletion leaves.
  Bench other;
  ASSERT_EQ(RunTerminal(other.Arguments({"--import",
                                         other.Write("p.csv",
                                                     "name,code,quantity,price\n甲,600001,100,1\n"
                                                     "甲,600002,200,2\n"),
                                         "--backup", bench_.File("one.csv")}))
                .exitCode,
            0);
  ASSERT_EQ(Alone({"--restore", bench_.File("one.csv")}, bench_.Work()).exitCode, 0);
  ASSERT_EQ(AllPortfolios(bench_.Work()).count("\n乙,"), 0);
  {
    RunningTerminal running(bench_.Arguments({}), screen.Environment());
    ASSERT_TRUE(running.WaitForWindow());
    ASSERT_TRUE(screen.Enter("Holdwise"));
    screen.Keys({"alt+f", "r"});
    ASSERT_TRUE(screen.Enter("恢复组合"));
    screen.Keys({"alt+r"});
    ASSERT_TRUE(screen.Enter("恢复结果"));
    screen.Keys({"Return"});
    ASSERT_TRUE(screen.IsGone("恢复结果"));
    ASSERT_GE(running.Signal(SIGTERM), 0);
  }
  const QByteArray after = AllPortfolios(bench_.Work());
  EXPECT_EQ(after.count("\n乙,"), 2);
  EXPECT_EQ(after.count("\n甲,"), both.count("\n甲,"));
}

}  // namespace
}  // namespace holdwise::e2e
