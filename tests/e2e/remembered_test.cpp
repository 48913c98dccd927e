// SPDX-License-Identifier: MIT
// What a start of the terminal has of the one before, and what of the user's is kept.
#include <QSettings>
#include <csignal>
#include <memory>

#include "window_fixture.h"

namespace holdwise::e2e {
namespace {

/// The page, its view and the colours are where they were left; a start that names a page goes there.
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

/// Where it was left shows that Escape and the button lead from a page without anything on it to the portfolios.
TEST_F(Window, TheToolbarPageIsLeftByEscapeAndByItsButton) {
  constexpr unsigned long kWhile = 1000;
  const auto leftBy = [&](const QStringList& keys) {
    RunningTerminal terminal(bench_.Arguments({"--address", "工具条"}), screen_.Environment());
    EXPECT_TRUE(terminal.WaitForWindow());
    EXPECT_TRUE(screen_.Enter("^Holdwise"));
    screen_.Keys(keys);
    QThread::msleep(kWhile);  // the key's way through the screen, and the button that is seen to go down
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
    return QSettings(bench_.Work() + "/settings.ini", QSettings::IniFormat).value("address").toString();
  };
  EXPECT_EQ(leftBy({"F7"}), "工具条") << "any other key stays";
  EXPECT_EQ(leftBy({"Escape"}), "投资组合");
  EXPECT_EQ(leftBy({"alt+b"}), "投资组合");
}

/// A window that was made smaller and whose tree was made wider comes back like that: the same size, and the edge under
/// the same place of the mouse.
TEST_F(Window, OpensAsLargeAsItWasLeftAndWithTheEdgeWhereItWasDragged) {
  constexpr int kTreeWidth = 174, kHalfEdge = 5, kWider = 90, kWidthLeft = 1040, kHeightLeft = 640;
  std::unique_ptr<RunningTerminal> terminal;
  const auto start = [&] {
    terminal = std::make_unique<RunningTerminal>(bench_.Arguments({}), screen_.Environment());
    EXPECT_TRUE(terminal->WaitForWindow());
    EXPECT_TRUE(screen_.Enter("^Holdwise"));
    EXPECT_TRUE(LogSays("插件“投资组合”"));
  };
  const auto dragEdge = [&](int from, int to) {
    const int left = Geometry("X");
    const QString height = QString::number(Geometry("Y") + kHeightLeft / 2);
    (void)screen_.Do({"mousemove", QString::number(left + from), height, "mousedown", "1"});
    for (const int place : {from + (to - from) / 2, to})
      (void)screen_.Do({"mousemove", "--sync", QString::number(left + place), height});
    (void)screen_.Do({"mouseup", "1"});
  };
  const auto treeWidthAfter = [&] {
    EXPECT_GE(terminal->Signal(SIGTERM), 0);
    const QSettings settings(bench_.Work() + "/settings.ini", QSettings::IniFormat);
    return settings.value("splitters/Splitter1").toList().value(0).toInt();
  };
  start();
  (void)screen_.Do({"windowsize", "--sync", MainWindow(), QString::number(kWidthLeft), QString::number(kHeightLeft)});
  dragEdge(kTreeWidth + kHalfEdge, kTreeWidth + kHalfEdge + kWider);
  EXPECT_EQ(treeWidthAfter(), kTreeWidth + kWider);
  start();
  EXPECT_EQ(Geometry("WIDTH"), kWidthLeft);
  EXPECT_EQ(Geometry("HEIGHT"), kHeightLeft);
  dragEdge(kTreeWidth + kHalfEdge + kWider, kTreeWidth + kHalfEdge + kWider - 30);
  EXPECT_EQ(treeWidthAfter(), kTreeWidth + kWider - 30) << "it was there to be taken hold of";
}

/// Typed, Ctrl+Enter: in the file of the user's own stocks; again: out of it.
TEST_F(Window, TheQuickEntryKeepsTheUsersOwnStocks) {
  const QString file = bench_.Work() + "/optional_stocks.txt";
  RunningTerminal terminal(bench_.Arguments({}), screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  const auto own = [&] { return Bytes(file).split('\n'); };
  screen_.Type("600005");
  screen_.Keys({"ctrl+Return"});
  EXPECT_TRUE(Until([&] { return own().contains("600005"); }, 10'000)) << Bytes(file).toStdString();
  screen_.Keys({"Escape"});
  screen_.Type("600007");
  screen_.Keys({"ctrl+Return"});
  EXPECT_TRUE(Until([&] { return own().contains("600007"); }, 10'000));
  EXPECT_TRUE(own().contains("600005"));
  screen_.Keys({"Escape"});
  screen_.Type("600005");
  screen_.Keys({"ctrl+Return"});
  EXPECT_TRUE(Until([&] { return !own().contains("600005"); }, 10'000)) << Bytes(file).toStdString();
  EXPECT_TRUE(own().contains("600007"));
}

TEST_F(Window, TheHelpIsAKeyAndTheAboutPageTwo) {
  RunningTerminal terminal(bench_.Arguments({}), screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  screen_.Keys({"F1"});
  ASSERT_TRUE(screen_.Enter("^键盘$"));
  screen_.Keys({"Escape"});
  ASSERT_TRUE(screen_.IsGone("^键盘$"));
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  screen_.Keys({"alt+h", "a"});
  ASSERT_TRUE(screen_.Enter("^关于$"));
  screen_.Keys({"Return"});
  EXPECT_TRUE(screen_.IsGone("^关于$"));
}

}  // namespace
}  // namespace holdwise::e2e
