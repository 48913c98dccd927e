// SPDX-License-Identifier: MIT
#include "unfinished_work.h"

#include "common/store/statements.h"

namespace holdwise::calc {
namespace {

QStringList TextsOf(const ResultSet& rows, const char* name) {
  const int column = rows.Column(name);
  QStringList texts;
  texts.reserve(rows.RowCount() + 1);
  for (int row = 0; row < rows.RowCount(); ++row) texts.push_back(rows.TextAt(row, column));
  return texts;
}

}  // namespace

QStringList ReadUnfinishedCodes(DatabaseStatements& database) {
  QStringList codes = TextsOf(database.Query(sql::kUnfinishedCodes), "SECUCODE");
  codes.push_back(QStringLiteral("1"));
  return codes;
}

std::int64_t CountUnfinishedParts(DatabaseStatements& database) {
  return database.Count(sql::kCountUnfinishedParts) + database.Count(sql::kCountUnfinishedCodes);
}

QStringList ReadUnfinishedPortfolios(DatabaseStatements& database) {
  return TextsOf(database.Query(sql::kUnfinishedPortfolios), "ID");
}

void CalculatePortfolio(DatabaseStatements& database, const QString& portfolioId) {
  database.Execute(sql::CalculatePortfolio(portfolioId));
}

}  // namespace holdwise::calc
