// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/column_table.h"

/// Columns and captions of the portfolio editor's lower grids.
namespace holdwise::editor {

/// The list of unsaved portfolios.
enum PortfolioColumn : int {
  kNumber,  ///< 1, 2, ... in list order
  kName,
  kCreated,
  kStyle,
  kTarget,  ///< percent
  kVariance,
  kBeta,
  kOperation,  ///< the three pictures, no text
  kPortfolioColumns
};

/// The holdings of the selected portfolio.
enum DetailColumn : int {
  kCode,
  kSecurityName,
  kQuantity,
  kWeight,    ///< the stored fraction, drawn in percent
  kBuyPrice,  ///< hidden
  kDetailColumns
};

[[nodiscard]] const ColumnTable& PortfolioTable();
[[nodiscard]] const ColumnTable& DetailTable();

/// One line each, or two lines, parted by "\r", where a title is long.
enum class TitleMode { OneLine, TwoLines };
struct Captions {
  QStringList list;      ///< 8
  QStringList details;   ///< 4
  QStringList holdings;  ///< 4
};
[[nodiscard]] Captions CaptionsOf(TitleMode mode);

}  // namespace holdwise::editor
