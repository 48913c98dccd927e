// SPDX-License-Identifier: MIT
// A database that is damaged, or that another program has written to, and the newest backup beside it.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <csignal>
#include <optional>

#include "backup/backup_folder.h"
#include "screen.h"
#include "temp_database.h"

namespace holdwise::e2e {
namespace {

constexpr qint64 kPage = 4096;
constexpr char kRowsPage = 5, kIndexPage = 7;

/// What the engine stumbles over when it opens the file.
void Damage(const QString& path) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  ASSERT_TRUE(file.seek(2 * kPage));
  file.write(QByteArray(static_cast<qsizetype>(file.size()) - 2 * kPage, '\x5A'));
}

/// Answers the page by its first or its second button, then the question, if there is one, by OK.
void Answer(const Screen& screen, const QString& title, int button, bool isAsked) {
  ASSERT_TRUE(screen.Enter(title));
  for (int tab = 0; tab < button; ++tab) screen.Keys({"Tab"});
  screen.Keys({"space"});
  if (!isAsked) return;
  ASSERT_TRUE(screen.Enter("^询问$"));
  // Cancel is what Return would press.
  screen.Keys({"Tab", "space"});
}

/// Ended with 1, and why is told.
void ExpectSaid(const Outcome& outcome, const QString& words) {
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_TRUE(outcome.err.contains(words)) << outcome.err.toStdString();
}

/// What --check says, and that it ends with 1 unless all is well.
void ExpectCheck(const QStringList& arguments, const QString& words, bool isWell = false) {
  const Outcome check = RunTerminal(arguments + QStringList{"--check"});
  EXPECT_EQ(check.exitCode, isWell ? 0 : 1);
  EXPECT_TRUE(check.out.contains(words)) << check.out.toStdString();
}

class DamagedDatabase : public testing::Test {
 protected:
  /// Two portfolios and a backup of them, left in order.
  void SetUp() override {
    const Outcome outcome = bench_.Import(TwoPortfolios(), "before");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    ASSERT_TRUE(Backups().Newest());
    ASSERT_EQ(Backups().Newest()->portfolios, 2);
  }
  [[nodiscard]] QString File() const { return bench_.Work() + "/holdwise.fdb"; }
  [[nodiscard]] backup::BackupFolder Backups() const { return backup::BackupFolder(bench_.Work()); }
  /// As another program does.
  template <typename Action>
  void WithDatabase(Action action) const {
    const auto database = FirebirdUserData::Open({File(), {}, {}}, test::TempDatabase::LockFolder());
    action(*database);
  }
  [[nodiscard]] qint64 Portfolios() const {
    qint64 count = 0;
    WithDatabase([&count](FirebirdUserData& database) {
      count = database.Count(QStringLiteral("select count(*) from alg_commain"));
    });
    return count;
  }
  [[nodiscard]] QStringList SetAside() const {
    return QDir(bench_.Work()).entryList({QStringLiteral("holdwise.fdb.2*.damaged")});
  }

  Bench bench_;
};

TEST_F(DamagedDatabase, IsSaidByAnExportWithWhatIsSafe) {
  Damage(File());
  const QByteArray bytes = Bytes(File());
  const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File("after")}));
  ExpectSaid(outcome, "已损坏");
  EXPECT_TRUE(outcome.err.contains("最近的备份完好")) << outcome.err.toStdString();
  EXPECT_TRUE(outcome.err.contains("2 个组合，4 条持股")) << outcome.err.toStdString();
  EXPECT_EQ(Bytes(File()), bytes) << "nobody was asked";
  EXPECT_TRUE(SetAside().isEmpty());
}

// A page of the system's table of indices: not read before the statements of the views are prepared, and empty as one
// that was never used.
TEST_F(DamagedDatabase, FoundByAnExportOnTheWayEndsItAtOnce) {
  const QByteArray secondPageOfIndices("\x01\0\0\0\x04\0", 6);  // its number among the table's pages, the table's id
  QFile file(File());
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  const QByteArray bytes = file.readAll();
  qint64 page = 0;
  while (page < bytes.size() && (bytes[page] != kRowsPage || bytes.mid(page + 16, 6) != secondPageOfIndices))
    page += kPage;
  ASSERT_LT(page, bytes.size());
  ASSERT_TRUE(file.seek(page));
  file.write(QByteArray(kPage, '\0'));
  file.close();
  const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File("after")}));
  ExpectSaid(outcome, "终端运行中发现");
  EXPECT_TRUE(outcome.err.contains("2 个组合，4 条持股")) << outcome.err.toStdString();
  EXPECT_FALSE(outcome.err.contains("没有进展")) << outcome.err.toStdString();
}

