// SPDX-License-Identifier: MIT
#include "common/series/now_price.h"

#include <thread>

#include "common/series/shared_objects.h"
#include "common_fixture.h"

namespace holdwise {
namespace {

const QString kComponent = QStringLiteral("FDSBVexDownDataRoleNowPrice");

class NowPrice : public CommonTest {
 protected:
  NowPrice() {
    SetHoldings({{"1", "1600000", "100"}, {"1", "1000001", "200"}, {"2", "1600000", "1000"}});
    g_NowPrice = std::make_unique<TNowPrice>();
    bus_ = host_.DataDown(kComponent);
  }
  static TDReply Prices() {
    return PriceReply({{QStringLiteral("600000"), {1023, 2}}, {QStringLiteral("000001"), {1150, 2}}});
  }
  std::shared_ptr<ScriptedDataDown> bus_;
};

TEST_F(NowPrice, RoleIsConfiguredOnce) {
  const TDRequestProfile profile = bus_->Profile();
  EXPECT_EQ(profile.messageId, 67017U);
  EXPECT_EQ(profile.messageTypeFieldName, QStringLiteral("MessageType"));
  EXPECT_EQ(profile.messageType, QStringLiteral("SUB_HQ_CURRENT_PRICE"));
  EXPECT_EQ(profile.requestName, QStringLiteral("TZZHHQCURRENTPRICE"));
  EXPECT_EQ(profile.serviceMessageId, 95U);
  EXPECT_EQ(profile.serviceNameField, QStringLiteral("SVCName"));
  EXPECT_EQ(profile.serviceName, QStringLiteral("L1_DIST"));
  EXPECT_EQ(profile.serviceDescriptionFile, QStringLiteral("L1_Dist.xml"));
  EXPECT_EQ(profile.timeOutMilliseconds, 20000);
  EXPECT_TRUE(bus_->Commands().empty());
  EXPECT_FALSE(g_NowPrice->IsDataReady());
  EXPECT_FALSE(g_NowPrice->HasPrices());
}

TEST_F(NowPrice, SubscribesToEveryHeldSecurityOnce) {
  g_NowPrice->SetDataReady(true);
  g_NowPrice->SetIsGetNowPrice(true);
  EXPECT_EQ(bus_->Commands(), std::vector<QString>{QStringLiteral("0|01600000,02000001")});
  EXPECT_EQ(*bus_->Requests().at(0).fields.Uint32("CommandType"), 0U);
  EXPECT_EQ(bus_->Requests().at(0).fields.Sequence("L1_SECUCODESEQ")->size(), 2U);
  EXPECT_EQ(g_NowPrice->SubscriptionString(), QStringLiteral("01600000,02000001"));
  EXPECT_FALSE(g_NowPrice->IsDataReady());
}

TEST_F(NowPrice, RenewingCancelsTheSubscriptionInForce) {
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(Prices());
  SetHoldings({{"1", "1300750", "100"}});
  g_NowPrice->ReGetNowPrice();
  EXPECT_EQ(bus_->Commands(),
            (std::vector<QString>{QStringLiteral("0|01600000,02000001"), QStringLiteral("1|01600000,02000001"),
                                  QStringLiteral("0|02300750")}));
  EXPECT_FALSE(g_NowPrice->IsDataReady());
}

TEST_F(NowPrice, FalseOnlyStoresTheFlag) {
  g_NowPrice->SetDataReady(true);
  g_NowPrice->SetIsGetNowPrice(false);
  EXPECT_TRUE(g_NowPrice->IsDataReady());
  EXPECT_TRUE(bus_->Commands().empty());
}

TEST_F(NowPrice, NothingHeldNeedsNoRequest) {
  SetHoldings({});
  g_NowPrice->ReGetNowPrice();
  EXPECT_TRUE(bus_->Commands().empty());
  EXPECT_TRUE(g_NowPrice->IsDataReady());
  EXPECT_TRUE(g_NowPrice->HasPrices());
  EXPECT_EQ(g_NowPrice->SubscriptionString(), QString());
}

TEST_F(NowPrice, CancellingClearsTheSubscription) {
  g_NowPrice->CancelSubscription();
  EXPECT_TRUE(bus_->Commands().empty());
  g_NowPrice->ReGetNowPrice();
  g_NowPrice->CancelSubscription();
  g_NowPrice->CancelSubscription();
  EXPECT_EQ(bus_->Commands(),
            (std::vector<QString>{QStringLiteral("0|01600000,02000001"), QStringLiteral("1|01600000,02000001")}));
  EXPECT_EQ(*bus_->Requests().at(1).fields.Uint32("CommandType"), 1U);
  EXPECT_EQ(g_NowPrice->SubscriptionString(), QString());
}

TEST_F(NowPrice, HoldingsWithoutAPriceAreNamed) {
  SetHoldings({{"1", "1600000", "100"}, {"1", "1000001", "200"}, {"1", "1999999", "1"}, {"2", "1600000", "1000"}});
  g_NowPrice->ReGetNowPrice();
  EXPECT_TRUE(g_NowPrice->HoldingsWithoutPrice().isEmpty()) << "nothing is known before the first reply";
  bus_->Deliver(PriceReply({{QStringLiteral("600000"), {1023, 2}}, {QStringLiteral("999999"), {0, 2}}}));
  TMissingCodes missing = g_NowPrice->HoldingsWithoutPrice();
  EXPECT_EQ(missing.size(), 1);
  EXPECT_EQ(missing.value("1"), (QStringList{"000001", "999999"}));
  bus_->Deliver(PriceReply({{QStringLiteral("999999"), {1, 2}}, {QStringLiteral("000001"), {1150, 2}}}));
  EXPECT_TRUE(g_NowPrice->HoldingsWithoutPrice().isEmpty());
}

TEST_F(NowPrice, FirstReaderSubscribesOnlyOnce) {
  EXPECT_EQ(g_NowPrice->GetNowPriceStringList()->Count(), 0);
  EXPECT_EQ(g_NowPrice->GetNowValueGroupStringList()->Count(), 0);
  EXPECT_EQ(bus_->Commands().size(), 1U);
}

TEST_F(NowPrice, ReplyFillsPricesAndValues) {
  g_NowPrice->ReGetNowPrice();
  EXPECT_TRUE(bus_->Deliver(Prices()));
  EXPECT_TRUE(g_NowPrice->IsDataReady());
  EXPECT_TRUE(g_NowPrice->HasPrices());
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowPriceStringList()), (QStringList{"600000=10.23", "000001=11.50"}));
  // 100 x 10.23 + 200 x 11.50 = 1023 + 2300; 1000 x 10.23
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowValueGroupStringList()), (QStringList{"1=3323", "2=10230"}));
}

