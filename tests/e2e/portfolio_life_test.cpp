// SPDX-License-Identifier: MIT
// The life of a portfolio, with keys typed into the real terminal's window: picked together, confirmed, calculated,
// saved, followed, kept in the exchange files, and read back into a fresh database. Needs Xvfb and xdotool.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <QPoint>
#include <QStandardPaths>
#include <QThread>
#include <csignal>

#include "terminal_process.h"

namespace holdwise::e2e {
namespace {

constexpr int kPatience = 30'000;          // ms
constexpr QPoint kNameField = {410, 147};  // of the window, which begins at the screen's corner

/// A screen that nobody sees, and hands for its keyboard and mouse.
class Screen {
 public:
  Screen() {
    server_.start(QStringLiteral("Xvfb"), {"-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp"});
    if (!server_.waitForStarted() || !server_.waitForReadyRead(kPatience)) return;
    display_ = ':' + QString::fromLatin1(server_.readAllStandardOutput()).trimmed();
  }
  ~Screen() {
    server_.terminate();
    server_.waitForFinished();
  }
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  [[nodiscard]] bool IsThere() const { return display_.size() > 1; }
  [[nodiscard]] QProcessEnvironment Environment() const {
    QProcessEnvironment environment = BareEnvironment();
    environment.insert("DISPLAY", display_);
    environment.insert("QT_QPA_PLATFORM", "xcb");
    return environment;
  }
  [[nodiscard]] QString Do(const QStringList& arguments) const {
    const Outcome outcome = Run(QStringLiteral("xdotool"), arguments, Environment());
    return outcome.out.trimmed();
  }
  /// Gives the keyboard to the window of that title, once it is there.
  [[nodiscard]] bool Enter(const QString& title) const {
    const QString window = Find(title, true);
    if (window.isEmpty()) return false;
    (void)Do({"windowfocus", "--sync", window});
    QThread::msleep(200);
    return true;
  }
  [[nodiscard]] bool IsGone(const QString& title) const { return Find(title, false).isEmpty(); }
  void Keys(const QStringList& keys) const { (void)Do(QStringList{"key", "--delay", "60"} + keys); }
  void Type(const QString& text) const { (void)Do({"type", "--delay", "60", text}); }
  void Click(int x, int y) const {
    (void)Do({"mousemove", QString::number(x), QString::number(y), "click", "1"});
    QThread::msleep(200);
  }

 private:
  /// The window that has come (or, with `isAwaited` false, that still is there at the end of the time); empty for none.
  [[nodiscard]] QString Find(const QString& title, bool isAwaited) const {
    QElapsedTimer timer;
    timer.start();
    QString window;
    do {
      window = Do({"search", "--onlyvisible", "--name", title}).section('\n', 0, 0);
      if (window.isEmpty() != isAwaited) return window;
      QThread::msleep(100);
    } while (timer.elapsed() < kPatience);
    return window;
  }

  QProcess server_;
  QString display_;
};

/// 600001 to 600005, whose last closes are 1.60 to 5.60, with the prices and quantities that are typed below.
struct Typed {
  const char* price;
  const char* quantity;
};
constexpr Typed kTyped[] = {{"1.60", "100"}, {"2", "200"}, {"3.5", "300"}, {"4.25", "400"}, {"5", "500"}};
// 160 + 520 + 1080 + 1840 + 2800, and less the cost of 160 + 400 + 1050 + 1700 + 2500.
constexpr const char* kValue = "6400.00";
constexpr const char* kGain = "590.00";

TEST(PortfolioLife, TypedSavedFollowedAndReadBack) {
  for (const char* program : {"Xvfb", "xdotool"})
    if (QStandardPaths::findExecutable(program).isEmpty()) GTEST_SKIP() << program << " is missing";
  const Screen screen;
  ASSERT_TRUE(screen.IsThere());
  Bench bench;
  {
    RunningTerminal running(bench.Arguments({"--address", "投资组合", "--parameter", "Skip自选配置"}),
                            screen.Environment());
    ASSERT_TRUE(running.WaitForWindow());
    ASSERT_TRUE(screen.Enter(QStringLiteral("Holdwise")));
    screen.Click(kNameField.x(), kNameField.y());
    screen.Type(QStringLiteral("life-1"));
    screen.Keys({"Return", "shift+Down", "shift+Down", "shift+Down", "shift+Down", "Return"});
    // The first quantity that is missing is opened.
    screen.Keys({"ctrl+Return"});
    ASSERT_TRUE(screen.Enter(QStringLiteral("提示")));
    screen.Keys({"Return"});
    ASSERT_TRUE(screen.IsGone(QStringLiteral("提示")));
    ASSERT_TRUE(screen.Enter(QStringLiteral("Holdwise")));
    for (const auto& [price, quantity] : kTyped) {
      if (price != kTyped[0].price) {
        screen.Type(QString::fromLatin1(price));
        screen.Keys({"Tab"});
      }
      screen.Type(QString::fromLatin1(quantity));
      if (price != kTyped[4].price) screen.Keys({"Tab"});
    }
    screen.Keys({"ctrl+Return"});
    QThread::sleep(2);
    ASSERT_TRUE(screen.IsGone(QStringLiteral("^投资组合$"))) << "the statistics have run";
    ASSERT_TRUE(screen.Enter(QStringLiteral("Holdwise")));
    screen.Keys({"Tab", "Tab", "Tab", "F4"});
    ASSERT_TRUE(screen.Enter(QStringLiteral("提示")));
    screen.Keys({"Return"});
    ASSERT_TRUE(screen.IsGone(QStringLiteral("提示")));
    EXPECT_GE(running.Signal(SIGTERM), 0);
  }
  const auto expect = [](const std::vector<QStringList>& rows) {
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0][0], QStringLiteral("life-1"));
    EXPECT_EQ(rows[0][2], QString::fromLatin1(kValue));
    EXPECT_EQ(rows[0][6], QString::fromLatin1(kGain));
  };
  expect(bench.Export(QStringLiteral("2001-strngrd")));
  const Bench fresh;
  QDir().mkpath(fresh.Work());
  for (const char* file : {"/TZZHMerge.dat", "/TZZHDetail.dat"}) {
    ASSERT_TRUE(QFile::copy(bench.Work() + file, fresh.Work() + file)) << file;
  }
  expect(fresh.Export(QStringLiteral("2001-strngrd")));
}

}  // namespace
}  // namespace holdwise::e2e