TEST_F(DamagedDatabase, ComesBackWithOneButton) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "Xvfb";
  const auto before = bench_.Export("2001-strngrd");
  Damage(File());
  RunningTerminal terminal(bench_.Arguments({}), screen.Environment());
  Answer(screen, QStringLiteral("数据库已损坏"), 0, true);
  ASSERT_TRUE(terminal.WaitForWindow());
  EXPECT_GE(terminal.Signal(SIGTERM), 0);
  EXPECT_EQ(SetAside().size(), 1);
  EXPECT_EQ(Portfolios(), 2);
  EXPECT_EQ(bench_.Export("2001-strngrd"), before);
}

TEST_F(DamagedDatabase, StaysAsItIsWhenThePageIsClosed) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "Xvfb";
  Damage(File());
  RunningTerminal terminal(bench_.Arguments({}), screen.Environment());
  ASSERT_TRUE(screen.Enter(QStringLiteral("数据库已损坏")));
  screen.Keys({"Escape"});
  ASSERT_TRUE(terminal.Process().waitForFinished(20'000 * kSlowness));
  EXPECT_EQ(terminal.Process().exitCode(), 1);
  EXPECT_TRUE(SetAside().isEmpty());
}

/// A terminal runs on a sound database; then every page of rows and indices is damaged, and an import wants some that
/// have not been read yet.
class DamageWhileRunning : public DamagedDatabase {
 protected:
  void SetUp() override {
    if (!screen_.IsThere()) GTEST_SKIP() << "Xvfb";
    DamagedDatabase::SetUp();
    terminal_.emplace(bench_.Arguments({"--parameter", "Skip风险计量"}), screen_.Environment());
    ASSERT_TRUE(terminal_->WaitForWindow());
    DamagePages();
    import_.setProcessEnvironment(BareEnvironment());
    const QString more = bench_.Write("more.csv", OneMore());
    import_.start(Program("holdwise-terminal"), bench_.Arguments({"--import", more}));
  }
  void DamagePages() const {
    QFile file(File());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QByteArray bytes = file.readAll();
    for (qint64 page = 0; page < bytes.size(); page += kPage) {
      if (bytes[page] != kRowsPage && bytes[page] != kIndexPage) continue;
      ASSERT_TRUE(file.seek(page));
      file.write(QByteArray(kPage, '\x5A'));
    }
  }

  const Screen screen_;
  std::optional<RunningTerminal> terminal_;
  QProcess import_;
};

TEST_F(DamageWhileRunning, IsSetAsideWithOneButtonAndTheTerminalStartsAgain) {
  const qint64 process = terminal_->Process().processId();
  Answer(screen_, QStringLiteral("数据库已损坏"), 0, true);
  ASSERT_TRUE(terminal_->WaitForWindow());
  ASSERT_TRUE(import_.waitForFinished(60'000 * kSlowness));
  EXPECT_EQ(import_.exitCode(), 1);
  EXPECT_EQ(terminal_->Process().processId(), process);
  EXPECT_EQ(SetAside().size(), 1);
  // It is the work folder's terminal again, and well.
  ExpectCheck(bench_.Arguments({}), "正常  数据库：", true);
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  EXPECT_EQ(terminal_->Process().exitCode(), 0);
  EXPECT_EQ(Portfolios(), 2);
  EXPECT_EQ(bench_.Export("2001-strngrd").size(), 2U);
}

TEST_F(DamageWhileRunning, LeftForLaterIsShownAndFoundByTheNextStart) {
  Answer(screen_, QStringLiteral("数据库已损坏"), 1, false);
  ASSERT_TRUE(import_.waitForFinished(60'000 * kSlowness));
  EXPECT_EQ(import_.exitCode(), 1);
  const QString said = QString::fromUtf8(import_.readAllStandardError());
  EXPECT_TRUE(said.contains("数据库文件的内容有误")) << said.toStdString();
  ExpectCheck(bench_.Arguments({}), "注意  数据库：");
  EXPECT_GE(terminal_->Signal(SIGTERM), 0);
  const Outcome next = RunTerminal(bench_.Arguments({"--export", bench_.File("after")}));
  ExpectSaid(next, "最近的备份完好");
  EXPECT_TRUE(SetAside().isEmpty());
}

class ChangedDatabase : public DamagedDatabase {
 protected:
  void SetUp() override {
    DamagedDatabase::SetUp();
    WithDatabase([](FirebirdUserData& database) {
      database.Execute(QStringLiteral("update alg_comdetail set PZSL = PZSL + 1"));
    });
  }
  static constexpr const char* kTitle = "数据库与最近的备份不同";
};

TEST_F(ChangedDatabase, IsSaidByAnExportWhichGoesOnAndEndsWithOne) {
  const QString newest = Backups().Newest()->path;
  for (const char* time : {"once", "again"}) {
    const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File(time)}));
    ExpectSaid(outcome, kTitle);
    EXPECT_EQ(ReadCsv(bench_.File(QString(time) + "/2001-strngrd.csv")).size(), 3U) << "the figures are there";
    EXPECT_EQ(Backups().Newest()->path, newest);
  }
  const Outcome saved = RunTerminal(bench_.Arguments({"--backup", bench_.File("all.csv")}));
  ExpectSaid(saved, kTitle);
  EXPECT_TRUE(Bytes(bench_.File("all.csv")).contains("甲,600001,101,"));
  EXPECT_EQ(Backups().Newest()->path, newest);
  ExpectCheck(bench_.Arguments({}), "注意  与备份比较：");
}

TEST_F(ChangedDatabase, WhatIsEnteredMeanwhileIsKeptBesideTheBackups) {
  const QString newest = Backups().Newest()->path;
  for (const char* name : {"一", "二", "三", "四"}) {
    const QString more = bench_.Write(
        "more.csv", QByteArray("name,code,quantity,price\n") + name + ",600003,10,3\n" + name + ",600004,10,4\n");
    const Outcome outcome = RunTerminal(bench_.Arguments({"--import", more, "--backup", bench_.File("all.csv")}));
    ExpectSaid(outcome, "没有作为备份保存");
  }
  EXPECT_EQ(Backups().Newest()->path, newest);
  const QStringList beside = QDir(Backups().Path()).entryList({"doubtful-*.csv"}, QDir::Files, QDir::Name);
  ASSERT_EQ(beside.size(), 3);
  EXPECT_TRUE(Bytes(Backups().Path() + '/' + beside.back()).contains("\n四,"));
}

TEST_F(ChangedDatabase, IsAskedAboutAgainWhenThePageWasClosed) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "Xvfb";
  const QString newest = Backups().Newest()->path;
  for (const int signal : {SIGTERM, SIGKILL, SIGTERM}) {
    RunningTerminal terminal(bench_.Arguments({}), screen.Environment());
    ASSERT_TRUE(screen.Enter(kTitle));
    screen.Keys({"Escape"});
    ASSERT_TRUE(terminal.WaitForWindow());
    ExpectCheck(bench_.Arguments({}), "注意  与备份比较：");
    (void)terminal.Signal(signal);
    EXPECT_EQ(Backups().Newest()->path, newest);
  }
}

TEST_F(ChangedDatabase, IsSettledByAnOrderedRestore) {
  const QString file = Backups().Newest()->path;
  EXPECT_EQ(RunTerminal(bench_.Arguments({"--restore", file})).exitCode, 0);
  const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File("after")}));
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
}

