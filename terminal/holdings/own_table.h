// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>
#include <string_view>
#include <vector>

#include "holdings/csv_portfolios.h"
#include "holdwise/sdk/codenum.h"

/// The table of portfolios that the documents describe: a heading row that names nothing but its columns, and then a
/// row a holding, strictly.
namespace holdwise {

/// What may stand in its column of names.
enum class OwnNames {
  None,        ///< there is no such column
  OfAnything,  ///< it is called 名称 or name: portfolios or stocks
  OfPortfolios,
};
/// Its heading, as far as it tells what the rows are.
struct OwnHeading {
  OwnNames names = OwnNames::None;
  bool isAlone = false;  ///< there are no other columns
};
/// None when the fields do not name its columns code, quantity and price, and name as well or nothing else.
[[nodiscard]] std::optional<OwnHeading> ReadOwnHeading(const std::vector<std::string_view>& fields);
/// Is the field the heading of one of its columns?
[[nodiscard]] bool IsOwnWord(const QString& heading);
/// A heading without blanks, in small letters and with plain brackets.
[[nodiscard]] QString NormalisedHeading(const QString& heading);

/// Reads the text, whose portfolios must stand in a column of names.
[[nodiscard]] CsvPortfolios ReadOwnTable(std::string_view utf8, char separator, const CodeNumServices& codes);

/// Does the column of names hold the stocks' names? It does as soon as one of them is its stock's, unless one of them
/// stands beside two stocks.
[[nodiscard]] bool IsNamedAfterStocks(std::string_view utf8, char separator, const CodeNumServices& codes);

}  // namespace holdwise
