// SPDX-License-Identifier: MIT
#include "process/demo_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include "app/demo_maker.h"
#include "holdwise/packet/error.h"
#include "process/settings_file.h"
#include "process/work_folder.h"

namespace holdwise {
namespace {

class DemoFolderTest : public testing::Test {
 protected:
  /// Empty files will do for what is only looked for.
  void Touch(const QString& name) const {
    const QString path = own_ + '/' + name;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  /// As after a demo that was opened last.
  void Choose() const {
    Touch("terminal.lock");
    Touch("demo/market/market.dat");
    demo_.Choose(*Start({}).options);
  }
  /// A start on the user's own folder.
  [[nodiscard]] ParsedCommandLine Start(const QStringList& more) const {
    return ParseCommandLine(QStringList{"holdwise-terminal", "--work", own_} + more);
  }
  [[nodiscard]] Options Turned(const QStringList& more) const {
    Options options = *Start(more).options;
    TurnToDemo(options);
    return options;
  }

  const QTemporaryDir folder_;
  const QString own_ = folder_.path();
  const DemoFolder demo_{own_};
};

TEST_F(DemoFolderTest, ABareStartOpensTheDemoThatWasOpenedLast) {
  EXPECT_FALSE(Turned({}).IsDemo()) << "there is none";
  Choose();
  const Options options = Turned({"--theme", "light", "--import", "/tmp/p.csv"});
  EXPECT_EQ(options.ownFolder, own_);
  EXPECT_EQ(options.workFolder, own_ + "/demo");
  EXPECT_EQ(options.dataFolder, own_ + "/demo/market");
  EXPECT_EQ(options.LockFolder(), own_ + "/demo/lock");
  demo_.Leave();
  const Options left = Turned({});
  EXPECT_FALSE(left.IsDemo());
  EXPECT_EQ(left.workFolder, own_);
  EXPECT_EQ(left.dataFolder, own_ + "/market");
}

/// None of these may be carried out on other portfolios than those that are meant.
TEST_F(DemoFolderTest, BatchesChecksAndStartsThatNameTheirDataMeanTheUsersOwn) {
  Choose();
  for (const QStringList& more : {QStringList{"--data", "/d"},
                                  {"--db", "/d.fdb"},
                                  {"--backup", "/b"},
                                  {"--restore", "/b"},
                                  {"--export", "/e"},
                                  {"--check"}}) {
    const Options options = Turned(more);
    EXPECT_FALSE(options.IsDemo()) << more.join(' ').toStdString();
    EXPECT_EQ(options.workFolder, own_);
  }
}

TEST_F(DemoFolderTest, ADemoWhoseMarketIsGoneIsNotOpened) {
  Choose();
  ASSERT_TRUE(QFile::remove(demo_.Market() + "/market.dat"));
  EXPECT_FALSE(Turned({}).IsDemo());
}

TEST_F(DemoFolderTest, ATerminalThatRunsOnTheUsersOwnDataIsWhatAStartReaches) {
  Choose();
  EXPECT_FALSE(WorkFolderLock::IsHeld(own_));
  {
    WorkFolderLock lock(own_);
    ASSERT_TRUE(lock.Acquire());
    EXPECT_TRUE(WorkFolderLock::IsHeld(own_));
    EXPECT_FALSE(Turned({}).IsDemo());
  }
  EXPECT_FALSE(WorkFolderLock::IsHeld(own_));
  EXPECT_TRUE(Turned({}).IsDemo());
}

TEST_F(DemoFolderTest, NobodyWaitsForAPipeInTheLocksPlace) {
  EXPECT_FALSE(WorkFolderLock::IsHeld(own_)) << "no lock";
  ASSERT_EQ(mkfifo(QFile::encodeName(own_ + "/terminal.lock").constData(), 0600), 0);
  EXPECT_FALSE(WorkFolderLock::IsHeld(own_));
}

TEST_F(DemoFolderTest, ItsOwnFolderIsKnownAsADemosWhereverItIsNamed) {
  EXPECT_EQ(DemoFolder::OwnFolderOf(demo_.Path()), QString()) << "no demo yet";
  Choose();
  EXPECT_EQ(DemoFolder::OwnFolderOf(demo_.Path()), own_);
  EXPECT_EQ(DemoFolder::OwnFolderOf(own_), QString());
  Options options = *ParseCommandLine({"holdwise-terminal", "--work", demo_.Path(), "--backup", "/b"}).options;
  TurnToDemo(options);
  EXPECT_TRUE(options.IsDemo());
  EXPECT_EQ(options.workFolder, demo_.Path());
  // Copied away it is a work folder like any other.
  const QTemporaryDir elsewhere;
  ASSERT_TRUE(QDir(elsewhere.path()).mkdir("demo"));
  ASSERT_TRUE(QFile::copy(demo_.Path() + "/demo.ini", elsewhere.filePath("demo/demo.ini")));
  EXPECT_EQ(DemoFolder::OwnFolderOf(elsewhere.filePath("demo")), QString());
}

TEST_F(DemoFolderTest, TheWayBackIsTheStartThatItWasLeftWith) {
  Touch("terminal.lock");
  Options own = *Start({"--data", "/数据/甲 乙", "--db", "host:/库.fdb"}).options;
  own.command.database = own.database;
  demo_.Choose(own);
  EXPECT_EQ(demo_.WayThere().workFolder, demo_.Path());
  EXPECT_EQ(demo_.WayThere().command.dataFolder, QString());
  const Options back = DemoFolder(own_).WayBack();
  EXPECT_EQ(back.workFolder, own_);
  EXPECT_EQ(back.command.dataFolder, "/数据/甲 乙");
  EXPECT_EQ(back.command.database, "host:/库.fdb");
  demo_.Choose(*Start({}).options);
  EXPECT_EQ(demo_.WayBack().command.dataFolder, QString()) << "the last time counts";
  EXPECT_EQ(demo_.WayBack().command.database, QString());
}

/// The user's own data open instead, as they would be without a demo.
TEST_F(DemoFolderTest, ADemoWhoseFolderCannotBeUsedIsNotOpened) {
  Choose();
  ASSERT_EQ(mkfifo(QFile::encodeName(demo_.Path() + "/settings.ini").constData(), 0600), 0);
  EXPECT_FALSE(Turned({}).IsDemo());
  EXPECT_EQ(Turned({}).workFolder, own_);
  EXPECT_THROW((void)demo_.WayThere(), Error) << "said before the terminal leaves for it";
  ASSERT_TRUE(QFile::remove(demo_.Path() + "/settings.ini"));
  EXPECT_TRUE(Turned({}).IsDemo());
}

TEST_F(DemoFolderTest, AWayBackToAFolderThatCannotBeUsedIsRefused) {
  Choose();
  ASSERT_EQ(mkfifo(QFile::encodeName(SettingsFileOf(own_)).constData(), 0600), 0);
  EXPECT_THROW((void)demo_.WayBack(), Error);
}

/// It is read before there is a window: nothing in its place may hold that up.
TEST_F(DemoFolderTest, WhatIsNoMarkIsNotReadAndIsKeptWhenOneIsWritten) {
  Choose();
  const QString mark = demo_.Path() + "/demo.ini";
  {
    QFile file(mark);
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write(QByteArray("[Other]\n") + QByteArray(2 << 20, '='));
  }
  EXPECT_FALSE(demo_.IsChosen());
  EXPECT_EQ(demo_.WayBack().workFolder, own_);
  demo_.Choose(*Start({"--data", "/d"}).options);
  EXPECT_TRUE(demo_.IsChosen());
  EXPECT_EQ(demo_.WayBack().command.dataFolder, "/d");
  EXPECT_LT(QFileInfo(mark).size(), 1000);
  EXPECT_GT(QFileInfo(mark + ".damaged").size(), 2 << 20);
  ASSERT_TRUE(QFile::remove(mark));
  ASSERT_EQ(mkfifo(QFile::encodeName(mark).constData(), 0600), 0);
  EXPECT_FALSE(demo_.IsChosen());
  EXPECT_EQ(demo_.WayBack().command.dataFolder, QString());
  EXPECT_THROW(demo_.Choose(*Start({}).options), Error);
}

/// What has been started there meanwhile may have other data than it was left with; asked for the former ones it would
/// refuse.
TEST_F(DemoFolderTest, TheWayBackToATerminalThatRunsAsksForNoData) {
  Touch("terminal.lock");
  demo_.Choose(*Start({"--data", "/d"}).options);
  EXPECT_EQ(demo_.WayBack().command.dataFolder, "/d");
  WorkFolderLock lock(own_);
  ASSERT_TRUE(lock.Acquire());
  EXPECT_EQ(demo_.WayBack().command.dataFolder, QString());
}

/// As on a full disk, where nothing can be written but much be removed.
TEST_F(DemoFolderTest, ItIsLeftAlthoughNothingCanBeWritten) {
  Choose();
  ASSERT_TRUE(QDir().mkpath(demo_.Path() + "/demo.ini.lock/what-stands-in-the-way"));
  demo_.Leave();
  EXPECT_FALSE(demo_.IsChosen());
  EXPECT_FALSE(Turned({}).IsDemo());
}

TEST_F(DemoFolderTest, AChoiceThatCannotBeWrittenIsSaid) {
  Touch("demo");  // no folder
  EXPECT_THROW(demo_.Choose(*Start({}).options), Error);
  EXPECT_FALSE(demo_.IsChosen());
}

/// The start there keeps the file and tells of it.
TEST_F(DemoFolderTest, NothingIsCarriedIntoADamagedFile) {
  const QString other = own_ + "/demo";
  ASSERT_TRUE(QDir().mkpath(other));
  QSettings(SettingsFileOf(other), QSettings::IniFormat).setValue("theme", "light");
  const QByteArray damaged("data=/own\n\0\1\2", 13);
  {
    QFile file(SettingsFileOf(own_));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(damaged);
  }
  CarrySettings(other, own_);
  QFile file(SettingsFileOf(own_));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), damaged);
}

TEST_F(DemoFolderTest, SettingsAreCarriedButNotTheDataFolder) {
  const QString other = own_ + "/demo";
  ASSERT_TRUE(QDir().mkpath(other));
  {
    QSettings from(SettingsFileOf(own_), QSettings::IniFormat), to(SettingsFileOf(other), QSettings::IniFormat);
    RememberDataFolder(from, "/own");
    from.setValue("theme", "light");
    from.setValue("splitters/One", QVariantList{1, 2});
    to.setValue("theme", "dark");
    to.setValue("folders/import", "/there");
  }
  CarrySettings(own_, other);
  const QSettings to(SettingsFileOf(other), QSettings::IniFormat);
  EXPECT_EQ(to.value("theme").toString(), "light");
  EXPECT_EQ(to.value("splitters/One").toList().value(1).toInt(), 2);
  EXPECT_EQ(to.value("folders/import").toString(), "/there");
  EXPECT_EQ(RememberedDataFolder(to), QString());
  CarrySettings(other, own_);
  EXPECT_EQ(RememberedDataFolder(QSettings(SettingsFileOf(own_), QSettings::IniFormat)), "/own");
}

TEST(DemoMakerTest, AFailureGivesItsReasonWithoutTheProgress) {
  EXPECT_EQ(ReasonOfMaker("处理行情 100/1000\n处理行情 200/1000\n磁盘已满\n请清理\n"), "磁盘已满\n请清理");
  EXPECT_EQ(ReasonOfMaker("处理行情 1000/1000\r\n没有写完"), "没有写完");
  for (const char* silent : {"", "处理行情 100/1000\n"})
    EXPECT_TRUE(ReasonOfMaker(silent).startsWith("生成程序意外结束了")) << silent;
}

}  // namespace
}  // namespace holdwise
