// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <optional>
#include <string_view>

#include "holdings/csv_portfolios.h"
#include "holdwise/sdk/codenum.h"
#include "statement_headings.h"

/// Statements of holdings as brokers write them: lines above the table, a heading row in one of many wordings, rows,
/// sums and remarks below it, perhaps a further table.
namespace holdwise {

/// A heading row that was found.
struct FoundHeading {
  char separator = ',';
  int line = 0;
  StatementHeading heading;
};
/// The first row that names code, quantity and cost, separated by tabs, commas or semicolons; else the one that names
/// the most of a statement's columns. None when the text has no word of a statement, nor of trades.
[[nodiscard]] std::optional<FoundHeading> FindStatementHeading(std::string_view utf8);

/// Reads the text from that row on. Rows that are no holdings are named, not read; whatever may be a holding and cannot
/// be read is a problem. `freeName` is that of the portfolio when no column names one.
[[nodiscard]] CsvPortfolios ReadStatement(std::string_view utf8, const FoundHeading& found,
                                          const CodeNumServices& codes, const QString& freeName);

}  // namespace holdwise
