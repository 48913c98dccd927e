// SPDX-License-Identifier: MIT
#include "holdwise/market/stock_pool.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "holdwise/market/market_rules.h"

namespace holdwise {
namespace {

std::int64_t Cents(double price) {
  return std::llround(price * 100);
}

bool IsSpeciallyTreated(const std::string& name) {
  return name.find("ST") != std::string::npos || name.find("ＳＴ") != std::string::npos ||
         name.find("退") != std::string::npos;
}

bool IsLimitLocked(const StockFacts& stock) {
  if (stock.previousClose <= 0) return false;
  const PriceLimits limits = LimitsAround(Cents(stock.previousClose), PriceLimitPercent(stock.code));
  return Cents(stock.price) >= limits.upper || Cents(stock.price) <= limits.lower;
}

// The last days are those that all stocks of the pool have in common.
bool NeverMoves(const AlignedReturns& returns, int days) {
  const auto count = std::min(returns.values.size(), static_cast<std::size_t>(days));
  const double last = returns.values.back();
  return std::all_of(returns.values.end() - static_cast<std::ptrdiff_t>(count), returns.values.end(),
                     [last](double value) { return value == last; });
}

std::optional<PoolExclusion> Exclusion(const StockFacts& stock, const PoolRules& rules) {
  if (!IsAShare(stock.code)) return PoolExclusion::NoAShare;
  if (!rules.takesStar && IsStar(stock.code)) return PoolExclusion::Star;
  if (!rules.takesSpecialTreatment && IsSpeciallyTreated(stock.name)) return PoolExclusion::SpecialTreatment;
  if (!rules.takesSuspended && stock.isSuspended) return PoolExclusion::Suspended;
  if (!rules.takesLimitLocked && IsLimitLocked(stock)) return PoolExclusion::LimitLocked;
  if (stock.returns.traded < std::max(2, rules.leastReturns)) return PoolExclusion::FewReturns;
  if (NeverMoves(stock.returns, std::max(2, rules.leastReturns))) return PoolExclusion::NeverMoved;
  return std::nullopt;
}

}  // namespace

double MeanTurnover(const BarFile& file, std::span<const int> tradingDates) {
  const std::size_t days = std::min<std::size_t>(kTurnoverDays, tradingDates.size());
  if (file.volumes.empty() || days == 0) return 0;
  const int firstDate = tradingDates[tradingDates.size() - days];
  double sum = 0;
  for (std::size_t i = file.bars.size(); i > 0 && file.bars[i - 1].date >= firstDate; --i) {
    sum += file.bars[i - 1].close * file.volumes[i - 1];
  }
  return sum / static_cast<double>(days);
}

void CompleteFacts(StockFacts& stock, const Security& security, const QuoteRow& quote) {
  stock.name = security.name;
  stock.industry = security.industry;
  stock.price = quote.price;
  stock.previousClose = quote.previousClose;
  stock.isSuspended = quote.isSuspended;
}

StockPool ChoosePool(std::vector<StockFacts> stocks, const PoolRules& rules) {
  StockPool pool;
  const auto countOut = [&pool](PoolExclusion reason) { ++pool.excluded[static_cast<std::size_t>(reason)]; };
  for (StockFacts& stock : stocks) {
    if (const auto reason = Exclusion(stock, rules)) {
      countOut(*reason);
    } else {
      pool.stocks.push_back(std::move(stock));
    }
  }
  pool.knowsTurnover =
      std::any_of(pool.stocks.begin(), pool.stocks.end(), [](const StockFacts& stock) { return stock.turnover > 0; });
  const auto isBusier = [](const StockFacts& a, const StockFacts& b) {
    return a.turnover != b.turnover ? a.turnover > b.turnover : a.code < b.code;
  };
  std::sort(pool.stocks.begin(), pool.stocks.end(), isBusier);
  for (; static_cast<int>(pool.stocks.size()) > rules.most; pool.stocks.pop_back()) countOut(PoolExclusion::Turnover);
  std::sort(pool.stocks.begin(), pool.stocks.end(),
            [](const StockFacts& a, const StockFacts& b) { return a.code < b.code; });
  return pool;
}

int LeastShares(std::string_view sixDigits) noexcept {
  constexpr int kLot = 100;
  constexpr int kStarLeast = 200;
  return IsStar(sixDigits) ? kStarLeast : kLot;
}

double HighestNextPrice(std::string_view sixDigits, double price) noexcept {
  return static_cast<double>(LimitsAround(Cents(price), PriceLimitPercent(sixDigits)).upper) / 100;
}

}  // namespace holdwise
