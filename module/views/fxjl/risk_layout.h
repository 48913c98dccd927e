// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "common/frames/column_table.h"

/// Columns of the risk view's two grids and the texts of its figures. Pure functions.
namespace holdwise::risk {

/// The portfolio list.
enum PortfolioColumn : int {
  kName,
  kVariance,
  kDeviation,
  kAlpha,
  kBeta,
  kId,  ///< key, hidden
  kPortfolioColumns
};

/// The securities of the selected portfolio.
enum SecurityColumn : int {
  kCode,
  kSecurityName,
  kSecurityVariance,
  kSecurityDeviation,
  kSecurityAlpha,
  kSecurityBeta,
  kSecurityColumns
};

/// Equal shares; what is left over goes to the last shown column. The figures are drawn with six decimals.
[[nodiscard]] const ColumnTable& PortfolioTable();
[[nodiscard]] const ColumnTable& SecurityTable();

/// A risk figure with six decimals.
[[nodiscard]] QString FigureText(double figure);

/// Deviation of a security's daily returns (a fraction) and the variance that follows from it.
struct DeviationTexts {
  QString variance;
  QString deviation;
};
[[nodiscard]] DeviationTexts TextsOfDeviation(double deviation);

}  // namespace holdwise::risk
