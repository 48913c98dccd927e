// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "holdwise/packet/result_set.h"
#include "holdwise/sdk/database.h"

/// The rows of the two exchange files. User-interface thread.
namespace holdwise::exchange {

/// Refuses, with Error(Refused) that names row and column, what cannot be what a person has entered: a missing value or
/// one that cannot stand in a statement, an id that leaves the generators no room, a code, quantity, weight, price or
/// index level out of range, a holding of no portfolio or of one that has more than kMostHoldings. Error(NotFound) for
/// a missing column.
void RequirePlausible(const ResultSet& holdings, const ResultSet& portfolios);
/// Name of the first portfolio without holdings; empty when each has some. Throws as above for a missing column.
[[nodiscard]] QString WithoutHoldings(const ResultSet& holdings, const ResultSet& portfolios);
/// Inserts plausible rows and moves the generators past their ids; in the caller's transaction. Throws what a failing
/// statement throws.
void Insert(DatabaseStatements& database, const ResultSet& holdings, const ResultSet& portfolios);

}  // namespace holdwise::exchange