TEST_F(NowPrice, ValuesUseThePrintedPrice) {
  SetHoldings({{"1", "1600000", "0.5"}});
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(PriceReply({{QStringLiteral("600000"), {10235, 3}}}));
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowValueGroupStringList()), QStringList{"1=5.12"});  // 10.24 / 2
}

TEST_F(NowPrice, OnlyNeighbouringRowsMakeAGroup) {
  SetHoldings({{"1", "1600000", "100"}, {"2", "1600000", "1"}, {"1", "1000001", "2"}});
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(Prices());
  // The second run of portfolio 1 replaces the first one's 1023: 2 x 11.50.
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowValueGroupStringList()), (QStringList{"1=23", "2=10.23"}));
}

TEST_F(NowPrice, AMissingPriceAndAnEmptyQuantityCountNothing) {
  SetHoldings({{"1", "1600000", "100"}, {"1", "1300750", "50"}, {"2", "1000001", ""}});
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(Prices());
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowValueGroupStringList()), (QStringList{"1=1023", "2=0"}));
}

TEST_F(NowPrice, PriceZeroIsReplacedByThePreviousClose) {
  g_UserValue = std::make_unique<TUserValue>();
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(PriceReply({{QStringLiteral("600000"), {0, 2}}, {QStringLiteral("688001"), {0, 0}}}));
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowPriceStringList()), (QStringList{"600000=10.00", "688001=0.00"}));
  EXPECT_EQ(g_NowPrice->GetNowValueGroupStringList()->ValueOf(u"2"), QStringLiteral("10000"));
}

TEST_F(NowPrice, PriceZeroWithoutAnyPreviousClosesIsZero) {
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(PriceReply({{QStringLiteral("600000"), {0, 2}}}));
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowPriceStringList()), QStringList{"600000=0.00"});
}

