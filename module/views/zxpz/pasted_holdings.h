// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

#include "holding_row.h"

/// Holdings copied from a spreadsheet or another program, read from the clipboard's text. Pure; any thread.
namespace holdwise {

/// What is known of a stock.
struct KnownStock {
  QString name;
  bool isShanghai = false;  ///< else Shenzhen
};
/// None for six digits that are no stock.
using StockLookup = std::function<std::optional<KnownStock>(const QString& sixDigits)>;

/// A line that was not taken, in words for the user.
struct RefusedHolding {
  int line = 0;    ///< of the text, from 1
  QString what;    ///< the beginning of the line's code as it stands there, with the stock's name when it is known
  QString reason;  ///< why, or what to do
  bool operator==(const RefusedHolding&) const = default;
};

struct PastedHoldings {
  std::vector<HoldingRow> rows;  ///< taken ones in their order; an empty price or quantity was not given
  std::vector<RefusedHolding> refused;
};

/// Reads lines of code, quantity and price, separated by tabs when there is a tab anywhere in the text, else by commas.
/// Without a title row the columns stand in that order, with a name behind the code where there are four; a title row
/// (代码, 数量, 买入价 and what spreadsheets and brokers call them, with or without a unit) says where they stand; a
/// figure without a column is not given. Codes: 600519, 600519.SH, sh600519 and their kind;
/// leading zeros that a spreadsheet has dropped are put back, unless the short code may be the line's number; one whose
/// market is not the stock's is refused (000001.SH is an index). Quantities are whole, of nine digits at most; prices
/// have two decimals at most and are below 10000; grouping commas and a currency sign are left out. Refused as well:
/// stocks already in `present` (six digits each), stocks that come twice, and what exceeds kMostHoldings together with
/// `present`. Blank lines are skipped.
[[nodiscard]] PastedHoldings ReadPastedHoldings(const QString& text, const QStringList& present,
                                                const StockLookup& lookup);

/// One message that says how many lines were taken and names what was refused, or says what to copy when there was
/// nothing to read; empty when everything was taken. Of many refused lines it names the first ten.
[[nodiscard]] QString PasteMessage(const PastedHoldings& pasted);

}  // namespace holdwise
