// SPDX-License-Identifier: MIT
#include "common/series/stock_close_price.h"

#include "common/series/shared_objects.h"
#include "common_fixture.h"

namespace holdwise {
namespace {

class StockClosePrice : public CommonTest {
 protected:
  StockClosePrice() {
    SetHoldings({{"1", "1600000", "100"}});
    g_StockClosePrice = std::make_unique<TStockClosePrice>();
    bus_ = host_.DataDown(QStringLiteral("FDSBVexDownDataRole"));
  }
  QStringList Ask(QStringList codes) {
    g_StockClosePrice->GetDayClosePriceStrList(codes);
    return codes;
  }
  /// An own list with these names, as earlier replies would have left it.
  void Own(const QStringList& codes) {
    std::vector<std::pair<QString, Decimal>> prices;
    for (const QString& code : codes) prices.push_back({code, {100, 2}});
    bus_->Deliver(PriceReply(prices));
  }
  std::shared_ptr<ScriptedDataDown> bus_;
};

TEST_F(StockClosePrice, RoleDiffersOnlyInItsNames) {
  EXPECT_EQ(bus_->Profile().requestName, QStringLiteral("DSBHQCURRENTPRICE_SC"));
  EXPECT_EQ(bus_->Profile().messageId, 67017U);
  EXPECT_EQ(bus_->Profile().serviceName, QStringLiteral("L1_DIST"));
  EXPECT_EQ(bus_->Profile().timeOutMilliseconds, 20000);
}

TEST_F(StockClosePrice, BeforeOpenIsTheOpenStateAsItIs) {
  host_.dataCenter.isOpen = true;
  EXPECT_TRUE(g_StockClosePrice->IsBeforeOpenMaket());
  host_.dataCenter.isOpen = false;
  EXPECT_FALSE(g_StockClosePrice->IsBeforeOpenMaket());
}

TEST_F(StockClosePrice, AsksTheBusWhileTheMarketIsOpen) {
  EXPECT_EQ(Ask({"1600000", "000001"}), (QStringList{"1600000", "000001"}));
  EXPECT_EQ(bus_->Commands(), std::vector<QString>{QStringLiteral("0|01600000,02000001")});
  EXPECT_EQ(g_StockClosePrice->Prices()->Count(), 0);
  bus_->Deliver(PriceReply({{QStringLiteral("600000"), {1023, 2}}}));
  EXPECT_EQ(LinesOf(g_StockClosePrice->Prices()), QStringList{"600000=10.23"});
}

TEST_F(StockClosePrice, NothingLeftSendsNothing) {
  EXPECT_EQ(Ask({}), QStringList());
  Own({"600000"});
  EXPECT_EQ(Ask({"600000"}), QStringList());
  EXPECT_TRUE(bus_->Commands().empty());
}

TEST_F(StockClosePrice, TakesTheDataCentresPriceWhenClosed) {
  host_.dataCenter.isOpen = false;
  Ask({"1600000", "000001", "300750", "999999"});
  EXPECT_TRUE(bus_->Commands().empty());
  EXPECT_EQ(LinesOf(g_StockClosePrice->Prices()),
            (QStringList{"1600000=10.23", "000001=11.50", "300750=0.00", "999999=0.00"}));
}

TEST_F(StockClosePrice, PriceZeroIsReplacedByThePreviousClose) {
  g_UserValue = std::make_unique<TUserValue>();
  bus_->Deliver(PriceReply({{QStringLiteral("600000"), {0, 0}}, {QStringLiteral("000001"), {0, 0}}}));
  // Only held securities have a previous close.
  EXPECT_EQ(LinesOf(g_StockClosePrice->Prices()), (QStringList{"600000=10.00", "000001=0.00"}));
}

TEST_F(StockClosePrice, FailedRepliesChangeNothing) {
  Own({"600000"});
  for (const TDReply& reply : {ErrorReply(0), ErrorReply(2), TimedOutReply()}) bus_->Deliver(reply);
  EXPECT_EQ(LinesOf(g_StockClosePrice->Prices()), QStringList{"600000=1.00"});
}

TEST_F(StockClosePrice, AFailingPreviousCloseQueryChangesNothingAndIsLogged) {
  g_UserValue = std::make_unique<TUserValue>();
  host_.fakeUserData.FailNext(sql::kHoldingsForPreviousCloses, Error(ErrorCategory::Database, "gone"));
  EXPECT_NO_THROW(bus_->Deliver(PriceReply({{QStringLiteral("000001"), {1, 0}}, {QStringLiteral("600000"), {0, 0}}})));
  EXPECT_EQ(g_StockClosePrice->Prices()->Count(), 0);
  EXPECT_EQ(host_.debug.Lines().size(), 1U);
}

TEST_F(StockClosePrice, KnownEntriesAreRemovedByTheirIndex) {
  struct Case {
    QStringList own;
    QStringList asked;
    QStringList left;
  };
  // For each index of the own list the asked entry at that index goes when it is known; then the index moves on, so the
  // entry that has moved up is not looked at.
  const std::vector<Case> cases = {
      {{"600000"}, {"600000", "000001"}, {"000001"}},
      {{"600000"}, {"000001", "600000"}, {"000001", "600000"}},  // one own line: only index 0 is looked at
      {{"600000", "000001"}, {"600000", "000001", "300750"}, {"000001", "300750"}},  // 000001 moved to index 0
      {{"600000", "000001"}, {"300750", "600000", "000001"}, {"300750", "000001"}},
      {{"600000", "000001"}, {"300750", "688001"}, {"300750", "688001"}},
  };
  for (const Case& entry : cases) {
    g_StockClosePrice = std::make_unique<TStockClosePrice>();
    bus_ = host_.DataDown(QStringLiteral("FDSBVexDownDataRole"));
    Own(entry.own);
    EXPECT_EQ(Ask(entry.asked), entry.left);
  }
}

TEST_F(StockClosePrice, AnOwnListLongerThanTheAskedOneIsAListIndexError) {
  Own({"600000", "000001", "300750"});
  QStringList codes = {"688001", "688002"};
  try {
    g_StockClosePrice->GetDayClosePriceStrList(codes);
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.Category(), ErrorCategory::Refused);
    EXPECT_STREQ(error.what(), "list index out of bounds (2)");
  }
  // A removal shortens the asked list, so the end comes earlier.
  codes = {"600000", "688002", "688003"};
  EXPECT_THROW(g_StockClosePrice->GetDayClosePriceStrList(codes), Error);
  EXPECT_EQ(codes, (QStringList{"688002", "688003"}));
  EXPECT_TRUE(bus_->Commands().empty());
}

TEST_F(StockClosePrice, NoReplyReachesAFreedObject) {
  Ask({"600000"});
  g_StockClosePrice.reset();
  EXPECT_FALSE(bus_->Deliver(PriceReply({{QStringLiteral("600000"), {1, 0}}})));
}

TEST_F(StockClosePrice, ARequestThatCannotBeMadeReachesTheCaller) {
  EXPECT_THROW(Ask({"1"}), Error);
  EXPECT_TRUE(bus_->Commands().empty());
}

}  // namespace
}  // namespace holdwise
