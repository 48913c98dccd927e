// SPDX-License-Identifier: MIT
#include "files_fixture.h"

namespace holdwise {
namespace {

TEST(MapRemoteNameTest, KeepsCapitalsAndTurnsBackslashes) {
  EXPECT_EQ(MapRemoteName(QStringLiteral("QMTL\\TZZH\\Day250\\股票\\600000.dat")),
            QStringLiteral("QMTL/TZZH/Day250/股票/600000.dat"));
  EXPECT_EQ(MapRemoteName(QStringLiteral("a/B\\c..d")), QStringLiteral("a/B/c..d"));
  EXPECT_EQ(MapRemoteName(QStringLiteral("...")), QStringLiteral("..."));
}

TEST(MapRemoteNameTest, RefusesNamesThatLeaveOrHide) {
  const QString refused[] = {QString(),
                             QStringLiteral("\\QMTL\\x.dat"),
                             QStringLiteral("/etc/passwd"),
                             QStringLiteral("C:\\x.dat"),
                             QStringLiteral("x.dat:stream"),
                             QStringLiteral("..\\x.dat"),
                             QStringLiteral("QMTL\\..\\..\\x.dat"),
                             QStringLiteral("QMTL/.."),
                             QStringLiteral("."),
                             QStringLiteral("a\\.\\b"),
                             QStringLiteral("a\\\\b"),
                             QStringLiteral("a\\"),
                             QStringLiteral("a\nb"),
                             QStringLiteral("a\x7f"),
                             QString(QChar(0)),
                             QStringLiteral("a") + QChar(0xd800)};
  for (const QString& name : refused) EXPECT_EQ(MapRemoteName(name), QString()) << name.toStdString();
}

TEST_F(FilesTest, FileArrivesOnDisk) {
  WriteFile(Remote(QStringLiteral("QMTL/TZZH/ZNPZ.dat")), "abc");
  LocalFolderSource source(remote_.path());
  Make(source);
  EXPECT_EQ(Event(QStringLiteral("QMTL\\TZZH\\ZNPZ.dat")), QStringLiteral("file QMTL\\TZZH\\ZNPZ.dat 0"));
  const QString path = role_->LocalPath(QStringLiteral("QMTL\\TZZH\\ZNPZ.dat"));
  EXPECT_EQ(path, Work(QStringLiteral("QMTL/TZZH/ZNPZ.dat")));
  EXPECT_EQ(Bytes(path), QByteArray("abc"));
  EXPECT_EQ(ModeOf(path), 0600);
  EXPECT_EQ(ModeOf(Work(QStringLiteral("QMTL"))), 0700);
  WriteFile(Remote(QStringLiteral("QMTL/TZZH/ZNPZ.dat")), "new");
  Event(QStringLiteral("QMTL\\TZZH\\ZNPZ.dat"));
  EXPECT_EQ(Bytes(path), QByteArray("new"));
  EXPECT_EQ(QDir(Work(QStringLiteral("QMTL/TZZH"))).entryList(QDir::Files | QDir::Hidden).size(), 1);  // nothing left
  EXPECT_EQ(role_->LocalPath(QStringLiteral("..\\x")), QString());
}

TEST_F(FilesTest, StreamArrivesInMemoryOnly) {
  WriteFile(Remote(QStringLiteral("a/B.dat")), "abc");
  LocalFolderSource source(remote_.path());
  Role::Settings settings;
  settings.isStream = true;
  Make(source, settings);
  EXPECT_EQ(Event(QStringLiteral("a\\B.dat")), QStringLiteral("stream a\\B.dat 0 abc"));
  EXPECT_TRUE(QDir(work_.path()).isEmpty());
  WriteFile(Remote(QStringLiteral("empty.dat")), "");
  EXPECT_EQ(Event(QStringLiteral("empty.dat")), QStringLiteral("stream empty.dat 0 "));
}

TEST_F(FilesTest, FailuresHaveTheirCodes) {
  LocalFolderSource source(remote_.path(), 10);
  Make(source);
  EXPECT_EQ(Event(QStringLiteral("none.dat")), QStringLiteral("failed none.dat 1"));
  EXPECT_EQ(Event(QStringLiteral("none\\none.dat")), QStringLiteral("failed none\\none.dat 1"));
  EXPECT_EQ(Event(QStringLiteral("..\\x.dat")), QStringLiteral("failed ..\\x.dat 3"));
  EXPECT_EQ(Event(QString()), QStringLiteral("failed  3"));
  ASSERT_TRUE(QDir().mkdir(Remote(QStringLiteral("folder.dat"))));
  EXPECT_EQ(Event(QStringLiteral("folder.dat")), QStringLiteral("failed folder.dat 4"));
  WriteFile(Remote(QStringLiteral("big.dat")), "12345678901");
  EXPECT_EQ(Event(QStringLiteral("big.dat")), QStringLiteral("failed big.dat 4"));
  ASSERT_EQ(::mkfifo(QFile::encodeName(Remote(QStringLiteral("pipe.dat"))).constData(), 0600), 0);
  EXPECT_EQ(Event(QStringLiteral("pipe.dat")), QStringLiteral("failed pipe.dat 4"));
  WriteFile(Remote(QStringLiteral("a/x.dat")), "x");
  WriteFile(Work(QStringLiteral("a")), "a file where a folder is needed");
  EXPECT_EQ(Event(QStringLiteral("a\\x.dat")), QStringLiteral("failed a\\x.dat 5"));
  EXPECT_EQ(Bytes(Work(QStringLiteral("a"))), QByteArray("a file where a folder is needed"));
  WriteFile(Remote(QStringLiteral("b.dat")), "x");
  ASSERT_TRUE(QDir().mkdir(Work(QStringLiteral("b.dat"))));
  EXPECT_EQ(Event(QStringLiteral("b.dat")), QStringLiteral("failed b.dat 5"));
  const QStringList ownTrouble{QStringLiteral("unwritable a\\x.dat"), QStringLiteral("unwritable b.dat")};
  EXPECT_EQ(hints_, ownTrouble);
}

TEST_F(FilesTest, MissingSourceFolderIsNotFound) {
  LocalFolderSource source(Remote(QStringLiteral("away")));
  Make(source);
  EXPECT_EQ(Event(QStringLiteral("x.dat")), QStringLiteral("failed x.dat 1"));
}

TEST_F(FilesTest, LinksOutOfTheSourceAreRefused) {
  QTemporaryDir outside;
  WriteFile(outside.filePath(QStringLiteral("secret.dat")), "secret");
  WriteFile(Remote(QStringLiteral("inside.dat")), "inside");
  ASSERT_TRUE(QFile::link(outside.filePath(QStringLiteral("secret.dat")), Remote(QStringLiteral("link.dat"))));
  ASSERT_TRUE(QFile::link(outside.path(), Remote(QStringLiteral("folder"))));
  ASSERT_TRUE(QFile::link(Remote(QStringLiteral("inside.dat")), Remote(QStringLiteral("good.dat"))));
  LocalFolderSource source(remote_.path());
  Make(source);
  EXPECT_EQ(Event(QStringLiteral("link.dat")), QStringLiteral("failed link.dat 3"));
  EXPECT_EQ(Event(QStringLiteral("folder\\secret.dat")), QStringLiteral("failed folder\\secret.dat 3"));
  EXPECT_EQ(Event(QStringLiteral("good.dat")), QStringLiteral("file good.dat 0"));
  EXPECT_EQ(Bytes(Work(QStringLiteral("good.dat"))), QByteArray("inside"));
}

TEST_F(FilesTest, LinksOutOfTheWorkFolderAreRefused) {
  QTemporaryDir outside;
  WriteFile(outside.filePath(QStringLiteral("victim.dat")), "old");
  for (const char* name : {"link.dat", "dangling.dat", "folder/x.dat", "folder/new/x.dat"}) {
    WriteFile(Remote(QString::fromLatin1(name)), "new");
  }
  ASSERT_TRUE(QFile::link(outside.filePath(QStringLiteral("victim.dat")), Work(QStringLiteral("link.dat"))));
  ASSERT_TRUE(QFile::link(outside.filePath(QStringLiteral("none.dat")), Work(QStringLiteral("dangling.dat"))));
  ASSERT_TRUE(QFile::link(outside.path(), Work(QStringLiteral("folder"))));
  LocalFolderSource source(remote_.path());
  Make(source);
  EXPECT_EQ(Event(QStringLiteral("link.dat")), QStringLiteral("failed link.dat 3"));
  EXPECT_EQ(Event(QStringLiteral("dangling.dat")), QStringLiteral("failed dangling.dat 3"));
  EXPECT_EQ(Event(QStringLiteral("folder\\x.dat")), QStringLiteral("failed folder\\x.dat 3"));
  EXPECT_EQ(Event(QStringLiteral("folder\\new\\x.dat")), QStringLiteral("failed folder\\new\\x.dat 3"));
  EXPECT_EQ(Bytes(outside.filePath(QStringLiteral("victim.dat"))), QByteArray("old"));
  EXPECT_EQ(QDir(outside.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
}

TEST_F(FilesTest, RequestsAreServedInOrder) {
  ScriptedSource source;
  source.delay = 5;
  Make(source);
  role_->Request(QStringLiteral("a"));
  role_->Request(QStringLiteral("..\\b"));
  role_->Request(QStringLiteral("c"));
  ASSERT_TRUE(Events(3));
  EXPECT_EQ(events_,
            (QStringList{QStringLiteral("file a 0"), QStringLiteral("failed ..\\b 3"), QStringLiteral("file c 0")}));
  EXPECT_EQ(source.openFetches, 0);
}

TEST_F(FilesTest, AnEventMayAskForTheNextFile) {
  ScriptedSource source;
  Make(source);
  role_->OnReciveAFile = [this](const QString& name, int) {
    events_ += name;
    if (events_.size() < 5) role_->Request(QStringLiteral("f%1").arg(events_.size()));
  };
  role_->Request(QStringLiteral("f0"));
  ASSERT_TRUE(Events(5));
  EXPECT_EQ(events_.last(), QStringLiteral("f4"));
}

TEST_F(FilesTest, SettingsReachTheSource) {
  ScriptedSource source;
  Role::Settings settings;
  settings.isCompress = false;
  Make(source, settings);
  Event(QStringLiteral("A\\b.dat"));
  ASSERT_EQ(source.calls.size(), 1U);
  EXPECT_EQ(source.calls[0].path, QStringLiteral("A/b.dat"));
  EXPECT_FALSE(source.calls[0].mayCompress);
}

TEST_F(FilesTest, FailureOfTheSourceIsPassedOn) {
  ScriptedSource source;
  source.answer = {Role::kUnreadable, "half a file"};
  Role::Settings settings;
  settings.downFailTips = true;
  Make(source, settings);
  EXPECT_EQ(Event(QStringLiteral("a")), QStringLiteral("failed a 4"));
  EXPECT_TRUE(QDir(work_.path()).isEmpty());
  EXPECT_EQ(hints_, QStringList{QStringLiteral("fail a 4")});
}

}  // namespace
}  // namespace holdwise
