#pragma once
#include "common/grid/string_grid.h"
#include "holdwise/packet/result_set.h"

/// Between the shared data and the rows of the performance view's grids. User-interface thread; the shared objects must
/// exist. What a failing query of theirs throws reaches the caller.
namespace holdwise::performance {

/// One row a portfolio; name, date and key only, the live columns come with RefreshPortfolios.
void ShowPortfolios(const ResultSet& portfolios, TStringGrid& grid);
/// One row a holding, without the live columns. No holdings: the grid is emptied.
void ShowHoldings(const ResultSet& holdings, TStringGrid& grid);

/// Live columns. A row without a price (value) keeps what it shows.
void RefreshHoldings(TStringGrid& grid);
void RefreshPortfolios(TStringGrid& grid);

}  // namespace holdwise::performance
