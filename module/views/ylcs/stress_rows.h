// SPDX-License-Identifier: MIT
#pragma once
#include <vector>

#include "common/grid/string_grid.h"
#include "common/series/expect_value.h"
#include "holdwise/packet/result_set.h"

/// Between the expected values and the rows of the stress view's grids. User-interface thread; the shared objects must
/// exist. What a failing query of theirs throws reaches the caller.
namespace holdwise::stress {

/// Expected values as one whole computation left them, with what they rest on. Both grids are filled from one of these,
/// so they never show a mixture, whatever a later computation that is refused or fails has left in the lists.
struct Scenario {
  TExpectBasis basis;
  TNameValueSnapshot stockPrices, stockChanges, stockProfits;  ///< null before the first
  TNameValueSnapshot groupValues, groupChanges, groupProfits;
};
/// The present lists of the expected-value object.
[[nodiscard]] Scenario PresentScenario();

/// One row a portfolio. One that the scenario does not know has no figures.
void ShowPortfolios(const ResultSet& portfolios, const Scenario& scenario, TStringGrid& grid);

/// A row whose expected profit is, or may be, that of another holding of its security: the list has one profit a
/// security.
struct SharedProfit {
  int row = 0;
  QString portfolioId;  ///< of the holding
  bool isOwn = false;   ///< it is the shown portfolio, which has several holdings of the security
};
/// One row a holding of that portfolio. No holdings: the grid is emptied.
[[nodiscard]] std::vector<SharedProfit> ShowHoldings(const ResultSet& holdings, const QString& portfolioId,
                                                     const Scenario& scenario, TStringGrid& grid);

}  // namespace holdwise::stress
