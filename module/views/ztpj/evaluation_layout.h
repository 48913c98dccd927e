// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/column_table.h"

/// Columns of the evaluation view's two grids.
namespace holdwise::evaluation {

/// The portfolio list.
enum PortfolioColumn : int {
  kName,
  kReturn,
  kRiskFree,
  kExcess,
  kSharpe,
  kTreynor,
  kBeta,
  kId,  ///< key, hidden
  kPortfolioColumns
};

/// The holdings of the selected portfolio.
enum HoldingColumn : int {
  kCode,
  kSecurityName,
  kSecurityReturn,
  kSecurityRiskFree,
  kSecurityExcess,
  kSecuritySharpe,
  kSecurityTreynor,
  kSecurityBeta,
  kBuyPrice,  ///< hidden
  kHoldingColumns
};

/// Equal shares; what is left over goes to the last shown column.
[[nodiscard]] const ColumnTable& PortfolioTable();
[[nodiscard]] const ColumnTable& HoldingTable();

}  // namespace holdwise::evaluation
