// SPDX-License-Identifier: MIT
// Slow and failing sources, and ends that come early.
#include <QElapsedTimer>

#include "files_fixture.h"
#include "hung_file.h"

namespace holdwise {
namespace {

constexpr int kLong = 30'000;  // ms; a loaded machine takes its time for what is not waited for here

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
  settings.downWaitTimeOut = kLong;
  role_->Configure(settings);
  EXPECT_EQ(Event(QStringLiteral("b")), QStringLiteral("file b 0"));
}

TEST_F(FilesTest, TimeOutCountsForEachRequestByItself) {
  ScriptedSource source;
  source.delay = 300;
  Role::Settings settings;
  settings.downWaitTimeOut = 1100;  // less than all four together
  Make(source, settings);
  for (int i = 0; i < 4; ++i) role_->Request(QStringLiteral("f%1").arg(i));
  ASSERT_TRUE(Events(4));
  EXPECT_TRUE(events_.filter(QStringLiteral("failed")).isEmpty()) << events_.join(QLatin1Char(';')).toStdString();
}

TEST_F(FilesTest, WaitingHintOnlyWhenSlowAndWanted) {
  ScriptedSource source;
  Role::Settings settings;
  settings.downWaitTips = true;
  settings.downWaitStartTime = 1000;
  Make(source, settings);
  Event(QStringLiteral("quick"));
  EXPECT_TRUE(hints_.isEmpty());
  source.delay = 1500;
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
  settings.downWaitTimeOut = kLong;
  role_->Configure(settings);
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
