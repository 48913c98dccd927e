// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QLabel>
#include <functional>
#include <utility>

#include "common/series/all_stock_data.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "holdwise/packet/packet_file.h"
#include "injecting_user_data.h"
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
  [[nodiscard]] std::shared_ptr<ScriptedDownFile> Download() const {
    return bench.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"));
  }
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

/// With a thousand portfolios each selection would take as long as all of them.
TEST_F(EvaluationView, ASelectionWorksOutNothingThatTheListShowsAlready) {
  OpenWithTwo();
  const QString mark = QStringLiteral("mark");
  const auto isWorkedOutBy = [&](const std::function<void()>& change) {
    portfolios->SetCells(kReturn, 1, mark);
    change();
    Click(*portfolios, kName, 1 - portfolios->Row());
    return portfolios->Cells(kReturn, 1) == QStringLiteral("5.26");
  };
  EXPECT_FALSE(isWorkedOutBy([] {}));
  EXPECT_EQ(portfolios->Cells(kReturn, 1), mark);
  EXPECT_TRUE(isWorkedOutBy([this] { bench.DeliverPrices(PricesOfThree()); }));
  EXPECT_TRUE(isWorkedOutBy([] { g_UserValue->ReGetUserValue_Sum(); }));
  EXPECT_TRUE(isWorkedOutBy([this] { SendFrameMessage(*frame, FrameMessage::Init); }));
  EXPECT_FALSE(isWorkedOutBy([] {}));
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

TEST_F(EvaluationView, WithoutARateInTheListTheHoldingsSayZero) {
  OpenWithTwo();
  portfolios->SetCells(kRiskFree, 0, QString());
  Click(*portfolios, kName, 1);
  EXPECT_EQ(holdings->Cells(kSecurityRiskFree, 0), QStringLiteral("0"));
  EXPECT_EQ(holdings->Cells(kSecurityExcess, 0), QStringLiteral("5.26")) << "0.5 / 9.5 - 0";
}

TEST_F(EvaluationView, AShortCodeIsFilledWithZeros) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 0.5, 10}, {1600519, 100, 0.5, 10}});
  Open();
  Execute("update alg_comdetail set SECUCODE = 1 where ID = 1");
  Execute("update alg_comdetail set SECUCODE = 12 where ID = 2");
  SendFrameMessage(*frame, FrameMessage::Init);
  ASSERT_EQ(holdings->RowCount(), 2);
  EXPECT_EQ(RowOf(*holdings, 0).mid(0, 2), List({"000001", "平安银行"}));
  EXPECT_EQ(RowOf(*holdings, 1).mid(0, 2), List({"000012", "已退市"}));
}

TEST_F(EvaluationView, ATableCellThatIsNoNumberIsZero) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  Open();
  ResultSet table;
  for (const char* name : {"code", "beta", "alpha", "treynor", "sharpe"}) table.AddColumn(name, ColumnType::Text);
  table.AppendRow();
  int column = 0;
  for (const char* text : {"600000", "n/a", "", "", "1,5"}) table.SetText(0, column++, text);
  Download()->WriteAndReceive(kShanghai, EncodePacket(table));
  EXPECT_EQ(RowOf(*holdings, 0).mid(kSecuritySharpe, 3), List({"0.000000", "0.000000", "0.000000"}));
}

TEST_F(EvaluationView, ARiskFileThatDoesNotComeIsSaidUntilItComes) {
  AddTwo();
  SetRate(1.5);
  Open();
  EXPECT_EQ(Notice().text(), QString()) << "it is on its way";
  Download()->Fail(kShanghai, TDSBAsynDownFileRole::kNotFound);
  EXPECT_EQ(Notice().text(), QStringLiteral("没有取得上证指数的风险文件"));
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("成分股的风险系数没有显示")));
  EXPECT_EQ(holdings->Cells(kSecurityBeta, 0), QString());
  bench.ClickNode(2001);
  EXPECT_EQ(Notice().text(), QString()) << "that page shows no risk figure";
  bench.ClickNode(3001);
  Download()->WriteAndReceive(kShanghai, RiskFile());
  EXPECT_EQ(holdings->Cells(kSecurityBeta, 0), QStringLiteral("1.250000"));
  EXPECT_EQ(Notice().text(), QString());
}

