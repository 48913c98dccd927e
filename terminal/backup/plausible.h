// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>

#include "backup/portfolio_set.h"

/// What a single row may hold. Each text continues the name of what it is about. Pure.
namespace holdwise::backup {

/// Of the portfolio without its holdings.
[[nodiscard]] QStringList HeaderProblems(const SavedPortfolio& portfolio);
[[nodiscard]] QStringList HoldingProblems(const SavedHolding& holding);

}  // namespace holdwise::backup
