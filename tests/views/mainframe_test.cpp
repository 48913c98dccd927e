// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QStackedLayout>
#include <QTest>

#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "mainframe/view_table.h"
#include "mainframe_fixture.h"

namespace holdwise::test {
namespace {

TEST_F(MainFrame, TheTreeHoldsTheTenNodesUnderTheirGroups) {
  Open();
  const NavigationTree& tree = bench.mainFrame->dxTL();
  QStringList shown;
  for (int group = 0; group < tree.topLevelItemCount(); ++group) {
    const QTreeWidgetItem* node = tree.topLevelItem(group);
    shown << NavigationTree::CaptionOf(node);
    EXPECT_TRUE(node->isExpanded());
    for (int child = 0; child < node->childCount(); ++child) {
      shown << QStringLiteral("  %1 %2")
                   .arg(NavigationTree::IdOf(node->child(child)))
                   .arg(NavigationTree::CaptionOf(node->child(child)));
    }
  }
  const QStringList expected = {QStringLiteral("资产配置"),        QStringLiteral("  1001 智能配置"),
                                QStringLiteral("  1002 自选配置"), QStringLiteral("组合跟踪"),
                                QStringLiteral("  2001 组合表现"), QStringLiteral("  2002 风险计量"),
                                QStringLiteral("  2003 压力测试"), QStringLiteral("组合评价"),
                                QStringLiteral("  3001 总体评价"), QStringLiteral("  3002 业绩分解")};
  EXPECT_EQ(shown, expected);
}

TEST(NavigationTreeTest, ANodeWithAnUnknownParentStandsAtTheTop) {
  NavigationTree tree;
  const std::vector<TNodeData> nodes = {{1, 0, QStringLiteral("a")},
                                        {2, 99, QStringLiteral("b")},
                                        {3, 2, QStringLiteral("c")},
                                        {4, 0, QStringLiteral("not built")}};
  tree.BuildTree(nodes, 2);
  ASSERT_EQ(tree.topLevelItemCount(), 2);
  EXPECT_EQ(NavigationTree::IdOf(tree.topLevelItem(1)), 2);
  EXPECT_EQ(tree.topLevelItem(1)->childCount(), 1);
  tree.BuildTree(nodes, 0);
  EXPECT_EQ(tree.topLevelItemCount(), 1);
}

TEST(NavigationTreeTest, TheSearchFindsTheFirstCaptionThatBeginsSo) {
  NavigationTree tree;
  tree.BuildTree(Nodes, 9);
  EXPECT_EQ(NavigationTree::IdOf(tree.FindCaption(QStringLiteral("组合"))), 2000);
  EXPECT_EQ(NavigationTree::IdOf(tree.FindCaption(QStringLiteral("组合表"))), 2001);
  EXPECT_EQ(tree.FindCaption(QStringLiteral("表现")), nullptr);
  EXPECT_EQ(tree.FindCaption(QString()), nullptr);
}

TEST(MainFrameIds, AGroupStandsForItsFirstChild) {
  EXPECT_EQ(TMainFrm::GetFID(0), 1);
  EXPECT_EQ(TMainFrm::GetFID(2003), 2003);
  EXPECT_EQ(TMainFrm::GetFID(3000), 3001);
}

TEST_F(MainFrame, LeftLeadsToTheGroupAndRightIntoIt) {
  Open();
  bench.ClickNode(2003);
  NavigationTree& tree = bench.mainFrame->dxTL();
  tree.setFocus();
  const auto after = [&tree](Qt::Key key) {
    QTest::keyClick(&tree, key);
    return NavigationTree::IdOf(tree.currentItem());
  };
  EXPECT_EQ(after(Qt::Key_Left), 2000);
  EXPECT_EQ(bench.mainFrame->CurFrame()->Tag(), kPerformance) << "a group shows its first view";
  EXPECT_EQ(after(Qt::Key_Left), 2000) << "there is nothing further out";
  EXPECT_EQ(after(Qt::Key_Right), 2001);
  EXPECT_EQ(after(Qt::Key_Right), 2001);
  EXPECT_EQ(after(Qt::Key_Up), 2000);
}

/// From the start, before the mouse has been used.
TEST_F(MainFrame, TheMarkedNodeIsTheOneThatTheKeysHaveGoneTo) {
  Open();
  NavigationTree& tree = bench.mainFrame->dxTL();
  for (int step = 0; step < 5 && QApplication::focusWidget() != &tree; ++step)
    QTest::keyClick(bench.mainFrame.get(), Qt::Key_F6);
  ASSERT_EQ(QApplication::focusWidget(), &tree);
  const auto marked = [&tree] {
    std::vector<int> ids;
    const QList<QTreeWidgetItem*> items = tree.selectedItems();
    for (const QTreeWidgetItem* node : items) ids.push_back(NavigationTree::IdOf(node));
    return ids;
  };
  const auto press = [&](Qt::Key key, int node) {
    QTest::keyClick(QApplication::focusWidget(), key);
    EXPECT_EQ(NavigationTree::IdOf(tree.currentItem()), node) << key;
    EXPECT_EQ(marked(), std::vector<int>{node}) << key;
    const QRect row = tree.visualItemRect(tree.currentItem());
    const QImage picture = tree.viewport()->grab().toImage();
    EXPECT_EQ(picture.pixelColor(row.right() - 2, row.center().y()),
              bench.host.theme.ColorOf(QStringLiteral("Qm_GridRowSelectColor")))
        << key;
  };
  for (const int node : {1001, 1002, 2000, 2001}) press(Qt::Key_Down, node);
  press(Qt::Key_Left, 2000);
  press(Qt::Key_Right, 2001);
  press(Qt::Key_Up, 2000);
  press(Qt::Key_End, 3002);
  press(Qt::Key_Home, 1000);
  tree.setCurrentItem(bench.Node(kRisk));  // as a host does
  press(Qt::Key_Down, 2003);
  press(Qt::Key_PageUp, 1000);
}

TEST_F(MainFrame, AGroupShowsItsFirstViewUnderThatViewsCaption) {
  Open();
  bench.ClickNode(2000);
  ASSERT_NE(bench.mainFrame->CurFrame(), nullptr);
  EXPECT_EQ(bench.mainFrame->CurFrame()->Tag(), kPerformance);
  EXPECT_NE(LabelWith(QStringLiteral("组合表现")), nullptr);
  EXPECT_TRUE(bench.mainFrame->CurFrame()->isVisible());
}

TEST_F(MainFrame, TheChildOfAShownGroupUsesTheSameFrameAndLoadsItAgain) {
  Open();
  bench.ClickNode(2000);
  TViewFrame* frame = bench.mainFrame->CurFrame();
  MessageSpy spy(*frame);
  bench.ClickNode(kPerformance);
  EXPECT_EQ(bench.mainFrame->CurFrame(), frame);
  EXPECT_EQ(bench.mainFrame->FrameList().size(), 2U) << "with the one shown at the start";
  EXPECT_EQ(spy.Count(FrameMessage::Init), 1);
  EXPECT_EQ(spy.Count(FrameMessage::Hidden), 0);
}

TEST_F(MainFrame, AReplacedViewIsToldBeforeTheNewOneLoads) {
  Open();
  TViewFrame* start = bench.mainFrame->CurFrame();
  bench.ClickNode(kPerformance);
  TViewFrame* performance = bench.mainFrame->CurFrame();
  bench.ClickNode(kRisk);
  TViewFrame* risk = bench.mainFrame->CurFrame();
  ASSERT_NE(risk, performance);
  std::vector<std::pair<TViewFrame*, int>> messages;
  MessageSpy first(*performance);
  MessageSpy second(*risk);
  first.OnMessage = [&](int message) { messages.emplace_back(performance, message); };
  second.OnMessage = [&](int message) { messages.emplace_back(risk, message); };
  bench.ClickNode(kPerformance);
  ASSERT_GE(messages.size(), 2U);
  EXPECT_EQ(messages[0], std::pair(risk, 5097));
  EXPECT_EQ(messages[1], std::pair(performance, 5096));
  EXPECT_EQ(first.Count(FrameMessage::Hidden), 0);
  EXPECT_TRUE(performance->isVisible());
  EXPECT_FALSE(risk->isVisible());
  messages.clear();
  bench.ClickNode(kRisk);
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0], std::pair(performance, 5097));
  EXPECT_EQ(messages[1], std::pair(risk, 5096));
  EXPECT_EQ(bench.mainFrame->FrameList(), (std::vector<TViewFrame*>{start, performance, risk}))
      << "both were used again";
}

