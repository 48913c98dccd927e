// SPDX-License-Identifier: MIT
#include "holdwise/market/live_simulation.h"

#include <algorithm>

#include "holdwise/market/market_rules.h"

namespace holdwise {
namespace {

constexpr double kMarketStep = 0.0002;
constexpr double kOwnStep = 0.0008;
constexpr double kTradedShare = 1.0 / 3;

}  // namespace

LiveSimulation::LiveSimulation(QuoteService& service, std::uint64_t seed) : service_(service), random_(seed) {
  exactPrices_.reserve(service.Quotes().size());
  for (const Quote& quote : service.Quotes()) exactPrices_.push_back(quote.price.ToDouble());
  changes_.reserve(exactPrices_.size());
}

void LiveSimulation::Step() {
  const double marketMove = kMarketStep * random_.Normal();
  market_ += marketMove;
  changes_.clear();
  const std::vector<Quote>& quotes = service_.Quotes();
  for (std::size_t i = 0; i < quotes.size(); ++i) {
    const Quote& quote = quotes[i];
    const bool isStock = quote.codeNumber >= 1'000'000;
    // The draws do not depend on prices, so one seed gives one sequence whatever the limits cut off.
    const bool isTraded = random_.Uniform() < kTradedShare || !isStock;
    const double ownMove = random_.Normal() * (isStock ? kOwnStep : 0);
    exactPrices_[i] *= 1 + marketMove;
    if (!isTraded || quote.previousClose.mantissa <= 0) continue;
    if (quote.price.mantissa == 0) exactPrices_[i] = quote.previousClose.ToDouble() * (1 + market_);
    exactPrices_[i] *= 1 + ownMove;

    // The limits as the exchanges state them: previous close x (1 +- limit), rounded to the tick.
    const std::int64_t close = quote.previousClose.mantissa;
    const int percent = PriceLimitPercent(quote.codeNumber);
    const std::int64_t upper = (close * (100 + percent) + 50) / 100;
    const std::int64_t lower = std::max<std::int64_t>(1, (close * (100 - percent) + 50) / 100);
    Decimal price = Decimal::FromDouble(exactPrices_[i], 2);
    if (price.mantissa > upper || price.mantissa < lower) {
      price.mantissa = std::clamp(price.mantissa, lower, upper);
      exactPrices_[i] = price.ToDouble();
    }
    changes_.push_back({quote.codeNumber, price});
  }
  service_.SetPrices(changes_);
}

}  // namespace holdwise
