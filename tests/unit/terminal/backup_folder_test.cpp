// SPDX-License-Identifier: MIT
#include <sys/stat.h>

#include <QTemporaryDir>

#include "backup/backup_writer.h"
#include "backup_fixture.h"
#include "file_size_limit.h"

namespace holdwise::backup {
namespace {

class BackupFolderTest : public BackupTest {
 protected:
  [[nodiscard]] QStringList Files() const {
    return QDir(folder_.Path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
  }
  QTemporaryDir work_;
  BackupFolder folder_{work_.path()};
  ScriptedClock clock_;
  ScriptedDebug log_;
};

QDateTime At(int year, int month, int day, int hour = 12, int minute = 0, int second = 0) {
  return {QDate(year, month, day), QTime(hour, minute, second)};
}

TEST_F(BackupFolderTest, AGenerationTellsWhatIsInIt) {
  AddThree();
  EXPECT_TRUE(folder_.List().empty());
  const Generation written = folder_.Write(Now(), At(2026, 3, 4, 15, 6, 7));
  EXPECT_EQ(written.path, work_.filePath(QStringLiteral("backups/portfolios-20260304-150607-3-9.csv")));
  ASSERT_EQ(folder_.List().size(), 1U);
  const Generation newest = *folder_.Newest();
  EXPECT_EQ(newest.time, At(2026, 3, 4, 15, 6, 7));
  EXPECT_EQ(newest.portfolios, 3);
  EXPECT_EQ(newest.holdings, 9);
  EXPECT_EQ(LoadPortfolioFile(newest.path), Now());
  struct stat mode {};
  ASSERT_EQ(::stat(QFile::encodeName(newest.path).constData(), &mode), 0);
  EXPECT_EQ(mode.st_mode & 0777U, 0600U);
  ASSERT_EQ(::stat(QFile::encodeName(folder_.Path()).constData(), &mode), 0);
  EXPECT_EQ(mode.st_mode & 0777U, 0700U);
}

TEST_F(BackupFolderTest, AClockThatGoesBackDoesNotMakeTheLatestOlder) {
  AddThree();
  folder_.Write(Now(), At(2026, 3, 4));
  Add(QStringLiteral("乙"), 2);
  folder_.Write(Now(), At(2026, 3, 1));
  EXPECT_EQ(folder_.Newest()->time, At(2026, 3, 4, 12, 0, 1));
  EXPECT_EQ(folder_.Newest()->portfolios, 4);
}

TEST_F(BackupFolderTest, SevenDaysAndTwelveMonthsStay) {
  // Two a day for four hundred days.
  std::vector<Generation> all;
  for (int day = 0; day < 400; ++day) {
    for (const int hour : {9, 17}) {
      const QDateTime time = At(2025, 1, 1, hour).addDays(day);
      all.insert(all.begin(), {time.toString(), time, 1, 1});
    }
  }
  const std::vector<Generation> old = BackupFolder::Superfluous(all);
  QStringList kept;
  for (const Generation& one : all) {
    const bool isOld =
        std::any_of(old.begin(), old.end(), [&one](const Generation& other) { return other.time == one.time; });
    if (!isOld) kept.append(one.time.toString(QStringLiteral("yyyyMMdd-HH")));
  }
  // By hand: day 400 is 4 February 2026. The ten newest, the last of the two days before those five days' ten, then
  // the last of the months January 2026 back to March 2025.
  const QStringList expected{
      QStringLiteral("20260204-17"), QStringLiteral("20260204-09"), QStringLiteral("20260203-17"),
      QStringLiteral("20260203-09"), QStringLiteral("20260202-17"), QStringLiteral("20260202-09"),
      QStringLiteral("20260201-17"), QStringLiteral("20260201-09"), QStringLiteral("20260131-17"),
      QStringLiteral("20260131-09"), QStringLiteral("20260130-17"), QStringLiteral("20260129-17"),
      QStringLiteral("20251231-17"), QStringLiteral("20251130-17"), QStringLiteral("20251031-17"),
      QStringLiteral("20250930-17"), QStringLiteral("20250831-17"), QStringLiteral("20250731-17"),
      QStringLiteral("20250630-17"), QStringLiteral("20250531-17"), QStringLiteral("20250430-17"),
      QStringLiteral("20250331-17")};
  EXPECT_EQ(kept, expected);
}

TEST_F(BackupFolderTest, OldGenerationsGoWithAWriting) {
  AddThree();
  for (int second = 0; second < 30; ++second) folder_.Write(Now(), At(2026, 3, 4, 12, 0, second));
  EXPECT_EQ(folder_.List().size(), 10U);
  EXPECT_EQ(folder_.Newest()->time, At(2026, 3, 4, 12, 0, 29));
}

TEST_F(BackupFolderTest, AnotherDatabaseHasGenerationsOfItsOwn) {
  AddThree();
  EXPECT_EQ(BackupFolder(work_.path(), work_.filePath(QStringLiteral("holdwise.fdb"))).Path(), folder_.Path());
  const BackupFolder other(work_.path(), QStringLiteral("/elsewhere/other.fdb"));
  EXPECT_NE(other.Path(), folder_.Path());
  EXPECT_NE(other.Path(), BackupFolder(work_.path(), QStringLiteral("server:/other.fdb")).Path());
  other.Write(Now(), At(2026, 3, 4));
  EXPECT_EQ(other.List().size(), 1U);
  EXPECT_TRUE(folder_.List().empty());
}

TEST_F(BackupFolderTest, WhatAKilledWritingLeftGoes) {
  AddThree();
  folder_.Write(Now(), At(2026, 3, 4));
  QFile piece(folder_.Path() + QStringLiteral("/.holdwise-abc.tmp"));
  ASSERT_TRUE(piece.open(QIODevice::WriteOnly));
  folder_.Write(Now(), At(2026, 3, 5));
  EXPECT_FALSE(piece.exists());
}

TEST_F(BackupFolderTest, OtherFilesAreLeftAlone) {
  AddThree();
  ASSERT_TRUE(QDir().mkpath(folder_.Path()));
  for (const char* name : {"notes.txt", "portfolios-1.csv", "portfolios-20269999-120000-1-1.csv"}) {
    QFile file(folder_.Path() + QLatin1Char('/') + QString::fromLatin1(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  for (int second = 0; second < 30; ++second) folder_.Write(Now(), At(2026, 3, 4, 12, 0, second));
  EXPECT_EQ(folder_.List().size(), 10U);
  EXPECT_EQ(Files().size(), 13);
}

TEST_F(BackupFolderTest, AFullDiskAtAnyByteLeavesTheEarlierGenerations) {
  AddThree();
  const Generation first = folder_.Write(Now(), At(2026, 3, 4));
  const PortfolioSet before = Now();
  Add(QStringLiteral("乙"), 10);
  const PortfolioSet set = Now();
  const qsizetype size = PortfolioFileText(set).size();
  for (qsizetype bytes = 0; bytes < size; bytes += 7) {
    const test::FileSizeLimit full(static_cast<rlim_t>(bytes));
    EXPECT_THROW(folder_.Write(set, At(2026, 3, 5)), Error) << bytes;
  }
  EXPECT_EQ(Files(), QStringList{QFileInfo(first.path).fileName()});
  EXPECT_EQ(LoadPortfolioFile(first.path), before);
  EXPECT_EQ(LoadPortfolioFile(folder_.Write(set, At(2026, 3, 5)).path), set);
}

// A disk that takes everything and gives something else back.
TEST_F(BackupFolderTest, WhatDoesNotReadBackLeavesTheEarlierGenerationsAndNothingElse) {
  AddThree();
  for (int second = 0; second < 10; ++second) folder_.Write(Now(), At(2026, 3, 4, 12, 0, second));
  const QStringList before = Files();
  const PortfolioSet good = Now();
  Do(QStringLiteral("update alg_comdetail set PZSL=101 where ID=1"));
  const PortfolioSet set = Now();
  const BackupFolder::FileWriter cuts = [](const QString& path, const QByteArray& bytes) {
    BackupFolder::WriteLasting(path, bytes.first(bytes.size() / 2));
  };
  // A file that is sound in itself, and another.
  const BackupFolder::FileWriter forgets = [](const QString& path, const QByteArray&) {
    BackupFolder::WriteLasting(path, PortfolioFileText(PortfolioSet{}));
  };
  for (const BackupFolder::FileWriter write : {cuts, forgets}) {
    const BackupFolder bad(work_.path(), {}, write);
    try {
      bad.Write(set, At(2026, 3, 5));
      ADD_FAILURE() << "written";
    } catch (const Error& error) {
      EXPECT_EQ(error.Category(), ErrorCategory::Corrupt);
    }
    EXPECT_EQ(Files(), before);
    BackupWriter writer(bad, clock_, log_);
    EXPECT_EQ(writer.Write(set), BackupWriter::Outcome::Failed);
    EXPECT_TRUE(writer.State().isLost);
  }
  EXPECT_EQ(LoadPortfolioFile(folder_.Newest()->path), good);
}

TEST_F(BackupFolderTest, NothingIsWrittenWhenNothingHasChanged) {
  AddThree();
  BackupWriter writer(folder_, clock_, log_);
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Done);
  Do(QStringLiteral("update alg_commain set FC=1,BETA=2,ISFINISHED=1,CALCDATE=20260304"));
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Done);
  BackupWriter later(folder_, clock_, log_);
  EXPECT_EQ(later.Write(Now()), BackupWriter::Outcome::Done);
  EXPECT_EQ(Files().size(), 1);
  Do(QStringLiteral("update alg_commain set SAVEFLAG=1 where ID=2"));
  EXPECT_EQ(later.Write(Now()), BackupWriter::Outcome::Done);
  EXPECT_EQ(Files().size(), 2);
}

TEST_F(BackupFolderTest, AnEmptyDatabaseOpensNoSeries) {
  BackupWriter writer(folder_, clock_, log_);
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Done);
  EXPECT_FALSE(QFileInfo::exists(folder_.Path()));
}

TEST_F(BackupFolderTest, DamageDoesNotBecomeAGeneration) {
  AddThree();
  BackupWriter writer(folder_, clock_, log_);
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Done);
  const PortfolioSet good = Now();
  Do(QStringLiteral("delete from alg_comdetail"));
  for (int time = 0; time < 5; ++time) {
    Do(QStringLiteral("update alg_commain set ZSCLOSEPRICE=ZSCLOSEPRICE+1"));
    EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Doubtful);
  }
  EXPECT_TRUE(writer.State().problem.contains(QStringLiteral("没有持股"))) << writer.State().problem.toStdString();
  ASSERT_EQ(folder_.List().size(), 1U);
  EXPECT_EQ(LoadPortfolioFile(folder_.Newest()->path), good);
  const QStringList beside = Files().filter(QStringLiteral("doubtful-"));
  ASSERT_EQ(beside.size(), 3) << "the newest, though the scripted clock stands";
  QFile latest(folder_.Path() + QLatin1Char('/') + beside.back());
  ASSERT_TRUE(latest.open(QIODevice::ReadOnly));
  EXPECT_EQ(latest.readAll(), PortfolioFileText(Now()));
}

TEST_F(BackupFolderTest, DamageThatComesBackIsSaidAgain) {
  AddThree();
  const PortfolioSet good = Now();
  Do(QStringLiteral("delete from alg_comdetail"));
  const PortfolioSet damaged = Now();
  BackupWriter writer(folder_, clock_, log_);
  EXPECT_EQ(writer.Write(damaged), BackupWriter::Outcome::Doubtful);
  EXPECT_EQ(writer.Write(good), BackupWriter::Outcome::Done);
  EXPECT_EQ(writer.State().problem, QString());
  EXPECT_EQ(writer.Write(damaged), BackupWriter::Outcome::Doubtful);
  EXPECT_TRUE(writer.State().problem.contains(QStringLiteral("没有持股"))) << writer.State().problem.toStdString();
  EXPECT_EQ(Files().filter(QStringLiteral("doubtful-")).size(), 1);
}

TEST_F(BackupFolderTest, WhatNobodyHasDecidedDoesNotBecomeAGeneration) {
  AddThree();
  const Generation newest = folder_.Write(Now(), At(2026, 3, 4));
  const PortfolioSet good = Now();
  folder_.MarkUnsettled();
  Do(QStringLiteral("update alg_commain set COMNAME='价直' where ID=1"));
  BackupWriter writer(folder_, clock_, log_);
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Doubtful);
  EXPECT_TRUE(writer.State().problem.contains(QStringLiteral("还没有选择"))) << writer.State().problem.toStdString();
  EXPECT_FALSE(writer.State().isLost);
  EXPECT_EQ(folder_.Newest()->path, newest.path);
  const QStringList beside = Files().filter(QStringLiteral("doubtful-"));
  ASSERT_EQ(beside.size(), 1);
  EXPECT_EQ(LoadPortfolioFile(folder_.Path() + QLatin1Char('/') + beside[0]), Now()) << "it can be restored from";
  // Alike in what a person has entered: what the exchange files bring back.
  Do(QStringLiteral("update alg_commain set COMNAME='稳健一号',INDEXISCLOSE=null,KNOWNTO=null where ID=1"));
  ASSERT_NE(Now(), good);
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Done);
  EXPECT_FALSE(folder_.IsUnsettled());
  EXPECT_EQ(writer.State().problem, QString());
  Do(QStringLiteral("update alg_commain set COMNAME='价直' where ID=1"));
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Done);
  EXPECT_EQ(LoadPortfolioFile(folder_.Newest()->path), Now());
}

