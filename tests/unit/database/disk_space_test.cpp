// SPDX-License-Identifier: MIT
#include "database/disk_space.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <limits>

#include "database/connection.h"
#include "database/database_file.h"
#include "database_texts.h"
#include "file_size_limit.h"
#include "temp_database.h"

using namespace holdwise;
using namespace holdwise::test;

namespace {

constexpr int kTimeoutMs = 30'000;

qint64 AllocatedBytes(const QString& file) {
  struct stat status {};
  return ::stat(QFile::encodeName(file).constData(), &status) == 0 ? status.st_blocks * 512 : -1;
}

QStringList AllRows(DatabaseStatements& database) {
  const ResultSet rows =
      database.Query(QStringLiteral("select secucode, hqdate, ggqjsyl from alg_stockstatistic order by 1, 2"));
  QStringList lines;
  for (int row = 0; row < rows.RowCount(); ++row)
    lines += rows.TextAt(row, 0) + QLatin1Char(' ') + rows.TextAt(row, 1) + QLatin1Char(' ') + rows.TextAt(row, 2);
  return lines;
}

TEST(DiskSpace, TooLittleIsToldWithTheFolder) {
  const QTemporaryDir folder;
  EXPECT_NO_THROW(firebird::RequireSpace(folder.path(), 1));
  const Error error = ErrorOf([&] { firebird::RequireSpace(folder.path(), std::numeric_limits<std::int64_t>::max()); });
  EXPECT_EQ(error.Category(), ErrorCategory::Io);
  const QString text = QString::fromUtf8(error.what());
  EXPECT_TRUE(text.contains(QStringLiteral("磁盘空间不足"))) << error.what();
  EXPECT_TRUE(text.contains(folder.path())) << error.what();
}

TEST(DiskSpace, WhatCannotBeAskedCountsAsRoom) {
  const std::int64_t most = std::numeric_limits<std::int64_t>::max();
  EXPECT_NO_THROW(firebird::RequireSpace(QStringLiteral("/none/of/this"), most));
  EXPECT_NO_THROW(firebird::RequireSpace(QStringLiteral("/proc"), most)) << "a file system without blocks";
}

TEST(DiskSpace, LockFilesGetTheirHolesFilled) {
  const QTemporaryDir folder;
  QFile file(folder.filePath(QStringLiteral("fb_lock_1")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_TRUE(file.resize(1 << 20));
  QFile other(folder.filePath(QStringLiteral("other")));
  ASSERT_TRUE(other.open(QIODevice::WriteOnly));
  ASSERT_TRUE(other.resize(1 << 20));
  firebird::ReserveLockFiles(folder.path());
  EXPECT_GE(AllocatedBytes(file.fileName()), 1 << 20);
  EXPECT_EQ(file.size(), 1 << 20);
  EXPECT_LT(AllocatedBytes(other.fileName()), 1 << 20);
}

TEST(DiskSpace, AnOpenDatabaseHasItsLockFilesReserved) {
  TempDatabase db;
  int checked = 0;
  for (const QFileInfo& info : QDir(TempDatabase::LockFolder()).entryInfoList({QStringLiteral("fb*")}, QDir::Files)) {
    EXPECT_GE(AllocatedBytes(info.filePath()), info.size()) << info.fileName().toStdString();
    if (info.size() >= 1 << 20) ++checked;
  }
  EXPECT_GE(checked, 1);
}

TEST(DiskSpace, NoChangeBeginsWithoutRoom) {
  TempDatabase db;
  db.Service().Execute(InsertPortfolio(1, QStringLiteral("甲")));
  db.Close();
  firebird::Connection connection(
      firebird::Attach(db.File(), {.create = false, .embedded = true, .user = {}, .password = {}}),
      {db.Folder(), firebird::MarkerOf(db.File()), std::numeric_limits<std::int64_t>::max()});
  EXPECT_EQ(ErrorOf([&] { (void)connection.Start(); }).Category(), ErrorCategory::Io);
  EXPECT_EQ(ErrorOf([&] { connection.Execute(nullptr, InsertPortfolio(2, QStringLiteral("乙"))); }).Category(),
            ErrorCategory::Io);
  const ResultSet rows = connection.Query(nullptr, QStringLiteral("select count(*) from alg_commain"), 1);
  EXPECT_EQ(rows.IntegerAt(0, 0), 1) << "reading needs none";
}

TEST(DiskSpace, AFullDiskInMidTransactionLeavesTheOldRows) {
  TempDatabase db;
  FirebirdUserData& service = db.Service();
  for (int day = 1; day <= 20; ++day)
    service.Execute(InsertStatistic({.code = 1600000, .date = 20260100 + day, .dailyReturn = 0.01 * day}));
  const QStringList before = AllRows(service);
  {
    const FileSizeLimit limit(static_cast<rlim_t>(QFileInfo(db.File()).size()));
    service.StartTransaction();
    service.Execute(QStringLiteral("delete from alg_stockstatistic where secucode = 1600000"));
    const Error error = ErrorOf([&] {
      for (int row = 0; row < 50'000; ++row)
        service.Execute(InsertStatistic({.code = 1600000, .date = 20250101 + row % 28, .dailyReturn = 0.5}));
      service.Commit();
    });
    EXPECT_EQ(error.Category(), ErrorCategory::Io) << error.what();
    if (service.InTransaction()) service.RollBack();
  }
  EXPECT_EQ(AllRows(service), before);
  EXPECT_EQ(service.Execute(InsertStatistic({.code = 1600001, .date = 20260101})), 1) << "with room again";
  EXPECT_EQ(AllRows(db.Open()).size(), before.size() + 1);
}

TEST(DiskSpace, AFileThatCannotBeMadeLeavesNothingBehind) {
  const TempDatabase other;  // the engine's common lock files are there already
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("holdwise.fdb"));
  const DatabaseTarget target{file, {}, {}};
  {
    const FileSizeLimit limit((1 << 20) + 4096);
    EXPECT_EQ(ErrorOf([&] { (void)FirebirdUserData::Open(target, TempDatabase::LockFolder()); }).Category(),
              ErrorCategory::Io);
  }
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList());
  EXPECT_EQ(FirebirdUserData::Open(target, TempDatabase::LockFolder())
                ->Count(QStringLiteral("select count(*) from alg_commain")),
            0);
}

TEST(Helper, CallsOnlyDamageDamage) {
  const QTemporaryDir folder;
  const QTemporaryDir locks;
  QProcess helper;
  helper.start(QCoreApplication::applicationDirPath() + QStringLiteral("/holdwise-dbcheck"),
               {folder.filePath(QStringLiteral("none/holdwise.fdb")), locks.path()});
  ASSERT_TRUE(helper.waitForFinished(kTimeoutMs));
  EXPECT_EQ(helper.exitCode(), firebird::kHelperIo) << helper.readAllStandardOutput().toStdString();
}

/// A folder with a child program and a helper beside it that does what the line says.
class OtherHelper {
 public:
  explicit OtherHelper(const QByteArray& line) {
    QFile script(programs_.filePath(QStringLiteral("holdwise-dbcheck")));
    if (!script.open(QIODevice::WriteOnly)) return;
    script.write("#!/bin/sh\n" + line + '\n');
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile::copy(QCoreApplication::applicationDirPath() + QStringLiteral("/holdwise-database-child"), Child());
  }
  [[nodiscard]] QString Child() const { return programs_.filePath(QStringLiteral("child")); }
  /// The category with which the child does not open a file that was not closed; 0 and more.
  int CategoryFor(const TempDatabase& db, QString& text) const {
    QFile marker(firebird::MarkerOf(db.File()));
    if (!marker.open(QIODevice::WriteOnly)) return -1;
    const QTemporaryDir locks;
    QProcess child;
    child.start(Child(), {QStringLiteral("open"), db.File(), locks.path()});
    if (!child.waitForFinished(kTimeoutMs)) return -1;
    text = QString::fromUtf8(child.readAllStandardOutput());
    return child.exitCode() - 10;
  }

 private:
  QTemporaryDir programs_;
};

TEST(Helper, ACheckThatWasKilledSaysNothingOfTheFile) {
  const TempDatabase db(false);
  QString text;
  for (const char* line : {"kill -9 $$", "kill -15 $$"}) {
    EXPECT_EQ(OtherHelper(line).CategoryFor(db, text), static_cast<int>(ErrorCategory::TimedOut)) << line;
    EXPECT_TRUE(text.contains(QStringLiteral("没有完成"))) << text.toStdString();
    EXPECT_FALSE(text.contains(QStringLiteral("已损坏"))) << text.toStdString();
  }
  for (const char* line : {"kill -11 $$", "kill -6 $$", "exit 1"}) {
    EXPECT_EQ(OtherHelper(line).CategoryFor(db, text), static_cast<int>(ErrorCategory::Corrupt)) << line;
    EXPECT_TRUE(text.contains(QStringLiteral("已损坏"))) << text.toStdString();
  }
}

TEST(Helper, ACheckThatIsSlowSaysNothingOfTheFile) {
  const TempDatabase db(false);
  QFile file(db.File());
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray bytes = file.readAll();
  try {
    // Less than a program needs to begin.
    firebird::CheckInHelper(db.File(), TempDatabase::LockFolder(), 1);
    FAIL() << "completed";
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::TimedOut) << error.what();
    EXPECT_TRUE(QString::fromUtf8(error.what()).contains(QStringLiteral("这次的检查没有完成"))) << error.what();
    EXPECT_FALSE(QString::fromUtf8(error.what()).contains(QStringLiteral("已损坏"))) << error.what();
  }
  EXPECT_FALSE(QFile::exists(firebird::CheckRecordOf(db.File()))) << "nothing was checked";
  ASSERT_TRUE(file.seek(0));
  EXPECT_EQ(file.readAll(), bytes);
  EXPECT_GE(firebird::LongestCheckMilliseconds(db.File()), 30'000);
  EXPECT_TRUE(
      firebird::CheckInHelper(db.File(), TempDatabase::LockFolder(), firebird::LongestCheckMilliseconds(db.File())));
  EXPECT_TRUE(QFile::exists(firebird::CheckRecordOf(db.File())));
}

TEST(Helper, EndsWithTheProcessThatAsked) {
  const TempDatabase db(false);
  QFile marker(firebird::MarkerOf(db.File()));
  ASSERT_TRUE(marker.open(QIODevice::WriteOnly));
  const QTemporaryDir programs;
  const QTemporaryDir locks;
  // The helper is looked for beside the program; this one says who it is and stays.
  const QString child = programs.filePath(QStringLiteral("child"));
  const QString written = programs.filePath(QStringLiteral("pid"));
  QFile script(programs.filePath(QStringLiteral("holdwise-dbcheck")));
  ASSERT_TRUE(QFile::copy(QCoreApplication::applicationDirPath() + QStringLiteral("/holdwise-database-child"), child));
  ASSERT_TRUE(script.open(QIODevice::WriteOnly));
  script.write("#!/bin/sh\necho $$ > '" + QFile::encodeName(written) + "'\nexec sleep 600\n");
  script.close();
  script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

  QProcess asking;
  asking.start(child, {QStringLiteral("open"), db.File(), locks.path()});
  QElapsedTimer timer;
  timer.start();
  QByteArray text;
  while (!text.endsWith('\n') && timer.elapsed() < kTimeoutMs) {
    QThread::msleep(20);
    QFile file(written);
    if (file.open(QIODevice::ReadOnly)) text = file.readAll();
  }
  const pid_t helper = text.trimmed().toInt();
  ASSERT_GT(helper, 0);
  ASSERT_EQ(::kill(helper, 0), 0);
  asking.kill();
  ASSERT_TRUE(asking.waitForFinished(kTimeoutMs));
  timer.restart();
  // Until init has taken it away it may stay as a dead process.
  const auto isRunning = [helper] {
    QFile status(QStringLiteral("/proc/%1/stat").arg(helper));
    return status.open(QIODevice::ReadOnly) && !status.readAll().contains(") Z ");
  };
  while (isRunning() && timer.elapsed() < kTimeoutMs) QThread::msleep(20);
  EXPECT_FALSE(isRunning());
  if (isRunning()) ::kill(helper, SIGKILL);
}

}  // namespace
