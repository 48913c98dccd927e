// SPDX-License-Identifier: MIT
// The terminal's window under a window manager: what its close button does meanwhile, and what a start remembers.
#include <gtest/gtest.h>

#include <QDir>
#include <csignal>
#include <memory>
#include <optional>
#include <vector>

#include "hung_file.h"
#include "screen.h"

namespace holdwise::e2e {
namespace {

class Window : public testing::Test {
 protected:
  void SetUp() override {
    for (const QString& missing : {MissingProgram(), MissingManager()})
      if (!missing.isEmpty()) GTEST_SKIP() << missing.toStdString();
    ASSERT_TRUE(screen_.IsThere());
    manager_.setProcessEnvironment(screen_.Environment());
    manager_.start(QStringLiteral("openbox"), {});
    ASSERT_TRUE(manager_.waitForStarted());
  }
  void TearDown() override {
    manager_.kill();
    manager_.waitForFinished();
  }
  static QString MissingManager() {
    return QStandardPaths::findExecutable(QStringLiteral("openbox")).isEmpty() ? QStringLiteral("openbox") : QString();
  }
  [[nodiscard]] static bool IsGone(RunningTerminal& terminal, int milliseconds = 30'000) {
    return terminal.Process().waitForFinished(milliseconds);
  }
  /// On the button that the window manager has drawn at the right end of the main window's title.
  void ClickClose() const {
    const QString window = screen_.Do({"search", "--onlyvisible", "--name", "^Holdwise"}).section('\n', 0, 0);
    (void)screen_.Do({"windowmove", "--sync", window, "0", "60"});
    const QString width = screen_.Do({"getwindowgeometry", "--shell", window}).section("WIDTH=", 1).section('\n', 0, 0);
    screen_.Click(width.toInt() - 9, 50);
  }
  [[nodiscard]] bool LogSays(const char* text) const {
    return Until([&] { return Bytes(bench_.Work() + "/log/terminal.log").contains(text); }, 30'000);
  }

  /// Seconds of a processor's work, which a busy machine makes minutes.
  [[nodiscard]] bool IsDemoMade() const {
    return Until([this] { return QFile::exists(bench_.Work() + "/market/market.dat"); }, 180'000);
  }

  const Screen screen_;
  QProcess manager_;
  Bench bench_;
};

TEST_F(Window, ClosedWhileItCalculatesItAsksFirst) {
  bench_.data = bench_.File("data");
  CopyFolder(SharedMarket().Data(), bench_.data);
  test::HungFile rates(bench_.data + "/QMTL/TZZH/InterestRate.Dat");
  if (!rates.IsHung()) GTEST_SKIP() << "no leases here";
  RunningTerminal terminal(
      bench_.Arguments({"--import", bench_.Write("p.csv", TwoPortfolios()), "--parameter", "Skip风险计量"}),
      screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^投资组合$")) << "the calculation's dialog";
  ClickClose();
  ASSERT_TRUE(screen_.Enter("询问"));
  screen_.Keys({"Return"});  // of a question that is Cancel
  ASSERT_TRUE(screen_.IsGone("询问"));
  EXPECT_FALSE(IsGone(terminal, 500));
  ClickClose();
  ASSERT_TRUE(screen_.Enter("询问"));
  screen_.Keys({"Tab", "space"});
  EXPECT_TRUE(IsGone(terminal));
  EXPECT_EQ(terminal.Process().exitCode(), 0);
  EXPECT_TRUE(LogSays("风险计算未完成"));
  rates.Release();
  EXPECT_EQ(bench_.Export("2001-strngrd").size(), 2U) << "the portfolios are there";
}

/// The calculation that an export waits for asks; the export does not ask again.
TEST_F(Window, ClosedWhileAnExportCalculatesItAsksOnce) {
  bench_.data = bench_.File("data");
  CopyFolder(SharedMarket().Data(), bench_.data);
  test::HungFile rates(bench_.data + "/QMTL/TZZH/InterestRate.Dat");
  if (!rates.IsHung()) GTEST_SKIP() << "no leases here";
  RunningTerminal terminal(bench_.Arguments({}), screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  QProcess second;
  second.setProcessEnvironment(BareEnvironment());
  second.start(Program("holdwise-terminal"), bench_.Arguments({"--import", bench_.Write("p.csv", TwoPortfolios()),
                                                               "--export", bench_.File("waits")}));
  ASSERT_TRUE(screen_.Enter("^投资组合$")) << "the calculation's dialog";
  ClickClose();
  ASSERT_TRUE(screen_.Enter("询问"));
  screen_.Keys({"Tab", "space"});
  EXPECT_TRUE(IsGone(terminal)) << "without another question";
  EXPECT_EQ(terminal.Process().exitCode(), 0);
  ASSERT_TRUE(second.waitForFinished(30'000));
  EXPECT_EQ(second.exitCode(), 1);
}

/// Without any data: one key makes a simulated market and opens it, and the next start has it again.
TEST_F(Window, AFirstStartGetsToADemoMarket) {
  const QString log = bench_.Work() + "/log/terminal.log";
  const QStringList arguments{"--work", bench_.Work()};
  {
    RunningTerminal terminal(arguments, screen_.Environment());
    ASSERT_TRUE(terminal.WaitForWindow());
    ASSERT_TRUE(screen_.Enter("^Holdwise$"));
    screen_.Keys({"alt+d"});
    ASSERT_TRUE(IsDemoMade());
    ASSERT_TRUE(screen_.Enter("模拟行情"));
    EXPECT_TRUE(LogSays("插件“投资组合”"));
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
  }
  EXPECT_TRUE(QFile::exists(bench_.Work() + "/market/market.dat"));
  EXPECT_TRUE(QDir(bench_.Work()).entryList({"demo-*"}).isEmpty()) << "nothing is left of its making";
  RunningTerminal again(arguments, screen_.Environment());
  ASSERT_TRUE(again.WaitForWindow());
  EXPECT_TRUE(screen_.Enter("模拟行情"));
}

/// Given up in either half of its making, nothing is left of it, and the page offers it again.
TEST_F(Window, MakingADemoMarketCanBeGivenUp) {
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
TEST_F(Window, ClosedWhileADemoMarketIsMadeItAsksFirst) {
  RunningTerminal terminal({"--work", bench_.Work()}, screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^Holdwise$"));
  screen_.Keys({"alt+d"});
  ClickClose();
  ASSERT_TRUE(screen_.Enter("^关闭$"));
  screen_.Keys({"Tab", "space"});
  EXPECT_TRUE(IsGone(terminal));
  EXPECT_EQ(terminal.Process().exitCode(), 0);
  EXPECT_TRUE(QDir(bench_.Work()).entryList({"demo-*", "market", ".market*"}, QDir::Dirs | QDir::Hidden).isEmpty());
}

/// No data: the page stays, says that it has looked, and opens the market once it is there.
TEST_F(Window, LookingAgainIsSeenAndOpensWhatHasCome) {
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

TEST_F(Window, APluginFolderWithoutPluginsSaysSoAndIsLookedAtAgain) {
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

TEST_F(Window, ADataFolderThatWasChosenIsOpenedAgain) {
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

/// The page, its view, the colours and the edge of the tree are where they were left; a start that names a page goes
/// there.
TEST_F(Window, OpensWhereItWasLeft) {
  const QString settings = bench_.Work() + "/settings.ini";
  const auto run = [&](const QStringList& more) {
    RunningTerminal terminal(bench_.Arguments(more), screen_.Environment());
    EXPECT_TRUE(terminal.WaitForWindow());
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
    return QString::fromUtf8(Bytes(settings));
  };
  EXPECT_TRUE(run({"--parameter", "Skip压力测试", "--theme", "light"}).contains("view=压力测试"));
  const QString second = run({});
  EXPECT_TRUE(second.contains("address=投资组合")) << second.toStdString();
  EXPECT_TRUE(second.contains("view=压力测试")) << second.toStdString();
  EXPECT_TRUE(second.contains("theme=light")) << second.toStdString();
  EXPECT_TRUE(run({"--address", "分时走势"}).contains("address=分时走势"));
  EXPECT_TRUE(run({}).contains("address=分时走势"));
  EXPECT_EQ(bench_.Import().exitCode, 0);
  EXPECT_TRUE(QString::fromUtf8(Bytes(settings)).contains("address=分时走势")) << "a batch leaves it alone";
}

TEST_F(Window, TheColoursOfRisesAndFallsSwitchAtOnceAndAreRemembered) {
  const auto start = [&] {
    auto terminal = std::make_unique<RunningTerminal>(bench_.Arguments({"--theme", "dark"}), screen_.Environment());
    EXPECT_TRUE(terminal->WaitForWindow());
    EXPECT_TRUE(screen_.Enter("^Holdwise"));
    return terminal;
  };
  // The indices in the status bar; of the dark theme's two colours they have one each.
  const auto isColoured = [&] {
    return screen_.PointsBelow(QColor(0xff, 0x94, 0x9a)) + screen_.PointsBelow(QColor(0x4c, 0xc9, 0x7f)) > 0;
  };
  auto terminal = start();
  EXPECT_TRUE(Until(isColoured, 10'000)) << "at first";
  screen_.Keys({"alt+v", "c", "n"});
  EXPECT_TRUE(Until([&] { return !isColoured(); }, 10'000));
  EXPECT_GE(terminal->Signal(SIGTERM), 0);
  EXPECT_TRUE(Bytes(bench_.Work() + "/settings.ini").contains("riseFall=plain"));
  terminal = start();
  EXPECT_FALSE(Until(isColoured, 2000));
  screen_.Keys({"alt+v", "c", "g"});
  EXPECT_TRUE(Until(isColoured, 10'000));
  EXPECT_GE(terminal->Signal(SIGTERM), 0);
}

TEST_F(Window, ADamagedSettingsFileIsSaidAndTheTerminalOpens) {
  ASSERT_TRUE(QDir().mkpath(bench_.Work()));
  ASSERT_TRUE(QFile::setPermissions(bench_.Work(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
  (void)bench_.Write("work/settings.ini", QByteArray("\x00\x01\x02 rubbish", 11));
  RunningTerminal terminal(bench_.Arguments({}), screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  EXPECT_TRUE(LogSays("settings.ini”已损坏，没有采用"));
  EXPECT_GE(terminal.Signal(SIGTERM), 0);
  EXPECT_TRUE(Bytes(bench_.Work() + "/settings.ini.damaged").endsWith("rubbish"));
}

/// An export that is asked for on another page comes back to that page.
TEST_F(Window, AnExportComesBackToWhereItWasAskedFor) {
  RunningTerminal terminal(bench_.Arguments({"--address", "分时走势"}), screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  EXPECT_TRUE(bench_.Export("2001-strngrd").empty());
  EXPECT_GE(terminal.Signal(SIGTERM), 0);
  EXPECT_TRUE(QString::fromUtf8(Bytes(bench_.Work() + "/settings.ini")).contains("address=分时走势"));
}

/// Thousands of portfolios are on their way in, the window answers all the time, and Escape leaves none of them.
TEST_F(Window, AnImportCanBeGivenUp) {
  RunningTerminal terminal(bench_.Arguments({}), screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  QByteArray csv = "name,code,quantity,price\n";
  for (int portfolio = 0; portfolio < 20'000; ++portfolio)
    for (int stock = 1; stock <= 3; ++stock)
      csv += 'p' + QByteArray::number(portfolio) + ',' + QByteArray::number(600000 + stock) + ",100,1.00\n";
  const QString file = bench_.Write("many.csv", csv);
  ASSERT_TRUE(screen_.Enter("Holdwise"));
  QProcess second;
  second.setProcessEnvironment(BareEnvironment());
  second.start(Program("holdwise-terminal"), bench_.Arguments({"--import", file}));
  bool isGivenUp = false;
  for (int attempt = 0; attempt < 40 && !isGivenUp && second.state() != QProcess::NotRunning; ++attempt) {
    screen_.Keys({"Escape"});
    isGivenUp = second.waitForFinished(200);
  }
  ASSERT_TRUE(isGivenUp);
  EXPECT_NE(second.exitCode(), 0) << second.readAllStandardOutput().toStdString();
  EXPECT_EQ(bench_.Export("2001-strngrd").size(), 0U);
}

/// An export that was handed over and waits for files that do not come.
class WindowDuringAnExport : public Window {
 protected:
  void SetUp() override {
    Window::SetUp();
    if (IsSkipped()) return;
    bench_.data = bench_.File("data");
    CopyFolder(SharedMarket().Data(), bench_.data);
    ASSERT_EQ(bench_.Import().exitCode, 0);
    for (const char* name : {"SH", "SZ", "HS"}) {
      risks_.push_back(std::make_unique<test::HungFile>(bench_.data + "/QMTL/TZZH/风险计量/" + name + ".dat"));
      if (!risks_.back()->IsHung()) GTEST_SKIP() << "no leases here";
    }
    terminal_.emplace(bench_.Arguments({}), screen_.Environment());
    ASSERT_TRUE(terminal_->WaitForWindow());
    export_.setProcessEnvironment(BareEnvironment());
    export_.start(Program("holdwise-terminal"), bench_.Arguments({"--export", bench_.File("waits")}));
    ASSERT_TRUE(Until([this] { return QDir(bench_.File("waits")).exists(); }, 30'000));
    ASSERT_TRUE(screen_.Enter("^Holdwise"));
  }
  void ExpectTheExportToFail(const char* text) {
    ASSERT_TRUE(export_.waitForFinished(30'000));
    EXPECT_EQ(export_.exitCode(), 1);
    const QString said = QString::fromUtf8(export_.readAllStandardError());
    EXPECT_TRUE(said.contains(text)) << said.toStdString();
  }
  [[nodiscard]] QString Windows() const { return screen_.Do({"search", "--onlyvisible", "--name", "导入组合|键盘"}); }

  std::vector<std::unique_ptr<test::HungFile>> risks_;
  std::optional<RunningTerminal> terminal_;
  QProcess export_;
};

TEST_F(WindowDuringAnExport, TheKeysOfTheMenusOpenNothingUntilItEnds) {
  screen_.Keys({"ctrl+o", "F1", "ctrl+s"});
  QThread::msleep(1000);
  EXPECT_EQ(Windows(), QString());
  EXPECT_FALSE(export_.waitForFinished(0));
  risks_.clear();
  ASSERT_TRUE(export_.waitForFinished(60'000));
  EXPECT_EQ(export_.exitCode(), 0) << export_.readAllStandardError().toStdString();
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  screen_.Keys({"ctrl+o"});
  EXPECT_TRUE(screen_.Enter("导入组合"));
}

TEST_F(WindowDuringAnExport, EscapeEndsIt) {
  screen_.Keys({"Escape"});
  ExpectTheExportToFail("导出没有完成：已取消");
  EXPECT_FALSE(IsGone(*terminal_, 500));
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  screen_.Keys({"ctrl+o"});
  EXPECT_TRUE(screen_.Enter("导入组合"));
}

TEST_F(WindowDuringAnExport, ClosingItAsksFirst) {
  ClickClose();
  ASSERT_TRUE(screen_.Enter("^关闭$"));
  screen_.Keys({"Return"});  // of a question that is Cancel
  ASSERT_TRUE(screen_.IsGone("^关闭$"));
  EXPECT_FALSE(IsGone(*terminal_, 500));
  EXPECT_FALSE(export_.waitForFinished(0));
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  screen_.Keys({"ctrl+q"});
  ASSERT_TRUE(screen_.Enter("^关闭$"));
  screen_.Keys({"Tab", "space"});
  ExpectTheExportToFail("导出没有完成：已取消");
  EXPECT_TRUE(IsGone(*terminal_));
  EXPECT_EQ(terminal_->Process().exitCode(), 0);
}

/// A command that would have to wait until the user has answered is refused, and says why.
TEST_F(Window, ACommandDoesNotWaitForADialog) {
  RunningTerminal terminal(bench_.Arguments({}), screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  screen_.Keys({"ctrl+o"});
  ASSERT_TRUE(screen_.Enter("导入组合"));
  const QStringList toLight = bench_.Arguments({"--theme", "light"});
  EXPECT_EQ(RunTerminal(toLight).exitCode, 0) << "which can be done behind a dialog";
  const auto expectRefusal = [](const QStringList& arguments, const char* title) {
    QElapsedTimer timer;
    timer.start();
    const Outcome refused = e2e::Run(Program("holdwise-terminal"), arguments, BareEnvironment(), 10'000);
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains(title)) << refused.err.toStdString();
  };
  expectRefusal(bench_.Arguments({"--export", bench_.File("none")}), "开着“导入组合”");
  screen_.Type(bench_.Write("p.csv", TwoPortfolios()));
  screen_.Keys({"Return"});
  ASSERT_TRUE(screen_.Enter("导入预览"));
  expectRefusal(toLight, "开着“导入预览”");
  screen_.Keys({"Escape"});
  ASSERT_TRUE(screen_.Enter("^导入组合$")) << "the report that nothing was imported";
  EXPECT_EQ(RunTerminal(toLight).exitCode, 0);
}

}  // namespace
}  // namespace holdwise::e2e
