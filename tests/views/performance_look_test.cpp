// SPDX-License-Identifier: MIT
// The performance view beside its figures: hints, notes, layout and drawing.
#include <gtest/gtest.h>

#include <QToolTip>

#include "performance_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace performance;

// Pointer feedback.

TEST_F(PerformanceView, ANameWiderThanTheValueColumnIsHinted) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.AddPortfolio(2, QStringLiteral("一个名字长得列里放不下的投资组合甲乙丙"), ThreeHoldings());
  Open();
  const auto moveTo = [&](int row) {
    const QRect cell = portfolios->CellRect(kName, row);
    QTest::mouseMove(portfolios->viewport(), {cell.left() + 6, cell.center().y()});
  };
  moveTo(0);
  EXPECT_EQ(QToolTip::text(), QStringLiteral("一个名字长得列里放不下的投资组合甲乙丙"));
  moveTo(1);
  QTest::qWait(400);
  EXPECT_FALSE(QToolTip::isVisible());
}

TEST_F(PerformanceView, TheValueColumnIsTheMeasureOfAName) {
  OpenWithTwo();
  QString name;
  while (portfolios->fontMetrics().horizontalAdvance(name) + 2 <= portfolios->ColWidth(kValue)) name += u'名';
  const int width = portfolios->fontMetrics().horizontalAdvance(name);
  ASSERT_LT(width + 4, portfolios->ColWidth(kName)) << "its own column has room for it";
  const QRect cell = portfolios->CellRect(kName, 1);
  const auto moveTo = [&](int x, int y) {
    portfolios->SetCells(kName, 1, name);  // again: the list may have been filled anew meanwhile
    QTest::mouseMove(portfolios->viewport(), {x, y});
  };
  for (const QPoint beside :
       {QPoint(cell.left() + width + 3, cell.center().y()), QPoint(cell.left() + 7, cell.top())}) {
    moveTo(beside.x(), beside.y());
    QTest::qWait(400);  // longer than a tool tip takes to go
    EXPECT_FALSE(QToolTip::isVisible());
    moveTo(cell.left() + 6, cell.center().y());
    EXPECT_EQ(QToolTip::text(), name);
  }
}

TEST_F(PerformanceView, AnIndustryWiderThanItsColumnIsHinted) {
  OpenWithTwo();
  const auto moveTo = [&](int row) {
    const QRect cell = holdings->CellRect(kIndustry, row);
    QTest::mouseMove(holdings->viewport(), {cell.left() + 6, cell.center().y()});
  };
  moveTo(2);
  EXPECT_EQ(QToolTip::text(), QStringLiteral("酒、饮料和精制茶制造业及其相关服务"));
  moveTo(0);
  QTest::qWait(400);
  EXPECT_FALSE(QToolTip::isVisible());
}

// Holdings that are not found.

TEST_F(PerformanceView, ANameThatTheDatabaseDoesNotFindIsSaid) {
  AddTwo();
  Open();
  EXPECT_EQ(frame->Notice().text, QString());
  bench.database.Service().Execute(QStringLiteral("update alg_commain set COMNAME = '稳建' where ID = 1"));
  Click(*portfolios, kName, 1);
  EXPECT_EQ(Title(), QStringLiteral("稳健-成分股表现"));
  EXPECT_EQ(holdings->RowCount(), 3) << "unchanged: intended";
  EXPECT_EQ(frame->Notice().text, QStringLiteral("没有找到持股"));
  EXPECT_TRUE(frame->Notice().hint.contains(QStringLiteral("“稳健”"))) << frame->Notice().hint.toStdString();
  const QString told = bench.mainFrame->findChild<TitleStrip*>()->Notice().text();
  EXPECT_TRUE(told.contains(QStringLiteral("没有找到持股"))) << told.toStdString();
  bench.database.Service().Execute(QStringLiteral("update alg_commain set COMNAME = '稳健' where ID = 1"));
  Click(*portfolios, kName, 0);
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->RowCount(), 1);
  EXPECT_EQ(frame->Notice().text, QString());
}

TEST_F(PerformanceView, APortfolioWithoutHoldingsIsSaidBecauseTheListStandsStill) {
  AddTwo();
  bench.database.Service().Execute(QStringLiteral("delete from alg_comdetail where MAINID = 2"));
  Open();
  bench.DeliverPrices(PricesOfThree());
  Refresh();
  EXPECT_EQ(portfolios->Cells(kValue, 1), QString()) << "intended";
  EXPECT_TRUE(frame->Notice().hint.contains(QStringLiteral("“进取”"))) << frame->Notice().hint.toStdString();
}

// Layout and painting.

TEST_F(PerformanceView, ColumnsFollowTheWidth) {
  OpenWithTwo(1000);
  for (const int width : {900, 1024, 1920}) {
    bench.mainFrame->resize(width, 640);
    QTest::qWait(20);
    const auto portfolioWidths = WidthsOf(PortfolioTable(), portfolios->ClientWidth());
    for (int column = 0; column < kPortfolioColumns - 1; ++column) {
      EXPECT_EQ(portfolios->ColWidth(column), portfolioWidths[static_cast<size_t>(column)]) << width << ' ' << column;
    }
    EXPECT_EQ(holdings->ColWidth(kIndustry), WidthsOf(HoldingTable(), holdings->ClientWidth())[kIndustry]);
    EXPECT_TRUE(holdings->isColumnHidden(kBuyPrice));
  }
}

TEST_F(PerformanceView, TheListIsFiveRowsHighInItsPanel) {
  OpenWithTwo();
  EXPECT_EQ(portfolios->height(), 5 * 26 + 4);
  EXPECT_EQ(portfolios->viewport()->height(), 5 * 26);
  EXPECT_EQ(portfolios->parentWidget()->height(), 201);
}

TEST_F(PerformanceView, ThePictureLetsTheRowShineThroughAtItsCorners) {
  OpenWithTwo();
  const QImage list = portfolios->viewport()->grab().toImage();
  EXPECT_EQ(list.pixelColor(3, 26 * 3), Color("Qm_BGCorlor"));
  const QPoint centre = portfolios->CellRect(kOperation, 1).center();
  EXPECT_EQ(list.pixelColor(centre + QPoint(-9, 9)), Color("KTR_HighLightColor2"));
  int other = 0;
  for (int y = -9; y < 9; ++y) {
    for (int x = -9; x < 9; ++x) {
      other += list.pixelColor(centre + QPoint(x, y)) != Color("KTR_HighLightColor2") ? 1 : 0;
    }
  }
  EXPECT_GT(other, 40);
}

}  // namespace
}  // namespace holdwise::test
