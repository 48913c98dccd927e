// SPDX-License-Identifier: MIT
#include "common/helpers/day_range.h"
#include "common/series/shared_objects.h"
#include "common_fixture.h"

namespace holdwise {
namespace {

TEST(PreviousWeek, RunsFromMondayToSunday) {
  struct Case {
    QDate day, from, to;
  };
  // From a printed calendar.
  const std::vector<Case> cases = {
      {{2024, 5, 29}, {2024, 5, 20}, {2024, 5, 26}},   // Wednesday
      {{2024, 5, 27}, {2024, 5, 20}, {2024, 5, 26}},   // Monday
      {{2025, 1, 5}, {2024, 12, 23}, {2024, 12, 29}},  // Sunday: the week before ends a week ago
      {{2025, 1, 6}, {2024, 12, 30}, {2025, 1, 5}},    // Monday: the week before spans the year end
      {{2025, 1, 1}, {2024, 12, 23}, {2024, 12, 29}}, {{2024, 3, 1}, {2024, 2, 19}, {2024, 2, 25}},
  };
  for (const Case& entry : cases) {
    EXPECT_EQ(PreviousWeek(entry.day), TDayRange(entry.from, entry.to))
        << entry.day.toString(Qt::ISODate).toStdString();
  }
}

TEST(PreviousMonth, RunsFromFirstToLastDay) {
  struct Case {
    QDate day, from, to;
  };
  const std::vector<Case> cases = {
      {{2024, 3, 1}, {2024, 2, 1}, {2024, 2, 29}},  {{2023, 3, 1}, {2023, 2, 1}, {2023, 2, 28}},
      {{2024, 3, 31}, {2024, 2, 1}, {2024, 2, 29}}, {{2025, 1, 1}, {2024, 12, 1}, {2024, 12, 31}},
      {{2024, 5, 29}, {2024, 4, 1}, {2024, 4, 30}},
  };
  for (const Case& entry : cases) {
    EXPECT_EQ(PreviousMonth(entry.day), TDayRange(entry.from, entry.to))
        << entry.day.toString(Qt::ISODate).toStdString();
  }
}

const QString kWeekQuery = QStringLiteral(
    "select SECUCODE, CLOSEPRICE from ALG_STOCKSTATISTIC where HqType = 1 and  SECUCODE in (select distinct SECUCODE "
    "from alg_comdetail) and HqDate >= 20240520 and HqDate <= 20240526");
const QString kMonthQuery = QStringLiteral(
    "select SECUCODE, CLOSEPRICE from ALG_STOCKSTATISTIC where HqType = 2 and  SECUCODE in (select distinct SECUCODE "
    "from alg_comdetail) and HqDate >= 20240401 and HqDate <= 20240430");

class Series : public CommonTest {
 protected:
  Series() {
    SetHoldings({{"1", "1600000", "100"}, {"1", "1000001", "200"}, {"2", "1600000", "1000"}});
    SetCloses(kWeekQuery, {{"1600000", "9.75"}, {"1000001", "11"}});
    SetCloses(kMonthQuery, {{"1600000", "8.1"}});
    SetCosts({{"1", "3100.5"}, {"2", "9990"}});
    g_ClosePrice = std::make_unique<TClosePrice>();
    g_UserValue = std::make_unique<TUserValue>();
  }
  void SetCloses(const QString& query, const std::vector<std::vector<QString>>& rows) {
    host_.fakeUserData.SetResult(query,
                                 TableOf({{"SECUCODE", ColumnType::Integer}, {"CLOSEPRICE", ColumnType::Real}}, rows));
  }
  void SetCosts(const std::vector<std::vector<QString>>& rows) {
    host_.fakeUserData.SetResult(sql::kPortfolioCosts,
                                 TableOf({{"MAINID", ColumnType::Integer}, {"SUM_VALUE", ColumnType::Real}}, rows));
  }
};

TEST_F(Series, ClosesOfTheWeekAndMonthBefore) {
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList()), (QStringList{"1600000=9.75", "1000001=11"}));
  EXPECT_EQ(LinesOf(g_ClosePrice->GetMonthCloseStringList()), QStringList{"1600000=8.1"});
}

TEST_F(Series, SumsCountAMissingCloseAsNothing) {
  // 100 x 9.75 + 200 x 11 = 975 + 2200; 1000 x 9.75. Month: 100 x 8.1 and nothing for 000001; 1000 x 8.1.
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList_Sum()), (QStringList{"1=3175", "2=9750"}));
  EXPECT_EQ(LinesOf(g_ClosePrice->GetMonthCloseStringList_Sum()), (QStringList{"1=810", "2=8100"}));
}

