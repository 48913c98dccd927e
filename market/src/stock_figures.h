// SPDX-License-Identifier: MIT
#pragma once
#include <array>
#include <span>
#include <string>
#include <vector>

#include "base_files.h"
#include "holdwise/market/statistics.h"
#include "holdwise/market/stock_pool.h"
#include "holdwise/packet/code_numbers.h"

/// What a data folder has of one security. Pure and thread-safe.
namespace holdwise {

/// What the figures of every stock rest on beside its own bars.
struct MarketBasis {
  std::vector<int> tradingDates;
  Window window;
  int lastDate = 0;  ///< lines after it are not read
  double riskFreePerDay = 0;
  std::array<MarketReturns, kIndexCount> indexReturns;  ///< in the order of kIndexNumbers
  bool forProposals = false;                            ///< facts for the stock pool are wanted
  bool operator==(const MarketBasis&) const = default;
};

struct StockFigures {
  bool isUsable = false;  ///< without a bar there is nothing else
  bool hasDays = false;   ///< inside the window
  BaseFile file;
  QuoteRow quote;
  StockFacts facts;                       ///< when they are wanted, what the bars tell
  std::array<Figures, kIndexCount> risk;  ///< in the order of kIndexNumbers
};
[[nodiscard]] StockFigures FiguresOfStock(const std::string& code, const BarFile& file, const MarketBasis& market);

/// The last two closes; without a bar on the window's last day the price stood still on it. `bars` must not be empty.
[[nodiscard]] QuoteRow ClosingQuote(const std::vector<Bar>& bars, Window window);

/// Inside the data folder, with "/" behind it.
[[nodiscard]] QString StatisticsFolder();
[[nodiscard]] ResultSet StatisticsTable(std::span<const SecurityStatistics> securities);

}  // namespace holdwise
