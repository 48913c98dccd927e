// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>

#include "common/charts/step_chart.h"
#include "common/frames/view_frame.h"
#include "common/grid/string_grid.h"
#include "holdwise/packet/result_set.h"

/// Between the shared data, the rows of the decomposition view's list and its chart. User-interface thread.
namespace holdwise::decomposition {

/// One row a portfolio: its name and the inputs; the parts come with RefreshPortfolios.
/// @param rate one-year deposit rate, percent
void ShowPortfolios(const ResultSet& portfolios, double rate, TStringGrid& grid);

/// The parts of every row; one without a value keeps what it shows. The shared objects must exist. What a failing query
/// of theirs throws reaches the caller.
/// @return what the parts just computed lack; its text stays empty
ViewNotice RefreshPortfolios(TStringGrid& grid);

/// The three steps of a row, read back from its texts: a text that is no number counts 0. An empty grid: the empty
/// chart.
[[nodiscard]] StepChart ChartOf(const TStringGrid& grid, int row);
/// What is said of a bar of that row; `bar` counts them as StepChartPlaces does.
[[nodiscard]] QString HintOf(const TStringGrid& grid, int row, int bar);

}  // namespace holdwise::decomposition
