// SPDX-License-Identifier: MIT
#pragma once
#include <array>
#include <span>
#include <vector>

#include "holdwise/market/period_series.h"

/// The figures of one security: means and deviations of the statistics files, risk figures against an index. Pure and
/// thread-safe.
namespace holdwise {

/// An index's periods with a return, ascending: what can count for a security.
struct IndexReturns {
  std::vector<int> periods;  ///< as PeriodRow::period
  std::vector<double> returns;
  bool operator==(const IndexReturns&) const = default;
};
/// The first bar of all has no previous close and therefore no return.
[[nodiscard]] IndexReturns ReturnsOf(const PeriodSeries& series);

/// An index's returns by days, weeks and months, in the order of kPeriodTypes.
using MarketReturns = std::array<IndexReturns, std::size(kPeriodTypes)>;
[[nodiscard]] MarketReturns ReturnsOf(std::span<const Bar> indexBars, Window window);

/// A security's returns in the periods of an index that count for it.
struct AlignedReturns {
  int first = 0;               ///< place in the index's periods of the first one that counts
  std::vector<double> values;  ///< from that one to the index's last, fractions; 0 in a period without a row
  int traded = 0;              ///< periods with a row among them
  bool operator==(const AlignedReturns&) const = default;
};
/// What counts is said at ComputeFigures. Nothing: empty.
[[nodiscard]] AlignedReturns AlignReturns(const PeriodSeries& series, const IndexReturns& index);

struct Figures {
  int count = 0;          ///< periods that count
  double meanReturn = 0;  ///< PJSYL
  double variance = 0;    ///< FC
  double deviation = 0;   ///< SYLBZC, ZHBZC
  double beta = 0;
  double alpha = 0;
  double treynor = 0;
  double sharpe = 0;
  bool operator==(const Figures&) const = default;
};

/// The one definition of a security's figures, for base data, risk files and (in the database's procedure, from the
/// rows of the base data) portfolios: a portfolio of one stock has that stock's figures.
///
/// The periods that count are those of `index`, from the first one on that is not before the security's first row with
/// a previous close: both series are cut to the same window, so "first" means first inside the window. Let r(1..n) be
/// the security's returns in them and m(1..n) the index's. Where the security has no row, r = 0: the price stood still,
/// and the row of the reopening carries the whole change. Rows of the security in a period that is none of the index do
/// not count.
///
///   meanReturn = sum r / n                      variance = sum (r - mean(r))^2 / (n - 1)      (sample variance)
///   deviation  = sqrt(variance)                 beta     = sum (r - mean(r))(m - mean(m)) / sum (m - mean(m))^2
///   alpha      = mean(r) - (rf + beta x (mean(m) - rf))                                       (Jensen)
///   treynor    = (mean(r) - rf) / beta          sharpe   = (mean(r) - rf) / deviation
///
/// rf is `riskFree`, the fraction earned without risk in one period. Beta is the sample covariance divided by the
/// index's sample variance; their divisors n - 1 cancel out. With n below 2 variance and beta are 0, with n = 0
/// everything is. A zero divisor gives 0.
[[nodiscard]] Figures ComputeFigures(const PeriodSeries& series, const IndexReturns& index, double riskFree = 0);
/// The same of returns that are aligned already.
/// @param own r(1..n)
/// @param market m(1..n), as many
[[nodiscard]] Figures FiguresOf(std::span<const double> own, std::span<const double> market, double riskFree = 0);

}  // namespace holdwise
