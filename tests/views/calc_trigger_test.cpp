// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include "calc_trigger_fixture.h"
#include "common/frames/frame_parts.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/exchange_files.h"
#include "mainframe/untmainfrm.h"

namespace holdwise {
namespace {

TEST_F(Trigger, FinishedPortfoliosNeedNoDialog) {
  Run("update alg_commain set ISFINISHED = 1");
  DownData();
  EXPECT_FALSE(frmCalc2);
  EXPECT_TRUE(host_.DownFiles(QStringLiteral("DownBasicData")).empty());
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(Trigger, WithNothingUnfinishedTheProcedureIsRolledBack) {
  Use(host_.fakeUserData);
  host_.fakeUserData.SetNumber(QStringLiteral("select Count(ID) from alg_commain where isFinished = 0"), 0);
  DownData();
  EXPECT_EQ(host_.fakeUserData.Log(),
            (std::vector<QString>{"session start", "execute procedure INITFIRSTCALC('2024-05-29')",
                                  "select Count(ID) from alg_commain where isFinished = 0", "session rollback"}));
}

TEST_F(Trigger, UnfinishedPortfoliosAreCalculatedInTheDialog) {
  QPushButton other;
  other.show();
  int clicks = 0;
  QObject::connect(&other, &QPushButton::clicked, [&clicks] { ++clicks; });
  WhenShown([&] {
    QTest::mouseClick(&other, Qt::LeftButton);
    QTest::keyClick(&other, Qt::Key_Space);
    DownData();  // a timer of the main frame may ask for it meanwhile
    FinishAll();
  });
  DownData();
  EXPECT_EQ(clicks, 0) << "the dialog has mouse and keyboard for itself";
  QTest::mouseClick(&other, Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
  EXPECT_FALSE(frmCalc2);
  EXPECT_EQ(Unfinished(), QStringList());
  EXPECT_EQ(host_.DownFiles(QStringLiteral("DownBasicData")).size(), 1U);
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(Trigger, FiguresOlderThanTodayAreCalculatedAgain) {
  Run("update alg_commain set ISFINISHED = 1, CALCDATE = 20240528 where ID = 1");
  Run("update alg_commain set ISFINISHED = 1 where ID = 2");
  QStringList unfinished;
  WhenShown([&] {
    unfinished = Unfinished();
    frmCalc2->close();
  });
  DownData();
  EXPECT_EQ(unfinished, QStringList{"1"});
  EXPECT_EQ(Unfinished(), QStringList{"1"});
}

TEST_F(Trigger, ADateWithoutARowOfTheIndexBringsTheDialogUpOnce) {
  host_.dataCenter.currentDateText = QStringLiteral("2024-06-02");  // a Sunday
  Run("delete from alg_commain where ID = 3");
  int shown = 0;
  for (int change = 0; change < 3; ++change) {
    WhenShown([&] {
      ++shown;
      FinishAll();
    });
    DownData();
    EXPECT_EQ(shown, 1) << "change of view " << change;
    EXPECT_EQ(Unfinished(), QStringList());
  }
  EXPECT_TRUE(host_.debug.Lines().empty());
}

TEST_F(Trigger, FiguresNewerThanTodayAreCalculatedAgain) {
  Run("update alg_commain set ISFINISHED = 1, LACKING = 0");
  Run("update alg_commain set CALCDATE = 20240530 where ID = 1");
  QStringList unfinished;
  WhenShown([&] {
    unfinished = Unfinished();
    frmCalc2->close();
  });
  DownData();
  EXPECT_EQ(unfinished, QStringList{"1"});
}

TEST_F(Trigger, WhatIsMarkedUnfinishedAgainBringsTheDialogUp) {
  Run("delete from alg_commain where ID = 3");
  int shown = 0;
  // Only the first portfolio holds the stock that has no file.
  const auto trigger = [&] {
    WhenShown([&] {
      ++shown;
      FinishBaseBut000001();
      FinishRates();
      FinishEstimates();
    });
    DownData();
    return shown;
  };
  EXPECT_EQ(trigger(), 1);
  EXPECT_EQ(trigger(), 1);
  for (const char* id : {"2", "1"}) {
    const int before = shown;
    Run(QStringLiteral("update alg_commain set ISFINISHED = 0, BETA = 9 where ID = %1").arg(QLatin1String(id)));
    EXPECT_EQ(trigger(), before + 1) << id;
    EXPECT_EQ(trigger(), before + 1) << id;
    EXPECT_EQ(Rows("select ID from alg_commain where BETA = 9"), QStringList()) << id;
  }
  EXPECT_EQ(Unfinished(), QStringList());
}

TEST_F(Trigger, ADialogThatTheUserClosedComesAgain) {
  int shown = 0;
  for (int change = 1; change <= 2; ++change) {
    WhenShown([&] {
      ++shown;
      frmCalc2->close();
    });
    DownData();
    EXPECT_EQ(shown, change);
  }
  RetryIncomplete();
  WhenShown([&] { FinishAll(); });
  DownData();
  EXPECT_EQ(Unfinished(), QStringList());
}

TEST_F(Trigger, ADialogThatTheUserClosedIsSaidInTheLogAndToTheUser) {
  WhenShown([&] { QTest::keyClick(frmCalc2.get(), Qt::Key_Escape); });
  DownData();
  EXPECT_EQ(LogLinesWith(QStringLiteral("风险计算未完成：计算窗口被关闭，还有 2 个组合没有算完")), 1);
  ASSERT_EQ(host_.debug.Failures().size(), 1U);
  EXPECT_TRUE(host_.debug.Failures()[0].startsWith(QStringLiteral("风险计算未完成")));
  EXPECT_EQ(CalculationProblem(), host_.debug.Failures()[0]);
  WhenShown([&] { FinishAll(); });
  DownData();
  EXPECT_EQ(CalculationProblem(), QString());
  EXPECT_EQ(host_.debug.Failures().size(), 1U);
}

TEST_F(Trigger, WhileItLastsTheUserIsToldHowToEndItOverTheWindowAndOnTheScreen) {
  QWidget window;
  const QRect screen = window.screen()->availableGeometry();
  for (const QPoint corner : {screen.topLeft(), screen.bottomRight() - QPoint(60, 40)}) {
    window.setGeometry(QRect(corner, QSize(500, 300)));
    window.show();
    QRect place;
    WhenShown([&] {
      EXPECT_EQ(host_.debug.Ongoing().back(), QStringLiteral("正在计算风险数据，按 Esc 可取消"));
      place = frmCalc2->geometry();
      FinishAll();
    });
    DownData();
    EXPECT_EQ(host_.debug.Ongoing().back(), QString());
    EXPECT_TRUE(screen.contains(place)) << place.x() << ' ' << place.y();
    EXPECT_EQ(window.geometry().contains(place), corner == screen.topLeft()) << place.x() << ' ' << place.y();
    Run("update alg_commain set ISFINISHED = 0 where ID < 3");
  }
}

TEST_F(Trigger, TheDialogWaitsForOtherDialogs) {
  QDialog report;
  report.setModal(true);
  report.show();
  ASSERT_EQ(QApplication::activeModalWidget(), &report);
  EXPECT_FALSE(DownData());
  EXPECT_TRUE(host_.DownFiles(QStringLiteral("DownBasicData")).empty());
  report.close();
  WhenShown([&] { FinishAll(); });
  EXPECT_TRUE(DownData());
  EXPECT_EQ(Unfinished(), QStringList());
}

TEST_F(Trigger, ClosingAnotherWindowMeanwhileAsksFirst) {
  for (const int answer : {MessageBoxService::kCancel, MessageBoxService::kOk}) {
    QWidget window;
    window.show();
    host_.messageBoxes.calls.clear();
    host_.messageBoxes.answers = {answer};
    bool isOpen = false;
    WhenShown([&] {
      window.windowHandle()->close();
      QCoreApplication::processEvents();
      isOpen = frmCalc2->isVisible();
      EXPECT_TRUE(window.isVisible()) << "until the dialog has gone";
      if (isOpen) FinishAll();
    });
    DownData();
    QCoreApplication::processEvents();
    EXPECT_EQ(host_.messageBoxes.calls.size(), 1U);
    EXPECT_EQ(isOpen, answer == MessageBoxService::kCancel);
    EXPECT_EQ(window.isVisible(), isOpen);
    Run("update alg_commain set ISFINISHED = 0 where ID < 3");
  }
}

TEST_F(Trigger, AFailureInsideTheDialogIsLogged) {
  WhenShown([&] {
    FinishBase();
    FinishRates();
    Run("update alg_commain set COMNAME = 'p'");
    // Estimates: start, delete, insert, commit; then the list of portfolios.
    Plan().FailCall(4);
    FinishEstimates();
  });
  DownData();
  EXPECT_FALSE(frmCalc2);
  EXPECT_EQ(host_.debug.Lines(),
            std::vector<QString>{"DownDataMan.bpl->DownDataCommands->EnterAddress 发生错误!错误信息:injected failure"});
  EXPECT_EQ(Unfinished(), (QStringList{"1", "2"}));
}

TEST_F(Trigger, EveryCallBeforeTheDialogMayFail) {
  // Start, procedure, count, commit; then the codes and the two counts of the dialog.
  for (int call = 0; call < 7; ++call) {
    Plan().FailCall(call);
    DownData();
    EXPECT_TRUE(Plan().HasFailed());
    Plan().FailNothing();
    EXPECT_FALSE(frmCalc2);
    EXPECT_EQ(LogLinesWith(QStringLiteral("DownDataMan.bpl->DownDataCommands->EnterAddress 发生错误!错误信息:")),
              call + 1);
  }
  WhenShown([&] { FinishAll(); });
  DownData();
  EXPECT_EQ(Unfinished(), QStringList());
}

/// What has come and is not stored for want of space, or because of a lock, is not what was tried in vain.
TEST_F(Trigger, WhatCouldNotBeStoredIsTriedAgain) {
  for (const ErrorCategory category : {ErrorCategory::Io, ErrorCategory::Busy}) {
    Run("update alg_commain set ISFINISHED = 0, LACKING = 0 where ID < 3");
    int shown = 0;
    WhenShown([&] {
      ++shown;
      FinishBase();
      FinishRates();
      Plan().SetCategory(category);
      Plan().FailCall(0);
      FinishEstimates();
      Plan().FailNothing();
    });
    EXPECT_TRUE(DownData());
    EXPECT_EQ(Unfinished(), (QStringList{"1", "2"}));
    WhenShown([&] {
      ++shown;
      FinishAll();
    });
    EXPECT_TRUE(DownData());
    EXPECT_EQ(shown, 2);
    EXPECT_EQ(Unfinished(), QStringList());
    EXPECT_EQ(CalculationProblem(), QString());
  }
}

TEST_F(Trigger, WhileSomebodyElseIsInATransactionTheDialogWaits) {
  {
    const TransactionScope question(Database());
    EXPECT_FALSE(DownData());
    EXPECT_TRUE(host_.DownFiles(QStringLiteral("DownBasicData")).empty());
  }
  WhenShown([&] { FinishAll(); });
  EXPECT_TRUE(DownData());
  EXPECT_EQ(Unfinished(), QStringList());
}

using MainFrame = Trigger;

/// The editor has begun its transaction and asks whether to delete a portfolio, while the data folder is made again.
TEST_F(MainFrame, TheCalculationComesWhenTheQuestionHasBeenAnswered) {
  Run("delete from alg_commain where ID = 3");
  Run("update alg_commain set ISFINISHED = 1, LACKING = 0");
  TMainFrm frame;
  const auto nodes = frame.dxTL().findItems(QStringLiteral("风险计量"), Qt::MatchRecursive | Qt::MatchExactly, 1);
  ASSERT_EQ(nodes.size(), 1);
  frame.dxTL().setCurrentItem(nodes.first());
  QTest::qWait(1500);
  {
    const TransactionScope question(Database());
    host_.dataCenter.dataEdition = QStringLiteral("b2");
    frame.DataChanged();
    QTest::qWait(2500);
    EXPECT_TRUE(host_.DownFiles(QStringLiteral("DownBasicData")).empty());
    EXPECT_FALSE(frame.IsSettled()) << "an export waits for it";
  }
  bool isShown = false;
  WhenShown([&] {
    isShown = true;
    FinishAll();
  });
  ASSERT_TRUE(QTest::qWaitFor([&] { return isShown && !frmCalc2; }, 30000));
  EXPECT_EQ(Unfinished(), QStringList());
  EXPECT_EQ(CalculationProblem(), QString());
}

TEST_F(MainFrame, WhatAReferenceFileStoppedIsSaidOnThePage) {
  Run("delete from alg_commain where ID = 3");
  TMainFrm frame;
  frame.resize(1200, 600);
  WhenShown([&] {
    FinishBase();
    EstimateDown()->Fail(kEstimatesFile, 1);
  });
  const auto nodes = frame.dxTL().findItems(QStringLiteral("风险计量"), Qt::MatchRecursive | Qt::MatchExactly, 1);
  ASSERT_EQ(nodes.size(), 1);
  frame.dxTL().setCurrentItem(nodes.first());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !timer_.isActive() && !frmCalc2; }, 30000));
  const QLabel& notice = frame.findChildren<TitleStrip*>().front()->Notice();
  EXPECT_TRUE(notice.text().contains(QStringLiteral("2 个组合没有计算"))) << notice.text().toStdString();
  EXPECT_FALSE(notice.text().contains(QStringLiteral("不完整"))) << notice.text().toStdString();
  EXPECT_TRUE(notice.toolTip().contains(QStringLiteral("估值文件 GZ.dat 没有取得"))) << notice.toolTip().toStdString();
  EXPECT_TRUE(notice.toolTip().contains(QStringLiteral("p2、p1：没有计算"))) << notice.toolTip().toStdString();
  EXPECT_FALSE(notice.toolTip().contains(QStringLiteral("利率"))) << notice.toolTip().toStdString();
}

TEST_F(MainFrame, ReadsAndWritesTheExchangeFiles) {
  SaveZHFile();
  Run("delete from alg_commain");
  Run("delete from alg_comdetail");
  {
    const TMainFrm frame;
    EXPECT_TRUE(IsLoadDataFromFile);
    EXPECT_NE(g_AllStockData, nullptr);
    EXPECT_NE(g_ExpectValue, nullptr);
    EXPECT_EQ(Rows("select COMNAME from alg_commain order by ID"), (QStringList{"p1", "p2", "p3"}));
    Run("update alg_commain set COMNAME = 'renamed' where ID = 1");
  }
  EXPECT_EQ(g_AllStockData, nullptr);
  EXPECT_EQ(g_ExpectValue, nullptr);
  const ResultSet saved = ReadPacketFile(host_.SysWorkDataPath() + QStringLiteral("TZZHMerge.dat"));
  EXPECT_EQ(saved.RowCount(), 3);
  EXPECT_EQ(saved.TextAt(0, saved.Column("COMNAME")), QStringLiteral("renamed"));
  FDBServer = &host_.UserData();
  {
    const TMainFrm frame;
    EXPECT_FALSE(IsLoadDataFromFile);
  }
}

/// No figure looks like one: the stored texts are zeros, a dash is drawn.
TEST_F(MainFrame, AfterTheDialogWasClosedNoZeroIsShownAsAFigure) {
  TMainFrm frame;
  frame.resize(1200, 600);
  frame.show();
  Run("update alg_commain set ZHBZC = 0.02 where ID = 3");
  WhenShown([&] { QTest::keyClick(frmCalc2.get(), Qt::Key_Escape); });
  for (const char* view : {"风险计量", "总体评价"}) {
    const auto nodes = frame.dxTL().findItems(QString::fromUtf8(view), Qt::MatchRecursive | Qt::MatchExactly, 1);
    frame.dxTL().setCurrentItem(nodes.value(0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !timer_.isActive() && !frmCalc2; }, 30000));
    const auto* grid = frame.CurFrame()->findChild<TStringGrid*>(QStringLiteral("strngrd"));
    ASSERT_EQ(grid->RowCount(), 3);
    for (int row = 0; row < 3; ++row) {
      // p3, the newest, is finished.
      EXPECT_EQ(grid->RemarkOf({4, row}), row == 0 ? QString() : QStringLiteral("还没有计算过")) << view << row;
      EXPECT_EQ(grid->TextWidth({4, row}) == grid->fontMetrics().horizontalAdvance(QStringLiteral("—")), row != 0);
    }
    const QLabel& notice = frame.findChildren<TitleStrip*>().front()->Notice();
    EXPECT_TRUE(notice.text().contains(QStringLiteral("2 个组合没有计算"))) << notice.text().toStdString();
    EXPECT_TRUE(notice.toolTip().contains(QStringLiteral("风险计算未完成"))) << notice.toolTip().toStdString();
    WhenShown([&] { QTest::keyClick(frmCalc2.get(), Qt::Key_Escape); });
  }
  timer_.stop();
}

TEST_F(MainFrame, AViewWithSavedPortfoliosBringsTheDialogUp) {
  TMainFrm frame;
  bool settled = true;
  WhenShown([&] {
    settled = frame.IsSettled();
    FinishAll();
  });
  const auto nodes = frame.dxTL().findItems(QStringLiteral("组合表现"), Qt::MatchRecursive | Qt::MatchExactly, 1);
  ASSERT_EQ(nodes.size(), 1);
  frame.dxTL().setCurrentItem(nodes.first());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !timer_.isActive() && !frmCalc2; }, 30000));
  EXPECT_FALSE(settled);
  EXPECT_EQ(Unfinished(), QStringList());
}

}  // namespace
}  // namespace holdwise
