// SPDX-License-Identifier: MIT
#pragma once
#include <array>
#include <span>
#include <string>
#include <vector>

#include "holdwise/market/figures.h"
#include "holdwise/packet/result_set.h"

/// The figures of securities as tables of the data folder. Pure and thread-safe.
namespace holdwise {

/// An empty statistics table. Its first column, `SecuCode`, tells each row's security.
[[nodiscard]] ResultSet MakeStatisticsTable();
/// One security as its bars tell of it.
struct SecurityBars {
  int code = 0;                       ///< code number, 1600000 for 600000; 1, 399001, 399300 for the indices
  std::span<const Bar> bars;          ///< ascending by date, also from before the window
  std::span<const int> tradingDates;  ///< on which its price stands still without a bar (StandingBars); an index: none
};
/// A series of a security and its figures.
struct SeriesFigures {
  PeriodSeries series;
  Figures figures;
};
/// What a security's rows are made of: about a third of their size.
struct SecurityStatistics {
  int code = 0;  ///< as SecurityBars::code
  Window window;
  std::array<SeriesFigures, std::size(kPeriodTypes)> ofTypes;  ///< in the order of kPeriodTypes
};
/// The three series of one security, with their figures over the periods of `market` (the composite index's; an
/// index's own). Days are there where they have a bar, weeks and months also where the price only stood still.
[[nodiscard]] SecurityStatistics ComputeStatistics(const SecurityBars& security, const MarketReturns& market,
                                                   Window window, double riskFreePerDay);
/// Appends the three series to a statistics table, one after the other, with their means and deviations.
void AppendStatistics(ResultSet& table, const SecurityStatistics& security);

/// A security's row of a risk file.
struct RiskRow {
  std::string code;  ///< six digits
  Figures figures;
};
/// Beta, alpha, Treynor and Sharpe with twelve significant digits: the terminal shows them as they stand.
[[nodiscard]] ResultSet RiskTable(const std::vector<RiskRow>& rows);

}  // namespace holdwise
