// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <cstddef>
#include <vector>

#include "holdings/csv_portfolios.h"

namespace holdwise {

/// One portfolio of a preview.
struct PreviewedPortfolio {
  QString name;
  std::size_t stocks = 0;
  double cost = 0;  ///< yuan
};
/// A line for each of the first hundred, and one that says how many there are beside them. Pure.
[[nodiscard]] QStringList LinesOf(const std::vector<PreviewedPortfolio>& portfolios);

/// What a file without problems would bring, as lines of Chinese for a person to look at. Pure.
[[nodiscard]] QString PreviewText(const CsvPortfolios& file);

}  // namespace holdwise
