// SPDX-License-Identifier: MIT
#pragma once
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "holdwise/market/figures.h"
#include "holdwise/market/reference_files.h"

/// Which stocks portfolios are proposed of. Pure and thread-safe.
namespace holdwise {

/// Yuan a day: mean of close x volume over the last kTurnoverDays of `tradingDates` (ascending), a day without a bar
/// counting 0. Without volumes 0.
[[nodiscard]] double MeanTurnover(const BarFile& file, std::span<const int> tradingDates);
inline constexpr int kTurnoverDays = 60;

/// What is known of a stock on the market's date.
struct StockFacts {
  std::string code;  ///< six digits
  std::string name;
  std::string industry;      ///< empty = not known
  double price = 0;          ///< yuan
  double previousClose = 0;  ///< 0 = none
  bool isSuspended = false;
  double turnover = 0;     ///< as MeanTurnover
  AlignedReturns returns;  ///< on the composite index's days
  bool operator==(const StockFacts&) const = default;
};

/// Adds what is not in the bars.
void CompleteFacts(StockFacts& stock, const Security& security, const QuoteRow& quote);

/// Each rule leaves out what a person could not buy as proposed.
struct PoolRules {
  bool takesSuspended = false;         ///< no trade on the market's date
  bool takesLimitLocked = false;       ///< price at the day's upper or lower limit
  bool takesStar = false;              ///< 688, 689: lots of 200, then single shares
  bool takesSpecialTreatment = false;  ///< ST, *ST or being delisted (退) by its name
  int leastReturns = 200;              ///< days with a bar and a return inside the window
  int most = 300;                      ///< the stocks of the highest turnover, at most so many
  bool operator==(const PoolRules&) const = default;
};

/// Why a stock is not in the pool, in the order in which it is asked.
enum class PoolExclusion { NoAShare, Star, SpecialTreatment, Suspended, LimitLocked, FewReturns, NeverMoved, Turnover };
inline constexpr int kPoolExclusions = 8;

struct StockPool {
  std::vector<StockFacts> stocks;               ///< ascending by code
  std::array<int, kPoolExclusions> excluded{};  ///< stocks left out, by reason
  bool knowsTurnover = false;                   ///< volumes were there: without them `most` takes the lowest codes
};
/// Of equal turnover the lower code comes first.
[[nodiscard]] StockPool ChoosePool(std::vector<StockFacts> stocks, const PoolRules& rules);

/// Shares that an order buys at least: 200 on the STAR market, else 100.
[[nodiscard]] int LeastShares(std::string_view sixDigits) noexcept;
/// The highest price at which the stock can trade on the day after one that ended with `price`.
[[nodiscard]] double HighestNextPrice(std::string_view sixDigits, double price) noexcept;

}  // namespace holdwise
