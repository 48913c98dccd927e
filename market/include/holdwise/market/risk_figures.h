#pragma once
#include <array>
#include <string>
#include <vector>

#include "holdwise/market/statistics.h"
#include "holdwise/packet/result_set.h"

/// Risk figures of one security against an index over the window, by the definitions of the database's procedure for
/// portfolios, so that a portfolio of one holding has the figures of its security. Pure and thread-safe.
namespace holdwise {

/// An index's days with a return, ascending: the days that every figure is made of.
struct IndexReturns {
  std::vector<int> dates;  ///< YYYYMMDD
  std::vector<double> returns;
};
/// Of a daily series. Its first bar of all has no previous close and therefore no return.
[[nodiscard]] IndexReturns ReturnsOf(const PeriodSeries& daily);

struct RiskFigures {
  double beta = 0;     ///< sample covariance with the index / sample variance of the index
  double alpha = 0;    ///< Jensen: mean(r) - (rf + beta x (mean(index) - rf)), a day
  double treynor = 0;  ///< (mean(r) - rf) / beta
  double sharpe = 0;   ///< (mean(r) - rf) / sample standard deviation
  bool operator==(const RiskFigures&) const = default;
};
/// On a day of the index without a row the security counts 0. `riskFreePerDay` is a fraction. A zero divisor gives 0,
/// and so does everything when the index has no day.
[[nodiscard]] RiskFigures ComputeRisk(const PeriodSeries& daily, const IndexReturns& index, double riskFreePerDay);

/// A security's row of a risk file.
struct RiskRow {
  std::string code;  ///< six digits
  RiskFigures figures;
};
/// The figures with twelve significant digits: the terminal shows them as they stand.
[[nodiscard]] ResultSet RiskTable(const std::vector<RiskRow>& rows);

}  // namespace holdwise