// The pair is sound and holds nothing, the database is gone: neither says what was there, the backup does.
TEST_F(DamagedDatabase, AnEmptyMirrorTakesNoBackupsPlace) {
  const Bench empty;
  ASSERT_EQ(RunTerminal(empty.Arguments({"--export", empty.File("out")})).exitCode, 0);
  for (const char* name : {"/TZZHDetail.dat", "/TZZHMerge.dat"}) {
    ASSERT_TRUE(QFile::remove(bench_.Work() + name));
    ASSERT_TRUE(QFile::copy(empty.Work() + name, bench_.Work() + name));
  }
  ASSERT_TRUE(QFile::remove(File()));
  for (const char* time : {"once", "again"}) {
    const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File(time)}));
    ExpectSaid(outcome, "数据库与最近的备份不同");
    EXPECT_EQ(Backups().Newest()->portfolios, 2);
  }
}

/// A database file elsewhere, whose backups are in the work folder.
class OtherDatabase : public testing::Test {
 protected:
  void SetUp() override {
    const Outcome outcome =
        RunTerminal(Arguments({"--import", bench_.Write("p.csv", TwoPortfolios()), "--export", bench_.File("before")}));
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
    ASSERT_TRUE(Backups().Newest());
  }
  [[nodiscard]] QString File() const { return bench_.File("other.fdb"); }
  [[nodiscard]] QStringList Arguments(const QStringList& more) const {
    return bench_.Arguments(QStringList{"--db", File()} + more);
  }
  [[nodiscard]] backup::BackupFolder Backups() const { return backup::BackupFolder(bench_.Work(), File()); }

  Bench bench_;
};

TEST_F(OtherDatabase, ADifferenceIsSaidWithAllItsCausesAndNotTakenOver) {
  {
    const auto database = FirebirdUserData::Open({File(), {}, {}}, test::TempDatabase::LockFolder());
    database->Execute(QStringLiteral("update alg_commain set COMNAME = '己' where COMNAME = '乙'"));
  }
  const QString newest = Backups().Newest()->path;
  const Outcome outcome = RunTerminal(Arguments({"--export", bench_.File("after")}));
  ExpectSaid(outcome, "另一个程序或另一个工作目录写过它");
  EXPECT_TRUE(outcome.err.contains("“乙”：名称 己 → 乙")) << outcome.err.toStdString();
  EXPECT_EQ(Backups().Newest()->path, newest);
  ExpectCheck(Arguments({}), "注意  与备份比较：");
}

