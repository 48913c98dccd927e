#pragma once
#include <vector>

#include "common/store/incomplete_portfolios.h"

namespace holdwise {

/// The saved portfolios with holdings whose price or previous close is not known, latest portfolio first: their value
/// (change of the day) is not what it says. Nothing before the shared objects exist, and of prices nothing before the
/// first reply. What a failing statement throws reaches the caller. User-interface thread.
[[nodiscard]] std::vector<IncompletePortfolio> PortfoliosLackingPrices(DatabaseStatements& database);

}  // namespace holdwise
