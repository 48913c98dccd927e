// SPDX-License-Identifier: MIT
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common_fixture.h"
#include "holdwise/packet/number_text.h"
#include "temp_database.h"

namespace holdwise {
namespace {

/// The shared objects on a real database.
class Store : public CommonTest {
 protected:
  Store() {
    host_.SetUserData(temporary_.Service());
    FDBServer = &temporary_.Service();
  }

  void AddPortfolio(int id, const QString& name, int saveFlag) {
    Run(sql::RestorePortfolio({QString::number(id), name, QStringLiteral("3111.02"), QStringLiteral("2024-05-29"),
                               QString::number(saveFlag)}));
  }
  void AddHolding(int portfolio, int code, int quantity, const char* buyPrice) {
    Run(sql::RestoreHolding({QString::number(++holdings_), QString::number(portfolio), QString::number(code),
                             QString::number(quantity), QStringLiteral("0.1"), QString::fromLatin1(buyPrice)}));
  }
  void AddClose(int code, int type, int day, const char* close) {
    Run(QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,closeprice) values (%1,%2,%3,%4)")
            .arg(QString::number(code), QString::number(type), QString::number(day), QString::fromLatin1(close)));
  }
  void Run(const QString& statement) { ASSERT_EQ(Database().Execute(statement), 1) << statement.toStdString(); }

  test::TempDatabase temporary_;

 private:
  int holdings_ = 0;
};

TEST_F(Store, PriceReplyOnRealHoldings) {
  AddPortfolio(1, QStringLiteral("saved"), 1);
  AddPortfolio(2, QStringLiteral("draft"), 0);
  AddHolding(1, 1600000, 100, "9.5");
  AddHolding(2, 1600000, 1000, "9.5");
  AddHolding(1, 1000001, 200, "11");
  g_NowPrice = std::make_unique<TNowPrice>();
  g_NowPrice->ReGetNowPrice();
  const auto bus = host_.DataDown(QStringLiteral("FDSBVexDownDataRoleNowPrice"));
  QStringList items = g_NowPrice->SubscriptionString().split(QLatin1Char(','));
  items.sort();
  EXPECT_EQ(items, (QStringList{"01600000", "02000001"}));
  bus->DeliverOnOtherThread(PriceReply({{QStringLiteral("600000"), {1023, 2}}, {QStringLiteral("000001"), {1150, 2}}}));
  // 100 x 10.23 + 200 x 11.50; 1000 x 10.23. A draft has a current value too.
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowValueGroupStringList()), (QStringList{"1=3323", "2=10230"}));
}

TEST_F(Store, OnlySavedPortfoliosHaveCloseSums) {
  AddPortfolio(1, QStringLiteral("saved"), 1);
  AddPortfolio(2, QStringLiteral("draft"), 0);
  AddHolding(1, 1600000, 100, "9.5");
  AddHolding(1, 1000001, 200, "11");
  AddHolding(2, 1600000, 10, "8.25");
  AddClose(1600000, 1, 20240524, "9.75");
  AddClose(1600000, 2, 20240430, "8.1");
  g_ClosePrice = std::make_unique<TClosePrice>();
  g_UserValue = std::make_unique<TUserValue>();
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList()), QStringList{"1600000=9.75"});
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList_Sum()), QStringList{"1=975"});
  EXPECT_EQ(LinesOf(g_ClosePrice->GetMonthCloseStringList_Sum()), QStringList{"1=810"});
  // 100 x 9.5 + 200 x 11; 10 x 8.25
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesStringList()), (QStringList{"1=3150", "2=82.5"}));
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesPrvCloseValues()), (QStringList{"1=3250", "2=100"}));
}

TEST_F(Store, ClosesComeFromTheirPeriodTypeAndHeldSecuritiesOnly) {
  AddPortfolio(1, QStringLiteral("saved"), 1);
  AddHolding(1, 1600000, 1, "9.5");
  host_.dataCenter.currentDateText = QStringLiteral("2024-03-01");  // week of 19 to 25 February, month of February
  AddClose(1600000, 1, 20240218, "1");
  AddClose(1600000, 1, 20240219, "2");
  AddClose(1600000, 1, 20240226, "3");
  AddClose(1600000, 0, 20240223, "4");
  AddClose(1600000, 2, 20240131, "5");
  AddClose(1600000, 2, 20240229, "6");
  AddClose(1600000, 2, 20240301, "7");
  AddClose(1000001, 1, 20240223, "8");
  g_ClosePrice = std::make_unique<TClosePrice>();
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList()), QStringList{"1600000=2"});
  EXPECT_EQ(LinesOf(g_ClosePrice->GetMonthCloseStringList()), QStringList{"1600000=6"});
}

