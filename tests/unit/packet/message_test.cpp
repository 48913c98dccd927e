// SPDX-License-Identifier: MIT
#include "holdwise/packet/message.h"

#include <gtest/gtest.h>

#include <cmath>

#include "packet_test_support.h"

namespace holdwise {
namespace {

TEST(Decimal, BecomesTheNearestDouble) {
  EXPECT_EQ((Decimal{1012, 2}).ToDouble(), 10.12);
  EXPECT_EQ((Decimal{-5, 1}).ToDouble(), -0.5);
  EXPECT_EQ((Decimal{7, 0}).ToDouble(), 7.0);
  EXPECT_EQ((Decimal{7, -2}).ToDouble(), 700.0);
  EXPECT_EQ((Decimal{1, 9}).ToDouble(), 1e-9);
  // Python: float(Decimal(9223372036854775807) / 10**9) = 9223372036.854776
  EXPECT_EQ((Decimal{INT64_MAX, 9}).ToDouble(), 9223372036.854776);
  EXPECT_EQ((Decimal{INT64_MIN, 0}).ToDouble(), -9223372036854775808.0);
  EXPECT_TRUE((Decimal{0, 5}).IsZero());
  EXPECT_FALSE((Decimal{1, 5}).IsZero());
}

TEST(Decimal, FromDoubleRoundsHalfAwayFromZero) {
  EXPECT_EQ(Decimal::FromDouble(10.12, 2), (Decimal{1012, 2}));
  EXPECT_EQ(Decimal::FromDouble(0.125, 2), (Decimal{13, 2}));
  EXPECT_EQ(Decimal::FromDouble(-0.125, 2), (Decimal{-13, 2}));
  EXPECT_EQ(Decimal::FromDouble(-0.001, 2), (Decimal{0, 2}));
  EXPECT_EQ(Decimal::FromDouble(2.5, 0), (Decimal{3, 0}));
  EXPECT_EQ(Decimal::FromDouble(1.5, 9), (Decimal{1500000000, 9}));
}

TEST(Decimal, FromDoubleRefusesWhatDoesNotFit) {
  EXPECT_EQ(CategoryOf([] { (void)Decimal::FromDouble(NAN, 2); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([] { (void)Decimal::FromDouble(HUGE_VAL, 2); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([] { (void)Decimal::FromDouble(1e18, 2); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([] { (void)Decimal::FromDouble(1, 10); }), ErrorCategory::Refused);
  EXPECT_EQ(CategoryOf([] { (void)Decimal::FromDouble(1, -1); }), ErrorCategory::Refused);
}

TEST(TDFieldSet, KeepsTheOrderAndReplacesByName) {
  TDFieldSet fields;
  fields.Set("Type", std::uint32_t{1});
  fields.Set("Code", QStringLiteral("600000"));
  fields.Set("Type", std::uint32_t{2});
  ASSERT_EQ(fields.Fields().size(), 2U);
  EXPECT_EQ(fields.Fields()[0].first, "Type");
  EXPECT_EQ(*fields.Uint32("Type"), 2U);
  EXPECT_EQ(*fields.Text("Code"), QStringLiteral("600000"));
  EXPECT_EQ(fields.Find("code"), nullptr);  // names are compared exactly
}

TEST(TDFieldSet, TypedAccessWantsTheExactType) {
  TDFieldSet inner;
  inner.Set("Price", Decimal{1012, 2});
  TDFieldSet fields;
  fields.Set("Rows", std::make_shared<const std::vector<TDFieldSet>>(1, inner));
  fields.Set("None", TDSequence());
  fields.Set("Wide", std::int64_t{5});
  ASSERT_NE(fields.Sequence("Rows"), nullptr);
  EXPECT_EQ(*fields.Sequence("Rows")->front().DecimalValue("Price"), (Decimal{1012, 2}));
  EXPECT_EQ(fields.Sequence("None"), nullptr);
  EXPECT_EQ(fields.Sequence("Wide"), nullptr);
  EXPECT_EQ(fields.Sequence("Absent"), nullptr);
  EXPECT_EQ(fields.Uint32("Wide"), nullptr);
  EXPECT_EQ(fields.Text("Rows"), nullptr);
  EXPECT_EQ(fields.DecimalValue("Absent"), nullptr);
}

}  // namespace
}  // namespace holdwise
