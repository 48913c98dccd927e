// SPDX-License-Identifier: MIT
#pragma once
#include <QHash>
#include <QString>
#include <cstddef>
#include <utility>

#include "holdings/csv_portfolios.h"
#include "holdwise/sdk/codenum.h"

namespace holdwise {

/// Puts the rows of a table into portfolios, and reports what one row alone does not show: a stock that comes twice,
/// days of purchase that differ, too many stocks.
class PortfolioCollector {
 public:
  /// Both must outlive it.
  PortfolioCollector(CsvPortfolios& result, const CodeNumServices& codes) : result_(result), codes_(codes) {}

  /// The portfolio with that name, a new one at the end when there is none; one row more is counted. Valid until the
  /// next call.
  CsvPortfolio& RowOf(const QString& name, int line);
  /// False, and reported, for a text that is neither empty nor a date.
  bool CheckDate(const QString& text, int line);
  /// The day of purchase is the portfolio's: all its rows name the same one, or none. False when it is reported.
  bool TakeDate(CsvPortfolio& portfolio, const QString& text, int line);
  /// True when six digits come into the portfolio for the first time; else it is reported.
  bool IsFirst(const CsvPortfolio& portfolio, const QString& sixDigits, int line);
  /// True when a market written beside the code (`cell`; 1 Shanghai, 2 Shenzhen, 0 not said) is that of the A-share;
  /// else it is reported.
  bool HasItsMarket(const QString& sixDigits, int market, const QString& cell, int line);
  /// True for an A-share of the market; else the row is a stranger.
  bool IsHeld(const QString& sixDigits, const QString& name, int line);
  /// Reports portfolios of more stocks than may be, and brings the problems into order.
  void Finish();

 private:
  CsvPortfolios& result_;
  const CodeNumServices& codes_;
  QHash<QString, std::size_t> places_;
  QHash<std::pair<int, int>, int> seen_;  ///< (first line of the portfolio, six digits) to line
};

}  // namespace holdwise
