// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/column_table.h"

/// Columns of the performance view's two grids.
namespace holdwise::performance {

/// The portfolio list.
enum PortfolioColumn : int {
  kName,
  kCreated,
  kValue,
  kDayChange,
  kWeekChange,
  kMonthChange,
  kGain,
  kGainRate,
  kOperation,  ///< the delete picture, no text
  kId,         ///< key, hidden
  kPortfolioColumns
};

/// The holdings of the selected portfolio.
enum HoldingColumn : int {
  kCode,
  kSecurityName,
  kIndustry,
  kPrice,
  kChange,
  kQuantity,
  kWeight,
  kDayContribution,
  kWeekContribution,
  kMonthContribution,
  kHoldingGain,
  kHoldingGainRate,
  kBuyPrice,  ///< hidden, like the next two
  kWeekClose,
  kMonthClose,
  kHoldingColumns
};

/// Equal shares with fixed additions of single columns. The list's add up to the client width.
[[nodiscard]] const ColumnTable& PortfolioTable();
[[nodiscard]] const ColumnTable& HoldingTable();

}  // namespace holdwise::performance
