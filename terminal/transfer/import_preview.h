// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "holdings/csv_portfolios.h"

namespace holdwise {

/// What a file without problems would bring, as lines of Chinese for a person to look at. Pure.
[[nodiscard]] QString PreviewText(const CsvPortfolios& file);

}  // namespace holdwise
