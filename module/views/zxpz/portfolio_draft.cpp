// SPDX-License-Identifier: MIT
#include "portfolio_draft.h"

#include <numeric>

#include "holdwise/packet/number_text.h"

namespace holdwise::editor {

std::optional<GridCell> FirstZero(const std::vector<HoldingRow>& holdings) {
  for (int row = 0; row < static_cast<int>(holdings.size()); ++row) {
    const HoldingRow& holding = holdings[static_cast<std::size_t>(row)];
    if (RealOr(holding.price) == 0) return GridCell{kHoldingPrice, row};
    if (RealOr(holding.quantity) == 0) return GridCell{kHoldingQuantity, row};
  }
  return std::nullopt;
}

double CostOf(const std::vector<HoldingRow>& holdings) {
  return std::accumulate(holdings.begin(), holdings.end(), 0.0, [](double sum, const HoldingRow& holding) {
    return sum + RealOr(holding.quantity) * RealOr(holding.price);
  });
}

QString WeightOf(const HoldingRow& holding, double cost) {
  return ShortestText(RealOr(holding.quantity) * RealOr(holding.price) / cost);
}

}  // namespace holdwise::editor
