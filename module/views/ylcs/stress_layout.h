// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/column_table.h"

/// Columns of the stress view's two grids.
namespace holdwise::stress {

/// The portfolio list.
enum PortfolioColumn : int {
  kName,
  kCreated,
  kValue,
  kChange,
  kGain,
  kGainRate,
  kId,  ///< key, hidden
  kPortfolioColumns
};

/// The holdings of the selected portfolio.
enum HoldingColumn : int { kCode, kSecurityName, kPrice, kHoldingChange, kProfit, kHoldingColumns };

/// Equal shares; what is left over goes to the last shown column.
[[nodiscard]] const ColumnTable& PortfolioTable();
[[nodiscard]] const ColumnTable& HoldingTable();

}  // namespace holdwise::stress
