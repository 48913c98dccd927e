// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>
#include <vector>

#include "common/grid/string_grid.h"
#include "holding_row.h"

/// A portfolio on its way from the editor to the database. Pure functions.
namespace holdwise::editor {

struct PortfolioDraft {
  QString name;        ///< without blanks around it and without single quotes
  QString indexClose;  ///< of index 1, points, "0.00"
  std::vector<HoldingRow> holdings;
};

/// The first price or quantity, row by row, that is 0 or no number; none when there is no such cell.
[[nodiscard]] std::optional<GridCell> FirstZero(const std::vector<HoldingRow>& holdings);
/// Sum of quantity x price, yuan; a text that is no number counts 0.
[[nodiscard]] double CostOf(const std::vector<HoldingRow>& holdings);
/// The holding's part of that sum, a fraction, shortest text. `cost` must not be 0.
[[nodiscard]] QString WeightOf(const HoldingRow& holding, double cost);

}  // namespace holdwise::editor