TEST_F(OtherDatabase, ComesBackWithOneButton) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "Xvfb";
  Damage(File());
  const Outcome outcome = RunTerminal(Arguments({"--export", bench_.File("after")}));
  ExpectSaid(outcome, "最近的备份完好");
  {
    RunningTerminal terminal(Arguments({}), screen.Environment());
    Answer(screen, QStringLiteral("数据库已损坏"), 0, true);
    ASSERT_TRUE(terminal.WaitForWindow());
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
  }
  EXPECT_EQ(RunTerminal(Arguments({"--export", bench_.File("again")})).exitCode, 0);
  EXPECT_EQ(ReadCsv(bench_.File("again/2001-strngrd.csv")), ReadCsv(bench_.File("before/2001-strngrd.csv")));
}

/// Backups that cannot be compared with.
class SpoiledBackups : public DamagedDatabase {};

TEST_F(SpoiledBackups, APlainFileInTheirPlaceIsSaid) {
  ASSERT_TRUE(QDir(Backups().Path()).removeRecursively());
  (void)bench_.Write("work/backups", "x");
  ExpectCheck(bench_.Arguments({}), "注意  备份：");
  ExpectCheck(bench_.Arguments({}), "注意  与备份比较：");
}

TEST_F(SpoiledBackups, NoneBesidePortfoliosIsSaidAndTheNextStartWritesOne) {
  ASSERT_TRUE(QDir(Backups().Path()).removeRecursively());
  ExpectCheck(bench_.Arguments({}), "没有可用的备份");
  EXPECT_EQ(RunTerminal(bench_.Arguments({"--export", bench_.File("after")})).exitCode, 0);
  ExpectCheck(bench_.Arguments({}), "正常  与备份比较：", true);
  EXPECT_EQ(Backups().Newest()->portfolios, 2);
}

TEST_F(SpoiledBackups, ThatCannotBeReadAreSaidAndFollowedByAGoodOne) {
  for (const backup::Generation& generation : Backups().List()) {
    QFile file(generation.path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    bytes[bytes.indexOf("600001") + 5] = '3';
    ASSERT_TRUE(file.seek(0));
    file.write(bytes);
  }
  const QString spoiled = Backups().Newest()->path;
  ExpectCheck(bench_.Arguments({}), spoiled);
  const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File("after")}));
  EXPECT_TRUE(outcome.err.contains(spoiled)) << outcome.err.toStdString();
  ExpectCheck(bench_.Arguments({}), "正常  与备份比较：", true);
  EXPECT_NE(Backups().Newest()->path, spoiled);
}

TEST_F(ChangedDatabase, IsKeptWhenTheUserWantsItAndNotAskedAboutAgain) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "Xvfb";
  {
    RunningTerminal terminal(bench_.Arguments({}), screen.Environment());
    Answer(screen, QString::fromUtf8(kTitle), 0, false);
    ASSERT_TRUE(terminal.WaitForWindow());
    ExpectCheck(bench_.Arguments({}), "正常  与备份比较：启动时两者不同，以数据库里的为准，已重新备份", true);
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
  }
  EXPECT_TRUE(SetAside().isEmpty());
  const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File("after")}));
  EXPECT_FALSE(outcome.err.contains(kTitle)) << outcome.err.toStdString();
}

TEST_F(ChangedDatabase, IsPutBackWhenTheUserWantsIt) {
  const Screen screen;
  if (!screen.IsThere()) GTEST_SKIP() << "Xvfb";
  {
    RunningTerminal terminal(bench_.Arguments({}), screen.Environment());
    Answer(screen, QString::fromUtf8(kTitle), 1, true);
    ASSERT_TRUE(terminal.WaitForWindow());
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
  }
  EXPECT_EQ(SetAside().size(), 1);
  WithDatabase([](FirebirdUserData& database) {
    EXPECT_EQ(database.Count(QStringLiteral("select sum(PZSL) from alg_comdetail")), 100 + 200 + 1000 + 300);
  });
}

TEST_F(ChangedDatabase, WhatNobodyCanHaveEnteredIsSaidAndTheExportEndsWithOne) {
  WithDatabase([](FirebirdUserData& database) {
    database.Execute(QStringLiteral("delete from alg_comdetail where MAINID = (select min(ID) from alg_commain)"));
  });
  const Outcome outcome = RunTerminal(bench_.Arguments({"--export", bench_.File("after")}));
  ExpectSaid(outcome, "数据库里的组合有疑问");
}

}  // namespace
}  // namespace holdwise::e2e
