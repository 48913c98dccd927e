// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

namespace holdwise {

/// One row of the holdings grid, as texts: price in yuan and quantity in shares stand as they were typed.
struct HoldingRow {
  QString code;  ///< six digits
  QString name;
  QString price;
  QString quantity;
  bool operator==(const HoldingRow&) const = default;
};

/// Columns of the holdings grid.
enum HoldingsColumn : int { kHoldingCode, kHoldingName, kHoldingPrice, kHoldingQuantity, kHoldingsColumns };

/// A portfolio takes no further holding when it has so many, neither by hand nor pasted.
inline constexpr int kMostHoldings = 10;

}  // namespace holdwise
