// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QLabel>

#include "common/series/all_stock_data.h"
#include "common/series/shared_objects.h"
#include "holdwise/packet/packet_file.h"
#include "portfolio_view_fixture.h"
#include "views/ztpj/evaluation_layout.h"
#include "views/ztpj/ztpj.h"

// Expected figures were worked out by hand; each stands beside its arithmetic.

namespace holdwise::test {
namespace {

using namespace evaluation;

const QString kShanghai = QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat");

/// code, beta, alpha, Treynor, Sharpe
QByteArray RiskFile() {
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  for (const char* name : {"beta", "alpha", "treynor", "sharpe"}) table.AddColumn(name, ColumnType::Real);
  const auto add = [&](const char* text, double beta, double alpha, double treynor, double sharpe) {
    const int row = table.AppendRow();
    table.SetText(row, code, text);
    int column = code;
    for (const double value : {beta, alpha, treynor, sharpe}) table.SetReal(row, ++column, value);
  };
  add("600000", 1.25, -0.00031, 0.00071259, 0.0412345678);
  add("000001", 0.8125, 1.5e-9, -0.00002, -1.5e-7);
  return EncodePacket(table);
}

class EvaluationView : public PortfolioViewTest {
 protected:
  EvaluationView() : PortfolioViewTest(3001) {}
  void OpenWithTwo() {
    AddTwo();
    SetRate(1.5);
    Execute("update alg_commain set SHARP = 0.0345678, TREYNOR = -0.0000126, BETA = 1.0000004 where ID = 2");
    Open();
    bench.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"))->WriteAndReceive(kShanghai, RiskFile());
    bench.DeliverPrices(PricesOfThree());
    Refresh();
  }
  void Execute(const char* statement) { bench.database.Service().Execute(QString::fromUtf8(statement)); }
  void SetRate(double percent) {
    Execute("delete from alg_rmbinterestrate");
    bench.database.Service().Execute(
        QStringLiteral(
            "insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (1,'定期存款整存整取','一年',%1)")
            .arg(percent));
    Execute("insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (2,'定期存款整存整取','二年',2.1)");
    Execute("insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (3,'活期存款','一年',0.35)");
  }
  void Refresh() { SendFrameMessage(*frame, FrameMessage::ReflashNowPrice); }
  [[nodiscard]] const QLabel& Notice() const { return bench.mainFrame->findChild<TitleStrip*>()->Notice(); }
};

TEST_F(EvaluationView, ShowsWhatIsStoredAndWhatFollowsFromThePrices) {
  OpenWithTwo();
  ASSERT_EQ(portfolios->RowCount(), 2);
  // (33100 - 33000) / 33000 = 0.303 %, (2000 - 1900) / 1900 = 5.263 %; minus 1.50 as printed.
  EXPECT_EQ(RowOf(*portfolios, 0), List({"进取", "0.30", "1.50", "-1.20", "0.034568", "-0.000013", "1.000000", "2"}));
  EXPECT_EQ(RowOf(*portfolios, 1), List({"稳健", "5.26", "1.50", "3.76", "0.000000", "0.000000", "0.000000", "1"}));
  EXPECT_EQ(Title(), QStringLiteral("进取"));
  ASSERT_EQ(holdings->RowCount(), 3);
  // 1 / 9 = 11.11 %, 12 / 12 = 0, -90 / 1800 = -5 %
  EXPECT_EQ(RowOf(*holdings, 0),
            List({"600000", "浦发银行", "11.11", "1.50", "9.61", "0.041235", "0.000713", "1.250000", "9"}));
  EXPECT_EQ(RowOf(*holdings, 1),
            List({"000001", "平安银行", "0.00", "1.50", "-1.50", "0.000000", "-0.000020", "0.812500", "12"}));
  EXPECT_EQ(RowOf(*holdings, 2), List({"600519", "贵州茅台", "-5.00", "1.50", "-6.50", "", "", "", "1800"}))
      << "not in the table";
}

TEST_F(EvaluationView, TheLiveColumnsAreEmptyBeforeThePrices) {
  AddTwo();
  SetRate(2.25);
  Open();
  EXPECT_EQ(RowOf(*portfolios, 0), List({"进取", "", "2.25", "", "0.000000", "0.000000", "0.000000", "2"}));
  EXPECT_EQ(RowOf(*holdings, 0), List({"600000", "浦发银行", "", "2.25", "", "", "", "", "9"}));
}

TEST_F(EvaluationView, ASelectionComputesItsLiveColumnsAtOnce) {
  OpenWithTwo();
  MessageSpy spy(*frame);
  Click(*portfolios, kExcess, 1);
  EXPECT_EQ(spy.Count(FrameMessage::ReflashNowPrice), 1);
  EXPECT_EQ(Title(), QStringLiteral("稳健"));
  ASSERT_EQ(holdings->RowCount(), 1);
  // 0.5 / 9.5 = 5.263 %
  EXPECT_EQ(RowOf(*holdings, 0),
            List({"600000", "浦发银行", "5.26", "1.50", "3.76", "0.041235", "0.000713", "1.250000", "9.5"}));
}

TEST_F(EvaluationView, AKeySelectsTheNextPortfolio) {
  OpenWithTwo();
  portfolios->setFocus();
  QTest::keyClick(portfolios, Qt::Key_Down);
  EXPECT_EQ(Title(), QStringLiteral("稳健"));
  EXPECT_EQ(holdings->RowCount(), 1);
}

TEST_F(EvaluationView, NewPricesChangeTheLiveColumnsAndAMissingOneLeavesItsRow) {
  OpenWithTwo();
  bench.DeliverPrices({{QStringLiteral("600000"), {1050, 2}}, {QStringLiteral("600519"), {171000, 2}}});
  Refresh();
  EXPECT_EQ(holdings->Cells(kSecurityReturn, 0), QStringLiteral("16.67")) << "1.5 / 9";
  EXPECT_EQ(holdings->Cells(kSecurityExcess, 0), QStringLiteral("15.17"));
  EXPECT_EQ(holdings->Cells(kSecurityReturn, 1), QStringLiteral("0.00")) << "no price: as before";
  EXPECT_EQ(holdings->Cells(kSecurityExcess, 1), QStringLiteral("-1.50"));
  EXPECT_EQ(portfolios->Cells(kReturn, 1), QStringLiteral("10.53")) << "200 / 1900";
}

TEST_F(EvaluationView, NothingPaidGivesThePlainZeroAndIsSaid) {
  bench.AddPortfolio(1, QStringLiteral("赠股"), {{1600000, 200, 1, 0}});
  SetRate(2.25);
  Open();
  bench.DeliverPrices(PricesOfThree());
  SendFrameMessage(*frame, FrameMessage::Init);
  EXPECT_EQ(portfolios->Cells(kReturn, 0), QStringLiteral("0"));
  EXPECT_EQ(portfolios->Cells(kExcess, 0), QStringLiteral("-2.25"));
  EXPECT_EQ(holdings->Cells(kSecurityReturn, 0), QStringLiteral("0"));
  EXPECT_EQ(holdings->Cells(kSecurityExcess, 0), QStringLiteral("-2.25"));
  bench.ClickNode(2001);
  bench.ClickNode(3001);
  EXPECT_EQ(Notice().text(), QStringLiteral("1 个组合的数据不完整"));
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("赠股：没有买入成本")));
}