TEST_F(EvaluationView, ALinkOpensTheSecurity) {
  OpenWithTwo();
  Click(*holdings, kSecurityName, 1);
  EXPECT_EQ(bench.host.codeNums.currentCode, QStringLiteral("1000001"));
  Click(*holdings, kSecurityReturn, 0);
  EXPECT_EQ(bench.host.codeNums.currentCode, QStringLiteral("1000001")) << "no other text is a link";
}

TEST_F(EvaluationView, SelectingTheSelectedRowAsksNothing) {
  OpenWithTwo();
  InjectingUserData counting(bench.database.Service());
  UserDataServices* const database = std::exchange(FDBServer, &counting);
  Click(*portfolios, kExcess, 0);
  EXPECT_EQ(counting.plan.Calls(), QStringList());
  Click(*portfolios, kExcess, 1);
  EXPECT_EQ(counting.plan.Calls(), QStringList{sql::HoldingsOf(QStringLiteral("1"))});
  FDBServer = database;
}

// It was saved after the costs had been read.
TEST_F(EvaluationView, APortfolioWhoseCostIsNotYetKnownReturnsThePlainZeroAndIsNamed) {
  OpenWithTwo();
  bench.AddPortfolio(3, QStringLiteral("新"), {{1600000, 100, 1, 8}});
  g_NowPrice->ReGetNowPrice();
  bench.DeliverPrices(PricesOfThree());
  bench.ClickNode(2001);
  bench.ClickNode(3001);
  EXPECT_EQ(RowOf(*portfolios, 0).mid(0, 4), List({"新", "0", "1.50", "-1.50"}));
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("新：没有买入成本")));
  ReCalc();
  Refresh();
  EXPECT_EQ(portfolios->Cells(kReturn, 0), QStringLiteral("25.00")) << "10.00 for 8.00";
}

TEST_F(EvaluationView, ACostThatCouldNotBeReadIsAskedForAgain) {
  OpenWithTwo();
  Execute("update alg_comdetail set BUYPRICE = 8 where MAINID = 1");
  InjectingUserData failing(bench.database.Service());
  UserDataServices* const database = std::exchange(FDBServer, &failing);
  failing.plan.FailCall(0);
  EXPECT_THROW(ReCalc(), Error);
  EXPECT_EQ(failing.plan.Calls().first(), sql::kPortfolioCosts);
  failing.plan.FailCall(0);
  EXPECT_THROW(Refresh(), Error) << "not figures from the costs of before";
  EXPECT_EQ(portfolios->Cells(kReturn, 1), QStringLiteral("5.26"));
  failing.plan.FailNothing();
  Refresh();
  EXPECT_EQ(portfolios->Cells(kReturn, 1), QStringLiteral("25.00"));
  FDBServer = database;
}

TEST_F(EvaluationView, TheOneYearRateCountsAndNoOther) {
  AddTwo();
  Execute("insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (1,'定期存款整存整取','二年',2.1)");
  Open();
  const auto showAgain = [&] {
    bench.ClickNode(2001);
    bench.ClickNode(3001);
  };
  EXPECT_EQ(portfolios->Cells(kRiskFree, 0), QStringLiteral("0.00"));
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("没有一年期定期存款利率")));
  Execute("insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM) values (2,'定期存款整存整取','一年')");
  showAgain();
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("没有一年期定期存款利率"))) << "a row without a rate";
  Execute("update alg_rmbinterestrate set INTEREST = 1.75 where ID = 2");
  showAgain();
  EXPECT_EQ(portfolios->Cells(kRiskFree, 0), QStringLiteral("1.75"));
  EXPECT_EQ(Notice().text(), QString());
}

TEST_F(EvaluationView, OnlyWhatThePageRestsOnIsMissed) {
  AddTwo();
  SetRate(1.5);
  Open();
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}, {QStringLiteral("600519"), {171000, 2}}});
  bench.ClickNode(2001);
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("平安银行(000001)没有上周收盘价")));
  bench.ClickNode(3001);
  EXPECT_TRUE(Notice().toolTip().contains(QStringLiteral("平安银行(000001)没有最新价")));
  EXPECT_FALSE(Notice().toolTip().contains(QStringLiteral("收盘价"))) << "no close of a week or month is on it";
  bench.DeliverPrices(PricesOfThree());
  bench.ClickNode(2001);
  bench.ClickNode(3001);
  EXPECT_EQ(Notice().text(), QString());
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
