// SPDX-License-Identifier: MIT
// What a terminal that is closed asks for, and what the next start has of it.
#include <QDir>
#include <QSettings>
#include <csignal>
#include <memory>

#include "window_fixture.h"

namespace holdwise::e2e {
namespace {

/// A name that has been typed, and nothing confirmed.
TEST_F(Window, AHalfEnteredPortfolioIsAskedAboutBeforeItGoes) {
  constexpr int kNameX = 380, kNameY = 124;
  RunningTerminal terminal(bench_.Arguments({"--parameter", "Skip自选配置"}), screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  screen_.Click(Geometry("X") + kNameX, Geometry("Y") + kNameY);
  screen_.Type("half");
  screen_.Keys({"ctrl+q"});
  ASSERT_TRUE(screen_.Enter("^询问$"));
  screen_.Keys({"Return"});
  EXPECT_TRUE(screen_.IsGone("^询问$"));
  EXPECT_FALSE(IsGone(terminal, 1000)) << "the answer that keeps it is the nearest";
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  screen_.Keys({"ctrl+q"});
  ASSERT_TRUE(screen_.Enter("^询问$"));
  screen_.Keys({"Tab", "Return"});
  EXPECT_TRUE(IsGone(terminal));
  EXPECT_EQ(terminal.Process().exitCode(), 0);
}

TEST_F(Window, WithNothingHalfDoneItCloses) {
  RunningTerminal terminal(bench_.Arguments({"--parameter", "Skip自选配置"}), screen_.Environment());
  ASSERT_TRUE(terminal.WaitForWindow());
  ASSERT_TRUE(screen_.Enter("^Holdwise"));
  screen_.Keys({"ctrl+q"});
  EXPECT_TRUE(IsGone(terminal));
}

/// Closed on another page, the views begin with the last one all the same; the log is no place to begin.
TEST(Closing, TheLastViewIsKeptWhateverPageIsShownAtTheEnd) {
  const Bench bench;
  const auto run = [&bench](const QStringList& first, const QStringList& handedOver) {
    RunningTerminal terminal(bench.Arguments(first));
    EXPECT_TRUE(terminal.WaitForWindow());
    if (!handedOver.isEmpty()) {
      EXPECT_EQ(RunTerminal(bench.Arguments(handedOver)).exitCode, 0);
    }
    EXPECT_GE(terminal.Signal(SIGTERM), 0);
    const QSettings settings(bench.Work() + "/settings.ini", QSettings::IniFormat);
    return settings.value("address").toString() + ' ' + settings.value("view").toString();
  };
  const QString views = QStringLiteral("投资组合 压力测试"), day = QStringLiteral("分时走势 压力测试");
  EXPECT_EQ(run({"--parameter", "Skip压力测试"}, {"--address", "日志"}), views);
  EXPECT_EQ(run({}, {}), views);
  EXPECT_EQ(run({"--address", "分时走势"}, {}), day) << "without having entered the views";
  EXPECT_EQ(run({}, {}), day);
  EXPECT_EQ(run({}, {"--address", "投资组合"}), views) << "as a click on the tab";
}

/// One whose static objects throw leaves the loader of the whole process locked: the terminal begins anew without it.
class BrokenPlugin : public testing::Test {
 protected:
  BrokenPlugin() {
    const QString lib = qEnvironmentVariable("HOLDWISE_BIN") + "/../lib/";
    EXPECT_TRUE(QDir().mkpath(plugins_));
    EXPECT_TRUE(QFile::copy(lib + "odd/Odd10.so", plugins_ + "/A.so"));
    EXPECT_TRUE(QFile::copy(lib + "odd/Odd10.so", plugins_ + "/Z 1.so"));
    EXPECT_TRUE(QFile::copy(lib + "holdwise/Holdwise.so", plugins_ + "/Holdwise.so"));
    environment_.insert("HOLDWISE_PLUGIN_DIR", plugins_);
  }
  [[nodiscard]] QStringList Generations() const {
    return QDir(bench_.Work() + "/backups").entryList({"portfolios-*.csv"}, QDir::Files, QDir::Name);
  }
  Bench bench_;
  QString plugins_ = bench_.File("plugins");
  QProcessEnvironment environment_ = BareEnvironment();
};

TEST_F(BrokenPlugin, IsNamedAndACommandIsCarriedOutOnce) {
  const Outcome outcome =
      e2e::Run(Program("holdwise-terminal"),
               bench_.Arguments({"--import", bench_.Write("two.csv", TwoPortfolios()), "--export", bench_.File("out")}),
               environment_, 60'000);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err.toStdString();
  for (const QString& name : {QStringLiteral("A.so"), QStringLiteral("Z 1.so")})
    EXPECT_TRUE(outcome.err.contains("插件“" + name + "”")) << outcome.err.toStdString();
  ASSERT_FALSE(Generations().isEmpty()) << "the backup is written";
  const QByteArray kept = Bytes(bench_.Work() + "/backups/" + Generations().constLast());
  EXPECT_EQ(kept.count("600001"), 1) << kept.toStdString();
  EXPECT_TRUE(Bytes(bench_.Work() + "/log/terminal.log").contains("刚装入就坏了"));
}

TEST_F(BrokenPlugin, TheWindowComesAndGoesAsEver) {
  RunningTerminal terminal(bench_.Arguments({}), environment_);
  ASSERT_TRUE(terminal.WaitForWindow());
  const qint64 milliseconds = terminal.Signal(SIGTERM);
  EXPECT_GE(milliseconds, 0);
  EXPECT_LT(milliseconds, 2400) << "after that the process ends without order";
  EXPECT_EQ(terminal.Process().exitCode(), 0);
}

}  // namespace
}  // namespace holdwise::e2e
