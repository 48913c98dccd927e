// SPDX-License-Identifier: MIT
#include "holdwise/market/live_simulation.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "holdwise/market/market_rules.h"

namespace holdwise {
namespace {

constexpr double kMarketStep = 0.0002;
constexpr double kOwnStep = 0.0008;
constexpr double kTradedShare = 1.0 / 3;

constexpr double kMinute = 60, kHour = 3600;
constexpr double kMorning = 9.5 * kHour, kNoon = 11.5 * kHour, kAfternoon = 13 * kHour, kClose = 15 * kHour;
constexpr double kNextDay = kClose + 10 * kMinute;
constexpr double kTradedSeconds = 4 * kHour;

constexpr int kPriceDecimals = 2;
constexpr std::int64_t kLot = 100;

/// Seconds of trading between two times of the day.
double TradedBetween(double from, double to) {
  const auto inside = [from, to](double open, double close) {
    return std::max(0.0, std::min(to, close) - std::max(from, open));
  };
  return inside(kMorning, kNoon) + inside(kAfternoon, kClose);
}

/// More is traded after the opening and before the close than around noon; about 1 in the mean.
double Liveliness(double secondOfDay) {
  const double sinceOpening = TradedBetween(kMorning, secondOfDay) / kTradedSeconds;
  return 0.6 + 1.6 * std::exp(-8 * sinceOpening) + 0.8 * std::exp(-8 * (1 - sinceOpening));
}

/// What a stock's trade is worth a day: 300 million to 9 billion yuan, for ever the same for the same stock.
double YuanADay(int codeNumber) {
  const std::uint32_t mixed = static_cast<std::uint32_t>(codeNumber) * 2654435761U;
  return 3e8 * std::pow(30.0, static_cast<double>(mixed >> 8U) / static_cast<double>(1U << 24U));
}

DayTrade Traded(const DayTrade& before, std::int64_t price, std::int64_t shares, std::int64_t amount) {
  DayTrade day = before;
  day.volume = std::max<std::int64_t>(day.volume, 0) + shares;
  day.amount = std::max<std::int64_t>(day.amount, 0) + amount;
  if (day.open < 0) day.open = day.high = day.low = price;
  day.high = std::max(day.high, price);
  day.low = std::min(day.low, price);
  return day;
}

bool FitsLimits(const Quote& quote) {
  if (quote.price.scale != kPriceDecimals || quote.price.mantissa <= 0 || quote.previousClose.mantissa <= 0)
    return false;
  if (!IsStockNumber(quote.codeNumber)) return true;
  const PriceLimits limits = LimitsAround(quote.previousClose.mantissa, PriceLimitPercent(quote.codeNumber));
  return quote.price.mantissa >= limits.lower && quote.price.mantissa <= limits.upper;
}

}  // namespace

LiveSimulation::LiveSimulation(QuoteService& service, std::uint64_t seed, double speed)
    : service_(service),
      random_(seed),
      speed_(std::clamp(speed, kSlowest, kFastest)),
      first_(service.Quotes()),
      walks_(first_.size()) {
  changes_.reserve(first_.size());
  Begin();
}

void LiveSimulation::Begin() {
  secondOfDay_ = kMorning;
  market_ = 0;
  changes_.clear();
  for (std::size_t place = 0; place < first_.size(); ++place) {
    const Quote& quote = first_[place];
    const std::int64_t price = quote.price.mantissa;
    Walk& walk = walks_[place];
    walk.exactPrice = quote.price.ToDouble();
    walk.isSuspended = IsStockNumber(quote.codeNumber) && price > 0 && quote.price == quote.previousClose;
    walk.sharesASecond = price > 0 ? YuanADay(quote.codeNumber) / kTradedSeconds / walk.exactPrice : 0;
    DayTrade day;
    day.volume = day.amount = 0;
    if (price > 0 && !walk.isSuspended) day.open = day.high = day.low = price;
    changes_.push_back({quote.codeNumber, quote.price, day});
  }
  service_.SetPrices(changes_);
  TellTime();
}

void LiveSimulation::Step() {
  const double before = secondOfDay_;
  secondOfDay_ += speed_;
  if (secondOfDay_ >= kNextDay) return Begin();
  if (const double seconds = TradedBetween(before, secondOfDay_); seconds > 0) Move(seconds);
  TellTime();
}

void LiveSimulation::TellTime() {
  const int second = SecondOfDay();
  service_.SetMarketTime(static_cast<std::uint32_t>(second / 3600 * 10000 + second / 60 % 60 * 100 + second % 60));
}

void LiveSimulation::Move(double seconds) {
  // Sums of so many independent moves of a second, a stock's own of those seconds in which it is traded.
  const double share = 1 - std::pow(1 - kTradedShare, seconds);
  const double ownStep = kOwnStep * std::sqrt(seconds * kTradedShare / share);
  const double marketMove = kMarketStep * std::sqrt(seconds) * random_.Normal();
  const double liveliness = Liveliness(secondOfDay_) * seconds / share;
  market_ += marketMove;
  changes_.clear();
  std::int64_t sharesOf[3] = {}, amountOf[3] = {};  // of both markets, [0], and of each
  const std::vector<Quote>& quotes = service_.Quotes();
  for (std::size_t place = 0; place < quotes.size(); ++place) {
    const int codeNumber = quotes[place].codeNumber;
    Walk& walk = walks_[place];
    // The draws do not depend on prices, so one seed gives one sequence whatever the limits cut off.
    const bool isTraded = random_.Uniform() < share || !IsStockNumber(codeNumber);
    const double ownMove = random_.Normal() * (IsStockNumber(codeNumber) ? ownStep : 0);
    const double eagerness = 0.3 + 1.4 * random_.Uniform();
    if (walk.isSuspended) continue;
    walk.exactPrice *= 1 + marketMove;
    if (!isTraded || quotes[place].previousClose.mantissa <= 0) continue;
    if (quotes[place].price.mantissa == 0) walk.exactPrice = quotes[place].previousClose.ToDouble() * (1 + market_);
    walk.exactPrice *= 1 + ownMove;
    const double lots = walk.sharesASecond * liveliness * eagerness / static_cast<double>(kLot);
    const auto shares = IsStockNumber(codeNumber) ? std::max<std::int64_t>(std::llround(lots), 1) * kLot : 0;
    changes_.push_back(Moved(place, shares));
    const int market = codeNumber / 100'000 % 10 >= 6 ? 1 : 2;
    for (const int group : {0, market}) {
      sharesOf[group] += shares;
      amountOf[group] += shares * changes_.back().price.mantissa;
    }
  }
  for (QuoteService::PriceChange& change : changes_) {
    if (IsStockNumber(change.codeNumber)) continue;
    const int group = change.codeNumber == kIndexNumbers[0] ? 1 : change.codeNumber == kIndexNumbers[1] ? 2 : 0;
    change.day = Traded(change.day, change.price.mantissa, sharesOf[group], amountOf[group]);
  }
  service_.SetPrices(changes_);
}

QuoteService::PriceChange LiveSimulation::Moved(std::size_t place, std::int64_t shares) {
  const Quote& quote = service_.Quotes()[place];
  Walk& walk = walks_[place];
  const PriceLimits limits = LimitsAround(quote.previousClose.mantissa, PriceLimitPercent(quote.codeNumber));
  Decimal price = Decimal::FromDouble(walk.exactPrice, kPriceDecimals);
  if (price.mantissa > limits.upper || price.mantissa < limits.lower) {
    price.mantissa = std::clamp(price.mantissa, limits.lower, limits.upper);
    walk.exactPrice = price.ToDouble();
  }
  if (walk.sharesASecond == 0) walk.sharesASecond = YuanADay(quote.codeNumber) / kTradedSeconds / price.ToDouble();
  return {quote.codeNumber, price, Traded(quote.day, price.mantissa, shares, shares * price.mantissa)};
}

LiveSimulation::State LiveSimulation::Now() const {
  State state{secondOfDay_, market_, {}};
  const std::vector<Quote>& quotes = service_.Quotes();
  state.items.reserve(quotes.size());
  for (std::size_t place = 0; place < quotes.size(); ++place)
    state.items.push_back({quotes[place].codeNumber, walks_[place].exactPrice, quotes[place]});
  return state;
}

bool LiveSimulation::GoOnFrom(const State& state) {
  if (!(state.secondOfDay >= kMorning && state.secondOfDay < kNextDay) || !std::isfinite(state.marketMove))
    return false;
  secondOfDay_ = state.secondOfDay;
  market_ = state.marketMove;
  std::unordered_map<int, std::size_t> places;
  for (std::size_t place = 0; place < first_.size(); ++place) places.emplace(first_[place].codeNumber, place);
  changes_.clear();
  for (const State::Item& item : state.items) {
    const auto found = places.find(item.codeNumber);
    if (found == places.end() || item.quote.codeNumber != item.codeNumber || !FitsLimits(item.quote)) continue;
    Walk& walk = walks_[found->second];
    const double share = item.exactPrice / item.quote.price.ToDouble();
    const bool isNear = share > 0.5 && share < 2;
    if (walk.isSuspended || !isNear || item.quote.previousClose != first_[found->second].previousClose) continue;
    walk.exactPrice = item.exactPrice;
    changes_.push_back({item.codeNumber, item.quote.price, item.quote.day});
  }
  service_.SetPrices(changes_);
  TellTime();
  return true;
}

}  // namespace holdwise
