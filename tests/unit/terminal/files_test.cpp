// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "files/down_file_role.h"
#include "files/local_folder_source.h"
#include "hung_file.h"

namespace holdwise {
namespace {

using Role = TDSBAsynDownFileRole;

void WriteFile(const QString& path, const QByteArray& bytes) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray Bytes(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

int ModeOf(const QString& path) {
  struct stat status {};
  return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? static_cast<int>(status.st_mode & 0777) : -1;
}

/// Answers when told to, or after a delay.
class ScriptedSource final : public FileSource {
 public:
  struct Call {
    QString path;
    bool mayCompress = false;
  };
  [[nodiscard]] std::unique_ptr<Fetch> Start(const QString& path, bool mayCompress,
                                             std::function<void(FetchResult)> done) override {
    calls.push_back({path, mayCompress});
    auto fetch = std::make_unique<DelayedFetch>();
    DelayedFetch* raw = fetch.get();
    raw->open = &openFetches;
    ++openFetches;
    if (delay >= 0) {
      QTimer::singleShot(delay, raw, [answer = answer, done = std::move(done)] {
        const auto call = done;
        call(answer);
      });
    }
    return fetch;
  }
  int delay = 0;  ///< ms; below 0: never
  FetchResult answer{Role::kOk, "content"};
  std::vector<Call> calls;
  int openFetches = 0;

 private:
  class DelayedFetch final : public QObject, public Fetch {
   public:
    ~DelayedFetch() override { --*open; }
    int* open = nullptr;
  };
};

/// A role that writes down its events.
class FilesTest : public testing::Test {
 protected:
  void Make(FileSource& source, const Role::Settings& settings = {}) {
    DownFileHints hints;
    hints.onWaiting = [this](const QString& name, bool waiting) {
      hints_ += QStringLiteral("%1 %2").arg(waiting ? QStringLiteral("wait") : QStringLiteral("end"), name);
    };
    hints.onFailed = [this](const QString& name, int code) {
      hints_ += QStringLiteral("fail %1 %2").arg(name).arg(code);
    };
    hints.onAnyFailure = [this](const QString& name, int code) {
      if (code == Role::kUnwritable) hints_ += QStringLiteral("unwritable %1").arg(name);
    };
    role_ = std::make_unique<DownFileRole>(source, work_.path(), hints);
    role_->Configure(settings);
    role_->OnReciveAFile = [this](const QString& name, int code) {
      events_ += QStringLiteral("file %1 %2").arg(name).arg(code);
    };
    role_->OnReciveStearm = [this](const QString& name, int code, const QByteArray& content) {
      events_ += QStringLiteral("stream %1 %2 %3").arg(name).arg(code).arg(QString::fromUtf8(content));
    };
    role_->OnReciveAFileFail = [this](const QString& name, int code) {
      events_ += QStringLiteral("failed %1 %2").arg(name).arg(code);
    };
  }
  bool Events(int count) {
    return QTest::qWaitFor([&] { return events_.size() >= count; }, 30000);
  }
  /// The single event of one request.
  QString Event(const QString& remoteName) {
    events_.clear();
    role_->Request(remoteName);
    EXPECT_TRUE(events_.isEmpty());  // never inside Request
    EXPECT_TRUE(Events(1));
    QTest::qWait(20);
    EXPECT_EQ(events_.size(), 1);
    return events_.value(0);
  }
  [[nodiscard]] QString Work(const QString& path) const { return work_.filePath(path); }
  [[nodiscard]] QString Remote(const QString& path) const { return remote_.filePath(path); }

  QTemporaryDir work_;
  QTemporaryDir remote_;
  QStringList events_;
  QStringList hints_;
  std::unique_ptr<DownFileRole> role_;
};

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

TEST_F(FilesTest, SlowSourceTimesOutOnce) {
  ScriptedSource source;
  source.delay = 800;
  Role::Settings settings;
  settings.downWaitTimeOut = 50;
  Make(source, settings);
  QElapsedTimer timer;
  timer.start();
  role_->Request(QStringLiteral("a"));
  ASSERT_TRUE(Events(1));
  EXPECT_GE(timer.elapsed(), 50);
  QTest::qWait(900);  // the late answer is not heard
  EXPECT_EQ(events_, QStringList{QStringLiteral("failed a 2")});
  EXPECT_TRUE(QDir(work_.path()).isEmpty());
  source.delay = 0;
  EXPECT_EQ(Event(QStringLiteral("b")), QStringLiteral("file b 0"));
}

TEST_F(FilesTest, TimeOutCountsForEachRequestByItself) {
  ScriptedSource source;
  source.delay = 100;
  Role::Settings settings;
  settings.downWaitTimeOut = 350;  // less than all four together
  Make(source, settings);
  for (int i = 0; i < 4; ++i) role_->Request(QStringLiteral("f%1").arg(i));
  ASSERT_TRUE(Events(4));
  EXPECT_TRUE(events_.filter(QStringLiteral("failed")).isEmpty()) << events_.join(QLatin1Char(';')).toStdString();
}

TEST_F(FilesTest, WaitingHintOnlyWhenSlowAndWanted) {
  ScriptedSource source;
  Role::Settings settings;
  settings.downWaitTips = true;
  settings.downWaitStartTime = 300;
  Make(source, settings);
  Event(QStringLiteral("quick"));
  EXPECT_TRUE(hints_.isEmpty());
  source.delay = 600;
  Event(QStringLiteral("slow"));
  EXPECT_EQ(hints_, (QStringList{QStringLiteral("wait slow"), QStringLiteral("end slow")}));
  hints_.clear();
  settings.downWaitTips = false;
  role_->Configure(settings);
  Event(QStringLiteral("slow"));
  EXPECT_TRUE(hints_.isEmpty());
}

TEST_F(FilesTest, NoEventAfterDestruction) {
  ScriptedSource source;
  source.delay = 20;
  Make(source);
  role_->Request(QStringLiteral("a"));
  role_->Request(QStringLiteral("b"));
  role_.reset();  // not even started
  QTest::qWait(80);
  EXPECT_TRUE(source.calls.empty());
  Make(source);
  role_->Request(QStringLiteral("a"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return source.openFetches == 1; }, 30000));
  role_.reset();  // under way
  EXPECT_EQ(source.openFetches, 0);
  WriteFile(Remote(QStringLiteral("x.dat")), QByteArray(1 << 20, 'x'));
  {
    LocalFolderSource local(remote_.path());
    Make(local);
    role_->Request(QStringLiteral("x.dat"));
    QCoreApplication::processEvents();  // the worker thread reads
    role_.reset();
  }
  QTest::qWait(80);
  EXPECT_TRUE(events_.isEmpty());
}

/// A network folder that does not answer holds its reader, but not the one that ends.
TEST_F(FilesTest, AReadThatHangsTimesOutAndIsLeftBehind) {
  WriteFile(Remote(QStringLiteral("a")), "content");
  test::HungFile hung(Remote(QStringLiteral("a")));
  if (!hung.IsHung()) GTEST_SKIP() << "no leases on this file system";
  auto source = std::make_unique<LocalFolderSource>(remote_.path());
  Role::Settings settings;
  settings.downWaitTimeOut = 100;
  Make(*source, settings);
  EXPECT_EQ(Event(QStringLiteral("a")), QStringLiteral("failed a 2"));
  WriteFile(Remote(QStringLiteral("b")), "content");
  EXPECT_EQ(Event(QStringLiteral("b")), QStringLiteral("file b 0"));
  role_.reset();
  QElapsedTimer timer;
  timer.start();
  source.reset();
  EXPECT_LT(timer.elapsed(), 5000);
  hung.Release();
  QTest::qWait(100);  // the reader wakes up and finds nobody
}

TEST_F(FilesTest, EveryFailureIsTold) {
  ScriptedSource source;
  DownFileHints hints;
  hints.onAnyFailure = [this](const QString& name, int code) { hints_ += QStringLiteral("%1 %2").arg(name).arg(code); };
  hints.onFailed = [this](const QString&, int) { hints_ += QStringLiteral("shown"); };
  role_ = std::make_unique<DownFileRole>(source, work_.path(), hints);
  Role::Settings settings;
  role_->Configure(settings);
  role_->OnReciveAFile = [this](const QString&, int) { events_ += QStringLiteral("file"); };
  role_->OnReciveAFileFail = [this](const QString&, int) { events_ += QStringLiteral("failed"); };
  Event(QStringLiteral("good"));
  EXPECT_TRUE(hints_.isEmpty());
  source.answer.code = Role::kUnreadable;
  Event(QStringLiteral("bad"));
  Event(QStringLiteral("../bad"));
  EXPECT_EQ(hints_, (QStringList{QStringLiteral("bad 4"), QStringLiteral("../bad 3")}));
}

TEST_F(FilesTest, MayBeDestroyedInsideItsEvents) {
  ScriptedSource source;
  LocalFolderSource local(remote_.path());
  WriteFile(Remote(QStringLiteral("a")), "a");
  const auto destroyInside = [this](auto&&...) {
    events_ += QStringLiteral("gone");
    role_.reset();
  };
  for (FileSource* used : {static_cast<FileSource*>(&source), static_cast<FileSource*>(&local)}) {
    for (const bool stream : {false, true}) {
      Role::Settings settings;
      settings.isStream = stream;
      Make(*used, settings);
      role_->OnReciveAFile = destroyInside;
      role_->OnReciveStearm = destroyInside;
      events_.clear();
      role_->Request(QStringLiteral("a"));
      role_->Request(QStringLiteral("b"));
      ASSERT_TRUE(Events(1));
      QTest::qWait(30);
      EXPECT_EQ(events_.size(), 1);
    }
  }
  Make(local);
  role_->OnReciveAFileFail = destroyInside;
  events_.clear();
  role_->Request(QStringLiteral("..\\a"));
  ASSERT_TRUE(Events(1));
  EXPECT_EQ(role_, nullptr);
}

TEST_F(FilesTest, TheUserInterfaceGoesOnMeanwhile) {
  constexpr qint64 kSize = 128 << 20;
  WriteFile(Remote(QStringLiteral("big.dat")), QByteArray(kSize, 'x'));
  LocalFolderSource source(remote_.path());
  Make(source);
  QElapsedTimer gap;
  qint64 longest = 0;
  QTimer beat;
  beat.setTimerType(Qt::PreciseTimer);
  QObject::connect(&beat, &QTimer::timeout, [&] {
    longest = std::max(longest, gap.elapsed());
    gap.start();
  });
  QElapsedTimer whole;
  whole.start();
  gap.start();
  beat.start(1);
  role_->Request(QStringLiteral("big.dat"));
  ASSERT_TRUE(Events(1));
  EXPECT_EQ(events_[0], QStringLiteral("file big.dat 0"));
  EXPECT_LT(longest * 3, whole.elapsed());  // neither the reading nor the writing held the event loop
  EXPECT_EQ(QFileInfo(Work(QStringLiteral("big.dat"))).size(), kSize);
}

}  // namespace
}  // namespace holdwise
