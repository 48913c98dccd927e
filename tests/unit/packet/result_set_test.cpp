// SPDX-License-Identifier: MIT
#include "holdwise/packet/result_set.h"

#include <gtest/gtest.h>

#include <cmath>

#include "packet_test_support.h"

namespace holdwise {
namespace {

/// One row: integer 7, real 2.5, text "x", datetime 2024-01-02 00:00:00.
ResultSet OneRow() {
  ResultSet set;
  set.AddColumn("i", ColumnType::Integer);
  set.AddColumn("r", ColumnType::Real);
  set.AddColumn("t", ColumnType::Text);
  set.AddColumn("d", ColumnType::DateTime);
  set.AppendRow();
  set.SetInteger(0, 0, 7);
  set.SetReal(0, 1, 2.5);
  set.SetText(0, 2, "x");
  set.SetDateTime(0, 3, 1704153600000);  // date -u -d 2024-01-02 +%s
  return set;
}

TEST(ResultSet, FindsColumnsWithoutRegardToAsciiCase) {
  ResultSet set;
  EXPECT_EQ(set.AddColumn("SecuCode", ColumnType::Integer), 0);
  EXPECT_EQ(set.AddColumn("名称", ColumnType::Text), 1);
  EXPECT_EQ(set.FindColumn("SECUCODE"), 0);
  EXPECT_EQ(set.Column("secucode"), 0);
  EXPECT_EQ(set.Column("名称"), 1);
  EXPECT_EQ(set.FindColumn("secu"), -1);
  EXPECT_EQ(set.ColumnName(0), "SecuCode");
  std::string text;
  EXPECT_EQ(CategoryOf([&] { (void)set.Column("close"); }, &text), ErrorCategory::NotFound);
  EXPECT_NE(text.find("close"), std::string::npos);
}

TEST(ResultSet, RefusesBadColumnNames) {
  ResultSet set = OneRow();
  EXPECT_EQ(CategoryOf([&] { set.AddColumn("", ColumnType::Text); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { set.AddColumn("I", ColumnType::Text); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { set.AddColumn("\xFF", ColumnType::Text); }), ErrorCategory::Refused);
  EXPECT_EQ(set.ColumnCount(), 4);
}

TEST(ResultSet, NewRowsAndColumnsHoldNull) {
  ResultSet set = OneRow();
  const int column = set.AddColumn("late", ColumnType::Real);
  EXPECT_TRUE(set.IsNull(0, column));
  EXPECT_EQ(set.Reals(column), std::vector<double>{0});
  EXPECT_EQ(set.AppendRow(), 1);
  for (int i = 0; i < set.ColumnCount(); ++i) {
    EXPECT_TRUE(set.IsNull(1, i));
    EXPECT_EQ(set.TextAt(1, i), QString());
    EXPECT_TRUE(set.ValueAt(1, i).isNull);
    EXPECT_EQ(set.ValueAt(1, i).ToText(), QString());
  }
  EXPECT_EQ(set.RowCount(), 2);
  EXPECT_FALSE(set.IsEmpty());
  EXPECT_TRUE(ResultSet().IsEmpty());
}

TEST(ResultSet, SetNullClearsTheStoredValue) {
  ResultSet set = OneRow();
  for (int column = 0; column < 4; ++column) set.SetNull(0, column);
  EXPECT_EQ(set.Integers(0).front(), 0);
  EXPECT_EQ(set.Reals(1).front(), 0);
  EXPECT_EQ(set.ValueAt(0, 2).text, "");
  EXPECT_EQ(set.Integers(3).front(), 0);
}

TEST(ResultSet, SettersWantTheColumnsType) {
  ResultSet set = OneRow();
  const ResultSet before = set;
  EXPECT_EQ(CategoryOf([&] { set.SetInteger(0, 1, 1); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { set.SetInteger(0, 3, 1); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { set.SetReal(0, 0, 1); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { set.SetText(0, 0, "1"); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { set.SetDateTime(0, 0, 1); }), ErrorCategory::Refused);
  for (const char* bad : {"\xFF", "\xC0\x80", "\xED\xA0\x80", "\xE4\xB8", "\xF4\x90\x80\x80"}) {
    EXPECT_EQ(CategoryOf([&] { set.SetText(0, 2, std::string_view(bad)); }), ErrorCategory::Refused);
  }
  EXPECT_EQ(CategoryOf([&] { set.SetText(0, 2, QString(QChar(0xD800))); }), ErrorCategory::Refused);
  EXPECT_TRUE(set == before);
}

TEST(ResultSet, IndicesOutsideAreRefused) {
  ResultSet set = OneRow();
  EXPECT_EQ(CategoryOf([&] { (void)set.IsNull(1, 0); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { (void)set.IsNull(-1, 0); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { (void)set.TextAt(0, 4); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { set.SetNull(0, -1); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { (void)set.ColumnName(4); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { (void)set.TypeOf(-1); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { (void)set.Integers(9); }), ErrorCategory::Refused);
}

TEST(ResultSet, IntegerReading) {
  ResultSet set = OneRow();
  EXPECT_EQ(set.IntegerAt(0, 0), 7);
  EXPECT_EQ(set.IntegerAt(0, 3), 1704153600000);
  std::string text;
  EXPECT_EQ(CategoryOf([&] { (void)set.IntegerAt(0, 1); }, &text), ErrorCategory::Refused);
  EXPECT_NE(text.find("“r”列第 1 行"), std::string::npos) << text;
  set.SetReal(0, 1, -3e9);
  EXPECT_EQ(set.IntegerAt(0, 1), -3'000'000'000);
  set.SetReal(0, 1, -0x1p63);
  EXPECT_EQ(set.IntegerAt(0, 1), INT64_MIN);
  for (const double bad : {0x1p63, 1e300, double{NAN}, HUGE_VAL, 0.5}) {
    set.SetReal(0, 1, bad);
    EXPECT_EQ(CategoryOf([&] { (void)set.IntegerAt(0, 1); }), ErrorCategory::Refused) << bad;
  }
  set.SetText(0, 2, "000123");
  EXPECT_EQ(set.IntegerAt(0, 2), 123);
  set.SetText(0, 2, "12a");
  EXPECT_EQ(CategoryOf([&] { (void)set.IntegerAt(0, 2); }), ErrorCategory::Refused);
  set.SetNull(0, 0);
  EXPECT_EQ(CategoryOf([&] { (void)set.IntegerAt(0, 0); }), ErrorCategory::Refused);
}

TEST(ResultSet, RealReading) {
  ResultSet set = OneRow();
  EXPECT_EQ(set.RealAt(0, 0), 7.0);
  EXPECT_EQ(set.RealAt(0, 1), 2.5);
  EXPECT_EQ(CategoryOf([&] { (void)set.RealAt(0, 2); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { (void)set.RealAt(0, 3); }), ErrorCategory::Refused);
  set.SetText(0, 2, "-1.5e3");
  EXPECT_EQ(set.RealAt(0, 2), -1500.0);
  set.SetNull(0, 1);
  EXPECT_EQ(CategoryOf([&] { (void)set.RealAt(0, 1); }), ErrorCategory::Refused);
}

TEST(ResultSet, TextReading) {
  ResultSet set = OneRow();
  EXPECT_EQ(set.TextAt(0, 0), QStringLiteral("7"));
  EXPECT_EQ(set.TextAt(0, 1), QStringLiteral("2.5"));
  EXPECT_EQ(set.TextAt(0, 2), QStringLiteral("x"));
  EXPECT_EQ(set.TextAt(0, 3), QStringLiteral("2024-01-02"));
  for (int column = 0; column < 4; ++column) EXPECT_EQ(set.ValueAt(0, column).ToText(), set.TextAt(0, column));
  set.SetText(0, 2, QStringLiteral("贵州茅台"));
  EXPECT_EQ(set.Utf8At(0, 2), "贵州茅台");
}

TEST(ResultSet, TextsKeepAByteOrderMarkAtTheirBeginning) {
  const QString text = QChar(0xFEFF) + QStringLiteral("浦发");
  ResultSet set;
  set.AddColumn("t", ColumnType::Text);
  set.SetText(set.AppendRow(), 0, text);
  EXPECT_EQ(set.TextAt(0, 0), text);
  EXPECT_EQ(set.ValueAt(0, 0).ToText(), text);
}

TEST(ResultSet, DateTimeTexts) {
  // Expected by date -u -d @SECONDS '+%F %T'.
  const std::pair<std::int64_t, const char*> cases[] = {
      {0, "1970-01-01"},
      {-1, "1969-12-31 23:59:59"},
      {-86400000, "1969-12-31"},
      {951782400000, "2000-02-29"},
      {1704207845123, "2024-01-02 15:04:05"},
      {-2208988800000, "1900-01-01"},
      {253402300799000, "9999-12-31 23:59:59"},
  };
  ResultSet set = OneRow();
  for (const auto& [milliseconds, text] : cases) {
    set.SetDateTime(0, 3, milliseconds);
    EXPECT_EQ(set.Utf8At(0, 3), text);
  }
}

TEST(ResultSet, WholeColumnsAndTheirTypes) {
  const ResultSet set = OneRow();
  EXPECT_EQ(set.Integers(0), std::vector<std::int64_t>{7});
  EXPECT_EQ(set.Integers(3), std::vector<std::int64_t>{1704153600000});
  EXPECT_EQ(set.Reals(1), std::vector<double>{2.5});
  EXPECT_EQ(CategoryOf([&] { (void)set.Reals(0); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([&] { (void)set.Integers(1); }), ErrorCategory::Refused);
}

TEST(ResultSet, EqualityLooksAtNamesTypesNullsAndValues) {
  const ResultSet set = OneRow();
  ResultSet other = OneRow();
  EXPECT_TRUE(set == other);
  other.SetInteger(0, 0, 0);
  ResultSet nulled = other;
  nulled.SetNull(0, 0);
  EXPECT_FALSE(set == other);
  EXPECT_FALSE(other == nulled);
  other = OneRow();
  other.AppendRow();
  EXPECT_FALSE(set == other);
  other = OneRow();
  other.AddColumn("more", ColumnType::Text);
  EXPECT_FALSE(set == other);
}

TEST(ResultSet, CopyIsDeep) {
  const ResultSet set = OneRow();
  ResultSet copy = set;
  copy.SetText(0, 2, "changed");
  EXPECT_EQ(set.Utf8At(0, 2), "x");
}

}  // namespace
}  // namespace holdwise
