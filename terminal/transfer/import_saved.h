// SPDX-License-Identifier: MIT
#pragma once
#include "transfer/import.h"

namespace holdwise {

/// ImportPortfolios for a file of all portfolios (backup::IsPortfolioText).
[[nodiscard]] ImportResult ImportSaved(const QByteArray& csv, const ImportServices& services,
                                       const ImportProgress& progress, const ImportOptions& options);

/// Error(Busy) while a transaction is open: a question of the window waits for its answer.
void RequireNoQuestion(const UserDataServices& database);

/// A line for each of the stocks that has no price: it is worth nothing in every view that counts it.
[[nodiscard]] QStringList UnpricedStocks(std::vector<int> stocks, const TDataCenter& dataCentre);

}  // namespace holdwise
