// SPDX-License-Identifier: MIT
#pragma once
#include <vector>

#include "common/store/incomplete_portfolios.h"

namespace holdwise {

/// The saved portfolios whose purchase does not fit the present data, latest first: those bought after the data
/// centre's date whose figures once rested on data that reach further (one made at the weekend, on the data of Friday,
/// fits), and those whose index level was the close of the day of purchase when they were calculated, where the
/// market's close of that day is another one now. Nothing is changed: what was stored stays. A day outside the window
/// of the data is not compared. What a failing statement throws reaches the caller. User-interface thread.
[[nodiscard]] std::vector<IncompletePortfolio> DoubtfulPurchases(DatabaseStatements& database);

}  // namespace holdwise
