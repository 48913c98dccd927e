// SPDX-License-Identifier: MIT
#pragma once
#include "transfer/import.h"

namespace holdwise {

/// ImportPortfolios for a file of all portfolios (backup::IsPortfolioText).
[[nodiscard]] ImportResult ImportSaved(const QByteArray& csv, const ImportServices& services,
                                       const ImportProgress& progress, const ImportOptions& options);

}  // namespace holdwise
