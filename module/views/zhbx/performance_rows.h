// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <vector>

#include "common/frames/totals_strip.h"
#include "common/grid/string_grid.h"
#include "common/helpers/name_value_list.h"
#include "holdwise/packet/result_set.h"

/// Between the shared data and the rows of the performance view's grids. User-interface thread; the shared objects must
/// exist. What a failing query of theirs throws reaches the caller.
namespace holdwise::performance {

/// One row a portfolio; name, date and key only, the live columns come with RefreshPortfolios.
void ShowPortfolios(const ResultSet& portfolios, TStringGrid& grid);
/// One row a holding, without the live columns and the hidden closes that these need: no picture before the first
/// prices has to wait for them. A row that keeps its security keeps its live columns. No holdings: the grid is emptied.
/// @return the codes of the rows, which RefreshHoldings wants for the closes
[[nodiscard]] QStringList ShowHoldings(const ResultSet& holdings, TStringGrid& grid);

/// Live columns. A row without a price (value) keeps what it shows. Nothing happens before the first prices.
/// @param closesDue codes of the rows whose closes are still to be shown; emptied when that is done
/// @return the sums of the rows; none before the first prices
[[nodiscard]] std::vector<Total> RefreshHoldings(TStringGrid& grid, QStringList& closesDue);
/// What the portfolios' live columns show, and what that was made from.
struct ShownPortfolios {
  TNameValueSnapshot values, weekCloses, monthCloses, costs, previousCloses;
  std::vector<Total> totals;
};
/// @param shown of these very rows as they stand, else empty: a selection refreshes the whole list each time, and
/// nothing is worked out anew from what it shows already
[[nodiscard]] std::vector<Total> RefreshPortfolios(TStringGrid& grid, ShownPortfolios& shown);

}  // namespace holdwise::performance
