// SPDX-License-Identifier: MIT
#include "common/store/incomplete_portfolios.h"

#include "common/series/missing_prices.h"
#include "engine_fixture.h"
#include "mainframe/view_table.h"

namespace holdwise {
namespace {

class Incomplete : public EngineTest {
 protected:
  Incomplete() {
    Run("insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (1,'定期存款整存整取','一年',1.5)");
  }
  void AddPortfolio(int id, const char* calcDate, const char* lacking, int finished = 1, int saved = 1) {
    Run(QStringLiteral("insert into alg_commain (ID,COMNAME,ISFINISHED,SAVEFLAG,CALCDATE,LACKING) values "
                       "(%1,'p%1',%2,%3,%4,%5)")
            .arg(id)
            .arg(finished)
            .arg(saved)
            .arg(QLatin1String(calcDate), QLatin1String(lacking)));
  }
  void AddHolding(int portfolio, int code, const char* weight = "0.25") {
    Run(QStringLiteral(
            "insert into alg_comdetail (ID,MAINID,SecuCode,PZBL) values (gen_id(ALG_ROWID_DETAIL,1),%1,%2,%3)")
            .arg(portfolio)
            .arg(code)
            .arg(QLatin1String(weight)));
  }
  void AddRow(int code, int date, int end, int type = 0, int oldClose = 10) {
    Run(QStringLiteral("insert into alg_stockstatistic "
                       "(secucode,hqtype,hqdate,startdate,enddate,ggqjsyl,oldcloseprice) values "
                       "(%1,%2,%3,20240501,%4,0,%5)")
            .arg(code)
            .arg(type)
            .arg(date)
            .arg(end)
            .arg(oldClose));
  }
  /// The same, and a day before it: one alone has no deviation.
  void AddDays(int code, int date, int end) {
    AddRow(code, 20240524, end);
    AddRow(code, date, end);
  }
  static QStringList Lines() { return LinesOf(IncompletePortfolios(Database())); }
};

TEST_F(Incomplete, NothingIsSaidOfWhatIsComplete) {
  AddRow(1, 20240529, 20240529);
  AddPortfolio(1, "20240529", "0");
  AddHolding(1, 1999999);
  AddPortfolio(2, "null", "2", 0, 0);  // in the editor
  Plan().FailCall(1);                  // one statement is all that it costs
  EXPECT_TRUE(IncompletePortfolios(Database()).empty());
  EXPECT_FALSE(Plan().HasFailed());
  EXPECT_EQ(NoticeOf({}), QString());
  EXPECT_EQ(HintOf({}), QString());
}

TEST_F(Incomplete, NamesWhatIsMissingOfEachPortfolio) {
  AddDays(1, 20240529, 20240529);
  AddDays(1600000, 20240527, 20240529);  // suspended
  AddDays(1300750, 20240528, 20240528);
  AddRow(1300750, 20240529, 20240529, 1);
  AddDays(1000001, 20240529, 0);  // without a window
  AddPortfolio(1, "null", "1");
  AddHolding(1, 1600000);
  AddHolding(1, 1002594);
  AddHolding(1, 1300750);
  AddPortfolio(2, "20240528", "1");
  AddHolding(2, 1300750);
  AddHolding(2, 1000001);
  AddPortfolio(3, "20240528", "0");
  AddHolding(3, 1600000);
  AddPortfolio(4, "20240529", "0", 0);
  const auto portfolios = IncompletePortfolios(Database());
  EXPECT_EQ(LinesOf(portfolios), (QStringList{
                                     "p4：风险数据没有算完",
                                     "p3：风险数据没有算完",
                                     "p2：stock(300750)的统计数据只到 2024-05-28",
                                     "p1：002594没有统计数据，stock(300750)的统计数据只到 2024-05-28",
                                 }));
  ASSERT_EQ(portfolios.size(), 4U);
  EXPECT_EQ(portfolios[2].id, "2");
  EXPECT_EQ(portfolios[2].figureDate, 20240528);
  EXPECT_EQ(portfolios[3].figureDate, 0);
  EXPECT_EQ(NoticeOf(portfolios), "4 个组合的数据不完整");
  EXPECT_EQ(HintOf(portfolios), LinesOf(portfolios).join('\n'));
}

TEST_F(Incomplete, ThoseInTheEditorAreAListOfTheirOwn) {
  AddDays(1, 20240529, 20240529);
  AddPortfolio(1, "null", "2", 1, 0);
  AddHolding(1, 1600000);
  AddPortfolio(2, "20240529", "0", 1, 0);
  AddHolding(2, 1600000);
  AddPortfolio(3, "null", "2");
  EXPECT_EQ(LinesOf(IncompletePortfolios(Database(), PortfolioSet::Unsaved)),
            QStringList{"p1：stock(600000)没有统计数据"});
  EXPECT_EQ(Lines(), QStringList{"p3：风险数据没有算完"});
}

TEST_F(Incomplete, AnIndexThatIsOlderThanTheHoldingsIsNamed) {
  AddDays(1, 20240528, 20240528);
  AddDays(1600000, 20240529, 20240529);
  AddPortfolio(1, "20240528", "1");
  AddHolding(1, 1600000);
  EXPECT_EQ(Lines(), QStringList{"p1：上证指数的统计数据只到 2024-05-28"});
  Run("delete from alg_stockstatistic where secucode = 1");
  EXPECT_EQ(Lines(), QStringList{"p1：上证指数没有统计数据"});
}

TEST_F(Incomplete, StatisticsBeyondTheLatestTradingDateAreNamed) {
  host_.dataCenter.tradingDates = {20240528, 20240527};
  AddDays(1, 20240529, 20240529);
  AddDays(1600000, 20240529, 20240529);
  AddDays(1300750, 20240527, 20240527);
  AddPortfolio(1, "20240529", "1");
  AddHolding(1, 1600000);
  AddHolding(1, 1300750);
  EXPECT_EQ(Lines(), QStringList{"p1：上证指数的统计数据已到 2024-05-29，晚于行情日期，请重新启动终端，"
                                 "stock(300750)的统计数据只到 2024-05-27"});
  host_.dataCenter.tradingDates = {20240530};
  Run("delete from alg_comdetail where SecuCode = 1300750");
  EXPECT_EQ(Lines(), QStringList{"p1：上证指数的统计数据只到 2024-05-29，stock(600000)的统计数据只到 2024-05-29"});
}

TEST_F(Incomplete, RowsOfAnotherEditionAreNamed) {
  host_.dataCenter.dataEdition = QStringLiteral("b2");
  for (const int code : {1, 1600000, 1300750, 1000001}) AddDays(code, 20240529, 20240529);
  Run("insert into alg_statisticedition values (1, 'b2')");
  Run("insert into alg_statisticedition values (1600000, 'a1')");
  Run("insert into alg_statisticedition values (1300750, 'b2')");
  AddPortfolio(1, "20240529", "2");
  for (const int code : {1600000, 1300750, 1000001}) AddHolding(1, code);
  EXPECT_EQ(Lines(), QStringList{"p1：stock(600000)的统计数据没有随当前数据更新，"
                                 "stock(000001)的统计数据没有随当前数据更新"});
  host_.dataCenter.dataEdition = QString();
  EXPECT_EQ(Lines(), QStringList{"p1：风险数据没有算完"}) << "what is not known is not compared";
}

TEST_F(Incomplete, AHoldingWithoutAReturnYetIsNamed) {
  AddDays(1, 20240529, 20240529);
  AddDays(1600000, 20240529, 20240529);
  AddRow(1300750, 20240529, 20240529, 0, 0);  // its first trading day
  AddRow(1000001, 20240430, 20240529);        // has not traded inside the index's window
  AddPortfolio(1, "20240529", "2");
  AddHolding(1, 1600000);
  AddHolding(1, 1300750);
  AddHolding(1, 1000001);
  AddPortfolio(2, "20240529", "0", 0);
  AddHolding(2, 1600000);
  EXPECT_EQ(Lines(),
            (QStringList{"p2：风险数据没有算完", "p1：stock(300750)还没有日收益率，stock(000001)还没有日收益率"}));
  Run("delete from alg_stockstatistic where secucode = 1");
  EXPECT_EQ(Lines().last(), "p1：上证指数没有统计数据，stock(300750)还没有日收益率");
}

/// 1600000's only return is on the index's last day, 1300750's on the one before.
TEST_F(Incomplete, ASingleDayOfReturnsIsNamedWhereNothingElseCounts) {
  for (const int date : {20240527, 20240528, 20240529}) AddRow(1, date, 20240529);
  AddRow(1600000, 20240529, 20240529);
  AddRow(1300750, 20240528, 20240529);
  AddPortfolio(1, "null", "null", 0);
  AddHolding(1, 1600000);
  AddPortfolio(2, "null", "null", 0);
  AddHolding(2, 1600000);
  AddHolding(2, 1300750, "0");
  AddPortfolio(3, "null", "null", 0);
  AddHolding(3, 1600000);
  AddHolding(3, 1300750);
  const QString single = QStringLiteral("：只有一天的收益率，不能计算风险数据");
  EXPECT_EQ(Lines(), (QStringList{"p3：风险数据没有算完", "p2" + single, "p1" + single}));
  // An index of one day leaves one day to everybody.
  Run("delete from alg_stockstatistic where secucode = 1 and hqdate < 20240529");
  EXPECT_EQ(Lines(), (QStringList{"p3" + single, "p2" + single, "p1" + single}));
}

TEST_F(Incomplete, WeightsThatAreAllZeroAreNamed) {
  for (const int code : {1, 1600000, 1300750}) {
    for (const int date : {20240528, 20240529}) AddRow(code, date, 20240529);
  }
  AddPortfolio(1, "null", "null", 0);
  AddHolding(1, 1600000, "0");
  AddHolding(1, 1300750, "null");
  AddPortfolio(2, "null", "null", 0);
  EXPECT_EQ(Lines(), (QStringList{"p2：风险数据没有算完", "p1：各成分股的比例都是 0，不能计算风险数据"}));
}

TEST_F(Incomplete, AMissingDepositRateIsNamedOfPortfoliosWithHoldings) {
  for (const int code : {1, 1600000}) {
    for (const int date : {20240528, 20240529}) AddRow(code, date, 20240529);
  }
  AddPortfolio(1, "20240529", "1");
  AddHolding(1, 1600000);
  AddPortfolio(2, "20240529", "0", 0);
  for (const char* change : {"update alg_rmbinterestrate set INTEREST = null", "delete from alg_rmbinterestrate"}) {
    Run(change);
    EXPECT_EQ(Lines(), (QStringList{"p2：风险数据没有算完",
                                    "p1：没有一年期定期存款利率，Alpha、夏普和特雷诺指数按无风险利率 0 计算"}));
  }
}

TEST_F(Incomplete, AFailedReadIsAnError) {
  AddPortfolio(1, "null", "null");
  for (int call = 0; call < 6; ++call) {
    Plan().FailCall(call);
    EXPECT_THROW((void)IncompletePortfolios(Database()), Error) << call;
  }
}

TEST(IncompleteHint, StaysShort) {
  std::vector<IncompletePortfolio> portfolios(25, {"1", "p", 0, {7, {Lack::NoPrice, "600000", "", 0}}});
  const QStringList lines = HintOf(portfolios).split('\n');
  ASSERT_EQ(lines.size(), 21);
  EXPECT_EQ(lines.first(), QStringLiteral("p：") + QStringList(5, "600000没有最新价").join("，") + " 等 7 项");
  EXPECT_EQ(lines.last(), "……共 25 个组合");
  EXPECT_EQ(LinesOf(portfolios).size(), 25);
  EXPECT_TRUE(LinesOf({{"1", "p", 0, {{Lack::NoPreviousClose, "600000", "甲", 0}}}})
                  .first()
                  .endsWith("甲(600000)没有昨收盘价"));
}

/// What none of a page's figures rests on is not said there.
TEST_F(Incomplete, EachPageNamesWhatItsFiguresRestOn) {
  AddDays(1, 20240529, 20240529);
  AddDays(1600000, 20240529, 20240529);
  Run("update alg_stockstatistic set CLOSEPRICE = 3010 where SECUCODE = 1");
  Run("delete from alg_rmbinterestrate");
  for (const int id : {1, 2, 3}) {
    AddPortfolio(id, "20240529", id == 1 ? "1" : "0");
    AddHolding(id, 1600000);
  }
  Run("update alg_commain set EDITDATE = '2024-05-30', KNOWNTO = 20240530 where ID = 2");
  Run("update alg_commain set EDITDATE = '2024-05-29', ZSCLOSEPRICE = 3000, INDEXISCLOSE = 1 where ID = 3");
  const QStringList rate{"p1：没有一年期定期存款利率，Alpha、夏普和特雷诺指数按无风险利率 0 计算"};
  const QStringList later{"p2：买入日期 2024-05-30 晚于行情日期 2024-05-29，请换用较新的数据目录"};
  const QStringList index{
      "p3：2024-05-29 的上证指数收盘已更正为 3010.00，组合仍按买入时保存的 3000.00 计算；"
      "要采用更正后的收盘，请删除组合后重新导入"};
  for (const auto& [view, expected] : {std::pair(2001, later), std::pair(2002, rate + later), std::pair(2003, later),
                                       std::pair(3001, rate + later), std::pair(3002, index + later)}) {
    EXPECT_EQ(LinesOf(PortfoliosLackingStoredInputs(FindNode(view)->basis, Database())), expected) << view;
  }
  EXPECT_EQ(LinesOf(PortfoliosLackingStoredInputs(kWholeBasis, Database())), rate + index + later);
}

TEST_F(Incomplete, WhatAStoppedCalculationWouldHaveBroughtIsNotNamed) {
  std::vector<IncompletePortfolio> portfolios{
      {"1", "甲", 0, {{Lack::NoStatistics, "600000", {}, 0}, {Lack::NoWeekClose, "600000", {}, 0}}},
      {"2", "乙", 0, {{Lack::NoDepositRate, {}, {}, 0}, {Lack::NoPrice, "600001", {}, 0}}},
      {"3", "丙", 0, {{Lack::NoMonthClose, "600002", {}, 0}}}};
  EXPECT_EQ(UncalculatedLine(TakeUncalculated(portfolios)), QStringLiteral("甲、乙：没有计算"));
  EXPECT_EQ(LinesOf(portfolios), (QStringList{"乙：600001没有最新价", "丙：600002没有上月收盘价"}))
      << "one that is calculated lacks what it lacks";
  EXPECT_EQ(UncalculatedLine({}), QString());
  EXPECT_TRUE(UncalculatedLine(QStringList(21, "p")).endsWith(QStringLiteral("p 等 21 个组合：没有计算")));
}

}  // namespace
}  // namespace holdwise
