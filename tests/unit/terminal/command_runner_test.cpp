// SPDX-License-Identifier: MIT
// Commands that come while the one before is not done.
#include "app/command_runner.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTest>
#include <utility>

namespace holdwise {
namespace {

/// An export ends when the test says so.
class WaitingCommands : public testing::Test {
 protected:
  [[nodiscard]] CommandTargets Targets() {
    CommandTargets targets;
    targets.setTheme = [this](ThemeKind) {
      if (std::exchange(isBroken_, false)) throw 1;
    };
    targets.raise = [] {};
    targets.importPortfolios = [](const Command&) {
      QTest::qWait(2000);  // lets events run, as a long import does
      return HandOverAnswer{QStringLiteral("imported"), 0};
    };
    targets.exportViews = [this](const Command&, const HandOverServer::Answer& answer) { export_ = answer; };
    targets.awaitedAnswer = [this] { return title_; };
    return targets;
  }
  void Run(bool isExport) {
    Command command;
    command.theme = ThemeKind::Light;
    if (isExport) command.exportFolder = QStringLiteral("out");
    runner_.Run(command, [this, isExport](const HandOverAnswer& answer) {
      answers_ << QStringLiteral("%1 %2 %3").arg(isExport ? "export" : "theme").arg(answer.exitCode).arg(answer.text);
    });
  }

  QString title_;
  bool isBroken_ = false;  ///< the next command meets something that throws
  QStringList answers_;
  HandOverServer::Answer export_;
  CommandRunner runner_{Targets()};
};

TEST_F(WaitingCommands, AreRefusedWhenThePresentOneWaitsForTheUser) {
  Run(true);
  QTest::qWait(50);
  ASSERT_TRUE(export_);
  title_ = QStringLiteral("询问");
  Run(false);
  Run(false);
  QElapsedTimer timer;
  timer.start();
  ASSERT_TRUE(QTest::qWaitFor([this] { return answers_.size() == 2; }));
  EXPECT_GE(timer.elapsed(), 500) << "somebody may just be answering";
  EXPECT_LE(timer.elapsed(), 2000);
  for (const QString& answer : answers_) {
    EXPECT_TRUE(answer.startsWith(QStringLiteral("theme 1 终端的窗口里开着“询问”，等用户回答，命令没有执行")))
        << answer.toStdString();
  }
  export_({QStringLiteral("done"), 0});
  title_.clear();
  Run(false);
  ASSERT_TRUE(QTest::qWaitFor([this] { return answers_.size() == 4; }));
  EXPECT_EQ(answers_.mid(2), QStringList({QStringLiteral("export 0 done"), QStringLiteral("theme 0 ")}));
}

TEST_F(WaitingCommands, AnExportDoesNotBeginBehindADialogAndKeepsNobodyElse) {
  title_ = QStringLiteral("导入组合");
  Run(true);
  Run(false);
  ASSERT_TRUE(QTest::qWaitFor([this] { return answers_.size() == 2; }, 2000));
  EXPECT_FALSE(export_);
  EXPECT_TRUE(answers_[0].startsWith(QStringLiteral("export 1 终端的窗口里开着“导入组合”")))
      << answers_[0].toStdString();
  EXPECT_EQ(answers_[1], QStringLiteral("theme 0 "));
}

TEST_F(WaitingCommands, OneThatMeetsAnExceptionIsAnsweredAndTheNextGoesOn) {
  isBroken_ = true;
  Run(false);
  Run(false);
  ASSERT_TRUE(QTest::qWaitFor([this] { return answers_.size() == 2; }, 2000));
  EXPECT_EQ(answers_, QStringList({QStringLiteral("theme 1 命令没有执行完：原因不明"), QStringLiteral("theme 0 ")}));
  EXPECT_TRUE(runner_.IsIdle());
}

TEST_F(WaitingCommands, AnExportBeginsOnceTheDialogIsClosed) {
  title_ = QStringLiteral("导入组合");
  Run(true);
  QTest::qWait(500);
  title_.clear();
  ASSERT_TRUE(QTest::qWaitFor([this] { return export_ != nullptr; }, 1000));
  EXPECT_EQ(answers_, QStringList());
}

TEST_F(WaitingCommands, WaitForAnImportThatGoesOnBehindADialogThatWasThereBefore) {
  title_ = QStringLiteral("恢复");
  Command command;
  command.importFile = QStringLiteral("p.csv");
  runner_.Run(command, [this](const HandOverAnswer& answer) { answers_ << answer.text; });
  Run(false);
  ASSERT_TRUE(QTest::qWaitFor([this] { return answers_.size() == 2; }));
  EXPECT_EQ(answers_, QStringList({QStringLiteral("imported"), QStringLiteral("theme 0 ")}));
}

TEST_F(WaitingCommands, AQuestionThatIsSoonAnsweredRefusesNothing) {
  Run(true);
  QTest::qWait(50);
  Run(false);
  for (int question = 0; question < 4; ++question) {
    title_ = QStringLiteral("询问");
    QTest::qWait(600);
    title_.clear();
    QTest::qWait(300);
  }
  EXPECT_EQ(answers_, QStringList());
}

TEST_F(WaitingCommands, DoNotWaitForAnAnswerThatIsBeingRead) {
  Command command;
  command.theme = ThemeKind::Dark;
  bool isAnswered = false;
  runner_.Run(command, [&](const HandOverAnswer&) {
    // As a report does until it is closed.
    isAnswered = QTest::qWaitFor([this] { return !answers_.isEmpty(); }, 2000);
  });
  Run(false);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !answers_.isEmpty(); }));
  EXPECT_TRUE(isAnswered);
}

}  // namespace
}  // namespace holdwise