TEST_F(NowPrice, FailedRepliesKeepTheListsButSetTheFlag) {
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(Prices());
  const auto before = g_NowPrice->GetNowPriceStringList();
  TDReply failed = PriceReply({{QStringLiteral("600000"), {99, 0}}});
  failed.message.fields.Set("ErrCode", std::uint32_t{5});
  for (const TDReply& reply : {failed, ErrorReply(0), ErrorReply(1), TimedOutReply()}) {
    g_NowPrice->ReGetNowPrice();
    EXPECT_FALSE(g_NowPrice->IsDataReady());
    bus_->Deliver(reply);
    EXPECT_TRUE(g_NowPrice->IsDataReady());
    EXPECT_EQ(LinesOf(g_NowPrice->GetNowPriceStringList()), LinesOf(before));
    EXPECT_EQ(g_NowPrice->GetNowValueGroupStringList()->ValueOf(u"1"), QStringLiteral("3323"));
  }
}

TEST_F(NowPrice, AFailingQueryInAReplyKeepsBothListsAndIsLogged) {
  g_NowPrice->ReGetNowPrice();
  host_.fakeUserData.FailNext(sql::kHoldingsForNowValues, Error(ErrorCategory::Busy, "locked"));
  EXPECT_NO_THROW(bus_->Deliver(Prices()));
  EXPECT_TRUE(g_NowPrice->IsDataReady());
  EXPECT_FALSE(g_NowPrice->HasPrices());
  EXPECT_EQ(g_NowPrice->GetNowPriceStringList()->Count(), 0);
  EXPECT_EQ(
      host_.debug.Lines(),
      std::vector<QString>{QStringLiteral("Holdwise.bpl->untcommon->NowPriceEndOfData 发生错误!错误信息:locked")});
}

TEST_F(NowPrice, NamesThatAreGoneKeepTheirValues) {
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(Prices());
  SetHoldings({{"3", "1300750", "10"}});
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(PriceReply({{QStringLiteral("300750"), {1905, 1}}}));
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowPriceStringList()),
            (QStringList{"600000=10.23", "000001=11.50", "300750=190.50"}));
  EXPECT_EQ(LinesOf(g_NowPrice->GetNowValueGroupStringList()), (QStringList{"1=3323", "2=10230", "3=1905"}));
}

TEST_F(NowPrice, ALateReplyStillCounts) {
  g_NowPrice->ReGetNowPrice();
  g_NowPrice->CancelSubscription();
  bus_->Deliver(Prices());
  EXPECT_TRUE(g_NowPrice->IsDataReady());
  EXPECT_EQ(g_NowPrice->GetNowPriceStringList()->ValueOf(u"600000"), QStringLiteral("10.23"));
  EXPECT_EQ(g_NowPrice->SubscriptionString(), QString());
}

TEST_F(NowPrice, NoReplyReachesAFreedObject) {
  g_NowPrice->ReGetNowPrice();
  g_NowPrice.reset();
  EXPECT_FALSE(bus_->IsAlive());
  EXPECT_FALSE(bus_->Deliver(Prices()));
  EXPECT_TRUE(Queries(sql::kHoldingsForNowValues).empty());
}

TEST_F(NowPrice, SnapshotsDoNotChange) {
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(Prices());
  const auto before = g_NowPrice->GetNowPriceStringList();
  bus_->Deliver(PriceReply({{QStringLiteral("600000"), {2000, 2}}}));
  EXPECT_EQ(before->ValueOf(u"600000"), QStringLiteral("10.23"));
  EXPECT_EQ(g_NowPrice->GetNowPriceStringList()->ValueOf(u"600000"), QStringLiteral("20.00"));
}

TEST_F(NowPrice, PricesCountAsHadUntilOtherSecuritiesAreAskedFor) {
  g_NowPrice->ReGetNowPrice();
  EXPECT_FALSE(g_NowPrice->HasPrices());
  bus_->Deliver(ErrorReply(1));
  EXPECT_FALSE(g_NowPrice->HasPrices());
  bus_->Deliver(Prices());
  EXPECT_TRUE(g_NowPrice->HasPrices());
  g_NowPrice->ReGetNowPrice();
  EXPECT_TRUE(g_NowPrice->HasPrices());  // the same securities
  g_NowPrice->CancelSubscription();
  g_NowPrice->ReGetNowPrice();
  EXPECT_FALSE(g_NowPrice->HasPrices());  // from idle
  bus_->Deliver(Prices());
  SetHoldings({{"1", "1300750", "100"}});
  g_NowPrice->ReGetNowPrice();
  EXPECT_FALSE(g_NowPrice->HasPrices());
}

