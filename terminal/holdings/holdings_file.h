// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>

#include "holdings/csv_portfolios.h"
#include "holdwise/sdk/codenum.h"

namespace holdwise {

/// Reads and checks a whole text against the rules that need no database: the table of portfolios that the documents
/// describe, strictly, or a broker's statement. Separated by commas, tabs or semicolons, UTF-8 or GB18030. A table that
/// names no portfolio, or has only the stocks' names where those stand, is one portfolio of `freeName`; empty: there is
/// none to take. Never throws for its content.
[[nodiscard]] CsvPortfolios ParsePortfolioCsv(const QByteArray& csv, const CodeNumServices& codes,
                                              const QString& freeName = {});

/// What a file is that is called a table and is no text (a spreadsheet's workbook, a web page), as a message that says
/// what to do; empty for anything else. Its first bytes are enough.
[[nodiscard]] QString NoTableProblem(const QByteArray& bytes);

}  // namespace holdwise
