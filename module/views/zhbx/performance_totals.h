// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <vector>

#include "common/frames/totals_strip.h"

/// Sums under the performance view's grids: pure functions. Money in yuan, the rate in percent, both with two decimals.
namespace holdwise {

/// What one row, a portfolio or a holding, brings to the sums.
struct TotalInput {
  QString name;
  double value = 0;          ///< now; 0: not known
  double previousValue = 0;  ///< at the previous closes; 0: not known
  double cost = 0;           ///< 0: not known
  bool isPartial = false;    ///< some of its securities have no price: the value lacks them
};

/// Value, gain of the day, gain since purchase, and the latter in percent of what was paid. A row that lacks what a sum
/// needs is left out of that sum, and so is a partial one of all but the value; each sum's remark names them. A sum of
/// nothing is "—", a rate of nothing paid as well. No rows: no sums.
/// @param what the rows are, as "个组合"
[[nodiscard]] std::vector<Total> TotalsOf(const std::vector<TotalInput>& rows, const QString& what);

}  // namespace holdwise
