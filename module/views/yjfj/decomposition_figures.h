// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>

/// The decomposition of a portfolio's return into what the market, the spread and the choice of its securities gave.
/// Pure functions.
///
/// Source: E. F. Fama, "Components of Investment Performance", The Journal of Finance 27 (3), 1972, 551-567: overall
/// performance = risk + selectivity, selectivity = diversification + net selectivity.
namespace holdwise::decomposition {

/// What a decomposition rests on. All as fractions (0.0225 = 2.25 %) of the same period.
struct Inputs {
  double portfolioReturn = 0;  ///< R
  double riskFree = 0;         ///< rf
  double marketReturn = 0;     ///< Rm
  double beta = 0;             ///< of the portfolio against the market
  double deviation = 0;        ///< of the portfolio's returns
  double marketDeviation = 1;  ///< of the market's, not 0
};

/// The parts, as fractions:
///   required for the total risk       A = (Rm - rf) x deviation / market deviation + rf
///   required for the systematic risk  B = (Rm - rf) x beta + rf
///   return           R      = rf + excess
///   excess           R - rf = risk premium + selection
///   risk premium     B - rf
///   selection        R - B  = diversification + net selection
///   diversification  A - B
///   net selection    R - A
struct Parts {
  double total = 0;
  double excess = 0;
  double riskPremium = 0;
  double selection = 0;
  double diversification = 0;
  double netSelection = 0;
};
[[nodiscard]] Parts Decompose(const Inputs& inputs);

/// The parts in percent, two decimals. They add up as printed: return, diversification, net selection and excess are
/// rounded, selection and risk premium are then the sum and the difference of the printed ones.
struct Texts {
  QString total;
  QString excess;
  QString riskPremium;
  QString selection;
  QString diversification;
  QString netSelection;
};
[[nodiscard]] Texts TextsOf(const Parts& parts);

/// What a row of the list and the live lists give.
struct RowInput {
  double riskFreePercent = 0;
  double beta = 0;
  double deviation = 0;
  double marketDeviation = 0;  ///< 0 = not known
  double indexAtPurchase = 0;  ///< points; 0 = not known
  double indexNow = 0;         ///< points
  double value = 0;            ///< yuan; 0 = not known
  double cost = 0;             ///< yuan
};
/// R = (value - cost) / cost, 0 without a cost; Rm = (indexNow - indexAtPurchase) / indexAtPurchase, 1 without a level
/// at the purchase; a market deviation of 0 counts as 1. The rate is that of a year, the returns are those since the
/// purchase. None without a value.
[[nodiscard]] std::optional<Inputs> InputsOf(const RowInput& row);

}  // namespace holdwise::decomposition