TEST_F(Series, RowsWithoutACodeAreSkippedAndTextIsNoNumber) {
  host_.fakeUserData.SetResult(kWeekQuery,
                               TableOf({{"SECUCODE", ColumnType::Integer}, {"CLOSEPRICE", ColumnType::Text}},
                                       {{"", "5"}, {"1600000", "n/a"}, {"1000001", "11.20"}}));
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList()), (QStringList{"1600000=0", "1000001=11.2"}));
  SetCloses(kWeekQuery, {{"1600000", ""}});
  g_ClosePrice->ReGetClosePrice();
  EXPECT_EQ(g_ClosePrice->GetWeekCloseStringList()->ValueOf(u"1600000"), QStringLiteral("0"));
}

TEST_F(Series, ClosesAreReadOnceUntilAnUpdateIsNeeded) {
  (void)g_ClosePrice->GetWeekCloseStringList();
  (void)g_ClosePrice->GetMonthCloseStringList();
  (void)g_ClosePrice->GetWeekCloseStringList_Sum();
  (void)g_ClosePrice->GetMonthCloseStringList_Sum();
  EXPECT_EQ(Queries(kWeekQuery).size(), 1U);
  g_ClosePrice->SetIsNeedUpdate(true);
  EXPECT_EQ(Queries(kWeekQuery).size(), 1U);  // waits for a reader
  (void)g_ClosePrice->GetMonthCloseStringList_Sum();
  (void)g_ClosePrice->GetMonthCloseStringList_Sum();
  EXPECT_EQ(Queries(kWeekQuery).size(), 2U);
  g_ClosePrice->SetIsGetClosePrice(false);
  EXPECT_EQ(Queries(kWeekQuery).size(), 2U);
  (void)g_ClosePrice->GetWeekCloseStringList();
  EXPECT_EQ(Queries(kWeekQuery).size(), 3U);
}

TEST_F(Series, NamesThatAreGoneKeepTheirCloses) {
  const auto before = g_ClosePrice->GetWeekCloseStringList_Sum();
  SetHoldings({{"2", "1600000", "1000"}});
  SetCloses(kWeekQuery, {{"1600000", "10"}});
  g_ClosePrice->SetIsNeedUpdate(true);
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList()), (QStringList{"1600000=10", "1000001=11"}));
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList_Sum()), (QStringList{"1=3175", "2=10000"}));
  EXPECT_EQ(before->ValueOf(u"2"), QStringLiteral("9750"));  // a snapshot stays
}

TEST_F(Series, EmptyPortfolioTablesGiveEmptyLists) {
  SetHoldings({});
  SetCloses(kWeekQuery, {});
  SetCosts({});
  EXPECT_EQ(g_ClosePrice->GetWeekCloseStringList()->Count(), 0);
  EXPECT_EQ(g_ClosePrice->GetWeekCloseStringList_Sum()->Count(), 0);
  EXPECT_EQ(g_UserValue->GetUserValuesStringList()->Count(), 0);
  EXPECT_EQ(g_UserValue->GetUserValuesPrvCloseValues()->Count(), 0);
}

TEST_F(Series, AHostWithoutADateIsAnErrorOfTheReader) {
  for (const char* text : {"", "29.05.2024", "2024-02-30"}) {
    host_.dataCenter.currentDateText = QString::fromLatin1(text);
    g_ClosePrice->SetIsNeedUpdate(true);
    EXPECT_THROW((void)g_ClosePrice->GetWeekCloseStringList(), Error) << text;
  }
}

TEST_F(Series, AFailingQueryKeepsTheOldClosesAndTheNextReaderTriesAgain) {
  (void)g_ClosePrice->GetWeekCloseStringList();
  SetCloses(kWeekQuery, {{"1600000", "1"}});
  g_ClosePrice->SetIsNeedUpdate(true);
  for (int reader = 0; reader < 2; ++reader) {
    host_.fakeUserData.FailNext(kMonthQuery, Error(ErrorCategory::Busy, "locked"));
    EXPECT_THROW((void)g_ClosePrice->GetWeekCloseStringList_Sum(), Error) << reader;
  }
  // The week that was read by halves has not been taken.
  SetCloses(kWeekQuery, {{"1000001", "12"}});
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList()), (QStringList{"1600000=9.75", "1000001=12"}));
  // 100 x 9.75 + 200 x 12; 1000 x 9.75.
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList_Sum()), (QStringList{"1=3375", "2=9750"}));
  EXPECT_EQ(Queries(kWeekQuery).size(), 4U);
}

