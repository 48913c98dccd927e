// SPDX-License-Identifier: MIT
#include "common/series/stress_arithmetic.h"

namespace holdwise::stress {

double ExpectedChange(double beta, double move) noexcept {
  return beta * move;
}

bool IsWipedOut(double change) noexcept {
  return change + 1 <= 0;
}

double ExpectedPrice(double change, double previousClose) noexcept {
  return (change + 1) * previousClose;
}

double ExpectedProfit(const Holding& holding, double change, double previousClose) noexcept {
  return (previousClose - holding.buyPrice) * holding.quantity + previousClose * change * holding.quantity;
}

void Totals::Add(const Holding& holding, double expectedChange, double expectedPrice, double expectedProfit) noexcept {
  value += holding.quantity * expectedPrice;
  change += expectedChange * holding.weight;
  profit += expectedProfit;
}

double IndexChange(double close, double old) noexcept {
  return old > 0 ? (close - old) / old : 0;
}

}  // namespace holdwise::stress
