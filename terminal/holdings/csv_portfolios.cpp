// SPDX-License-Identifier: MIT
#include "holdings/csv_portfolios.h"

#include <algorithm>

namespace holdwise {

void SortByLine(std::vector<ImportProblem>& problems) {
  std::stable_sort(problems.begin(), problems.end(),
                   [](const ImportProblem& left, const ImportProblem& right) { return left.line < right.line; });
}

}  // namespace holdwise
