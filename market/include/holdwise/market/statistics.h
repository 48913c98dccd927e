// SPDX-License-Identifier: MIT
#pragma once
#include <span>
#include <string>
#include <vector>

#include "holdwise/market/figures.h"
#include "holdwise/packet/result_set.h"

/// The figures of securities as tables of the data folder. Pure and thread-safe.
namespace holdwise {

/// An empty statistics table. Its first column, `SecuCode`, tells each row's security.
[[nodiscard]] ResultSet MakeStatisticsTable();
/// The daily series of a security and its figures.
struct DailyFigures {
  PeriodSeries series;
  Figures figures;
};
/// One security as its bars tell of it.
struct SecurityBars {
  int code = 0;                       ///< code number, 1600000 for 600000; 1, 399001, 399300 for the indices
  std::span<const Bar> bars;          ///< ascending by date, also from before the window
  std::span<const int> tradingDates;  ///< on which its price stands still without a bar (StandingBars); an index: none
};
/// Appends the three series of one security, one after the other, with their means and deviations over the periods of
/// `market` (the composite index's; an index's own). Days have a row where they have a bar, weeks and months also
/// where the price only stood still. Returns the daily series, with its figures against that index.
DailyFigures AppendStatistics(ResultSet& table, const SecurityBars& security, const MarketReturns& market,
                              Window window, double riskFreePerDay);

/// A security's row of a risk file.
struct RiskRow {
  std::string code;  ///< six digits
  Figures figures;
};
/// Beta, alpha, Treynor and Sharpe with twelve significant digits: the terminal shows them as they stand.
[[nodiscard]] ResultSet RiskTable(const std::vector<RiskRow>& rows);

}  // namespace holdwise
