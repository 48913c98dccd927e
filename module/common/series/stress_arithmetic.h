// SPDX-License-Identifier: MIT
#pragma once

/// Arithmetic of the stress test: pure functions. The model is the single-index model, in which a security's return is
/// beta times the return of the index (W. F. Sharpe, "A Simplified Model for Portfolio Analysis", Management Science 9,
/// 1963, without its residual term), applied to the previous close. Moves, changes and weights are fractions (0.1 =
/// 10 %), prices and money yuan, quantities shares. Nothing is checked: what is not finite stays so.
namespace holdwise::stress {

/// b·x: expected change of a security with that beta when the index moves by `move`.
[[nodiscard]] double ExpectedChange(double beta, double move) noexcept;
/// b·x + 1 <= 0: the change would leave nothing of the security. Such a move is refused.
[[nodiscard]] bool IsWipedOut(double change) noexcept;
/// s = (b·x + 1)·p.
[[nodiscard]] double ExpectedPrice(double change, double previousClose) noexcept;

struct Holding {
  double quantity = 0;
  double buyPrice = 0;
  double weight = 0;  ///< of the portfolio
};

/// g = (p − buy)·n + p·b·x·n: what has been gained up to the previous close and what the change adds.
[[nodiscard]] double ExpectedProfit(const Holding& holding, double change, double previousClose) noexcept;

/// Sums over the holdings of one portfolio, in their order.
struct Totals {
  double value = 0;   ///< Σ n·s
  double change = 0;  ///< Σ b·x·w
  double profit = 0;  ///< Σ g

  void Add(const Holding& holding, double expectedChange, double expectedPrice, double expectedProfit) noexcept;
};

/// (close − old) / old; 0 when `old` is not positive.
[[nodiscard]] double IndexChange(double close, double old) noexcept;

}  // namespace holdwise::stress