TEST_F(MainFrame, AClickOnTheFocusedNodeChangesNothing) {
  Open();
  bench.ClickNode(kPerformance);
  MessageSpy spy(*bench.mainFrame->CurFrame());
  bench.ClickNode(kPerformance);
  EXPECT_TRUE(spy.messages.empty());
}

TEST_F(MainFrame, TheCtrlKeyDoesNotTakeTheSelectionAway) {
  Open();
  bench.ClickNode(kPerformance);
  const QPoint at = bench.mainFrame->dxTL().visualItemRect(bench.Node(kPerformance)).center();
  QTest::mouseClick(bench.mainFrame->dxTL().viewport(), Qt::LeftButton, Qt::ControlModifier, at);
  EXPECT_TRUE(bench.Node(kPerformance)->isSelected());
  // Nor does a click below the nodes.
  QTest::mouseClick(bench.mainFrame->dxTL().viewport(), Qt::LeftButton, {}, {at.x(), 400});
  EXPECT_TRUE(bench.Node(kPerformance)->isSelected());
}

TEST_F(MainFrame, EverySelectionLetsTheHostRefreshTheWorkArea) {
  Open();
  const auto before = bench.host.system.refreshed.size();
  bench.ClickNode(kPerformance);
  ASSERT_EQ(bench.host.system.refreshed.size(), before + 1);
  EXPECT_EQ(bench.host.system.refreshed.back(), bench.mainFrame->CurFrame()->parentWidget());
}

