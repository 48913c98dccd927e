// SPDX-License-Identifier: MIT
// The views with a list of portfolios and the holdings below it, by keyboard; what they keep; the edge between the two.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSplitter>

#include "common/frames/totals_strip.h"
#include "portfolio_view_fixture.h"

namespace holdwise::test {
namespace {

constexpr int kBar = 3;  // pixels of the bar of the row that the keys act on

class PortfolioKeys : public PortfolioViewTest, public testing::WithParamInterface<int> {
 protected:
  PortfolioKeys() : PortfolioViewTest(GetParam()) {}
  void OpenWithTwo() {
    AddTwo();
    Open();
    bench.DeliverPrices(PricesOfThree());
    QApplication::setActiveWindow(&bench.host.system.workArea);
  }
  static void Press(int key, Qt::KeyboardModifiers modifiers = {}) {
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
  }
  [[nodiscard]] NavigationTree& Tree() const { return bench.mainFrame->dxTL(); }
  [[nodiscard]] int Other() const { return GetParam() == 2002 ? 2001 : 2002; }
  void LeaveAndComeBack() {
    bench.ClickNode(Other());
    ShowView();
  }
};

INSTANTIATE_TEST_SUITE_P(Views, PortfolioKeys, testing::Values(2001, 2002, 2003, 3001));

TEST_P(PortfolioKeys, EnterLeadsFromAPortfolioToItsHoldingsAndFromThereToTheChart) {
  OpenWithTwo();
  portfolios->setFocus();
  Press(Qt::Key_Return);
  EXPECT_TRUE(holdings->hasFocus());
  Press(Qt::Key_Down);
  Press(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(bench.host.codeNums.setCodes, std::vector<QString>{QStringLiteral("1000001")});
  QTest::qWait(60);
  const std::vector<std::pair<QString, QString>> once = {{QStringLiteral("分时走势"), QString()}};
  EXPECT_EQ(bench.host.addresses.gone, once);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(bench.host.codeNums.setCodes.size(), 1U) << "with Ctrl it is another key";
}

TEST_P(PortfolioKeys, TheMenuOfAHoldingOpensTheChart) {
  OpenWithTwo();
  QMenu* menu = OpenMenu(*holdings, holdings->CellRect(3, 2).center());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(holdings->Row(), 2);
  ASSERT_TRUE(menu->actions().constLast()->text().startsWith(QStringLiteral("打开分时走势")));
  QTest::keyClick(menu, Qt::Key_Up);
  QTest::keyClick(menu, Qt::Key_Return);
  EXPECT_EQ(bench.host.codeNums.setCodes, std::vector<QString>{QStringLiteral("1600519")});
}

TEST_P(PortfolioKeys, F6GoesThroughThePanesAndRoundAgain) {
  OpenWithTwo();
  std::vector<QWidget*> expected = {&Tree(), portfolios, holdings};
  if (GetParam() == 2003) expected.insert(expected.begin() + 1, frame->findChild<QWidget*>("ComboBox11"));
  Tree().setFocus();
  for (std::size_t step = 1; step <= expected.size(); ++step) {
    Press(Qt::Key_F6);
    EXPECT_EQ(QApplication::focusWidget(), expected[step % expected.size()]) << step;
  }
  Press(Qt::Key_F6, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget(), holdings);
}

TEST_P(PortfolioKeys, OnlyTheRowThatTheKeysActOnHasTheBar) {
  OpenWithTwo();
  // Grid_ClickTxtColor is the colour of whatever says where the keys are.
  const QColor bar = Color("Grid_ClickTxtColor");
  const auto hasBar = [&](QAbstractItemView& view, const QRect& row) {
    const QImage picture = view.viewport()->grab().toImage();
    for (int x = 0; x < kBar; ++x)
      if (picture.pixelColor(x, row.center().y()) != bar) return false;
    return picture.pixelColor(kBar, row.center().y()) != bar;
  };
  const auto bars = [&] {
    return std::vector<bool>{hasBar(Tree(), Tree().visualItemRect(Tree().currentItem())),
                             hasBar(*portfolios, portfolios->CellRect(0, 0)),
                             hasBar(*holdings, holdings->CellRect(0, 0))};
  };
  Tree().setFocus();
  EXPECT_EQ(bars(), (std::vector<bool>{true, false, false}));
  portfolios->setFocus();
  EXPECT_EQ(bars(), (std::vector<bool>{false, true, false}));
  holdings->setFocus();
  EXPECT_EQ(bars(), (std::vector<bool>{false, false, true}));
  const auto corner = [](QWidget& pane) { return pane.grab().toImage().pixelColor(pane.width() / 2, 0); };
  EXPECT_NE(corner(*holdings), bar);
  Press(Qt::Key_F6, Qt::ShiftModifier);
  EXPECT_EQ(bars(), (std::vector<bool>{false, true, false}));
  EXPECT_EQ(corner(*portfolios), bar) << "who comes by keyboard sees a frame, too";
}

// --- the selection

TEST_P(PortfolioKeys, ComingBackTheSelectedPortfolioIsSelectedStill) {
  OpenWithTwo();
  Click(*portfolios, 0, 1);
  LeaveAndComeBack();
  EXPECT_EQ(portfolios->Row(), 1);
  EXPECT_EQ(holdings->RowCount(), 1) << "and shows its holdings";
  LeaveAndComeBack();
  EXPECT_EQ(portfolios->Row(), 1) << "each time";
  QTest::qWait(1300);
  EXPECT_EQ(portfolios->Row(), 1) << "also when the figures have been looked after";
}

TEST_P(PortfolioKeys, AListThatHasChangedBeginsWithItsFirst) {
  OpenWithTwo();
  Click(*portfolios, 0, 1);
  bench.ClickNode(Other());
  bench.AddPortfolio(3, QStringLiteral("后来"), {{1600000, 100, 1, 9}});
  ShowView();
  EXPECT_EQ(portfolios->RowCount(), 3);
  EXPECT_EQ(portfolios->Row(), 0);
  Click(*portfolios, 0, 2);
  bench.ClickNode(Other());
  bench.database.Service().Execute(QStringLiteral("update alg_commain set COMNAME = '改名' where ID = 3"));
  ShowView();
  EXPECT_EQ(portfolios->Row(), 0) << "a name, too";
}

// --- the box above a long list

class LongList : public PortfolioKeys {
 protected:
  void OpenWith(int count) {
    for (int id = 1; id <= count; ++id) {
      const int code = id % 2 == 0 ? 1600000 : 1000001;
      bench.AddPortfolio(id, QStringLiteral("组合%1Z").arg(id), {{code, 100, 1, 9}});
    }
    Open();
    bench.DeliverPrices(PricesOfThree());
    QApplication::setActiveWindow(&bench.host.system.workArea);
    box = frame->findChild<QLineEdit*>(QStringLiteral("filter"));
    ASSERT_NE(box, nullptr);
  }
  [[nodiscard]] QStringList Shown() const {
    QStringList names;
    for (int row = 0; row < portfolios->RowCount(); ++row)
      if (portfolios->RowHeight(row) > 0) names << portfolios->Cells(0, row);
    return names;
  }
  QLineEdit* box = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Views, LongList, testing::Values(2001, 2002, 2003, 3001));

TEST_P(LongList, TheBoxComesWithTheTwentiethPortfolio) {
  OpenWith(19);
  EXPECT_FALSE(box->isVisible());
  EXPECT_EQ(portfolios->y(), 23);
  bench.AddPortfolio(20, QStringLiteral("组合20Z"), {{1600000, 100, 1, 9}});
  LeaveAndComeBack();
  EXPECT_TRUE(box->isVisible());
  EXPECT_LT(box->mapTo(frame, QPoint()).y(), portfolios->mapTo(frame, QPoint()).y());
  EXPECT_EQ(portfolios->parentWidget()->height(), 201) << "the list makes room for it";
}

TEST_P(LongList, WhatIsTypedLeavesTheNamesThatContainIt) {
  OpenWith(21);
  box->setFocus();
  EXPECT_FALSE(bench.host.keyCodes.calls.empty());
  EXPECT_FALSE(bench.host.keyCodes.calls.back()) << "the host leaves the keyboard to the box";
  QTest::keyClicks(box, QStringLiteral("1z"));
  EXPECT_EQ(Shown(), List({"组合21Z", "组合11Z", "组合1Z"}));
  QTest::keyClick(box, Qt::Key_Home);
  QTest::keyClicks(box, QStringLiteral("1"));
  EXPECT_EQ(Shown(), List({"组合11Z"}));
  EXPECT_EQ(holdings->Cells(0, 0), QStringLiteral("000001")) << "the holdings are those of the row that is left";
  EXPECT_EQ(holdings->RowCount(), 1);
  QTest::keyClick(box, Qt::Key_Down);
  EXPECT_TRUE(portfolios->hasFocus());
  box->setFocus();
  QTest::keyClick(box, Qt::Key_Escape);
  EXPECT_EQ(Shown().size(), 21);
  EXPECT_TRUE(portfolios->hasFocus());
  EXPECT_EQ(portfolios->Cells(0, portfolios->Row()), QStringLiteral("组合11Z")) << "it stays selected";
}

TEST_P(LongList, TheSumsSayThatTheyAreOfAll) {
  OpenWith(20);
  if (GetParam() != 2001) GTEST_SKIP() << "no sums here";
  const auto caption = [this] {
    const auto* sums = portfolios->parentWidget()->findChild<TotalsStrip*>();
    return sums->findChild<QLabel*>()->text() + u' ' + sums->Texts().value(0);
  };
  SendFrameMessage(*frame, FrameMessage::ReflashNowPrice);
  // 10 x 100 shares at 10.00 and at 12.00
  EXPECT_EQ(caption(), QStringLiteral("合计 22000.00"));
  QTest::keyClicks(box, QStringLiteral("11z"));
  EXPECT_EQ(caption(), QStringLiteral("全部组合合计 22000.00"));
}

TEST_P(LongList, NothingFoundIsSaidAndNothingCanBeDoneToIt) {
  OpenWith(20);
  box->setFocus();
  QTest::keyClicks(box, QStringLiteral("x"));
  EXPECT_TRUE(Shown().isEmpty());
  EXPECT_TRUE(EmptyText(*portfolios).startsWith(QStringLiteral("没有名称含“x”的组合")));
  EXPECT_TRUE(holdings->IsEmpty());
  portfolios->setFocus();
  for (const auto key : {Qt::Key_Delete, Qt::Key_Return}) QTest::keyClick(portfolios, key);
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
  EXPECT_TRUE(portfolios->hasFocus());
  QTest::keyClick(box, Qt::Key_Backspace);
  EXPECT_EQ(Shown().size(), 20);
  EXPECT_EQ(holdings->RowCount(), 1);
  EXPECT_FALSE(holdings->IsEmpty());
}

TEST_P(LongList, TheFilterOutlivesAReloadAndGivesWayToTheCatalogue) {
  OpenWith(21);
  QTest::keyClicks(box, QStringLiteral("2z"));
  Click(*portfolios, 0, 19);
  ASSERT_EQ(portfolios->Cells(0, portfolios->Row()), QStringLiteral("组合2Z"));
  LeaveAndComeBack();
  EXPECT_EQ(Shown(), List({"组合12Z", "组合2Z"}));
  EXPECT_EQ(portfolios->Cells(0, portfolios->Row()), QStringLiteral("组合2Z"));
  EXPECT_EQ(frame->HoldingsGrid().portfolioIds.size(), 21);
  EXPECT_TRUE(frame->SelectPortfolio(QStringLiteral("7")));
  EXPECT_EQ(portfolios->Cells(0, portfolios->Row()), QStringLiteral("组合7Z"));
  EXPECT_EQ(box->text(), QString());
}

TEST_P(LongList, WhereTheUserHadGotToComesBackAfterTheCatalogueHasGoneElsewhere) {
  OpenWith(40);
  bench.host.system.workArea.resize(1000, 420);
  QTest::qWait(20);
  QTest::keyClicks(box, QStringLiteral("1"));
  Click(*portfolios, 0, 21);
  ASSERT_EQ(Shown().size(), 13);
  const QString name = portfolios->Cells(0, portfolios->Row());
  portfolios->verticalScrollBar()->setValue(portfolios->verticalScrollBar()->maximum());
  const int scrolled = portfolios->verticalScrollBar()->value();
  ASSERT_GT(scrolled, 0);
  const QStringList shown = Shown();
  const QByteArray place = frame->Place();
  ASSERT_TRUE(frame->SelectPortfolio(QStringLiteral("3")));
  LeaveAndComeBack();
  ASSERT_NE(portfolios->Cells(0, portfolios->Row()), name);
  ASSERT_EQ(Shown().size(), 40);
  frame->PutPlace(place);
  EXPECT_EQ(portfolios->Cells(0, portfolios->Row()), name);
  EXPECT_EQ(Shown(), shown);
  EXPECT_EQ(box->text(), QStringLiteral("1"));
  EXPECT_EQ(portfolios->verticalScrollBar()->value(), scrolled);
  EXPECT_EQ(frame->Place(), place);
  frame->PutPlace("nothing of this view");
  EXPECT_EQ(frame->Place(), place);
}

TEST_P(LongList, OfAPlaceThatIsGoneWhatIsLeftIsPutBack) {
  OpenWith(21);
  Click(*portfolios, 0, 2);
  const QString id = QStringLiteral("19");
  const QByteArray place = frame->Place();
  bench.database.Service().Execute(QStringLiteral("delete from alg_comdetail where MAINID = ") + id);
  bench.database.Service().Execute(QStringLiteral("delete from alg_commain where ID = ") + id);
  LeaveAndComeBack();
  const int row = portfolios->Row();
  frame->PutPlace(place);
  EXPECT_EQ(portfolios->Row(), row);
  EXPECT_EQ(Shown().size(), 20);
}

// --- the edge

TEST_P(PortfolioKeys, TheEdgeBetweenListAndHoldingsCanBeDragged) {
  OpenWithTwo();
  const auto listHeight = [this] { return portfolios->parentWidget()->height(); };
  ASSERT_EQ(listHeight(), 201);
  auto* splitter = frame->findChild<QSplitter*>();
  ASSERT_NE(splitter, nullptr);
  EXPECT_FALSE(splitter->objectName().isEmpty()) << "a name to be remembered by";
  QWidget& edge = *splitter->handle(1);
  EXPECT_EQ(edge.cursor().shape(), Qt::SplitVCursor);
  const int gridBefore = portfolios->height();
  const QPoint middle = edge.rect().center();
  QTest::mousePress(&edge, Qt::LeftButton, {}, middle);
  QTest::mouseMove(&edge, middle + QPoint(0, 78));
  QTest::mouseRelease(&edge, Qt::LeftButton, {}, middle + QPoint(0, 78));
  EXPECT_EQ(listHeight(), 279);
  EXPECT_EQ(portfolios->height() - gridBefore, listHeight() - 201);
  EXPECT_EQ(portfolios->viewport()->height() % TStringGrid::kDefaultRowHeight, 0);
  const int dragged = listHeight();
  bench.host.system.workArea.resize(1000, 900);
  QTest::qWait(20);
  EXPECT_EQ(listHeight(), dragged) << "in a higher window the holdings take what there is more";
}

/// Where a person looks for the edge: in the gap between the last row, or the sums, and the title of the holdings.
TEST_P(PortfolioKeys, TheEdgeIsGrabbedAnywhereInTheGapAboveIt) {
  OpenWithTwo();
  QTest::qWait(20);
  const QWidget& list = *portfolios->parentWidget();
  const auto* sums = list.findChild<TotalsStrip*>();
  const QWidget& lowest = sums != nullptr ? static_cast<const QWidget&>(*sums) : *portfolios->viewport();
  const int top = lowest.mapTo(frame, QPoint(0, lowest.height())).y();
  const int bottom = list.mapTo(frame, QPoint(0, list.height())).y();
  ASSERT_GE(bottom - top, 15) << "the gap";
  auto* edge = frame->findChild<QSplitter*>()->handle(1);
  for (int y = top; y < bottom; ++y) EXPECT_EQ(frame->childAt(500, y), edge) << y - top;
  EXPECT_NE(frame->childAt(500, top - 1), edge) << "the last row, or the sums, have their own mouse";
  EXPECT_NE(frame->childAt(500, bottom + 8), edge);
  // Grabbed in its first pixel it follows the mouse, and does not jump under it.
  const int before = list.height();
  const QPoint from = edge->mapFrom(frame, QPoint(500, top + 1));
  QTest::mousePress(edge, Qt::LeftButton, {}, from);
  QTest::mouseMove(edge, from + QPoint(0, 40));
  QTest::mouseRelease(edge, Qt::LeftButton, {}, from);
  EXPECT_EQ(list.height(), before + 40);
}

}  // namespace
}  // namespace holdwise::test