TEST_F(NowPrice, AFailingCodeQueryLeavesTheFeedAsItWas) {
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(Prices());
  host_.fakeUserData.FailNext(sql::kHeldCodes, Error(ErrorCategory::Busy, "locked"));
  EXPECT_THROW(g_NowPrice->ReGetNowPrice(), Error);
  EXPECT_TRUE(g_NowPrice->IsDataReady());
  EXPECT_EQ(g_NowPrice->SubscriptionString(), QStringLiteral("01600000,02000001"));
  EXPECT_EQ(bus_->Commands().size(), 1U);
}

TEST_F(NowPrice, ACodeWithoutMarketPartSendsNothing) {
  SetHoldings({{"1", "1", "100"}});  // shorter than six digits: nothing is left for the market
  try {
    g_NowPrice->ReGetNowPrice();
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "市场类型为空");
  }
  EXPECT_TRUE(bus_->Commands().empty());
  EXPECT_EQ(g_NowPrice->SubscriptionString(), QString());
  SetHoldings({{"1", "1600000", "100"}});
  g_NowPrice->ReGetNowPrice();
  EXPECT_EQ(bus_->Commands(), std::vector<QString>{QStringLiteral("0|01600000")});
}

TEST_F(NowPrice, SwitchingTheFeedHasNoEffect) {
  g_NowPrice->SetHqDataIsActive(false);
  g_NowPrice->ReGetNowPrice();
  bus_->Deliver(Prices());
  EXPECT_EQ(g_NowPrice->GetNowPriceStringList()->Count(), 2);
}

// Every reply sets all prices to the same figure, so a reader that sees two figures in one list has seen half a reply.
TEST_F(NowPrice, ReadersSeeWholeListsWhileABusThreadReplies) {
  constexpr int kSecurities = 200;
  constexpr int kReplies = 200;
  std::vector<std::vector<QString>> rows;
  for (int index = 0; index < kSecurities; ++index) {
    rows.push_back({QString::number(index / 10 + 1), QString::number(1600000 + index), QStringLiteral("2")});
  }
  SetHoldings(rows);
  g_NowPrice->ReGetNowPrice();
  std::atomic<bool> done = false;
  std::thread bus([&] {
    for (int reply = 1; reply <= kReplies; ++reply) {
      std::vector<std::pair<QString, Decimal>> prices;
      for (int index = 0; index < kSecurities; ++index) prices.push_back({QString::number(600000 + index), {reply, 0}});
      bus_->Deliver(PriceReply(prices));
    }
    done = true;
  });
  int seen = 0;
  while (!done) {
    const auto prices = g_NowPrice->GetNowPriceStringList();
    const auto values = g_NowPrice->GetNowValueGroupStringList();
    for (int index = 1; index < prices->Count(); ++index) ASSERT_EQ(prices->ValueAt(index), prices->ValueAt(0));
    for (int index = 1; index < values->Count(); ++index) ASSERT_EQ(values->ValueAt(index), values->ValueAt(0));
    ++seen;
  }
  bus.join();
  EXPECT_GT(seen, 0);
  EXPECT_TRUE(g_NowPrice->IsDataReady());
  EXPECT_EQ(g_NowPrice->GetNowPriceStringList()->ValueOf(u"600199"), QStringLiteral("200.00"));
  EXPECT_EQ(g_NowPrice->GetNowValueGroupStringList()->ValueOf(u"20"), QStringLiteral("4000"));  // 10 x 2 x 200
}

TEST_F(NowPrice, FreeingTheObjectsWhileABusThreadReplies) {
  g_UserValue = std::make_unique<TUserValue>();
  g_StockClosePrice = std::make_unique<TStockClosePrice>();
  const auto closeBus = host_.DataDown(QStringLiteral("FDSBVexDownDataRole"));
  g_NowPrice->ReGetNowPrice();
  std::atomic<bool> stop = false;
  const TDReply noTrades = PriceReply({{QStringLiteral("600000"), {0, 2}}, {QStringLiteral("000001"), {0, 2}}});
  std::thread bus([&] {
    while (!stop) {
      bus_->Deliver(noTrades);
      closeBus->Deliver(noTrades);
    }
  });
  while (g_StockClosePrice->Prices()->ValueOf(u"600000") != QStringLiteral("10.00")) std::this_thread::yield();
  g_NowPrice.reset();
  g_UserValue.reset();  // while the day-close replies still look for previous closes
  while (g_StockClosePrice->Prices()->ValueOf(u"600000") != QStringLiteral("0.00")) std::this_thread::yield();
  g_StockClosePrice.reset();
  stop = true;
  bus.join();
  EXPECT_FALSE(closeBus->IsAlive());
}

}  // namespace
}  // namespace holdwise
