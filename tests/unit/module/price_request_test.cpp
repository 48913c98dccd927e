// SPDX-License-Identifier: MIT
#include "common/series/price_request.h"

#include "common_fixture.h"

namespace holdwise {
namespace {

TEST(PriceText, TwoDecimalsOfTheExactDecimal) {
  struct Case {
    Decimal price;
    const char* text;
  };
  const std::vector<Case> cases = {
      {{1023, 2}, "10.23"},
      {{10235, 3}, "10.24"},    // a tie goes away from zero
      {{10225, 3}, "10.23"},    // a binary double of 10.225 would round down
      {{1022499, 5}, "10.22"},  // only the first dropped digit counts: no double rounding
      {{-10235, 3}, "-10.24"},
      {{10, 0}, "10.00"},
      {{105, 1}, "10.50"},
      {{5, 2}, "0.05"},
      {{4, 3}, "0.00"},
      {{-4, 3}, "0.00"},
      {{5, 3}, "0.01"},
      {{0, 9}, "0.00"},
      {{999999999, 9}, "1.00"},
      {{INT64_MAX, 2}, "92233720368547758.07"},
      {{INT64_MIN, 2}, "-92233720368547758.08"},
      {{INT64_MAX, 0}, "9223372036854775807.00"},
      {{INT64_MAX, 18}, "9.22"},
  };
  for (const Case& entry : cases) EXPECT_EQ(PriceText(entry.price), QString::fromLatin1(entry.text));
}

using PriceRequest = CommonTest;

TEST_F(PriceRequest, FieldsOfARequest) {
  TDMessage request;
  FillPriceRequest(QStringLiteral("1|01600000,02000001"), request);
  EXPECT_EQ(*request.fields.Uint32("CommandType"), 1U);
  const auto* securities = request.fields.Sequence("L1_SECUCODESEQ");
  ASSERT_NE(securities, nullptr);
  ASSERT_EQ(securities->size(), 2U);
  EXPECT_EQ(*securities->at(0).Text("CodeNum"), QStringLiteral("600000"));
  EXPECT_EQ(*securities->at(0).Uint32("MarketType"), 101U);  // the data centre's bus id of market 1
  EXPECT_EQ(*securities->at(1).Text("CodeNum"), QStringLiteral("000001"));
  EXPECT_EQ(*securities->at(1).Uint32("MarketType"), 102U);
}

TEST_F(PriceRequest, MarketPartIsEverythingBeforeTheCode) {
  host_.dataCenter.busMarketIds[123] = 9;
  TDMessage request;
  FillPriceRequest(QStringLiteral("0|123600000"), request);
  EXPECT_EQ(*request.fields.Sequence("L1_SECUCODESEQ")->at(0).Uint32("MarketType"), 9U);
}

TEST_F(PriceRequest, AMissingMarketIsRefusedByName) {
  for (const char* command : {"0|600000", "0|01600000,000001", "0|1", "0|", "0", ""}) {
    TDMessage request;
    try {
      FillPriceRequest(QString::fromLatin1(command), request);
      ADD_FAILURE() << command;
    } catch (const Error& error) {
      EXPECT_EQ(error.Category(), ErrorCategory::Refused);
      EXPECT_STREQ(error.what(), "市场类型为空");
    }
  }
}

TEST_F(PriceRequest, WordsInPlaceOfNumbersAreRefused) {
  TDMessage request;
  EXPECT_THROW(FillPriceRequest(QStringLiteral("0|sh600000"), request), Error);
  EXPECT_THROW(FillPriceRequest(QStringLiteral("x|01600000"), request), Error);
  EXPECT_THROW(FillPriceRequest(QStringLiteral("-1|01600000"), request), Error);
}

TEST_F(PriceRequest, SecurityListHasTwoDigitMarketsAndNoCommaAtTheEnd) {
  EXPECT_EQ(SecurityList({QStringLiteral("1600000"), QStringLiteral("000001")}), QStringLiteral("01600000,02000001"));
  EXPECT_EQ(SecurityList({QStringLiteral("1999999")}), QStringLiteral("00999999"));  // unknown to the host
  AddStock("900001", 11, 0, 0);
  EXPECT_EQ(SecurityList({QStringLiteral("1900001")}), QStringLiteral("11900001"));
  EXPECT_EQ(SecurityList({}), QString());
}

TEST_F(PriceRequest, EntriesWithoutCodeOrPriceAreSkipped) {
  auto entries = std::make_shared<std::vector<TDFieldSet>>(3);
  entries->at(0).Set("CodeNum", QStringLiteral("600000"));
  entries->at(1).Set("Price", Decimal{1, 0});
  entries->at(2).Set("CodeNum", QStringLiteral("000001"));
  entries->at(2).Set("Price", Decimal{115, 1});
  TDReply reply;
  reply.message.fields.Set("ErrCode", std::uint32_t{0});
  reply.message.fields.Set("CURRENT_PRICET_LIST", TDSequence(entries));
  TNameValueList prices;
  EXPECT_TRUE(StorePrices(reply, prices));
  EXPECT_EQ(prices.Count(), 1);
  EXPECT_EQ(prices.ValueOf(u"000001"), QStringLiteral("11.50"));
}

TEST_F(PriceRequest, RepliesWithoutPricesStoreNothing) {
  TDReply wrongType = PriceReply({{QStringLiteral("600000"), {1, 0}}});
  wrongType.message.fields.Set("ErrCode", QStringLiteral("0"));
  TDReply failed = PriceReply({{QStringLiteral("600000"), {1, 0}}});
  failed.message.fields.Set("ErrCode", std::uint32_t{7});
  TDReply late = PriceReply({{QStringLiteral("600000"), {1, 0}}});
  late.timedOut = true;
  for (const TDReply& reply : {wrongType, failed, late, ErrorReply(0), ErrorReply(3), TimedOutReply(), TDReply()}) {
    TNameValueList prices;
    EXPECT_FALSE(StorePrices(reply, prices));
    EXPECT_EQ(prices.Count(), 0);
  }
}

}  // namespace
}  // namespace holdwise
