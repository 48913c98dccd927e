// SPDX-License-Identifier: MIT
// What the timers of the main frame do.
#include <QTest>

#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "mainframe_fixture.h"

namespace holdwise::test {
namespace {

TEST_F(MainFrame, TheOpenTimerGoesToTheIntradayChartOnce) {
  Open();
  g_Timer->start();
  QTest::qWait(60);
  const std::vector<std::pair<QString, QString>> once = {{QStringLiteral("分时走势"), QString()}};
  EXPECT_EQ(bench.host.addresses.gone, once);
}

TEST_F(MainFrame, OneSecondAfterASelectionTheViewIsLoadedAgain) {
  bench.AddPortfolio(1, QStringLiteral("甲"), ThreeHoldings());
  Open();
  QTest::qWait(1100);  // the timer of the start finds a group without a view of its own
  bench.ClickNode(kPerformance);
  MessageSpy spy(*bench.mainFrame->CurFrame());
  QTest::qWait(500);
  EXPECT_EQ(spy.Count(FrameMessage::Init), 0);
  QTest::qWait(700);
  EXPECT_EQ(spy.Count(FrameMessage::Init), 1);
  QTest::qWait(1200);
  EXPECT_EQ(spy.Count(FrameMessage::Init), 1) << "it fires once a selection";
}

TEST_F(MainFrame, WithoutRelevantPortfoliosNothingIsRecalculated) {
  // Only one that is still being edited: the performance view has none of its own.
  bench.AddPortfolio(1, QStringLiteral("甲"), ThreeHoldings(), 0);
  Open();
  bench.ClickNode(kPerformance);
  MessageSpy spy(*bench.mainFrame->CurFrame());
  QTest::qWait(1200);
  EXPECT_EQ(spy.Count(FrameMessage::Init), 0);
}

TEST_F(MainFrame, WithAnEmptyTableNothingIsRecalculated) {
  Open();
  bench.ClickNode(kPerformance);
  MessageSpy spy(*bench.mainFrame->CurFrame());
  QTest::qWait(1200);
  EXPECT_EQ(spy.Count(FrameMessage::Init), 0);
}

/// Not even the procedure that prepares a calculation runs: the statements of the timer one by one.
TEST_F(MainFrame, OnlyRelevantPortfoliosBringTheProcedureUp) {
  FakeUserData& fake = bench.host.fakeUserData;
  const QString all = QStringLiteral("select Count(*) from alg_commain");
  const QString saved = QStringLiteral("select Count(*) from alg_commain where SAVEFLAG = 1");
  fake.SetNumber(QStringLiteral("select Count(ID) from alg_commain where isFinished = 0"), 0);
  Open();
  const auto logOfTheTimer = [&](int node, int count, int savedCount) {
    FDBServer = &bench.database.Service();
    bench.ClickNode(node);
    fake.SetNumber(all, count);
    fake.SetNumber(saved, savedCount);
    fake.ClearLog();
    FDBServer = &fake;
    // The timer's first statement; what follows comes in the same breath.
    const auto hasBegun = [&] {
      const std::vector<QString> begun = fake.Log();
      return std::find(begun.begin(), begun.end(), all) != begun.end();
    };
    EXPECT_TRUE(QTest::qWaitFor(hasBegun, 30000));
    std::vector<QString> log = fake.Log();
    // Left out: the prices have a timer of their own.
    std::erase(log, QStringLiteral("select distinct SECUCODE from alg_comdetail"));
    return log;
  };
  EXPECT_EQ(logOfTheTimer(kPerformance, 0, 0), std::vector<QString>{all});
  EXPECT_EQ(logOfTheTimer(kRisk, 1, 0), (std::vector<QString>{all, saved}));
  std::vector<QString> log = logOfTheTimer(kPerformance, 2, 1);
  // The recalculation that follows asks for what the canned database does not know.
  ASSERT_GE(log.size(), 6U);
  log.resize(6);
  EXPECT_EQ(log, (std::vector<QString>{all, saved, "session start", "execute procedure INITFIRSTCALC('2024-05-29')",
                                       "select Count(ID) from alg_commain where isFinished = 0", "session rollback"}));
  FDBServer = &bench.database.Service();
}

TEST_F(MainFrame, EveryThreeSecondsPricesAreRenewedAndShown) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  bench.ClickNode(kPerformance);
  MessageSpy spy(*bench.mainFrame->CurFrame());
  // No answer yet: the timer waits.
  QTest::qWait(3200);
  EXPECT_EQ(bench.PriceRole()->Commands().size(), 1U);
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  spy.Clear();
  QTest::qWait(3100);
  EXPECT_EQ(spy.Count(FrameMessage::ReflashNowPrice), 1);
  const std::vector<QString> commands = {QStringLiteral("0|01600000"), QStringLiteral("1|01600000"),
                                         QStringLiteral("0|01600000")};
  EXPECT_EQ(bench.PriceRole()->Commands(), commands);
}

TEST_F(MainFrame, PricesRestWhileNoLiveViewIsShown) {
  Open();
  MessageSpy spy(*bench.mainFrame);
  QTest::qWait(3200);
  EXPECT_TRUE(g_NowPrice->IsDataReady());
  EXPECT_TRUE(bench.PriceRole()->Commands().empty());
}

TEST_F(MainFrame, PricesRestWhileTheRiskViewIsShown) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  bench.ClickNode(kRisk);
  MessageSpy spy(*bench.mainFrame->CurFrame());
  QTest::qWait(3200);
  EXPECT_EQ(bench.PriceRole()->Commands().size(), 1U);
  EXPECT_EQ(spy.Count(FrameMessage::ReflashNowPrice), 0);
}

}  // namespace
}  // namespace holdwise::test
