#pragma once
#include <QString>
#include <QStringList>
#include <vector>

/// Columns of the risk view's two grids and the texts of its figures. Pure functions.
namespace holdwise::risk {

/// The portfolio list.
enum PortfolioColumn : int {
  kName,
  kVariance,
  kDeviation,
  kAlpha,
  kBeta,
  kId,  ///< key, hidden
  kPortfolioColumns
};

/// The securities of the selected portfolio.
enum SecurityColumn : int {
  kCode,
  kSecurityName,
  kSecurityVariance,
  kSecurityDeviation,
  kSecurityAlpha,
  kSecurityBeta,
  kSecurityColumns
};

/// Titles of the shown columns.
[[nodiscard]] QStringList PortfolioTitles();
[[nodiscard]] QStringList SecurityTitles();

/// Widths of all columns for a client width of 0 or more, pixels: equal shares, what is left over goes to the last
/// shown one. They add up to the client width; the hidden column is 0.
[[nodiscard]] std::vector<int> PortfolioWidths(int clientWidth);
[[nodiscard]] std::vector<int> SecurityWidths(int clientWidth);

/// A risk figure with six decimals.
[[nodiscard]] QString FigureText(double figure);

/// Deviation of a security's daily returns (a fraction) and the variance that follows from it.
struct DeviationTexts {
  QString variance;
  QString deviation;
};
[[nodiscard]] DeviationTexts TextsOfDeviation(double deviation);

}  // namespace holdwise::risk
