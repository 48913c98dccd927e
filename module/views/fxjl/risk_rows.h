// SPDX-License-Identifier: MIT
#pragma once
#include "common/grid/string_grid.h"
#include "holdwise/packet/result_set.h"

/// Between the data and the rows of the risk view's grids. User-interface thread; the index-risk object must exist.
/// What a failing query of its throws reaches the caller.
namespace holdwise::risk {

/// One row a portfolio, its figures as they are stored.
void ShowPortfolios(const ResultSet& portfolios, TStringGrid& grid);
/// One row a security: `holdings` has the column SECUCODE. A security that the index-risk table lacks has no figures.
/// No holdings: the grid is emptied.
void ShowSecurities(const ResultSet& holdings, TStringGrid& grid);

}  // namespace holdwise::risk
