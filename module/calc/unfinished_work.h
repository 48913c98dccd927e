// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <cstdint>

#include "holdwise/sdk/database.h"

/// What of the local database the calculation has to do, and its last step. What a failing statement throws reaches the
/// caller.
namespace holdwise::calc {

/// Codes of the securities held in unfinished portfolios, in the database's order, and, last, "1" for the indices.
[[nodiscard]] QStringList ReadUnfinishedCodes(DatabaseStatements& database);
/// Unfinished portfolios plus distinct securities held in them.
[[nodiscard]] std::int64_t CountUnfinishedParts(DatabaseStatements& database);
[[nodiscard]] QStringList ReadUnfinishedPortfolios(DatabaseStatements& database);
/// The data that figures are to rest on.
struct DataState {
  QString edition;  ///< TDataCenter::DataEdition; empty = not known
  int lastDay = 0;  ///< the latest trading date, YYYYMMDD; 0 = not known
};
/// As the module's host has it now.
[[nodiscard]] DataState CurrentData();
/// Runs the procedure that fills the portfolio's figures and clears its unfinished mark. Rows of the index or of a
/// holding that are not of `data` count as lacking.
void CalculatePortfolio(DatabaseStatements& database, const QString& portfolioId, const DataState& data = {});

}  // namespace holdwise::calc
