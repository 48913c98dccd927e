// SPDX-License-Identifier: MIT
#include <QTest>

#include "calc_trigger_fixture.h"
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
  bool wasModal = false;
  WhenShown([&] {
    wasModal = frmCalc2->isModal();
    DownData();  // a timer of the main frame may ask for it meanwhile
    FinishAll();
  });
  DownData();
  EXPECT_TRUE(wasModal);
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
      if (Base()->Requests().back() == StockFile("000001")) Base()->Fail(StockFile("000001"), 1);
      Base()->ReceiveStream(StockFile("600000"), BaseData({{"0", "20240528", "0.03"}, {"0", "20240529", "-0.01"}}));
      Base()->ReceiveStream(kIndexFile, IndexData());
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

using MainFrame = Trigger;

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
