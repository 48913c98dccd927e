// SPDX-License-Identifier: MIT
#pragma once
#include <span>
#include <string>
#include <vector>

#include "holdwise/market/figures.h"
#include "holdwise/packet/result_set.h"

/// The figures of securities as tables of the data folder. Pure and thread-safe.
namespace holdwise {

/// An empty statistics table. With `hasCode` the first column is `SecuCode`, as in the file of the indices.
[[nodiscard]] ResultSet MakeStatisticsTable(bool hasCode);
/// The daily series of a security and its figures.
struct DailyFigures {
  PeriodSeries series;
  Figures figures;
};
/// Appends the three series of one security, one after the other, with their means and deviations over the periods of
/// `market` (the composite index's; an index's own). `code` is used only by a table that has a code column. Returns the
/// daily one, with its figures against that index.
DailyFigures AppendStatistics(ResultSet& table, std::span<const Bar> bars, const MarketReturns& market, Window window,
                              double riskFreePerDay, int code = 0);

/// A security's row of a risk file.
struct RiskRow {
  std::string code;  ///< six digits
  Figures figures;
};
/// Beta, alpha, Treynor and Sharpe with twelve significant digits: the terminal shows them as they stand.
[[nodiscard]] ResultSet RiskTable(const std::vector<RiskRow>& rows);

}  // namespace holdwise
