// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QLabel>
#include <QToolTip>

#include "common/series/all_stock_data.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "holdwise/packet/packet_file.h"
#include "portfolio_view_fixture.h"
#include "views/fxjl/fxjl.h"
#include "views/fxjl/risk_layout.h"

namespace holdwise::test {
namespace {

using namespace risk;

const QString kShanghai = QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat");
const QString kShenzhen = QStringLiteral("QMTL\\TZZH\\风险计量\\SZ.dat");

struct RiskOfSecurity {
  const char* code;
  double beta;
  double alpha;
};

QByteArray RiskFile(const std::vector<RiskOfSecurity>& rows) {
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  const int beta = table.AddColumn("beta", ColumnType::Real);
  const int alpha = table.AddColumn("alpha", ColumnType::Real);
  for (const RiskOfSecurity& security : rows) {
    const int row = table.AppendRow();
    table.SetText(row, code, security.code);
    table.SetReal(row, beta, security.beta);
    table.SetReal(row, alpha, security.alpha);
  }
  return EncodePacket(table);
}

QByteArray TwoKnown() {
  return RiskFile({{"600000", 1.25, -0.00031}, {"000001", 0.8125, 1.5e-9}});
}

class RiskView : public PortfolioViewTest {
 protected:
  RiskView() : PortfolioViewTest(2002) {}
  /// The table knows two of the newest portfolio's three holdings.
  void OpenWithTwo(int width = 1000) {
    AddTwo();
    SetDeviation(1600000, 0.02);
    SetDeviation(1000001, 0.0004);
    Open(width);
    Download()->WriteAndReceive(kShanghai, TwoKnown());
  }
  void SetDeviation(int code, double deviation) {
    bench.database.Service().Execute(
        QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,sylbzc) values (%1,0,20240528,%2)")
            .arg(code)
            .arg(QString::number(deviation, 'f', 12)));
  }
  void SetFigures(int id, const char* figures) {
    bench.database.Service().Execute(
        QStringLiteral("update alg_commain set %1 where ID = %2").arg(QString::fromLatin1(figures)).arg(id));
  }
  [[nodiscard]] std::shared_ptr<ScriptedDownFile> Download() const {
    return bench.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"));
  }
};

TEST_F(RiskView, ListsSavedPortfoliosNewestFirstWithTheirStoredFigures) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {});
  bench.AddPortfolio(3, QStringLiteral("乙"), {}, 0);
  bench.AddPortfolio(2, QStringLiteral("丙"), {});
  SetFigures(1, "FC = 0.00012345, ZHBZC = 0.0111108, ALPHA = -0.0000126, BETA = 1.0000004");
  Open();
  ASSERT_EQ(portfolios->RowCount(), 2);
  EXPECT_EQ(RowOf(*portfolios, 0), List({"丙", "0.000000", "0.000000", "0.000000", "0.000000", "2"}));
  EXPECT_EQ(RowOf(*portfolios, 1), List({"甲", "0.000123", "0.011111", "-0.000013", "1.000000", "1"}));
}

TEST_F(RiskView, ShowsTheSecuritiesOfTheNewestPortfolio) {
  OpenWithTwo();
  EXPECT_EQ(Title(), QStringLiteral("进取"));
  ASSERT_EQ(holdings->RowCount(), 3);
  // Squares: 0.02 gives 0.0004, 0.0004 gives 0.00000016. Alpha and beta are the table's texts.
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "0.000400", "0.020000", "-0.00031", "1.25"}));
  EXPECT_EQ(RowOf(*holdings, 1), List({"000001", "平安银行", "0.000000", "0.000400", "1.5e-9", "0.8125"}));
  EXPECT_EQ(RowOf(*holdings, 2), List({"600519", "贵州茅台", "", "", "", ""})) << "not in the table";
}

TEST_F(RiskView, ASmallDeviationStillHasAVariance) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  SetDeviation(1600000, 0.001);
  Open();
  Download()->WriteAndReceive(kShanghai, TwoKnown());
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "0.000001", "0.001000", "-0.00031", "1.25"}));
}

TEST_F(RiskView, ASecurityWithoutDeviationShowsZeros) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  Download()->WriteAndReceive(kShanghai, TwoKnown());
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "0.000000", "0.000000", "-0.00031", "1.25"}));
}

TEST_F(RiskView, ASecurityTheHostDoesNotKnowIsDelisted) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600001, 100, 1, 9}});
  Open();
  Download()->WriteAndReceive(kShanghai, RiskFile({{"600001", 0.5, 0.25}}));
  EXPECT_EQ(RowOf(*holdings, 0), List({"600001", "已退市", "0.000000", "0.000000", "0.25", "0.5"}));
}

TEST_F(RiskView, TheCaptionIsTheDesignsUntilAPortfolioIsShown) {
  Open();
  const TFrm_FXJL fresh;
  EXPECT_EQ(fresh.findChild<TitleStrip*>()->Caption().text(), QStringLiteral("组合名称"));
}