TEST_F(MainFrame, AFailingViewIsLoggedAndTheWorkAreaStillRefreshed) {
  bench.host.SetUserData(bench.host.fakeUserData);  // knows no statement at all
  bench.mainFrame = std::make_unique<TMainFrm>();
  const auto before = bench.host.system.refreshed.size();
  bench.mainFrame->dxTL().setCurrentItem(bench.Node(kPerformance));
  EXPECT_EQ(bench.host.system.refreshed.size(), before + 1);
  ASSERT_FALSE(bench.host.debug.Lines().empty());
  EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(
      QStringLiteral("Holdwise.bpl->untmainfrm->dxTLChangeNode 发生错误!错误信息:")));
}

TEST_F(MainFrame, ANodeWithoutAViewLeavesTheOldOneOnScreenButNotCurrent) {
  constexpr int kNodeWithoutView = 4001;
  Open();
  auto* node = new QTreeWidgetItem(&bench.mainFrame->dxTL());
  node->setData(NavigationTree::dxc_Id, Qt::DisplayRole, kNodeWithoutView);
  bench.ClickNode(kPerformance);
  TViewFrame* frame = bench.mainFrame->CurFrame();
  MessageSpy spy(*frame);
  bench.ClickNode(kNodeWithoutView);
  EXPECT_EQ(bench.mainFrame->CurFrame(), nullptr);
  EXPECT_TRUE(frame->isVisible());
  EXPECT_NE(LabelWith(QStringLiteral("组合表现")), nullptr);
  EXPECT_EQ(spy.Count(FrameMessage::Hidden), 0);
  bench.ClickNode(kPerformance);
  EXPECT_EQ(bench.mainFrame->CurFrame(), frame);
  EXPECT_EQ(spy.Count(FrameMessage::Init), 1);
}

