// SPDX-License-Identifier: MIT
// The terminal's window under a window manager: what its close button does meanwhile, and what a start remembers.
#include <gtest/gtest.h>

#include <QDir>
#include <csignal>
#include <memory>
#include <optional>
#include <vector>

#include "hung_file.h"
#include "window_fixture.h"

namespace holdwise::e2e {
namespace {

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
  ASSERT_TRUE(second.waitForFinished(30'000 * kSlowness));
  EXPECT_EQ(second.exitCode(), 1);
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
    return screen_.PointsBelow(QColor(0xff, 0x7f, 0x87)) + screen_.PointsBelow(QColor(0x4c, 0xc9, 0x7f)) > 0;
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
    ASSERT_TRUE(export_.waitForFinished(30'000 * kSlowness));
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
  ASSERT_TRUE(export_.waitForFinished(60'000 * kSlowness));
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
