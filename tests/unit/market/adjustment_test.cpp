// SPDX-License-Identifier: MIT
#include <cmath>

#include "holdwise/market/bar_reader.h"
#include "holdwise/packet/error.h"
#include "market_files.h"

namespace holdwise {
namespace {

using test::MarketFiles;

BarFile ReadText(const QByteArray& csv, const BarRules& rules = {}) {
  const MarketFiles files;
  files.Write(QStringLiteral("a.csv"), csv);
  return ReadBars(files.Path(QStringLiteral("a.csv")), rules);
}

void ExpectCloses(const BarFile& file, const std::vector<double>& closes, double tolerance = 1e-12) {
  ASSERT_EQ(file.bars.size(), closes.size());
  for (std::size_t i = 0; i < closes.size(); ++i) EXPECT_NEAR(file.bars[i].close, closes[i], tolerance) << i;
}

BarRules RulesOf(int codeNumber, int listDate = 20000101) {
  BarRules rules;
  rules.codeNumber = codeNumber;
  rules.listDate = listDate;
  return rules;
}

// Three days as traded; 1.00 goes off on the third, of a close of 10: by hand, 10 and 9.8 before it are 0.9 times as
// much afterwards.
TEST(AsTraded, APreviousCloseAdjustsTheDaysBefore) {
  const BarFile file = ReadText("date,close,pre_close\n2024-01-02,9.8,\n2024-01-03,10,9.8\n2024-01-04,9.9,9\n");
  EXPECT_EQ(file.adjustment, Adjustment::PreviousClose);
  ExpectCloses(file, {8.82, 9, 9.9});
  EXPECT_EQ(file.bars[1].close, 9) << "the exchange's reference itself";
  EXPECT_NEAR(file.bars[2].close / file.bars[1].close - 1, 9.9 / 9 - 1, 1e-15);
  EXPECT_TRUE(file.warnings.empty());
  // Newest first, another heading, and a first day of which nothing is known.
  ExpectCloses(ReadText("日期,收盘,前收盘\n2024-01-04,9.9,9\n2024-01-03,10,9.8\n2024-01-02,9.8,0\n"), {8.82, 9, 9.9});
  // Nothing went off: the digits stay.
  const BarFile same = ReadText("date,close,preclose\n2024-01-02,9.87,9\n2024-01-03,10.03,9.87\n");
  EXPECT_EQ(same.bars[0].close, 9.87);
  EXPECT_EQ(same.bars[1].close, 10.03);
}

TEST(AsTraded, PreviousClosesOfRoundedPricesDoNotAdjust) {
  QByteArray csv = "date,close,pre_close\n";
  for (int day = 2; day <= 12; ++day) {
    csv += "2024-01-" + QByteArray::number(day).rightJustified(2, '0') + ",10.00,10.01\n";
  }
  const BarFile file = ReadText(csv);
  EXPECT_EQ(file.adjustment, Adjustment::AsTheyStand);
  for (const Bar& bar : file.bars) EXPECT_EQ(bar.close, 10);
  EXPECT_TRUE(file.warnings.empty()) << "rounding";
}

// Closes adjusted for 1.00 that went off on the ninth, beside the previous closes as traded: in halves before it.
TEST(AsTraded, AdjustedClosesBesidePreviousClosesAsTradedStayAndAreNamed) {
  const BarFile file = ReadText(
      "date,close,pre_close\n2024-01-08,5,10\n2024-01-09,5.1,10\n2024-01-10,5,10.2\n2024-01-11,5.2,5\n"
      "2024-01-12,5.2,5.2\n2024-01-15,5.3,5.2\n",
      RulesOf(1600519));
  EXPECT_EQ(file.adjustment, Adjustment::AsTheyStand);
  ExpectCloses(file, {5, 5.1, 5, 5.2, 5.2, 5.3});
  ASSERT_EQ(file.warnings.size(), 1U);
  EXPECT_EQ(file.warnings[0].reason.toStdString(),
            "有 2 日昨收与上一收盘不符（2024-01-09 起，相差 100.00%），收盘价像是复权的而昨收不是，没有按昨收复权");
  // Not on adjacent days, since some previous closes are missing, but upward as no dividend is.
  const BarFile gaps = ReadText(
      "date,close,pre_close\n2024-01-08,5,10\n2024-01-09,5,10\n2024-01-10,5,\n2024-01-11,5,10\n2024-01-12,5,\n"
      "2024-01-15,5,10\n2024-01-16,5,\n",
      RulesOf(1600519));
  EXPECT_EQ(gaps.adjustment, Adjustment::AsTheyStand);
  EXPECT_EQ(gaps.warnings.size(), 1U);
  const BarFile once =
      ReadText("date,close,pre_close\n2024-01-08,5,5\n2024-01-09,5,5.1\n2024-01-10,5,5\n", RulesOf(1600519));
  EXPECT_EQ(once.adjustment, Adjustment::PreviousClose);
  ASSERT_EQ(once.warnings.size(), 1U);
  EXPECT_EQ(once.warnings[0].reason.toStdString(), "2024-01-09 昨收高于上一收盘 2.00%");
}

TEST(AsTraded, FactorsBesideTheCloses) {
  const BarFile own = ReadText("date,close,adj_factor\n2024-01-02,9.8,5\n2024-01-03,10,5\n2024-01-04,9.9,5.5\n");
  EXPECT_EQ(own.adjustment, Adjustment::OwnFactors);
  ExpectCloses(own, {9.8 * 5 / 5.5, 10 * 5 / 5.5, 9.9});
  const BarFile adjusted = ReadText("Date,Close,Adj Close\n2024-01-02,10,4.5\n2024-01-03,9.9,4.95\n");
  EXPECT_EQ(adjusted.adjustment, Adjustment::AdjustedCloses);
  ExpectCloses(adjusted, {9, 9.9});
  const BarFile price = ReadText("date,close,factor\n2024-01-02,45,4.5\n2024-01-03,49.5,5\n");
  EXPECT_EQ(price.adjustment, Adjustment::PriceFactors);
  ExpectCloses(price, {9, 9.9});
  const BarFile bad = ReadText("date,close,adj_factor\n2024-01-02,10,\n2024-01-03,10,0\n2024-01-04,10,1\n");
  ExpectCloses(bad, {10});
  ASSERT_EQ(bad.rejections.size(), 2U);
  EXPECT_EQ(bad.rejections[0].reason.toStdString(), "复权因子缺失");
  EXPECT_EQ(bad.rejections[1].reason.toStdString(), "复权因子不是正数“0”");
}

TEST(AsTraded, StepsOfAnotherFile) {
  // On the fourth and the tenth, the one on the twelfth is after the last bar.
  const FactorSteps steps = {{20240104, 0.9}, {20240110, 0.5}, {20240112, 0.1}};
  BarRules rules;
  rules.factors = &steps;
  const QByteArray csv = "date,close\n2024-01-03,10\n2024-01-04,9\n2024-01-09,8\n2024-01-10,4\n2024-01-11,5\n";
  const BarFile file = ReadText(csv, rules);
  EXPECT_EQ(file.adjustment, Adjustment::Factors);
  ExpectCloses(file, {10 * 0.9 * 0.5, 9 * 0.5, 8 * 0.5, 4, 5});
}

TEST(AsTraded, APriceFactorBesidePricesAsTradedIsRefused) {
  // 15.52 / 5 is no price in cents, nor is 15.37 / 5: these are prices as traded beside a cumulative factor.
  try {
    (void)ReadText("date,close,factor\n2024-01-02,15.52,5\n2024-01-03,15.37,5\n2024-01-04,15.11,5.2\n");
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Refused);
    EXPECT_NE(std::string(error.what()).find("请把列名改为 adj_factor"), std::string::npos) << error.what();
  }
  const BarFile file = ReadText("date,close,factor\n2024-01-02,15.52,1\n2024-01-03,15.37,1\n");
  EXPECT_EQ(file.adjustment, Adjustment::PriceFactors) << "a factor of one leaves them in cents";
  // 15.52 and 15.37 times 5.0123 in six digits.
  ExpectCloses(ReadText("date,close,factor\n2024-01-02,77.790896,5.0123\n2024-01-03,77.039051,5.0123\n"),
               {15.52, 15.37}, 1e-7);
}

TEST(AsTraded, BarsThatSayTheyAreNotAdjustedNeedAPreviousClose) {
  const BarFile bare = ReadText("date,close,adjustflag\n2024-01-02,10,3\n2024-01-03,10,3\n", RulesOf(1600519));
  ASSERT_EQ(bare.warnings.size(), 1U);
  EXPECT_EQ(bare.warnings[0].reason.toStdString(), "行情不复权（adjustflag 为 3），又没有昨收");
  EXPECT_TRUE(ReadText("date,close,preclose,adjustflag\n2024-01-02,10,,3\n2024-01-03,10,10,3\n").warnings.empty());
  EXPECT_TRUE(ReadText("date,close,adjustflag\n2024-01-02,10,2\n2024-01-03,10,2\n").warnings.empty());
}

TEST(AsTraded, WithoutAListDateTheFirstDaysHaveALimit) {
  const QByteArray csv = "date,close\n2024-01-02,20\n2024-01-03,10\n";
  EXPECT_EQ(ReadText(csv, RulesOf(1600519, 0)).warnings.size(), 1U);
  EXPECT_TRUE(ReadText(csv, RulesOf(1600519, 20240102)).warnings.empty());
}

TEST(AsTraded, ADayWithoutATradeInEveryWord) {
  for (const char* word : {"0", "0.0", "False", "false", "停牌"}) {
    const BarFile file =
        ReadText(QByteArray("date,close,tradestatus\n2024-01-02,10,1.0\n2024-01-03,10,") + word + "\n");
    EXPECT_EQ(file.bars.size(), 1U) << word;
    EXPECT_EQ(file.counts.suspendedDays, 1) << word;
  }
}

TEST(AsTraded, AnIndexIsNotAdjustedByItsPreviousClose) {
  BarRules rules;
  rules.isIndex = true;
  const BarFile file =
      ReadText("date,close,pre_close,adjustflag\n2024-01-02,3000,2990,3\n2024-01-04,3100,3050,3\n", rules);
  EXPECT_EQ(file.adjustment, Adjustment::AsTheyStand);
  ExpectCloses(file, {3000, 3100});
  EXPECT_TRUE(file.warnings.empty());
}

TEST(AsTraded, JumpsBeyondTheLimitOfTheBoardAreNamed) {
  struct Case {
    int codeNumber;
    const char* last;
    bool isNamed;
  };
  const Case cases[] = {{1600519, "11.00", false}, {1600519, "8.99", false},  {1600519, "11.10", true},
                        {1600519, "8.90", true},   {1300750, "12.00", false}, {1301001, "8.00", false},
                        {1302132, "12.00", false}, {1302132, "12.10", true},  {1688981, "7.90", true},
                        {1689009, "12.00", false}, {1689009, "7.90", true},   {399001, "20.00", false}};
  for (const Case& item : cases) {
    const BarFile file =
        ReadText(QByteArray("date,close\n2024-01-02,10\n2024-01-03,") + item.last + "\n", RulesOf(item.codeNumber));
    EXPECT_EQ(file.warnings.size(), item.isNamed ? 1U : 0U) << item.codeNumber << " " << item.last;
  }
  const BarFile file = ReadText("date,close\n2024-01-02,10\n2024-01-03,8.5\n", RulesOf(1600519));
  ASSERT_EQ(file.warnings.size(), 1U);
  EXPECT_EQ(file.warnings[0].reason.toStdString(), "2024-01-03 收盘变动 -15.00%，超过涨跌幅限制 10%");
}

TEST(AsTraded, SpecialTreatmentAndFirstDaysHaveOtherLimits) {
  const QByteArray csv = "date,close,isST\n2024-01-02,10,0\n2024-01-03,10.8,1\n";
  const BarFile special = ReadText(csv, RulesOf(1600519));
  ASSERT_EQ(special.warnings.size(), 1U);
  EXPECT_EQ(special.warnings[0].reason.toStdString(), "2024-01-03 收盘变动 8.00%，超过涨跌幅限制 5%");
  EXPECT_TRUE(ReadText(csv, RulesOf(1300750)).warnings.empty()) << "ChiNext keeps its limit";

  const QByteArray listed =
      "date,close\n2024-01-02,10\n2024-01-03,20\n2024-01-04,40\n2024-01-05,80\n2024-01-08,160\n2024-01-09,320\n";
  const BarFile first = ReadText(listed, RulesOf(1688981, 20240102));
  ASSERT_EQ(first.warnings.size(), 1U) << "the sixth day has a limit";
  EXPECT_TRUE(first.warnings[0].reason.startsWith(QStringLiteral("2024-01-09")))
      << first.warnings[0].reason.toStdString();
  EXPECT_EQ(ReadText(listed, RulesOf(1688981, 20230102)).warnings.size(), 5U);
}

TEST(AsTraded, AChangeThatContradictsTheClosesIsNamed) {
  // 0.30 went off on the third day: the exchange counts its change from 9.70.
  const BarFile file =
      ReadText("日期,收盘,涨跌额\n2024-01-02,9.8,0.1\n2024-01-03,10,0.2\n2024-01-04,9.9,0.2\n", RulesOf(1600519));
  EXPECT_EQ(file.adjustment, Adjustment::AsTheyStand);
  ExpectCloses(file, {9.8, 10, 9.9});
  ASSERT_EQ(file.warnings.size(), 1U);
  EXPECT_EQ(file.warnings[0].reason.toStdString(), "2024-01-04 涨跌额与收盘价不符，相差 -3.00%");
  EXPECT_TRUE(ReadText("日期,收盘,涨跌额\n2024-01-02,9.8,-\n2024-01-03,10,0.21\n", RulesOf(1600519)).warnings.empty())
      << "rounding";
}

TEST(AsTraded, APreviousCloseOverMissingDaysIsNamed) {
  const int dates[] = {20240102, 20240103, 20240104};
  BarRules rules = RulesOf(1600519);
  rules.tradingDates = dates;
  const BarFile file = ReadText("date,close,pre_close\n2024-01-02,10,\n2024-01-04,10.4,10.2\n", rules);
  ASSERT_EQ(file.warnings.size(), 1U);
  EXPECT_EQ(file.warnings[0].reason.toStdString(), "2024-01-04 之前缺 1 个交易日的行情，昨收高于上一收盘 2.00%");
  const BarFile fall = ReadText("date,close,pre_close\n2024-01-02,10,\n2024-01-04,9.5,9.6\n", rules);
  ASSERT_EQ(fall.warnings.size(), 1U);
  EXPECT_EQ(fall.warnings[0].reason.toStdString(), "2024-01-04 之前缺 1 个交易日的行情，昨收低于上一收盘 4.00%");
  // A line that says there was no trade is no gap: what is lower then is a dividend.
  EXPECT_TRUE(
      ReadText("date,close,pre_close\n2024-01-02,10,\n2024-01-03,,\n2024-01-04,9.5,9.6\n", rules).warnings.empty());
}

// 0.9 on the fourth by its row; what lies before the first row is not known.
TEST(AsTraded, FactorsThatBeginAfterTheBarsAreNamed) {
  const FactorSteps steps = {{20240104, 0.9}};
  BarRules rules = RulesOf(1600519);
  rules.factors = &steps;
  rules.factorsFrom = 20240103;
  const QByteArray csv = "date,close\n2024-01-02,10\n2024-01-03,10\n2024-01-04,9\n";
  const BarFile file = ReadText(csv, rules);
  EXPECT_EQ(file.adjustment, Adjustment::LaterFactors);
  ExpectCloses(file, {9, 9, 9});
  ASSERT_EQ(file.warnings.size(), 1U);
  EXPECT_EQ(file.warnings[0].reason.toStdString(),
            "复权因子从 2024-01-03 开始，晚于第一根日线 2024-01-02，此前的除权没有复权");
  rules.factorsFrom = 20240102;
  EXPECT_EQ(ReadText(csv, rules).adjustment, Adjustment::Factors);
  EXPECT_TRUE(ReadText(csv, rules).warnings.empty());
}

}  // namespace
}  // namespace holdwise