TEST_F(MainFrame, PortfoliosThatLackDataAreNamedInTheTitleStrip) {
  bench.AddPortfolio(1, QStringLiteral("稳健"), {{1000002, 200, 1, 9.5}});
  Open();
  bench.ClickNode(kPerformance);
  bench.database.Service().Execute(QStringLiteral("update alg_commain set ISFINISHED = 1, LACKING = 1"));
  bench.ClickNode(kRisk);
  const QLabel* notice = LabelWith(QStringLiteral("1 个组合的数据不完整"));
  ASSERT_NE(notice, nullptr);
  EXPECT_TRUE(notice->isVisible());
  EXPECT_TRUE(notice->toolTip().contains(QStringLiteral("稳健")));
  EXPECT_TRUE(notice->toolTip().contains(QStringLiteral("000002")));
  bench.ClickNode(kSmartAllocation);
  EXPECT_FALSE(notice->isVisible()) << "it belongs to the page";
}

TEST_F(MainFrame, TheFirstGroupsViewShowsAtOnceWithTheStockPoolLink) {
  Open();
  TViewFrame* first = bench.mainFrame->CurFrame();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->Tag(), kSmartAllocation);
  EXPECT_TRUE(first->isVisible());
  EXPECT_NE(LabelWith(QStringLiteral("智能配置")), nullptr) << "the page's title";
  const QLabel* link = LabelWith(QStringLiteral("智能股票池"));
  EXPECT_TRUE(link->isVisible());
  for (const int node : {1002, 2001, 2002, 2003, 3001, 3002}) {
    bench.ClickNode(node);
    EXPECT_FALSE(link->isVisible()) << node;
  }
  bench.ClickNode(1000);
  EXPECT_TRUE(link->isVisible());
  EXPECT_EQ(bench.mainFrame->CurFrame(), first) << "the group uses the one frame";
  bench.ClickNode(kSmartAllocation);
  EXPECT_EQ(bench.mainFrame->CurFrame(), first);
}

TEST_F(MainFrame, NothingIsCalculatedForTheFirstView) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.database.Service().Execute(QStringLiteral("update alg_commain set ISFINISHED = 0"));
  Open();
  MessageSpy spy(*bench.mainFrame->CurFrame());
  QTest::qWait(1200);
  EXPECT_TRUE(spy.messages.empty());
  EXPECT_TRUE(bench.host.DownFiles(QStringLiteral("DownBasicData")).empty());
}

TEST_F(MainFrame, TheTreeIsAsWideAsDesignedAndKeepsItsWidth) {
  Open();
  EXPECT_EQ(bench.mainFrame->Splitter1().sizes().first(), 174);
  EXPECT_EQ(bench.mainFrame->Splitter1().handleWidth(), 10);
  bench.mainFrame->resize(1600, 700);
  QTest::qWait(10);
  EXPECT_EQ(bench.mainFrame->Splitter1().sizes().first(), 174);
}

TEST_F(MainFrame, SharedObjectsLiveAsLongAsTheFrame) {
  EXPECT_EQ(g_NowPrice, nullptr);
  Open();
  EXPECT_NE(g_NowPrice, nullptr);
  EXPECT_NE(g_ClosePrice, nullptr);
  EXPECT_NE(g_UserValue, nullptr);
  EXPECT_NE(g_StockClosePrice, nullptr);
  ASSERT_NE(g_Timer, nullptr);
  EXPECT_FALSE(g_Timer->isActive());
  EXPECT_EQ(g_Timer->interval(), 10);
  EXPECT_EQ(FDBServer, &bench.database.Service());
  bench.CloseMainFrame();
  EXPECT_EQ(g_NowPrice, nullptr);
  EXPECT_EQ(g_ClosePrice, nullptr);
  EXPECT_EQ(g_UserValue, nullptr);
  EXPECT_EQ(g_StockClosePrice, nullptr);
  EXPECT_EQ(g_Timer, nullptr);
  EXPECT_EQ(FDBServer, nullptr);
}

TEST_F(MainFrame, ItClosesWithEveryTimerPendingAndIgnoresLateReplies) {
  bench.AddPortfolio(1, QStringLiteral("甲"), ThreeHoldings());
  Open();
  bench.ClickNode(kPerformance);
  g_Timer->start();
  const auto role = bench.PriceRole();
  bench.CloseMainFrame();
  EXPECT_FALSE(role->Deliver(PriceReply(PricesOfThree())));
  QTest::qWait(1100);
  EXPECT_TRUE(bench.host.addresses.gone.empty());
}

