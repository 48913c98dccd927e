// SPDX-License-Identifier: MIT
#include "calc/calculation_driver.h"

#include <algorithm>

#include "calc/calculation_helpers.h"
#include "engine_fixture.h"

namespace holdwise::calc {
namespace {

const QString kIndexFile = QStringLiteral("QMTL\\TZZH\\Day250\\指数\\allzs.dat");

QString StockFile(const char* six) {
  return QStringLiteral("QMTL\\TZZH\\Day250\\股票\\") + QString::fromLatin1(six) + QStringLiteral(".dat");
}

TEST(CalculationDriver, FetchesOneFileAfterTheOther) {
  CalculationDriver driver;
  driver.Start({"1600000", "1000001", "1"}, 5);
  EXPECT_EQ(driver.TotalParts(), 8);
  for (const QString& name : {StockFile("600000"), StockFile("000001"), kIndexFile}) {
    EXPECT_EQ(driver.NextBaseFile(), name);
    EXPECT_TRUE(driver.TakeBaseEvent(name));
    EXPECT_FALSE(driver.TakeBaseEvent(name));
    driver.BaseFileHandled();
  }
  EXPECT_EQ(driver.NextBaseFile(), std::nullopt);
  EXPECT_EQ(driver.PartsComplete(), 3);
  EXPECT_THROW((void)driver.CurrentCode(), Error);
}

TEST(CalculationDriver, WithoutSecuritiesOnlyTheIndexFileIsFetched) {
  CalculationDriver driver;
  driver.Start({"1"}, 4);
  EXPECT_TRUE(driver.HasCodes());
  EXPECT_EQ(driver.TotalParts(), 7);
  EXPECT_EQ(driver.NextBaseFile(), kIndexFile);
  driver.Start({}, 0);
  EXPECT_FALSE(driver.HasCodes());
}

TEST(CalculationDriver, CalculatesOnceWhenAllStreamsAreDoneInAnyOrder) {
  std::vector<int> order = {0, 1, 2};
  do {
    CalculationDriver driver;
    driver.Start({"1"}, 1);
    ASSERT_TRUE(driver.NextBaseFile());
    driver.ExpectReference(Reference::InterestRate);
    driver.ExpectReference(Reference::EstimateValue);
    for (const int stream : order) {
      EXPECT_FALSE(driver.BeginCalculation());
      if (stream == 2) {
        EXPECT_TRUE(driver.TakeBaseEvent(kIndexFile));
        driver.BaseFileHandled();
        EXPECT_FALSE(driver.NextBaseFile());
      } else {
        const auto reference = static_cast<Reference>(stream);
        EXPECT_TRUE(driver.TakeReferenceEvent(reference));
        EXPECT_FALSE(driver.TakeReferenceEvent(reference));
        driver.ReferenceHandled(reference);
      }
    }
    EXPECT_TRUE(driver.BeginCalculation());
    EXPECT_FALSE(driver.BeginCalculation());
    EXPECT_EQ(driver.PartsComplete(), 3);
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST(CalculationDriver, TakesNothingItDoesNotWaitFor) {
  CalculationDriver driver;
  driver.Start({"1600000", "1"}, 1);
  EXPECT_FALSE(driver.TakeReferenceEvent(Reference::InterestRate));
  EXPECT_FALSE(driver.TakeBaseEvent(StockFile("600000")));
  ASSERT_TRUE(driver.NextBaseFile());
  EXPECT_FALSE(driver.TakeBaseEvent(kIndexFile));
  driver.ExpectReference(Reference::InterestRate);
  driver.Close();
  EXPECT_FALSE(driver.TakeBaseEvent(StockFile("600000")));
  EXPECT_FALSE(driver.TakeReferenceEvent(Reference::InterestRate));
  EXPECT_FALSE(driver.BeginCalculation());
}

TEST(CalculationDriver, TooManyPartsAreAnOverflow) {
  CalculationDriver driver;
  EXPECT_THROW(driver.Start({"1"}, INT32_MAX - 2), Error);
  driver.Start({"1"}, INT32_MAX - 3);
  EXPECT_EQ(driver.TotalParts(), INT32_MAX);
}

TEST(CalculationHelpers, ForwardDateCountsTodayWhenItIsATradingDay) {
  const std::vector<int> dates = {20240529, 20240528, 20240527, 20240524};
  EXPECT_EQ(GetForwardDate(dates, 20240529, 2), 20240527);
  EXPECT_EQ(GetForwardDate(dates, 20240530, 2), 20240528);
  EXPECT_EQ(GetForwardDate(dates, 20240530, 4), 20240524);
  EXPECT_THROW((void)GetForwardDate(dates, 20240529, 4), Error);
  EXPECT_THROW((void)GetForwardDate(dates, 20240530, 5), Error);
  EXPECT_THROW((void)GetForwardDate({}, 20240530, 1), Error);
}

TEST(CalculationHelpers, Codes) {
  EXPECT_EQ(GetCodeCNum(QStringLiteral("1600000")), QStringLiteral("600000"));
  EXPECT_EQ(GetCodeCNum(QStringLiteral("1000001")), QStringLiteral("000001"));
  EXPECT_EQ(GetCodeCNum(QStringLiteral("600000")), QStringLiteral("600000"));
  EXPECT_EQ(GetCodeCNum(QStringLiteral("1")), QString());
  EXPECT_THROW((void)GetCodeCNum(QString()), Error);
  // The digit is appended, not prepended.
  EXPECT_EQ(GetCodeNum(QStringLiteral("000001")), QStringLiteral("0000011"));
  EXPECT_EQ(GetCodeNum(QStringLiteral("600000")), QStringLiteral("600000"));
  EXPECT_EQ(GetCodeNum(QString()), QString());
}

TEST(CalculationHelpers, DatesAsTexts) {
  EXPECT_EQ(IntDateToStrDate(20090105), QStringLiteral("2009-1-5"));
  EXPECT_EQ(IntDateToStrDate(20991231), QStringLiteral("2099-12-31"));
  EXPECT_EQ(IntDateToStrDate(20991232), QStringLiteral("1900-01-01"));
  EXPECT_EQ(IntDateToStrDate(19000101), QStringLiteral("1900-1-1"));
  EXPECT_EQ(IntDateToStrDate(19000100), QStringLiteral("1900-01-01"));
}

using LatestDay = EngineTest;

TEST_F(LatestDay, IsAskedOfTheDatabase) {
  EXPECT_EQ(GetMaxHqDate(Database(), QString()), -1);
  for (const char* row : {"1600000,0,20240529", "1000001,0,20240530", "1600000,1,20240531"}) {
    Run(QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate) values (%1)")
            .arg(QString::fromLatin1(row)));
  }
  EXPECT_EQ(GetMaxHqDate(Database(), QString()), 20240530);
  EXPECT_EQ(GetMaxHqDate(Database(), QStringLiteral("1600000")), 20240529);
  EXPECT_THROW((void)GetMaxHqDate(Database(), QStringLiteral("1 or 1=1")), Error);
}

}  // namespace
}  // namespace holdwise::calc
