// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <string_view>
#include <vector>

#include "holdings/csv_portfolios.h"
#include "holdwise/sdk/codenum.h"

/// The table of portfolios that the documents describe: a heading row that names nothing but its columns, and then a
/// row a holding, strictly.
namespace holdwise {

/// Do the fields name its columns code, quantity and price, and name as well or nothing else?
[[nodiscard]] bool IsOwnHeading(const std::vector<std::string_view>& fields);
/// Is the field the heading of one of its columns?
[[nodiscard]] bool IsOwnWord(const QString& heading);
/// A heading without blanks, in small letters and with plain brackets.
[[nodiscard]] QString NormalisedHeading(const QString& heading);

/// Where the portfolios' names stand.
enum class OwnNames {
  InColumn,
  Nowhere,  ///< all rows are of one portfolio; what stands in a column of names are the securities'
};

/// Reads the text. `freeName` is that of a portfolio that the text does not name; empty: the column must be there.
[[nodiscard]] CsvPortfolios ReadOwnTable(std::string_view utf8, char separator, const CodeNumServices& codes,
                                         OwnNames names, const QString& freeName);

/// Is what looks like portfolios, of a table whose column of names is called just that, one stock each under the
/// stock's own name?
[[nodiscard]] bool IsNamedAfterStocks(const CsvPortfolios& file, const CodeNumServices& codes);

}  // namespace holdwise
