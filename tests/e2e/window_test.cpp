// SPDX-License-Identifier: MIT
// The terminal's window under a window manager: what its close button does meanwhile, and what a start remembers.
#include <gtest/gtest.h>

#include <QDir>
#include <csignal>

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

/// Without any data: one key makes a simulated market and opens it, and the next start has it again.
TEST_F(Window, AFirstStartGetsToADemoMarket) {
  const QString log = bench_.Work() + "/log/terminal.log";
  const QStringList arguments{"--work", bench_.Work()};
  {
    RunningTerminal terminal(arguments, screen_.Environment());
    ASSERT_TRUE(terminal.WaitForWindow());
    ASSERT_TRUE(screen_.Enter("^Holdwise$"));
    screen_.Keys({"alt+d"});
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

}  // namespace
}  // namespace holdwise::e2e
