// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/column_table.h"

namespace holdwise::decomposition {

/// Columns of the decomposition view's list; those behind the shown ones carry the inputs.
enum Column : int {
  kName,
  kReturn,
  kExcess,
  kRiskPremium,
  kSelection,
  kDiversification,
  kNetSelection,
  kId,               ///< key
  kRiskFree,         ///< one-year deposit rate, percent
  kIndexAtPurchase,  ///< points
  kBeta,
  kDeviation,
  kColumns
};

/// Equal shares; what is left over goes to the last shown column.
[[nodiscard]] const ColumnTable& PortfolioTable();

}  // namespace holdwise::decomposition
