// SPDX-License-Identifier: MIT
#include "holdings/csv_portfolios.h"

#include <algorithm>
#include <numeric>

#include "holdwise/packet/number_text.h"

namespace holdwise {

void SortByLine(std::vector<ImportProblem>& problems) {
  std::stable_sort(problems.begin(), problems.end(),
                   [](const ImportProblem& left, const ImportProblem& right) { return left.line < right.line; });
}

double CostOf(const CsvHolding& holding) {
  return RealOr(holding.quantity) * RealOr(holding.price);
}

double CostOf(const CsvPortfolio& portfolio) {
  return std::accumulate(portfolio.holdings.begin(), portfolio.holdings.end(), 0.0,
                         [](double sum, const CsvHolding& holding) { return sum + CostOf(holding); });
}

}  // namespace holdwise