TEST_F(BackupFolderTest, AnOlderGenerationHoldsBackWhenTheNewestCannotBeRead) {
  AddThree();
  folder_.Write(Now(), At(2026, 3, 4));
  QFile file(folder_.Write(Now(), At(2026, 3, 5)).path);
  ASSERT_TRUE(file.resize(file.size() / 2));
  folder_.MarkUnsettled();
  Do(QStringLiteral("update alg_commain set COMNAME='价直' where ID=1"));
  BackupWriter writer(folder_, clock_, log_);
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Doubtful);
  EXPECT_EQ(folder_.List().size(), 2U);
}

TEST_F(BackupFolderTest, ANewestGenerationThatIsDamagedIsFollowedByAGoodOne) {
  AddThree();
  BackupWriter first(folder_, clock_, log_);
  EXPECT_EQ(first.Write(Now()), BackupWriter::Outcome::Done);
  QFile file(folder_.Newest()->path);
  ASSERT_TRUE(file.resize(file.size() / 2));
  BackupWriter writer(folder_, clock_, log_);
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Done);
  EXPECT_EQ(folder_.List().size(), 2U);
  EXPECT_EQ(LoadPortfolioFile(folder_.Newest()->path), Now());
}

TEST_F(BackupFolderTest, WhatIsNotWrittenIsSaid) {
  AddThree();
  QFile inTheWay(folder_.Path());
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  BackupWriter writer(folder_, clock_, log_);
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Failed);
  EXPECT_TRUE(writer.State().problem.contains(folder_.Path())) << writer.State().problem.toStdString();
  EXPECT_TRUE(writer.State().isLost);
  EXPECT_THROW((void)folder_.List(), Error) << "not that there is none";
  EXPECT_THROW((void)BackupFolder(work_.path(), QStringLiteral("/elsewhere/other.fdb")).List(), Error);
  ASSERT_TRUE(inTheWay.remove());
  EXPECT_EQ(writer.Write(Now()), BackupWriter::Outcome::Done);
  EXPECT_EQ(writer.State().problem, QString());
  EXPECT_FALSE(writer.State().isLost);
}

}  // namespace
}  // namespace holdwise::backup
