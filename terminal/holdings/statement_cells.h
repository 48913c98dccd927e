// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>
#include <string_view>

/// The cells of a broker's statement. Pure.
namespace holdwise {

/// A cell without the blanks around it and without what makes a spreadsheet take it for a text: ="600519", '600519.
[[nodiscard]] QString PlainCell(std::string_view field);
/// Nothing, or only dashes as brokers write for nothing.
[[nodiscard]] bool IsNothing(const QString& cell);

/// Whole shares from 0 to 999999999 as digits: thousands commas, decimals that are zeros and a unit 股 are left out;
/// dashes are 0. None for anything else.
[[nodiscard]] std::optional<QString> ReadShares(const QString& cell);
/// A price a share above 0 and below 100000 with at most ten decimals; thousands commas, ¥ and 元 are left out. None
/// for anything else.
[[nodiscard]] std::optional<QString> ReadCost(const QString& cell);

/// A security's code and the market written beside it.
struct StatementCode {
  QString sixDigits;     ///< or the five digits of Hong Kong
  int market = 0;        ///< 1 Shanghai, 2 Shenzhen, 0 not said
  bool isOther = false;  ///< of another market than these two
};
/// None for what has not the form of a code.
[[nodiscard]] std::optional<StatementCode> ReadStatementCode(const QString& cell);

/// The market that a column names in words, 0 when it tells neither Shanghai nor Shenzhen.
struct StatementMarket {
  int market = 0;
  bool isOther = false;  ///< Hong Kong, Beijing, funds, ...
};
[[nodiscard]] StatementMarket ReadStatementMarket(const QString& cell);

/// Does the cell begin a row of sums?
[[nodiscard]] bool IsTotal(const QString& cell);

}  // namespace holdwise
