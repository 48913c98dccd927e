// SPDX-License-Identifier: MIT
#include "holdwise/market/live_simulation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace holdwise {
namespace {

Decimal Price(std::int64_t cents) {
  return {cents, 2};
}

constexpr int kSuspended = 1600900, kWithoutClose = 1000002, kFirstTrade = 1688001;

std::vector<Quote> SimulatedQuotes() {
  std::vector<Quote> quotes{{1, Price(300000), Price(300100)},
                            {399001, Price(900000), Price(901000)},
                            {399300, Price(400000), Price(401000)}};
  for (int i = 0; i < 50; ++i) quotes.push_back({1600000 + i, Price(1001 + i), Price(1000 + i)});
  for (int i = 0; i < 50; ++i) quotes.push_back({1300000 + i, Price(302), Price(301)});
  quotes.push_back({kFirstTrade, Price(0), Price(5000)});
  quotes.push_back({kWithoutClose, Price(0), Price(0)});
  quotes.push_back({kSuspended, Price(777), Price(777)});
  return quotes;
}

struct Market {
  explicit Market(std::uint64_t seed, double speed = 1)
      : service(SimulatedQuotes()), simulation(service, seed, speed) {}
  void StepTo(int secondOfDay) {
    while (simulation.SecondOfDay() < secondOfDay) simulation.Step();
  }
  [[nodiscard]] const Quote& Of(int codeNumber) const {
    for (const Quote& quote : service.Quotes())
      if (quote.codeNumber == codeNumber) return quote;
    throw std::out_of_range("no such security");
  }
  [[nodiscard]] std::vector<std::int64_t> Prices() const {
    std::vector<std::int64_t> prices;
    for (const Quote& quote : service.Quotes()) prices.push_back(quote.price.mantissa);
    return prices;
  }
  QuoteService service;
  LiveSimulation simulation;
};

constexpr int Time(int hour, int minute, int second = 0) {
  return hour * 3600 + minute * 60 + second;
}

/// The exchange's rule in hundredths of a cent: close x (1 +- limit), rounded half up.
void CheckLimits(const Quote& quote) {
  const std::int64_t percent = quote.codeNumber / 1000 == 1300 || quote.codeNumber / 1000 == 1688 ? 20 : 10;
  const std::int64_t upper = (quote.previousClose.mantissa * (100 + percent) + 50) / 100;
  const std::int64_t lower = (quote.previousClose.mantissa * (100 - percent) + 50) / 100;
  for (const std::int64_t price : {quote.price.mantissa, quote.day.high, quote.day.low}) {
    ASSERT_LE(price, upper) << quote.codeNumber;
    ASSERT_GE(price, lower) << quote.codeNumber;
  }
}

TEST(LiveSimulation, StaysInsideTheDailyLimitsAndMoves) {
  bool wasAtLimit = false;  // of ten percent
  for (const double speed : {1.0, 60.0}) {
    for (std::uint64_t seed = 1; seed <= (speed == 1 ? 1 : 20); ++seed) {
      Market market(seed, speed);
      int changed = 0, steps = 0;
      for (; market.simulation.SecondOfDay() < Time(15, 0); ++steps) {
        market.simulation.Step();
        for (const Quote& quote : market.service.Quotes()) {
          if (quote.codeNumber < 1000000 || quote.price.mantissa == 0 || quote.codeNumber == kSuspended) continue;
          ASSERT_NO_FATAL_FAILURE(CheckLimits(quote));
          if (quote.price != quote.previousClose) ++changed;
          if (quote.codeNumber / 1000 == 1600 &&
              std::abs(quote.price.ToDouble() / quote.previousClose.ToDouble() - 1) > 0.098)
            wasAtLimit = true;
        }
      }
      EXPECT_GT(changed, 50 * steps);
      EXPECT_GT(market.Of(kFirstTrade).price.mantissa, 0) << "a stock without a trade gets its first price";
      EXPECT_EQ(market.Of(kWithoutClose).price.mantissa, 0) << "without a previous close it stands still";
    }
  }
  EXPECT_TRUE(wasAtLimit) << "the limit of ten percent was never in question";
}

/// A day of stocks that begin close to their own limit: they come to it and stop there.
TEST(LiveSimulation, TheLimitIsTwentyPercentWhereTheRulesSaySo) {
  std::vector<Quote> quotes{{1, Price(300000), Price(300100)}};
  for (int i = 0; i < 50; ++i) quotes.push_back({1300000 + i, Price(1190), Price(1000)});
  for (int i = 0; i < 50; ++i) quotes.push_back({1688000 + i, Price(810), Price(1000)});
  QuoteService service(quotes);
  LiveSimulation simulation(service, 5, 60);
  bool wasAt[2] = {};  // the lower limit, the upper one
  while (simulation.SecondOfDay() < Time(15, 0)) {
    simulation.Step();
    for (const Quote& quote : service.Quotes()) {
      if (quote.codeNumber < 1000000) continue;
      ASSERT_NO_FATAL_FAILURE(CheckLimits(quote));
      if (quote.price.mantissa == 800) wasAt[0] = true;
      if (quote.price.mantissa == 1200) wasAt[1] = true;
    }
  }
  EXPECT_TRUE(wasAt[0]);
  EXPECT_TRUE(wasAt[1]);
}

TEST(LiveSimulation, TheLimitIsAWallAndNoTrap) {
  // All stocks have opened at their upper limit.
  std::vector<Quote> quotes{{1, Price(300000), Price(300100)}};
  for (int i = 0; i < 50; ++i) quotes.push_back({1600000 + i, Price(1100), Price(1000)});
  for (int i = 0; i < 50; ++i) quotes.push_back({1300000 + i, Price(1200), Price(1000)});
  QuoteService service(quotes);
  LiveSimulation simulation(service, 5);
  int below = 0;
  for (int step = 0; step < 600; ++step) {
    simulation.Step();
    for (const Quote& quote : service.Quotes()) {
      if (quote.codeNumber < 1000000) continue;
      ASSERT_NO_FATAL_FAILURE(CheckLimits(quote));
    }
  }
  for (const Quote& quote : service.Quotes())
    if (quote.codeNumber > 1000000 && quote.day.low < quote.day.open) ++below;
  EXPECT_GT(below, 90);
}

TEST(LiveSimulation, StandsStillAtNoonAndAfterTheClose) {
  for (const double speed : {1.0, 7.0, 60.0}) {
    Market market(3, speed);
    EXPECT_EQ(market.simulation.SecondOfDay(), Time(9, 30));
    market.StepTo(Time(11, 30));
    const std::vector<std::int64_t> noon = market.Prices();
    const std::int64_t traded = market.Of(1).day.volume;
    EXPECT_NE(noon, Market(3, speed).Prices());
    while (market.simulation.SecondOfDay() + speed <= Time(13, 0)) {
      market.simulation.Step();
      ASSERT_EQ(market.Prices(), noon);
      ASSERT_EQ(market.Of(1).day.volume, traded);
    }
    for (int step = 0; step < 5; ++step) market.simulation.Step();
    EXPECT_NE(market.Prices(), noon);
    market.StepTo(Time(15, 0));
    const std::vector<std::int64_t> close = market.Prices();
    while (market.simulation.SecondOfDay() + speed < Time(15, 10)) {
      market.simulation.Step();
      ASSERT_EQ(market.Prices(), close);
    }
  }
}

TEST(LiveSimulation, BeginsAnewAfterTheClose) {
  Market market(3, 60);
  const std::vector<std::int64_t> opening = market.Prices();
  market.StepTo(Time(15, 9));
  market.simulation.Step();
  EXPECT_EQ(market.simulation.SecondOfDay(), Time(9, 30));
  std::vector<std::int64_t> again = market.Prices();
  EXPECT_EQ(again, opening);
  EXPECT_EQ(market.Of(1600000).day, (DayTrade{0, 0, 1001, 1001, 1001}));
}

TEST(LiveSimulation, TellsItsTime) {
  Market market(3, 60);
  TDMessage request;
  request.profile.messageType = QStringLiteral("SUB_HQ_CURRENT_PRICE");
  request.profile.serviceName = QStringLiteral("L1_DIST");
  request.fields.Set("CommandType", std::uint32_t{0});
  request.fields.Set("L1_SECUCODESEQ", std::make_shared<const std::vector<TDFieldSet>>());
  EXPECT_EQ(*market.service.Handle(1, request).fields.Uint32("MarketTime"), 93000U);
  market.StepTo(Time(14, 5));
  EXPECT_EQ(*market.service.Handle(1, request).fields.Uint32("MarketTime"), 140500U);
}

TEST(LiveSimulation, ASuspendedStockIsNotTraded) {
  Market market(3, 60);
  market.StepTo(Time(15, 0));
  EXPECT_EQ(market.Of(kSuspended).price, Price(777));
  EXPECT_EQ(market.Of(kSuspended).day, (DayTrade{0, 0, -1, -1, -1}));
}

TEST(LiveSimulation, AnIndexTradesWhatItsStocksTrade) {
  Market market(3, 7);
  market.StepTo(Time(10, 0));
  std::int64_t shanghai = 0, shenzhen = 0, amount = 0;
  for (const Quote& quote : market.service.Quotes()) {
    if (quote.codeNumber < 1000000) continue;
    (quote.codeNumber / 1000 == 1600 || quote.codeNumber / 1000 == 1688 ? shanghai : shenzhen) += quote.day.volume;
    amount += quote.day.amount;
    if (quote.codeNumber == kSuspended || quote.codeNumber == kWithoutClose) continue;
    ASSERT_GT(quote.day.volume, 0);
    ASSERT_EQ(quote.day.volume % 100, 0) << "whole lots";
    // What was paid a share lies between the lowest and the highest price.
    ASSERT_GE(quote.day.amount, quote.day.low * quote.day.volume);
    ASSERT_LE(quote.day.amount, quote.day.high * quote.day.volume);
  }
  EXPECT_EQ(market.Of(1).day.volume, shanghai);
  EXPECT_EQ(market.Of(399001).day.volume, shenzhen);
  EXPECT_EQ(market.Of(399300).day.volume, shanghai + shenzhen);
  EXPECT_EQ(market.Of(399300).day.amount, amount);
}

/// Pearson's coefficient of two series of minute returns.
double Correlation(const std::vector<double>& one, const std::vector<double>& other) {
  const auto count = static_cast<double>(one.size());
  double sumOne = 0, sumOther = 0;
  for (std::size_t i = 0; i < one.size(); ++i) {
    sumOne += one[i];
    sumOther += other[i];
  }
  double both = 0, squareOne = 0, squareOther = 0;
  for (std::size_t i = 0; i < one.size(); ++i) {
    const double a = one[i] - sumOne / count, b = other[i] - sumOther / count;
    both += a * b;
    squareOne += a * a;
    squareOther += b * b;
  }
  return both / std::sqrt(squareOne * squareOther);
}

class SimulationAtSpeed : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(LiveSimulation, SimulationAtSpeed, testing::Values(1, 10, 60));

TEST_P(SimulationAtSpeed, StocksMoveWithTheIndex) {
  Market market(11, GetParam());
  std::map<int, std::vector<double>> returns;
  std::map<int, double> last;
  for (int minute = 0; minute <= 120; ++minute) {
    for (const Quote& quote : market.service.Quotes()) {
      if (quote.price.mantissa == 0) continue;
      const double price = quote.price.ToDouble();
      if (last.contains(quote.codeNumber)) returns[quote.codeNumber].push_back(price / last[quote.codeNumber] - 1);
      last[quote.codeNumber] = price;
    }
    for (int second = 0; second < 60; second += GetParam()) market.simulation.Step();
  }
  int positive = 0;
  double sum = 0;
  for (int i = 0; i < 50; ++i) {
    const double correlation = Correlation(returns[1], returns[1600000 + i]);
    sum += correlation;
    if (correlation > 0) ++positive;
  }
  EXPECT_GE(positive, 48);
  // Variances a minute: of the market 60 x 0.0002^2, of a stock's own third of the seconds 20 x 0.0008^2; the share of
  // the first in both is 0.158, its root 0.40. The standard error over 120 minutes is 0.08, of 50 stocks' mean 0.011.
  EXPECT_NEAR(sum / 50, 0.40, 0.06);
  EXPECT_NEAR(Correlation(returns[1], returns[399300]), 1, 0.01) << "indices move as one";
}

TEST(LiveSimulation, IsTheSameForTheSameSeed) {
  Market first(11), second(11), other(12);
  for (int step = 0; step < 200; ++step) {
    first.simulation.Step();
    second.simulation.Step();
    other.simulation.Step();
  }
  EXPECT_EQ(first.Prices(), second.Prices());
  int differences = 0;
  const std::vector<std::int64_t> one = first.Prices(), another = other.Prices();
  for (std::size_t i = 0; i < one.size(); ++i) differences += one[i] != another[i] ? 1 : 0;
  EXPECT_GT(differences, 50);
}

TEST(LiveSimulation, AnotherOneGoesOnWhereItStood) {
  Market first(11, 60);
  first.StepTo(Time(10, 30));
  const LiveSimulation::State state = first.simulation.Now();
  Market second(99, 60);
  EXPECT_TRUE(second.simulation.GoOnFrom(state));
  EXPECT_EQ(second.Prices(), first.Prices());
  EXPECT_EQ(second.simulation.SecondOfDay(), Time(10, 30));
  for (std::size_t place = 0; place < first.service.Quotes().size(); ++place)
    EXPECT_EQ(second.service.Quotes()[place].day, first.service.Quotes()[place].day);
}

TEST(LiveSimulation, TakesNoStateThatCannotBe) {
  const LiveSimulation::State good = Market(11, 60).simulation.Now();
  Market market(3);
  const std::vector<std::int64_t> before = market.Prices();
  for (const double time : {0.0, 86399.0, std::nan(""), -1.0}) {
    LiveSimulation::State state = good;
    state.secondOfDay = time;
    EXPECT_FALSE(market.simulation.GoOnFrom(state)) << time;
  }
  LiveSimulation::State state = good;
  for (LiveSimulation::State::Item& item : state.items) {
    item.quote.price.mantissa *= 3;                                         // beyond every limit
    if (item.codeNumber < 1000000) item.quote.previousClose.mantissa += 1;  // of another day
  }
  state.items.push_back({1999999, 1, {1999999, Price(100), Price(100)}});
  EXPECT_TRUE(market.simulation.GoOnFrom(state));
  EXPECT_EQ(market.Prices(), before);
}

}  // namespace
}  // namespace holdwise