TEST_F(Series, SumsThatCouldNotBeMadeAreMadeAtTheNextReading) {
  EXPECT_EQ(LinesOf(g_ClosePrice->GetMonthCloseStringList_Sum()), (QStringList{"1=810", "2=8100"}));
  SetCloses(kWeekQuery, {{"1600000", "1"}, {"1000001", "2"}});
  g_ClosePrice->SetIsNeedUpdate(true);
  host_.fakeUserData.FailNext(sql::kSavedHoldingsForCloses, Error(ErrorCategory::Busy, "locked"));
  EXPECT_THROW((void)g_ClosePrice->GetWeekCloseStringList_Sum(), Error);
  // 100 x 1 + 200 x 2; 1000 x 1.
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList_Sum()), (QStringList{"1=500", "2=1000"}));
  (void)g_ClosePrice->GetMonthCloseStringList_Sum();
  EXPECT_EQ(Queries(sql::kSavedHoldingsForCloses).size(), 3U);
}

TEST_F(Series, CostsAreTheDatabasesTexts) {
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesStringList()), (QStringList{"1=3100.5", "2=9990"}));
  (void)g_UserValue->GetUserValuesStringList();
  EXPECT_EQ(Queries(sql::kPortfolioCosts).size(), 1U);
}

TEST_F(Series, PreviousClosesAndValues) {
  EXPECT_EQ(LinesOf(g_UserValue->GetUserPrvCloseValues()), (QStringList{"600000=10.00", "000001=11.25"}));
  // 100 x 10 + 200 x 11.25; 1000 x 10
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesPrvCloseValues()), (QStringList{"1=3250", "2=10000"}));
  EXPECT_EQ(Queries(sql::kHoldingsForPreviousCloses).size(), 1U);
}

TEST_F(Series, PreviousCloseOfAnUnknownStockIsZero) {
  SetHoldings({{"1", "1999999", "100"}});
  EXPECT_EQ(LinesOf(g_UserValue->GetUserPrvCloseValues()), QStringList{"999999=0.00"});
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesPrvCloseValues()), QStringList{"1=0"});
}

TEST_F(Series, ValuesAreReadAgainAtOnceWhenAnUpdateIsNeeded) {
  (void)g_UserValue->GetUserPrvCloseValues();
  (void)g_UserValue->GetUserValuesStringList();
  host_.fakeUserData.ClearLog();
  g_UserValue->SetIsNeedUpdate(false);
  EXPECT_TRUE(host_.fakeUserData.Log().empty());
  g_UserValue->SetIsNeedUpdate(true);
  EXPECT_EQ(host_.fakeUserData.Log(), (std::vector<QString>{sql::kPortfolioCosts, sql::kHoldingsForPreviousCloses}));
}

TEST_F(Series, EachFlagReadsItsOwnLists) {
  g_UserValue->SetIsGetUserCloseValue(true);
  EXPECT_EQ(host_.fakeUserData.Log(), std::vector<QString>{sql::kHoldingsForPreviousCloses});
  g_UserValue->SetIsGetUserCloseValue(false);
  g_UserValue->SetIsGetUserValue_Sum(false);
  EXPECT_EQ(host_.fakeUserData.Log().size(), 1U);
  (void)g_UserValue->GetUserPrvCloseValues();
  (void)g_UserValue->GetUserValuesStringList();
  EXPECT_EQ(host_.fakeUserData.Log().size(), 3U);
}