TEST_F(RiskView, FiguresThatAreNotThereAreZerosWhichTheNoticeNames) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  SetFigures(1, "ISFINISHED = 0");
  Open();
  EXPECT_EQ(RowOf(*portfolios, 0), List({"甲", "0.000000", "0.000000", "0.000000", "0.000000", "1"}));
  const QLabel& notice = bench.mainFrame->findChild<TitleStrip*>()->Notice();
  EXPECT_EQ(notice.text(), QStringLiteral("1 个组合的数据不完整"));
  EXPECT_TRUE(notice.toolTip().contains(QStringLiteral("甲：上证指数没有统计数据"))) << notice.toolTip().toStdString();
}

// Selection.

TEST_F(RiskView, AClickLoadsThatPortfolio) {
  OpenWithTwo();
  Click(*portfolios, kBeta, 1);
  EXPECT_EQ(Title(), QStringLiteral("稳健"));
  EXPECT_EQ(portfolios->Row(), 1);
  ASSERT_EQ(holdings->RowCount(), 1);
  EXPECT_EQ(holdings->Cells(kSecurityBeta, 0), QStringLiteral("1.25"));
}

TEST_F(RiskView, APortfolioWithoutHoldingsEmptiesTheSecurities) {
  bench.AddPortfolio(1, QStringLiteral("空"), {});
  bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  Open();
  EXPECT_EQ(holdings->RowCount(), 3);
  Click(*portfolios, kName, 1);
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_EQ(Title(), QStringLiteral("空"));
}

TEST_F(RiskView, InitialisationGoesBackToTheFirstPortfolio) {
  OpenWithTwo();
  Click(*portfolios, kName, 1);
  SetFigures(2, "BETA = 0.5");
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(portfolios->Row(), 0);
  EXPECT_EQ(Title(), QStringLiteral("进取"));
  EXPECT_EQ(portfolios->Cells(kBeta, 0), QStringLiteral("0.500000"));
  EXPECT_EQ(holdings->RowCount(), 3);
}

// The index-risk table.

TEST_F(RiskView, TheFiguresAppearWhenTheTableArrivesAndTheSelectionStays) {
  bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 200, 1, 9.5}});
  bench.AddPortfolio(2, QStringLiteral("进取"), ThreeHoldings());
  SetDeviation(1600000, 0.02);
  Open();
  EXPECT_EQ(Download()->Pending(), std::vector<QString>{kShanghai});
  Click(*portfolios, kName, 1);
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "", "", "", ""}));
  Download()->WriteAndReceive(kShanghai, TwoKnown());
  EXPECT_EQ(portfolios->Row(), 1);
  EXPECT_EQ(Title(), QStringLiteral("稳健"));
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "0.000400", "0.020000", "-0.00031", "1.25"}));
}

TEST_F(RiskView, TheViewIsNotSettledBeforeTheTableHasCome) {
  OpenWithTwo();
  bench.DeliverPrices(PricesOfThree());
  QTest::qWait(1200);  // the recalculation
  EXPECT_TRUE(bench.mainFrame->IsSettled());
  g_AllStockData->Set_SZZS();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_FALSE(bench.mainFrame->IsSettled());
  Download()->WriteAndReceive(kShenzhen, TwoKnown());
  EXPECT_TRUE(bench.mainFrame->IsSettled());
}

TEST_F(RiskView, TheIndexChosenElsewhereStaysCurrent) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  bench.OpenMainFrame();
  g_AllStockData->Set_SZZS();
  ShowView();
  EXPECT_EQ(Download()->Requests(), std::vector<QString>{kShenzhen});
  Download()->WriteAndReceive(kShenzhen, RiskFile({{"600000", 2.5, 0.5}}));
  EXPECT_EQ(holdings->Cells(kSecurityBeta, 0), QStringLiteral("2.5"));
}

TEST_F(RiskView, AFailedDownloadIsAskedForAgainWithTheNextShow) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Download()->Requests().size(), 1U) << "the file is on its way";
  Download()->Fail(kShanghai, TDSBAsynDownFileRole::kNotFound);
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "", "", "", ""}));
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Download()->Requests().size(), 2U);
  Download()->WriteAndReceive(kShanghai, TwoKnown());
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(Download()->Requests().size(), 2U);
  EXPECT_EQ(holdings->Cells(kSecurityBeta, 0), QStringLiteral("1.25"));
}

TEST_F(RiskView, DeviationsAreReadAgainAfterARecalculation) {
  OpenWithTwo();
  bench.database.Service().Execute(
      QStringLiteral("update alg_stockstatistic set sylbzc = 0.03 where secucode = 1600000"));
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(holdings->Cells(kSecurityDeviation, 0), QStringLiteral("0.020000"));
  ReCalc();
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(holdings->Cells(kSecurityDeviation, 0), QStringLiteral("0.030000"));
  EXPECT_EQ(holdings->Cells(kSecurityVariance, 0), QStringLiteral("0.000900"));
}

