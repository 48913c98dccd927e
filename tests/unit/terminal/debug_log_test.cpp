// SPDX-License-Identifier: MIT
#include "process/debug_log.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <thread>
#include <vector>

#include "scripted_host.h"

namespace holdwise {
namespace {

TEST(DebugLogTest, LinesCarryTheTimeAndStayOnOneLine) {
  const QTemporaryDir folder;
  ScriptedClock clock;
  clock.now = QDateTime(QDate(2024, 5, 31), QTime(9, 30, 0, 5));
  DebugLog log(folder.filePath("t.log"), clock);
  log.WriteLog("first\nsecond");
  QFile file(folder.filePath("t.log"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), "2024-05-31 09:30:00.005 first | second\n");
  EXPECT_EQ(log.Lines(), QStringList{"2024-05-31 09:30:00.005 first | second"});
}

TEST(DebugLogTest, NothingUnseenStandsInALine) {
  const QTemporaryDir folder;
  ScriptedClock clock;
  clock.now = QDateTime(QDate(2024, 5, 31), QTime(9, 30, 0, 5));
  DebugLog log(folder.filePath("t.log"), clock);
  const char16_t text[] = {u'a', 0x1B, u'[', u'2', u'J', 0x2028, 0x202E, u'b', 0x200B, u'\r', u'c', 0};
  log.WriteLog(QString::fromUtf16(text));
  EXPECT_EQ(log.Lines(), QStringList{"2024-05-31 09:30:00.005 a\\x1b[2J\\x2028\\x202eb\\x200b\\x0dc"});
}

TEST(DebugLogTest, ALongLineIsCutAndTheFileIsBoundedByIt) {
  const QTemporaryDir folder;
  ScriptedClock clock;
  DebugLog log(folder.filePath("t.log"), clock);
  log.WriteLog(QString(10 << 20, u'字'));
  EXPECT_TRUE(log.Lines().constFirst().endsWith("字…（共10485760个字符）"));
  for (int line = 0; line < 40; ++line) log.WriteLog(QString(50'000, u'x'));
  for (const QFileInfo& file : QDir(folder.path()).entryInfoList({"t.log*"}))
    EXPECT_LE(file.size(), DebugLog::kFileBytes) << file.fileName().toStdString();
}

TEST(DebugLogTest, FailuresGoToTheirListenerAndNotIntoTheLog) {
  const QTemporaryDir folder;
  ScriptedClock clock;
  DebugLog log(folder.filePath("t.log"), clock);
  log.TellFailure("nobody listens");
  QStringList told;
  log.SetFailureListener([&told](const QString& text) { told.append(text); });
  log.TellFailure("磁盘空间不足");
  log.SetFailureListener({});
  log.TellFailure("nobody listens");
  EXPECT_EQ(told, QStringList{"磁盘空间不足"});
  log.SetOutcomeListener([&told](const QString& text) { told.append(text); });
  log.TellOutcome("已删除");
  log.SetOutcomeListener({});
  log.TellOutcome("nobody listens");
  EXPECT_EQ(told, (QStringList{"磁盘空间不足", "已删除"}));
  EXPECT_TRUE(log.Lines().isEmpty());
}

TEST(DebugLogTest, MemoryAndFilesAreBounded) {
  const QTemporaryDir folder;
  ScriptedClock clock;
  DebugLog log(folder.filePath("t.log"), clock);
  const QString line(4096, 'x');
  // Six times the size of one file.
  for (int count = 0; count < 1536; ++count) log.WriteLog(line);
  for (int count = 0; count < 1000; ++count) log.WriteLog(QString::number(count));
  EXPECT_EQ(log.Lines().size(), DebugLog::kLinesInMemory);
  EXPECT_TRUE(log.Lines().constLast().endsWith(" 999"));
  const QFileInfoList files = QDir(folder.path()).entryInfoList(QDir::Files);
  EXPECT_EQ(files.size(), 1 + DebugLog::kOldFiles);
  for (const QFileInfo& file : files) EXPECT_LE(file.size(), DebugLog::kFileBytes + 5000);
}

TEST(DebugLogTest, TakesLinesFromManyThreads) {
  const QTemporaryDir folder;
  ScriptedClock clock;
  DebugLog log(folder.filePath("t.log"), clock);
  int told = 0;
  log.SetListener([&told] { ++told; });
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&log] {
      for (int line = 0; line < 250; ++line) log.WriteLog("line");
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(log.Lines().size(), 1000);
  EXPECT_EQ(told, 1000);
}

TEST(DebugLogTest, GoesOnWithoutAFile) {
  ScriptedClock clock;
  DebugLog log("/proc/none/t.log", clock);
  log.WriteLog("line");
  EXPECT_EQ(log.Lines().size(), 1);
}

TEST(DebugLogTest, ALineThatCannotBeStoredGoesToStandardError) {
  ScriptedClock clock;
  testing::internal::CaptureStderr();
  DebugLog log("/dev/full", clock);  // every write finds the disk full
  log.WriteLog("the disk is full");
  EXPECT_TRUE(testing::internal::GetCapturedStderr().find("the disk is full") != std::string::npos);
  EXPECT_EQ(log.Lines().size(), 1);
}

}  // namespace
}  // namespace holdwise
