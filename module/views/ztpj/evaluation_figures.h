// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>

/// Figures of the evaluation view: pure functions from numbers to the texts shown, in percent where not said otherwise.
namespace holdwise::evaluation {

/// The two live columns of a row.
struct LiveTexts {
  QString gain;    ///< return since the purchase
  QString excess;  ///< what it is above the risk-free rate
};

/// Simple holding-period return (now - base) / base x 100 with two decimals, "0" for a base of 0; and its difference to
/// `riskFree`, the text of the rate's column. The difference is one of displayed numbers: both texts are read back, so
/// that the row adds up as printed; a text that is no number counts 0. Neither is annualised: intended.
/// @param now price of a security or value of a portfolio, yuan; 0 = not known: none
/// @param base what was paid, in the same unit
[[nodiscard]] std::optional<LiveTexts> LiveTextsOf(double now, double base, const QString& riskFree);

/// The one-year deposit rate, which is in percent already and is shown as it is stored: "0.00".
[[nodiscard]] QString RateText(double percent);
/// A stored risk figure: "0.000000".
[[nodiscard]] QString FigureText(double figure);

}  // namespace holdwise::evaluation