// A file that comes empties the list of deviations.
TEST_F(RiskView, ATableThatArrivesLaterLeavesTheDeviations) {
  OpenWithTwo();
  g_AllStockData->Set_SZZS();
  Download()->WriteAndReceive(kShenzhen, TwoKnown());
  EXPECT_EQ(holdings->Cells(kSecurityDeviation, 0), QStringLiteral("0.020000"));
}

// Failures.

TEST_F(RiskView, AFailingStatementOfAClickIsLoggedAndTheViewStaysUsable) {
  OpenWithTwo();
  UserDataServices* const database = FDBServer;
  FDBServer = &bench.host.fakeUserData;
  Click(*portfolios, kName, 1);
  ASSERT_FALSE(bench.host.debug.Lines().empty());
  EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(QStringLiteral("Holdwise.bpl->Fxjl->strngrd 发生错误!")));
  EXPECT_EQ(holdings->RowCount(), 3);
  g_AllStockData->Set_SZZS();
  Download()->WriteAndReceive(kShenzhen, TwoKnown());
  EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(QStringLiteral("Holdwise.bpl->Fxjl->ReflashData 发生错误!")));
  FDBServer = database;
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->RowCount(), 1);
}

// Pointer feedback.

TEST_F(RiskView, AFigureThatDoesNotFitIsHintedWhole) {
  OpenWithTwo(800);
  g_AllStockData->Set_SZZS();
  Download()->WriteAndReceive(kShenzhen, RiskFile({{"600000", 1.25, -0.0006322400158553884}}));
  const auto moveTo = [&](int column) {
    QTest::mouseMove(holdings->viewport(), holdings->CellRect(column, 0).center());
  };
  moveTo(kSecurityAlpha);
  EXPECT_EQ(QToolTip::text(), QStringLiteral("-0.0006322400158553884"));
  moveTo(kSecurityBeta);
  QTest::qWait(400);
  EXPECT_FALSE(QToolTip::isVisible());
}

TEST_F(RiskView, FiguresAreDrawnWithSixDecimalsAndKeptWhole) {
  OpenWithTwo();
  portfolios->SetCells(kBeta, 0, QStringLiteral("1.0000004999"));
  struct Case {
    TStringGrid* grid;
    int column, row;
    const char *whole, *drawn;
  };
  const Case cases[] = {{holdings, kSecurityAlpha, 0, "-0.00031", "-0.000310"},
                        {holdings, kSecurityBeta, 0, "1.25", "1.250000"},
                        {holdings, kSecurityAlpha, 1, "1.5e-9", "0.000000"},
                        {holdings, kSecurityBeta, 1, "0.8125", "0.812500"},
                        {portfolios, kBeta, 0, "1.0000004999", "1.000000"}};
  for (const Case& one : cases) {
    const auto picture = [&] { return one.grid->viewport()->grab(one.grid->CellRect(one.column, one.row)).toImage(); };
    EXPECT_EQ(one.grid->Cells(one.column, one.row), QString::fromLatin1(one.whole));
    const QImage painted = picture();
    one.grid->SetColumnDecimals(one.column, TStringGrid::kWholeText);
    EXPECT_NE(picture(), painted) << one.whole;
    one.grid->SetCells(one.column, one.row, QString::fromLatin1(one.drawn));
    EXPECT_EQ(picture(), painted) << one.whole;
    one.grid->SetColumnDecimals(one.column, 6);
  }
}

// Layout.

TEST_F(RiskView, ColumnsFollowTheWidth) {
  OpenWithTwo();
  for (const int width : {900, 1024, 1920}) {
    bench.mainFrame->resize(width, 640);
    QTest::qWait(20);
    for (const HeaderStrip* strip : frame->findChildren<HeaderStrip*>()) {
      const bool isList = strip->Labels().size() == 5;
      const TStringGrid& grid = isList ? *portfolios : *holdings;
      const std::vector<int> widths = WidthsOf(isList ? PortfolioTable() : SecurityTable(), grid.ClientWidth());
      for (int column = 0; column < static_cast<int>(strip->Labels().size()); ++column) {
        EXPECT_EQ(grid.ColWidth(column), widths[static_cast<size_t>(column)]) << width << ' ' << column;
        const QLabel& label = *strip->Labels()[static_cast<size_t>(column)];
        EXPECT_FALSE(label.toolTip().startsWith(label.text() + QLatin1Char('\n'))) << "the title fits";
      }
    }
    EXPECT_TRUE(portfolios->isColumnHidden(kId));
  }
}

TEST_F(RiskView, TheListIsSixRowsHigh) {
  OpenWithTwo();
  EXPECT_EQ(portfolios->viewport()->height(), 6 * 26);
}

}  // namespace
}  // namespace holdwise::test
