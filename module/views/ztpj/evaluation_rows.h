// SPDX-License-Identifier: MIT
#pragma once
#include <vector>

#include "common/grid/string_grid.h"
#include "common/helpers/name_value_list.h"
#include "common/store/incomplete_portfolios.h"
#include "holdwise/packet/result_set.h"

/// Between the shared data and the rows of the evaluation view's grids. User-interface thread; the shared objects must
/// exist. What a failing query of theirs throws reaches the caller.
namespace holdwise::evaluation {

/// One row a portfolio: its stored figures and the rate, in percent; the live columns come with RefreshPortfolios.
void ShowPortfolios(const ResultSet& portfolios, double rate, TStringGrid& grid);
/// One row a holding, without the live columns. A security that the index-risk table lacks has no figures. No holdings:
/// the grid is emptied.
/// @param riskFree text of the rate's column
void ShowHoldings(const ResultSet& holdings, const QString& riskFree, TStringGrid& grid);

/// Live columns. A row without a price (value) keeps what it shows.
void RefreshHoldings(TStringGrid& grid);
/// What the portfolios' live columns show, and what that was made from.
struct ShownPortfolios {
  TNameValueSnapshot values, costs;
  std::vector<IncompletePortfolio> lacking;
};
/// @param shown of these very rows as they stand, else empty: a selection refreshes the whole list each time, and
/// nothing is worked out anew from what it shows already
/// @return the portfolios whose return is none because nothing is known to have been paid for them
[[nodiscard]] std::vector<IncompletePortfolio> RefreshPortfolios(TStringGrid& grid, ShownPortfolios& shown);

}  // namespace holdwise::evaluation