TEST_F(MainFrame, EnteringSubscribesAndLeavingCancels) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  EXPECT_EQ(bench.PriceRole()->Commands(), std::vector<QString>{QStringLiteral("0|01600000")});
  EXPECT_FALSE(g_NowPrice->IsDataReady());
  bench.mainFrame->FinalProc();
  EXPECT_EQ(bench.PriceRole()->Commands().back(), QStringLiteral("1|01600000"));
  EXPECT_TRUE(g_NowPrice->SubscriptionString().isEmpty());
  bench.mainFrame->FinalProc();
  EXPECT_EQ(bench.PriceRole()->Commands().size(), 2U);
}

TEST_F(MainFrame, WithoutHoldingsPricesAreReadyAtOnce) {
  Open();
  EXPECT_TRUE(g_NowPrice->IsDataReady());
  EXPECT_TRUE(bench.PriceRole()->Commands().empty());
}

TEST_F(MainFrame, TheFundToolbarIsAsked) {
  Open();
  bench.mainFrame->Button1Click();
  const std::vector<std::pair<QString, QString>> once = {{QStringLiteral("工具条"), QStringLiteral("基金")}};
  EXPECT_EQ(bench.host.addresses.gone, once);
}

TEST_F(MainFrame, AThemeChangeReachesEveryViewAndTheTree) {
  Open();
  bench.ClickNode(kPerformance);
  TViewFrame* frame = bench.mainFrame->CurFrame();
  MessageSpy spy(*frame);
  bench.host.theme.Switch();
  bench.mainFrame->MakeSkin();
  EXPECT_EQ(spy.Count(FrameMessage::ChangeSkin), 1);
  const QImage tree = bench.mainFrame->dxTL().viewport()->grab().toImage();
  EXPECT_EQ(tree.pixelColor(tree.width() - 3, tree.height() - 3),
            bench.host.theme.ColorOf(QStringLiteral("Qm_BGCorlor")));
  const QRect selected = bench.mainFrame->dxTL().visualItemRect(bench.Node(kPerformance));
  EXPECT_EQ(tree.pixelColor(selected.right() - 2, selected.center().y()),
            bench.host.theme.ColorOf(QStringLiteral("Qm_GridRowSelectColor")));
}

TEST_F(MainFrame, GroupsAreBold) {
  Open();
  const QImage tree = bench.mainFrame->dxTL().viewport()->grab().toImage();
  const QColor text = bench.host.theme.ColorOf(QStringLiteral("Grid_UnSelTxtColor"));
  const auto inked = [&](int id) {
    const QRect rect = bench.mainFrame->dxTL().visualItemRect(bench.Node(id));
    int count = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
      for (int x = rect.left(); x < tree.width(); ++x) count += tree.pixelColor(x, y) == text ? 1 : 0;
    }
    return count;
  };
  // Four characters each; the bold ones have more ink.
  EXPECT_GT(inked(2000), inked(2001));
  EXPECT_GT(inked(2001), 0);
}

TEST_F(MainFrame, SettledMeansPricesAreInAndShown) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  bench.ClickNode(kPerformance);
  EXPECT_FALSE(bench.mainFrame->IsSettled());
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  EXPECT_FALSE(bench.mainFrame->IsSettled()) << "the recalculation is still to come";
  QTest::qWait(1200);  // loads the view again, with the prices
  EXPECT_TRUE(bench.mainFrame->IsSettled());
}

TEST_F(MainFrame, AViewWithoutPricesSettlesThoughTheyDidNotCome) {
  constexpr int kEditor = 1002;
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  bench.ClickNode(kEditor);
  EXPECT_TRUE(QTest::qWaitFor([this] { return bench.mainFrame->IsSettled(); }, 3000));
  bench.ClickNode(kPerformance);
  EXPECT_FALSE(QTest::qWaitFor([this] { return bench.mainFrame->IsSettled(); }, 1500));
}

}  // namespace
}  // namespace holdwise::test