TEST_F(Series, AReaderAfterAFailedReadingReadsAgain) {
  const auto failOnce = [this](const QString& statement) {
    host_.fakeUserData.FailNext(statement, Error(ErrorCategory::Busy, "locked"));
  };
  failOnce(sql::kPortfolioCosts);
  EXPECT_THROW((void)g_UserValue->GetUserValuesStringList(), Error);
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesStringList()), (QStringList{"1=3100.5", "2=9990"}));
  failOnce(sql::kHoldingsForPreviousCloses);
  EXPECT_THROW((void)g_UserValue->GetUserPrvCloseValues(), Error);
  EXPECT_EQ(LinesOf(g_UserValue->GetUserPrvCloseValues()), (QStringList{"600000=10.00", "000001=11.25"}));
  failOnce(kMonthQuery);
  EXPECT_THROW((void)g_ClosePrice->GetWeekCloseStringList(), Error);
  EXPECT_EQ(LinesOf(g_ClosePrice->GetWeekCloseStringList()), (QStringList{"1600000=9.75", "1000001=11"}));
  EXPECT_EQ(LinesOf(g_ClosePrice->GetMonthCloseStringList_Sum()), (QStringList{"1=810", "2=8100"}));
  // A first reading by an update is no other.
  g_UserValue = std::make_unique<TUserValue>();
  failOnce(sql::kPortfolioCosts);
  EXPECT_THROW(g_UserValue->SetIsNeedUpdate(true), Error);
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesPrvCloseValues()), (QStringList{"1=3250", "2=10000"}));
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesStringList()), (QStringList{"1=3100.5", "2=9990"}));
}

TEST_F(Series, AReaderAfterAFailedUpdateReadsAgain) {
  (void)g_UserValue->GetUserValuesStringList();
  (void)g_UserValue->GetUserPrvCloseValues();
  SetCosts({{"1", "7"}});
  AddStock("600000", 1, 10.23, 10.10);
  host_.fakeUserData.FailNext(sql::kPortfolioCosts, Error(ErrorCategory::Busy, "locked"));
  EXPECT_THROW(g_UserValue->SetIsNeedUpdate(true), Error);
  EXPECT_EQ(g_UserValue->GetUserValuesStringList()->ValueOf(u"1"), QStringLiteral("7"));
  EXPECT_EQ(g_UserValue->GetUserPrvCloseValues()->ValueOf(u"600000"), QStringLiteral("10.10"));
}

TEST_F(Series, HoldingsWithoutAPreviousCloseAreNamed) {
  SetHoldings({{"1", "1600000", "100"}, {"1", "1999999", "5"}, {"2", "1000001", "1"}, {"3", "1999999", "1"}});
  const TMissingCodes missing = g_UserValue->HoldingsWithoutPreviousClose();
  EXPECT_EQ(missing.size(), 2);
  EXPECT_EQ(missing.value("1"), QStringList{"999999"});
  EXPECT_EQ(missing.value("3"), QStringList{"999999"});
  AddStock("999999", 1, 1, 1);
  g_UserValue->SetIsNeedUpdate(true);
  EXPECT_TRUE(g_UserValue->HoldingsWithoutPreviousClose().isEmpty());
}

TEST_F(Series, PortfoliosThatAreGoneKeepTheirValues) {
  (void)g_UserValue->GetUserValuesStringList();
  (void)g_UserValue->GetUserPrvCloseValues();
  SetHoldings({{"2", "1600000", "1"}});
  SetCosts({{"2", "9"}});
  g_UserValue->SetIsNeedUpdate(true);
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesStringList()), (QStringList{"1=3100.5", "2=9"}));
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesPrvCloseValues()), (QStringList{"1=3250", "2=10"}));
  EXPECT_TRUE(g_UserValue->GetUserPrvCloseValues()->Has(u"000001"));
}

TEST_F(Series, RecalculationTwiceIsLikeOnce) {
  (void)g_ClosePrice->GetWeekCloseStringList();
  ReCalc();
  ReCalc();
  EXPECT_EQ(Queries(kWeekQuery).size(), 1U);
  EXPECT_EQ(LinesOf(g_UserValue->GetUserValuesStringList()), (QStringList{"1=3100.5", "2=9990"}));
  (void)g_ClosePrice->GetWeekCloseStringList();
  (void)g_ClosePrice->GetWeekCloseStringList();
  EXPECT_EQ(Queries(kWeekQuery).size(), 2U);
}

TEST_F(Series, RecalculationPassesOnAFailure) {
  host_.fakeUserData.FailNext(sql::kPortfolioCosts, Error(ErrorCategory::Database, "gone"));
  EXPECT_THROW(ReCalc(), Error);
}

TEST_F(Series, RecalculationWithoutAMainFrameDoesNothing) {
  g_ClosePrice.reset();
  g_UserValue.reset();
  ReCalc();
  EXPECT_TRUE(host_.fakeUserData.Log().empty());
}

TEST_F(Series, WithoutADatabaseReadersAreRefused) {
  FDBServer = nullptr;
  EXPECT_THROW((void)g_UserValue->GetUserValuesStringList(), Error);
}

}  // namespace
}  // namespace holdwise
