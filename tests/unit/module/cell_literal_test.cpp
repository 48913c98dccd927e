// SPDX-License-Identifier: MIT
#include "common/store/cell_literal.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "holdwise/packet/error.h"

namespace holdwise::sql {
namespace {

/// A table of one column and one row.
ResultSet OneCell(ColumnType type, const std::function<void(ResultSet&)>& fill) {
  ResultSet table;
  table.AddColumn("CLOSE", type);
  table.AppendRow();
  fill(table);
  return table;
}
ResultSet TextCell(const char* text) {
  return OneCell(ColumnType::Text, [&](ResultSet& table) { table.SetText(0, 0, std::string(text)); });
}
ResultSet RealCell(double value) {
  return OneCell(ColumnType::Real, [&](ResultSet& table) { table.SetReal(0, 0, value); });
}
ResultSet IntegerCell(std::int64_t value) {
  return OneCell(ColumnType::Integer, [&](ResultSet& table) { table.SetInteger(0, 0, value); });
}
// 2024-05-29 in milliseconds since 1970: python3 -c "import calendar; print(calendar.timegm((2024,5,29,0,0,0))*1000)"
ResultSet DateCell() {
  return OneCell(ColumnType::DateTime, [](ResultSet& table) { table.SetDateTime(0, 0, 1716940800000); });
}
ResultSet NullCell(ColumnType type) {
  return OneCell(type, [](ResultSet&) {});
}

/// What the call gives; the words of the error when the cell is refused.
template <typename Call>
std::string Outcome(Call call, const ResultSet& table) {
  try {
    auto literal = call(table, 0, 0);
    if constexpr (std::is_same_v<std::decay_t<decltype(literal)>, QString>)
      return literal.toStdString();
    else
      return literal;
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Refused);
    return error.what();
  }
}

const std::string kNoValue = "第1行的“CLOSE”列没有值";
std::string Bad(const std::string& value) {
  return "第1行的“CLOSE”列的值无效：“" + value + "”";
}

TEST(CellLiteral, Numbers) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(Outcome(NumberLiteral, IntegerCell(-17)), "-17");
  EXPECT_EQ(Outcome(NumberLiteral, RealCell(0.1)), "0.1");
  EXPECT_EQ(Outcome(NumberLiteral, TextCell("+1.50e2")), "+1.50e2");
  EXPECT_EQ(Outcome(NumberLiteral, TextCell("abc")), Bad("abc"));
  EXPECT_EQ(Outcome(NumberLiteral, TextCell("1); delete")), Bad("1); delete"));
  EXPECT_EQ(Outcome(NumberLiteral, TextCell("1\n")), Bad("1\\x0a"));
  EXPECT_EQ(Outcome(NumberLiteral, RealCell(kInfinite)), Bad("NaN/Inf"));
  EXPECT_EQ(Outcome(NumberLiteral, RealCell(kNotANumber)), Bad("NaN/Inf"));
  EXPECT_EQ(Outcome(NumberLiteral, DateCell()), Bad("2024-05-29"));
  EXPECT_EQ(Outcome(NumberLiteral, TextCell("")), Bad(""));
  EXPECT_EQ(Outcome(NumberLiteral, NullCell(ColumnType::Real)), kNoValue);
}

TEST(CellLiteral, NumbersThatMayBeMissing) {
  EXPECT_EQ(Outcome(NumberIfAny, NullCell(ColumnType::Real)), "");
  EXPECT_EQ(Outcome(NumberIfAny, NullCell(ColumnType::DateTime)), "");
  EXPECT_EQ(Outcome(NumberIfAny, TextCell("")), "");
  EXPECT_EQ(Outcome(NumberIfAny, TextCell(" ")), Bad(" "));
  EXPECT_EQ(Outcome(NumberIfAny, TextCell("7.25")), "7.25");
}

TEST(CellLiteral, WholeNumbers) {
  EXPECT_EQ(Outcome(IntegerLiteral, IntegerCell(std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
  EXPECT_EQ(Outcome(IntegerLiteral, RealCell(1600000)), "1600000");
  EXPECT_EQ(Outcome(IntegerLiteral, RealCell(0x1p62)), "4611686018427387904");
  EXPECT_EQ(Outcome(IntegerLiteral, RealCell(0.5)), Bad("0.5"));
  EXPECT_EQ(Outcome(IntegerLiteral, RealCell(1e300)), Bad("1e300"));
  EXPECT_EQ(Outcome(IntegerLiteral, TextCell("007")), "007");
  EXPECT_EQ(Outcome(IntegerLiteral, TextCell("1.0")), Bad("1.0"));
  EXPECT_EQ(Outcome(IntegerLiteral, DateCell()), Bad("2024-05-29"));
  EXPECT_EQ(Outcome(IntegerLiteral, NullCell(ColumnType::Integer)), kNoValue);
}

TEST(CellLiteral, Dates) {
  EXPECT_EQ(Outcome(DateTimeLiteral, DateCell()), "'2024-05-29'");
  EXPECT_EQ(Outcome(DateTimeLiteral, TextCell("2024-05-29")), Bad("2024-05-29"));
  EXPECT_EQ(Outcome(DateTimeLiteral, NullCell(ColumnType::DateTime)), kNoValue);
}

TEST(CellLiteral, TextsThatAStatementQuotes) {
  EXPECT_EQ(Outcome(QuotableText, TextCell("沪深 \"300\"")), "沪深 \"300\"");
  EXPECT_EQ(Outcome(QuotableText, TextCell("")), "");
  EXPECT_EQ(Outcome(QuotableText, NullCell(ColumnType::Text)), "");
  EXPECT_EQ(Outcome(QuotableText, TextCell("it's")), Bad("it's"));
  const ResultSet zero =
      OneCell(ColumnType::Text, [](ResultSet& table) { table.SetText(0, 0, std::string("a\0b", 3)); });
  EXPECT_EQ(Outcome(QuotableText, zero), Bad("a\\x00b"));
}

TEST(CellLiteral, TheRowIsCountedFromOne) {
  ResultSet table = IntegerCell(1);
  table.AppendRow();
  try {
    (void)NumberLiteral(table, 1, 0);
    ADD_FAILURE() << "not refused";
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "第2行的“CLOSE”列没有值");
  }
}

}  // namespace
}  // namespace holdwise::sql
