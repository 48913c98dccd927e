// SPDX-License-Identifier: MIT
#include "common/helpers/name_value_list.h"

#include <gtest/gtest.h>

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

TNameValueList ThreeLines() {
  TNameValueList list;
  list.Set("600000", QStringLiteral("10.23"));
  list.Set("000001", QStringLiteral("11.50"));
  list.Set("300750", QStringLiteral("190.00"));
  return list;
}

void ExpectRefused(const std::function<void()>& call) {
  try {
    call();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Refused);
  }
}

TEST(NameValueList, KeepsTheOrderOfFirstSetting) {
  TNameValueList list = ThreeLines();
  list.Set("600000", QStringLiteral("10.24"));
  ASSERT_EQ(list.Count(), 3);
  EXPECT_EQ(list.NameAt(0), QStringLiteral("600000"));
  EXPECT_EQ(list.ValueAt(0), QStringLiteral("10.24"));
  EXPECT_EQ(list.NameAt(2), QStringLiteral("300750"));
}

TEST(NameValueList, AbsentNameHasAnEmptyValue) {
  const TNameValueList list = ThreeLines();
  EXPECT_EQ(list.ValueOf(u"000001"), QStringLiteral("11.50"));
  EXPECT_EQ(list.ValueOf(u"1"), QString());
  EXPECT_FALSE(list.Has(u"1"));
  EXPECT_EQ(list.IndexOfName(u"1"), -1);
  EXPECT_EQ(list.IndexOfName(u"300750"), 2);
}

TEST(NameValueList, AnEmptyValueIsNotAnAbsentName) {
  TNameValueList list;
  list.Set("7", QString());
  EXPECT_TRUE(list.Has(u"7"));
}

TEST(NameValueList, DeletingMovesLaterLinesUp) {
  TNameValueList list = ThreeLines();
  list.DeleteAt(1);
  ASSERT_EQ(list.Count(), 2);
  EXPECT_FALSE(list.Has(u"000001"));
  EXPECT_EQ(list.IndexOfName(u"300750"), 1);
  EXPECT_EQ(list.ValueOf(u"300750"), QStringLiteral("190.00"));
  list.Set("000001", QStringLiteral("12.00"));
  EXPECT_EQ(list.IndexOfName(u"000001"), 2);
}

TEST(NameValueList, IndexOutsideIsAListIndexError) {
  TNameValueList list = ThreeLines();
  ExpectRefused([&] { (void)list.NameAt(3); });
  ExpectRefused([&] { (void)list.ValueAt(-1); });
  ExpectRefused([&] { list.DeleteAt(3); });
  EXPECT_EQ(list.Count(), 3);
}

TEST(NameValueList, ACopyIsIndependent) {
  const TNameValueList before = ThreeLines();
  TNameValueList after = before;
  after.Set("600000", QStringLiteral("1.00"));
  after.Set("601318", QStringLiteral("2.00"));
  after.DeleteAt(1);
  EXPECT_EQ(before.Count(), 3);
  EXPECT_EQ(before.ValueOf(u"600000"), QStringLiteral("10.23"));
  EXPECT_EQ(before.IndexOfName(u"300750"), 2);
  EXPECT_FALSE(before.Has(u"601318"));
}

TEST(NameValueList, ClearedListIsEmptyAndUsable) {
  TNameValueList list = ThreeLines();
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
  EXPECT_FALSE(list.Has(u"600000"));
  list.Set("600000", QStringLiteral("1"));
  EXPECT_EQ(list.IndexOfName(u"600000"), 0);
}

TEST(NameValueList, KeysDoNotDependOnTheCallersText) {
  TNameValueList list;
  QString name = QStringLiteral("1600000");
  list.Set(name, QStringLiteral("10.23"));
  name.fill(QLatin1Char('x'));
  EXPECT_EQ(list.ValueOf(u"1600000"), QStringLiteral("10.23"));
  EXPECT_FALSE(list.Has(name));
}

}  // namespace
}  // namespace holdwise
