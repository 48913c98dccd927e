// SPDX-License-Identifier: MIT
#include "holdwise/packet/table_limits.h"

#include <random>

#include "packet_test_support.h"

namespace holdwise {
namespace {

/// The columns of a statistics file.
ResultSet Statistics(int rows, bool isPacked) {
  ResultSet set;
  for (const char* name : {"SecuCode", "hqtype", "rowid", "hqdate", "islastday", "startdate", "enddate"}) {
    set.AddColumn(name, ColumnType::Integer);
  }
  for (const char* name : {"closeprice", "ggqjsyl", "pjsyl", "oldcloseprice", "sylbzc"}) {
    set.AddColumn(name, ColumnType::Real);
  }
  for (int row = 0; row < rows; ++row) set.AppendRow();
  if (isPacked) return set;
  std::mt19937_64 random(7);
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < 7; ++column) set.SetInteger(row, column, static_cast<std::int64_t>(random()));
    for (int column = 7; column < 12; ++column) set.SetReal(row, column, static_cast<double>(random()) / 3);
  }
  return set;
}

TEST(TableLimits, AFullTableOfItsKindPasses) {
  const ResultSet stock = Statistics(kMostSeriesRows, false);
  EXPECT_TRUE(DecodePacket(EncodePacket(stock, kStockSeriesLimits), kStockSeriesLimits) == stock);
  const ResultSet indices = Statistics(3 * kMostSeriesRows, false);
  EXPECT_TRUE(DecodePacket(EncodePacket(indices, kIndexSeriesLimits), kIndexSeriesLimits) == indices);
  EXPECT_EQ(CategoryOf([&] { (void)EncodePacket(indices, kStockSeriesLimits); }), ErrorCategory::Refused);
}

TEST(TableLimits, LongTextsOfEverySecurityPass) {
  ResultSet securities;
  securities.AddColumn("code", ColumnType::Text);
  securities.AddColumn("name", ColumnType::Text);
  const std::string name(1000, 'n');
  for (int row = 0; row < kMostSecurities; ++row) {
    securities.SetText(securities.AppendRow(), 0, "600000");
    securities.SetText(row, 1, name);
  }
  EXPECT_EQ(DecodePacket(EncodePacket(securities, kSecuritiesLimits), kSecuritiesLimits).RowCount(), kMostSecurities);
}

TEST(TableLimits, ASmallFileOfAMillionRowsIsRefused) {
  const QByteArray bytes = EncodePacket(Statistics(1'000'000, true));
  EXPECT_LT(bytes.size(), 20'000);
  for (const PacketLimits& limits : {kStockSeriesLimits, kIndexSeriesLimits, kInterestRateLimits, kSecuritiesLimits,
                                     kTradingDatesLimits, kGroupsLimits}) {
    EXPECT_EQ(CategoryOf([&] { (void)DecodePacket(bytes, limits); }), ErrorCategory::Refused);
  }
  EXPECT_EQ(DecodePacket(bytes).RowCount(), 1'000'000) << "any packet may be as large";
}

TEST(TableLimits, OneRowTooManyIsNamed) {
  constexpr PacketLimits kLimits = LimitsOf({.rows = 10});
  EXPECT_EQ(DecodePacket(EncodePacket(Statistics(10, true)), kLimits).RowCount(), 10);
  std::string text;
  EXPECT_EQ(CategoryOf([&] { (void)DecodePacket(EncodePacket(Statistics(11, true)), kLimits); }, &text),
            ErrorCategory::Refused);
  EXPECT_NE(text.find("行数为 11，最多 10"), std::string::npos) << text;
}

}  // namespace
}  // namespace holdwise