TEST_F(Store, APortfolioWithoutHoldingsHasNoCost) {
  AddPortfolio(1, QStringLiteral("empty"), 1);
  AddPortfolio(2, QStringLiteral("full"), 1);
  AddHolding(2, 1600000, 10, "8.25");
  g_UserValue = std::make_unique<TUserValue>();
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesStringList()), QStringList{"2=82.5"});
}

TEST_F(Store, LatestDayIsEmptyWithoutDailyRows) {
  AddClose(1600000, 1, 20240524, "9.75");
  EXPECT_TRUE(Database().Scalar(sql::kLatestDay).isNull);
  AddClose(1600000, 0, 20240528, "9.75");
  AddClose(1600000, 0, 20240527, "9.75");
  EXPECT_EQ(Database().Scalar(sql::kLatestDay).ToText(), QStringLiteral("20240528"));
}

TEST_F(Store, DeletingTakesHeaderAndHoldingsOfTheNamedPortfolio) {
  AddPortfolio(1, QStringLiteral("稳健"), 1);
  AddPortfolio(2, QStringLiteral("成长"), 1);
  AddHolding(1, 1600000, 10, "8.25");
  AddHolding(1, 1000001, 10, "8.25");
  AddHolding(2, 1600000, 10, "8.25");
  Run(sql::DeleteRecord(QStringLiteral("不存在")));
  EXPECT_EQ(Database().Count(sql::kCountHoldings), 3);
  Run(sql::DeleteRecord(QStringLiteral("稳健")));
  EXPECT_EQ(Database().Count(sql::kCountPortfolios), 1);
  EXPECT_EQ(Database().Count(sql::kCountHoldings), 1);
  EXPECT_EQ(Database().Query(sql::HoldingsOf(QStringLiteral("2"))).RowCount(), 1);
}

TEST_F(Store, ANameWithAQuoteBreaksItsStatement) {
  const QString name = QStringLiteral("it's");
  EXPECT_THROW((void)Database().Count(sql::PortfolioByName(name)), Error);
  EXPECT_THROW(Database().Execute(sql::DeleteRecord(name)), Error);
}

TEST_F(Store, CountsAndListsOfSavedAndUnsavedPortfolios) {
  EXPECT_EQ(Database().Count(sql::kCountPortfolios), 0);
  AddPortfolio(1, QStringLiteral("a"), 1);
  AddPortfolio(2, QStringLiteral("b"), 0);
  AddPortfolio(3, QStringLiteral("c"), 1);
  EXPECT_EQ(Database().Count(sql::kCountPortfolios), 3);
  EXPECT_EQ(Database().Count(sql::kCountSavedPortfolios), 2);
  EXPECT_EQ(Database().Count(sql::kCountUnsavedPortfolios), 1);
  const ResultSet saved = Database().Query(sql::kSavedPortfolios);
  ASSERT_EQ(saved.RowCount(), 2);
  EXPECT_EQ(saved.TextAt(0, saved.Column("COMNAME")), QStringLiteral("c"));   // newest first
  EXPECT_EQ(Database().Count(sql::PortfolioByName(QStringLiteral("b"))), 2);  // its id comes first
  EXPECT_EQ(Database().Count(sql::PortfolioByName(QStringLiteral("d"))), -1);
  EXPECT_EQ(Database().Query(sql::kAllPortfolios).RowCount(), 3);
  EXPECT_EQ(Database().Query(sql::kAllHoldings).RowCount(), 0);
}

TEST_F(Store, GeneratorsMoveToAGivenValue) {
  Run(sql::SetPortfolioGenerator(41));
  Run(sql::SetHoldingGenerator(99));
  EXPECT_EQ(Database().Count(sql::kNextPortfolioId), 42);
  EXPECT_EQ(Database().Count(QStringLiteral("select gen_id(ALG_ROWID_DETAIL,1) from rdb$database")), 100);
}

}  // namespace
}  // namespace holdwise
