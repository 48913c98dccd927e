// SPDX-License-Identifier: MIT
#pragma once
#include "common/frames/column_table.h"

/// Columns of the two grids of the smart allocation.
namespace holdwise::allocation {

/// The candidate list.
enum CandidateColumn : int {
  kNumber,
  kStyle,
  kTarget,
  kVariance,
  kBeta,
  kOperation,
  kFileName,  ///< of the composition, hidden
  kCandidateColumns
};

/// The holdings of the selected candidate.
enum PartColumn : int {
  kCode,
  kSecurityName,
  kQuantity,
  kWeight,  ///< a fraction; drawn in percent
  kPrice,   ///< yuan, the price that the quantity rests on; this and what follows is hidden
  kWeightError,
  kLeftOver,      ///< the same in every row
  kLargestError,  ///< likewise
  kPartColumns
};

[[nodiscard]] const ColumnTable& CandidateTable();
/// Captions over the shown columns, in two lines.
[[nodiscard]] QStringList CandidateCaptions();
[[nodiscard]] QStringList PartCaptions();
[[nodiscard]] const ColumnTable& PartTable();
/// Titles of all columns, for tables that show the hidden ones too.
[[nodiscard]] QStringList PartTitles();

}  // namespace holdwise::allocation
