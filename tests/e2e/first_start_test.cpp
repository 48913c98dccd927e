// SPDX-License-Identifier: MIT
// Ways to a data folder, and to the plug-ins, of a terminal that has none.
#include <QDir>
#include <csignal>
#include <optional>

#include "window_fixture.h"

namespace holdwise::e2e {
namespace {

class FirstStart : public Window {
 protected:
  /// Starts without data and presses the button of the simulated market.
  void BeginDemo() {
    terminal_.emplace(Arguments(), screen_.Environment());
    ASSERT_TRUE(terminal_->WaitForWindow());
    ASSERT_TRUE(screen_.Enter("^Holdwise$"));
    screen_.Keys({"alt+d"});
    ASSERT_TRUE(Until([this] { return IsMaking(); }, 10'000));
  }
  /// The bars of a demo are there as long as it is made; its folder may stay beside them.
  [[nodiscard]] bool IsMaking() const {
    QStringList made = QDir(bench_.Work()).entryList({"demo-*"}, QDir::Dirs);
    made.removeAll("demo-market");
    return !made.isEmpty();
  }
  /// To the program that makes the demo; false when there is none.
  [[nodiscard]] bool SignalMaker(int signal) {
    const QString process = QString::number(terminal_->Process().processId());
    bool isSent = false;
    for (const QByteArray& child : Bytes("/proc/" + process + "/task/" + process + "/children").split(' ')) {
      if (Bytes("/proc/" + child + "/comm").startsWith("holdwise-market")) isSent = ::kill(child.toInt(), signal) == 0;
    }
    return isSent;
  }
  /// From now on it makes no progress, however fast it is.
  void HoldMaker() {
    ASSERT_TRUE(Until([this] { return SignalMaker(SIGSTOP); }, 10'000));
  }
  [[nodiscard]] QStringList Arguments() const { return {"--work", bench_.Work()}; }
  /// The work folder of the simulated market.
  [[nodiscard]] QString Demo() const { return bench_.Work() + "/demo"; }
  [[nodiscard]] bool DemoLogSays(const char* text) const {
    return Until([&] { return Bytes(Demo() + "/log/terminal.log").contains(text); }, 60'000);
  }
  /// Ends the terminal and says what is remembered.
  [[nodiscard]] QString SettingsAfter() {
    EXPECT_GE(terminal_->Signal(SIGTERM), 0);
    return QString::fromUtf8(Bytes(bench_.Work() + "/settings.ini"));
  }
  /// Seconds of a processor's work, which a busy machine makes minutes.
  [[nodiscard]] bool IsDemoMade() const {
    return Until([this] { return QFile::exists(Demo() + "/market/market.dat"); }, 180'000);
  }
  std::optional<RunningTerminal> terminal_;
};

/// Without any data: one key makes a simulated market and opens it, and the next start has it again.
TEST_F(FirstStart, AFirstStartGetsToADemoMarket) {
  const QStringList arguments{"--work", bench_.Work()};
  {
    RunningTerminal terminal(arguments, screen_.Environment());
    ASSERT_TRUE(terminal.WaitForWindow());
    ASSERT_TRUE(screen_.Enter("^Holdwise$"));
    screen_.Keys({"alt+d"});
    ASSERT_TRUE(IsDemoMade());
    ASSERT_TRUE(screen_.Enter("模拟行情"));
    EXPECT_TRUE(DemoLogSays("插件“投资组合”"));
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
  }
  EXPECT_TRUE(QFile::exists(Demo() + "/holdwise.fdb")) << "a database of its own";
  EXPECT_FALSE(QFile::exists(bench_.Work() + "/market"));
  EXPECT_TRUE(QDir(bench_.Work()).entryList({"demo-*"}).isEmpty()) << "nothing is left of its making";
  RunningTerminal again(arguments, screen_.Environment());
  ASSERT_TRUE(again.WaitForWindow());
  EXPECT_TRUE(screen_.Enter("模拟行情"));
}

/// Given up in either half of its making, nothing is left of it, and the page offers it again.
TEST_F(FirstStart, MakingADemoMarketCanBeGivenUp) {
  RunningTerminal terminal({"--work", bench_.Work()}, screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  const auto made = [&](const QString& below) {
    const QDir work(bench_.Work());
    const QStringList folders = work.entryList({"demo-*"}, QDir::Dirs);
    return folders.size() == 1 && work.exists(folders.front() + below);
  };
  const auto entries = [&] { return QDir(bench_.Work()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot); };
  const QStringList before = entries();
  for (const char* half : {"/csv", "/.market.new"}) {
    ASSERT_TRUE(screen_.Enter("^Holdwise$"));
    screen_.Keys({"alt+d"});
    ASSERT_TRUE(Until([&] { return made(half); }, 60'000)) << half;
    screen_.Keys({"Escape"});
    EXPECT_TRUE(Until([&] { return entries() == before; }, 10'000)) << half << entries().join(' ').toStdString();
  }
  EXPECT_TRUE(screen_.IsGone("模拟行情"));
  EXPECT_EQ(terminal.Process().state(), QProcess::Running);
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  screen_.Keys({"alt+d"});
  EXPECT_TRUE(IsDemoMade());
  EXPECT_TRUE(screen_.Enter("模拟行情"));
}

/// Closing the window while it is made asks, and leaves nothing of it.
TEST_F(FirstStart, ClosedWhileADemoMarketIsMadeItAsksFirst) {
  RunningTerminal terminal({"--work", bench_.Work()}, screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  screen_.Keys({"alt+d"});
  ClickClose();
  ASSERT_TRUE(screen_.Enter("^关闭$"));
  screen_.Keys({"Tab", "space"});
  EXPECT_TRUE(IsGone(terminal));
  EXPECT_EQ(terminal.Process().exitCode(), 0);
  EXPECT_TRUE(QDir(bench_.Work()).entryList({"demo*", "market", ".market*"}, QDir::Dirs | QDir::Hidden).isEmpty());
}

/// Killed while it is made, and what makes it ends too; what is left of it is gone when one is made again.
TEST_F(FirstStart, WhatAKilledTerminalLeftOfItsMakingIsRemoved) {
  ASSERT_NO_FATAL_FAILURE(BeginDemo());
  ASSERT_NO_FATAL_FAILURE(HoldMaker());
  const QStringList left = QDir(bench_.Work()).entryList({"demo-*"}, QDir::Dirs);
  ASSERT_EQ(left.size(), 1);
  const QByteArray made = QFile::encodeName(bench_.Work() + '/' + left.front());
  const auto isMaking = [&] {
    for (const QString& process : QDir("/proc").entryList(QDir::Dirs))
      if (Bytes("/proc/" + process + "/cmdline").contains(made)) return true;
    return false;
  };
  EXPECT_TRUE(isMaking());
  (void)terminal_->Signal(SIGKILL);
  EXPECT_TRUE(Until([&] { return !isMaking(); }, 10'000));
  const QString others = bench_.Work() + "/demo-market";
  ASSERT_TRUE(QDir().mkpath(others + "/csv"));
  EXPECT_TRUE(QFile::exists(QString::fromUtf8(made)));
  ASSERT_NO_FATAL_FAILURE(BeginDemo());
  EXPECT_TRUE(Until([&] { return !QFile::exists(QString::fromUtf8(made)); }, 10'000));
  EXPECT_TRUE(QFile::exists(others + "/csv")) << "not of its making";
}

/// No data: the page stays, says that it has looked, and opens the market once it is there.
TEST_F(FirstStart, LookingAgainIsSeenAndOpensWhatHasCome) {
  const QString data = bench_.File("data");
  ASSERT_TRUE(QDir().mkpath(data));
  RunningTerminal terminal({"--work", bench_.Work(), "--data", data}, screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  const auto looks = [&] { return Bytes(bench_.Work() + "/log/terminal.log").count("没有可用的行情数据"); };
  ASSERT_EQ(looks(), 1);
  const QByteArray before = screen_.PictureAbove();
  screen_.Keys({"alt+r"});
  EXPECT_TRUE(Until([&] { return looks() == 2; }, 30'000));
  EXPECT_TRUE(Until([&] { return screen_.PictureAbove() != before; }, 30'000)) << "a line more, with the time";
  for (const QString& name : QDir(bench_.data).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot))
    ASSERT_TRUE(QFile::link(bench_.data + "/" + name, data + "/" + name));
  screen_.Keys({"alt+r"});
  EXPECT_TRUE(LogSays("插件“投资组合”"));
}

TEST_F(FirstStart, APluginFolderWithoutPluginsSaysSoAndIsLookedAtAgain) {
  const QString plugins = bench_.File("plugins");
  ASSERT_TRUE(QDir().mkpath(plugins));
  QProcessEnvironment environment = screen_.Environment();
  environment.insert("HOLDWISE_PLUGIN_DIR", plugins);
  RunningTerminal terminal(bench_.Arguments({}), environment);
  ASSERT_TRUE(terminal.WaitForWindow());
  EXPECT_TRUE(LogSays("没有可用的插件"));
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  const QString built = qEnvironmentVariable("HOLDWISE_BIN") + "/../lib/holdwise/Holdwise.so";
  ASSERT_TRUE(QFile::copy(built, plugins + "/Holdwise.so"));
  screen_.Keys({"alt+r"});
  EXPECT_TRUE(LogSays("插件“投资组合”"));
}

TEST_F(FirstStart, ADataFolderThatWasChosenIsOpenedAgain) {
  const QStringList arguments{"--work", bench_.Work()};
  {
    RunningTerminal terminal(arguments, screen_.Environment());
    ASSERT_TRUE(terminal.WaitForWindow());
    ASSERT_TRUE(screen_.Enter("^Holdwise$"));
    screen_.Keys({"alt+o"});
    ASSERT_TRUE(screen_.Enter("选择数据目录"));
    screen_.Type(bench_.data);
    screen_.Keys({"Return"});
    EXPECT_TRUE(LogSays("插件“投资组合”"));
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
  }
  ASSERT_TRUE(QFile::remove(bench_.Work() + "/log/terminal.log"));
  RunningTerminal again(arguments, screen_.Environment());
  ASSERT_TRUE(again.WaitForWindow());
  EXPECT_TRUE(LogSays("插件“投资组合”"));
}

/// Somebody who changes their mind while it is made gets the folder that was chosen, and no other one afterwards.
TEST_F(FirstStart, ChoosingAFolderEndsTheMakingOfADemo) {
  ASSERT_NO_FATAL_FAILURE(BeginDemo());
  ASSERT_NO_FATAL_FAILURE(HoldMaker());
  screen_.Keys({"alt+o"});
  ASSERT_TRUE(screen_.Enter("选择数据目录"));
  EXPECT_TRUE(IsMaking());
  screen_.Type(bench_.data);
  screen_.Keys({"Return"});
  EXPECT_TRUE(LogSays("插件“投资组合”"));
  EXPECT_FALSE(SignalMaker(SIGCONT)) << "it is at an end";
  ASSERT_TRUE(Until([this] { return !IsMaking(); }, 60'000));
  QThread::msleep(1000);  // which the demo would need to be opened
  EXPECT_FALSE(QFile::exists(Demo()));
  const QString settings = SettingsAfter();
  EXPECT_TRUE(settings.contains("data=" + bench_.data + '\n')) << settings.toStdString();
}

/// The dialog is looked at and left: the demo comes after all, but not while it is open.
TEST_F(FirstStart, ADemoThatIsReadyWaitsForTheDialog) {
  ASSERT_NO_FATAL_FAILURE(BeginDemo());
  ASSERT_NO_FATAL_FAILURE(HoldMaker());
  screen_.Keys({"alt+o"});
  ASSERT_TRUE(screen_.Enter("选择数据目录"));
  ASSERT_TRUE(SignalMaker(SIGCONT));
  const QDir work(bench_.Work());
  const auto isReady = [&] {
    const QStringList made = work.entryList({"demo-*"}, QDir::Dirs);
    return made.size() == 1 && work.exists(made.front() + "/market/market.dat");
  };
  ASSERT_TRUE(Until(isReady, 180'000));
  QThread::msleep(1000);
  EXPECT_FALSE(QFile::exists(Demo()));
  screen_.Keys({"Escape"});
  EXPECT_TRUE(DemoLogSays("插件“投资组合”"));
  EXPECT_FALSE(IsMaking());
  EXPECT_FALSE(SettingsAfter().contains("data="));
  EXPECT_TRUE(Bytes(Demo() + "/demo.ini").contains("chosen=true"));
}

/// Data have come to the folder that was asked for while a demo is made elsewhere.
TEST_F(FirstStart, LookingAgainThatFindsDataEndsTheMakingOfADemo) {
  const QString data = bench_.Work() + "/market";
  ASSERT_TRUE(QDir().mkpath(data));
  ASSERT_TRUE(QFile::setPermissions(bench_.Work(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  (void)bench_.Write("work/market/market.dat", "no data");
  ASSERT_NO_FATAL_FAILURE(BeginDemo());
  ASSERT_NO_FATAL_FAILURE(HoldMaker());
  ASSERT_TRUE(QFile::remove(data + "/market.dat"));
  CopyFolder(bench_.data, data);
  screen_.Keys({"alt+r"});
  EXPECT_TRUE(LogSays("插件“投资组合”"));
  EXPECT_FALSE(SignalMaker(SIGCONT)) << "it is at an end";
  ASSERT_TRUE(Until([this] { return !IsMaking(); }, 60'000));
  QThread::msleep(1000);
  EXPECT_FALSE(QFile::exists(Demo()));
  EXPECT_FALSE(SettingsAfter().contains("data="));
}

}  // namespace
}  // namespace holdwise::e2e