TEST_F(EvaluationView, AMissingRateCountsNothingAndIsSaid) {
  AddTwo();
  Open();
  EXPECT_EQ(portfolios->Cells(kRiskFree, 0), QStringLiteral("0.00"));
  EXPECT_EQ(holdings->Cells(kSecurityRiskFree, 0), QStringLiteral("0.00"));
  EXPECT_EQ(Notice().text(), QStringLiteral("数据不完整"));
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("没有一年期定期存款利率")));
  SetRate(1.5);
  bench.ClickNode(2001);
  EXPECT_EQ(Notice().text(), QString()) << "that page shows no rate";
  bench.ClickNode(3001);
  EXPECT_EQ(Notice().text(), QString());
  EXPECT_EQ(portfolios->Cells(kRiskFree, 0), QStringLiteral("1.50"));
}

TEST_F(EvaluationView, WithoutPortfoliosNothingIsShownAndNothingMissed) {
  Open();
  EXPECT_TRUE(portfolios->IsEmpty());
  EXPECT_TRUE(holdings->IsEmpty());
  EXPECT_EQ(Title(), QString());
  EXPECT_EQ(Notice().text(), QString());
  Refresh();
  EXPECT_TRUE(holdings->IsEmpty());
}

TEST_F(EvaluationView, ASecurityTheHostDoesNotKnowIsDelisted) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600001, 100, 1, 9}});
  Open();
  EXPECT_EQ(holdings->Cells(kCode, 0), QStringLiteral("600001"));
  EXPECT_EQ(holdings->Cells(kSecurityName, 0), QStringLiteral("已退市"));
}

TEST_F(EvaluationView, TheTableThatArrivesFillsTheFiguresOfTheSelectedPortfolio) {
  AddTwo();
  Open();
  Click(*portfolios, kName, 1);
  bench.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"))->WriteAndReceive(kShanghai, RiskFile());
  EXPECT_EQ(portfolios->Row(), 1);
  EXPECT_EQ(holdings->Cells(kSecuritySharpe, 0), QStringLiteral("0.041235"));
}

TEST_F(EvaluationView, IsToldWhenPricesWereReadAgain) {
  OpenWithTwo();
  MessageSpy spy(*frame);
  QTest::qWait(3300);
  EXPECT_GE(spy.Count(FrameMessage::ReflashNowPrice), 1);
}

TEST_F(EvaluationView, TitlesStandOverBothGrids) {
  OpenWithTwo();
  EXPECT_EQ(TitlesOf(PortfolioTable()),
            List({"组合名称", "回报率(%)", "无风险利率(%)", "超额回报率(%)", "夏普指数", "特雷诺指数", "Beta系数"}));
  EXPECT_EQ(TitlesOf(HoldingTable()), List({"股票代码", "股票名称", "回报率(%)", "无风险利率(%)", "超额回报率(%)",
                                            "夏普指数", "特雷诺指数", "Beta系数"}));
  EXPECT_TRUE(portfolios->isColumnHidden(kId));
  EXPECT_TRUE(holdings->isColumnHidden(kBuyPrice));
}

TEST_F(EvaluationView, CellsTakeTheColoursOfTheMomentTheyAreDrawnIn) {
  OpenWithTwo();
  bench.host.theme.Switch();
  // Nobody has told the view.
  for (TStringGrid* grid : {portfolios, holdings}) {
    const QImage image = grid->viewport()->grab().toImage();
    EXPECT_EQ(image.pixelColor(grid->CellRect(0, 0).topLeft()), Color("Qm_GridRowSelectColor"));
    EXPECT_EQ(image.pixelColor(grid->CellRect(0, 1).topLeft()), Color("KTR_HighLightColor2"));
    const QRect cell = grid->CellRect(0, 1);
    int inked = 0;
    for (int x = cell.left(); x <= cell.right(); ++x) {
      for (int y = cell.top(); y <= cell.bottom(); ++y)
        inked += image.pixelColor(x, y) == Color("Grid_UnSelTxtColor") ? 1 : 0;
    }
    EXPECT_GT(inked, 0);
  }
}

}  // namespace
}  // namespace holdwise::test
