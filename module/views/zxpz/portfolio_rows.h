// SPDX-License-Identifier: MIT
#pragma once
#include "common/grid/string_grid.h"
#include "holding_row.h"
#include "holdwise/packet/result_set.h"

/// Between the stored portfolios and the rows of the editor's lower grids. User-interface thread.
namespace holdwise::editor {

/// One row a portfolio, numbered from 1. The grid is emptied before.
void ShowPortfolios(const ResultSet& portfolios, TStringGrid& grid);
/// What the list shows of a portfolio that has just been written, until the list is read again.
void ShowProvisional(const QString& name, const QString& today, int row, TStringGrid& grid);
/// One row a holding, in the order of the result; no holding empties the grid.
void ShowDetails(const ResultSet& holdings, TStringGrid& grid);
/// The rows of the detail grid as holdings to edit; none when it is empty.
[[nodiscard]] std::vector<HoldingRow> HoldingsIn(const TStringGrid& details);

}  // namespace holdwise::editor
