// SPDX-License-Identifier: MIT
#include "holdwise/market/stock_pool.h"

#include <gtest/gtest.h>

namespace holdwise {
namespace {

// Moves every day and trades at 10 after 9.9.
StockFacts Stock(const char* code, double turnover = 1) {
  StockFacts stock;
  stock.code = code;
  stock.name = "甲";
  stock.price = 10;
  stock.previousClose = 9.9;
  stock.turnover = turnover;
  for (int day = 0; day < 10; ++day) stock.returns.values.push_back(day % 2 == 0 ? 0.01 : -0.01);
  stock.returns.traded = 10;
  return stock;
}

PoolRules Rules() {
  PoolRules rules;
  rules.leastReturns = 10;
  return rules;
}

std::string Codes(const StockPool& pool) {
  std::string codes;
  for (const StockFacts& stock : pool.stocks) codes += stock.code + " ";
  return codes;
}

/// The stock is left out for this reason and no other, and comes in when the rule is off.
void ExpectLeftOut(const StockFacts& stock, PoolExclusion reason, bool PoolRules::*rule = nullptr) {
  const StockPool pool = ChoosePool({Stock("600000"), stock}, Rules());
  EXPECT_EQ(Codes(pool), "600000 ") << stock.code << stock.name;
  for (int i = 0; i < kPoolExclusions; ++i) {
    EXPECT_EQ(pool.excluded[static_cast<std::size_t>(i)], i == static_cast<int>(reason) ? 1 : 0) << stock.code << i;
  }
  if (rule == nullptr) return;
  PoolRules rules = Rules();
  rules.*rule = true;
  EXPECT_EQ(ChoosePool({stock}, rules).stocks.size(), 1U) << stock.code << stock.name;
}

TEST(StockPool, LeavesOutWhatNobodyCouldBuy) {
  for (const char* code : {"900901", "200011", "510300"}) ExpectLeftOut(Stock(code), PoolExclusion::NoAShare);
  ExpectLeftOut(Stock("688981"), PoolExclusion::Star, &PoolRules::takesStar);
  StockFacts receipt = Stock("689009");
  ExpectLeftOut(receipt, PoolExclusion::Star, &PoolRules::takesStar);
  for (const char* name : {"ST甲", "*ST甲", "SST甲", "ＳＴ甲", "甲退", "退市甲"}) {
    StockFacts stock = Stock("600001");
    stock.name = name;
    ExpectLeftOut(stock, PoolExclusion::SpecialTreatment, &PoolRules::takesSpecialTreatment);
  }
  StockFacts suspended = Stock("600001");
  suspended.isSuspended = true;
  ExpectLeftOut(suspended, PoolExclusion::Suspended, &PoolRules::takesSuspended);
}

TEST(StockPool, LeavesOutWhatStandsAtItsLimit) {
  // 9.95 x 1.1 = 10.945 and x 0.9 = 8.955, rounded half up to 10.95 and 8.96; 20 percent on ChiNext: 11.94 and 7.96.
  const auto at = [](const char* code, double price) {
    StockFacts stock = Stock(code);
    stock.previousClose = 9.95;
    stock.price = price;
    return stock;
  };
  for (const double price : {10.95, 11.0, 8.96, 8.9}) {
    ExpectLeftOut(at("600001", price), PoolExclusion::LimitLocked, &PoolRules::takesLimitLocked);
  }
  for (const double price : {11.94, 7.96}) {
    ExpectLeftOut(at("300001", price), PoolExclusion::LimitLocked, &PoolRules::takesLimitLocked);
  }
  EXPECT_EQ(
      Codes(ChoosePool({at("600001", 10.94), at("600002", 8.97), at("300001", 11.93), at("300002", 7.97)}, Rules())),
      "300001 300002 600001 600002 ");
}

TEST(StockPool, LeavesOutWhatTellsTooLittle) {
  StockFacts young = Stock("600001");
  young.returns.traded = 9;
  ExpectLeftOut(young, PoolExclusion::FewReturns);
  StockFacts still = Stock("600001");
  std::fill(still.returns.values.begin(), still.returns.values.end(), 0.0);
  ExpectLeftOut(still, PoolExclusion::NeverMoved);
  // It moved, but before the days that are common to all.
  StockFacts longStill = still;
  longStill.returns.values.insert(longStill.returns.values.begin(), 0.05);
  longStill.returns.traded = 11;
  ExpectLeftOut(longStill, PoolExclusion::NeverMoved);
}

TEST(StockPool, TakesTheBusiestInTheOrderOfTheirCodes) {
  PoolRules rules = Rules();
  rules.most = 3;
  const StockPool pool = ChoosePool(
      {Stock("600003", 5), Stock("000001", 2), Stock("600001", 7), Stock("600002", 2), Stock("000002", 1)}, rules);
  EXPECT_EQ(Codes(pool), "000001 600001 600003 ") << "of equal ones the lower code";
  EXPECT_EQ(pool.excluded[static_cast<std::size_t>(PoolExclusion::Turnover)], 2);
  EXPECT_TRUE(pool.knowsTurnover);
  const StockPool blind = ChoosePool({Stock("600002", 0), Stock("600001", 0)}, rules);
  EXPECT_EQ(Codes(blind), "600001 600002 ");
  EXPECT_FALSE(blind.knowsTurnover);
  EXPECT_TRUE(ChoosePool({}, rules).stocks.empty());
}

TEST(StockPool, TurnoverIsThatOfTheLastSixtyTradingDays) {
  std::vector<int> dates;
  dates.reserve(61);
  BarFile file;
  for (int day = 1; day <= 61; ++day) {
    dates.push_back(20240000 + (day <= 30 ? 100 + day : 200 + day - 30));
    if (day == 40) continue;  // no bar: counts as nothing
    file.bars.push_back({dates.back(), 2.0});
    file.volumes.push_back(day == 1 ? 1e9 : 300);
  }
  EXPECT_DOUBLE_EQ(MeanTurnover(file, dates), 59 * 2.0 * 300 / 60);
  EXPECT_DOUBLE_EQ(MeanTurnover(file, std::span(dates).first(1)), 2.0 * 1e9 + 59 * 600.0)
      << "of one day, and all after";
  EXPECT_EQ(MeanTurnover(file, {}), 0);
  file.volumes.clear();
  EXPECT_EQ(MeanTurnover(file, dates), 0);
}

TEST(StockPool, ReturnsAreThoseOfTheIndexDays) {
  const IndexReturns index{{20240102, 20240103, 20240104, 20240105, 20240108}, {0.1, 0.2, 0.3, 0.4, 0.5}};
  const auto row = [](int date, double previousClose, double value) {
    return PeriodRow{date, date, 10, previousClose, value};
  };
  // First bar on the 3rd, first return on the 4th; a bar on a day that is none of the index; none on the 5th.
  const AlignedReturns returns = AlignReturns(
      {row(20240103, 0, 0), row(20240104, 10, 0.02), row(20240106, 10, 9), row(20240108, 10, 0.04)}, index);
  EXPECT_EQ(returns.first, 2);
  EXPECT_EQ(returns.values, (std::vector<double>{0.02, 0, 0.04}));
  EXPECT_EQ(returns.traded, 2);
  EXPECT_TRUE(AlignReturns({}, index).values.empty());
  EXPECT_TRUE(AlignReturns({row(20240109, 10, 1)}, index).values.empty()) << "behind the index";
  EXPECT_TRUE(AlignReturns({row(20240102, 10, 1)}, {}).values.empty());
}

TEST(StockPool, KnowsTheLeastOrder) {
  EXPECT_EQ(LeastShares("600000"), 100);
  EXPECT_EQ(LeastShares("300750"), 100);
  EXPECT_EQ(LeastShares("688981"), 200);
  EXPECT_EQ(LeastShares("689009"), 200);
  EXPECT_DOUBLE_EQ(HighestNextPrice("600000", 9.95), 10.95);
  EXPECT_DOUBLE_EQ(HighestNextPrice("300750", 9.95), 11.94);
  EXPECT_DOUBLE_EQ(HighestNextPrice("689009", 9.95), 11.94);
}

}  // namespace
}  // namespace holdwise
