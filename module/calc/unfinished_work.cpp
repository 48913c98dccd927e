// SPDX-License-Identifier: MIT
#include "calc/unfinished_work.h"

#include "common/host/host_access.h"
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

DataState CurrentData() {
  const TDataCenter& dataCenter = ModuleHost().DataCenter();
  const std::vector<int>& dates = dataCenter.TradingDates();
  return {dataCenter.DataEdition(), dates.empty() ? 0 : dates.front()};
}

void CalculatePortfolio(DatabaseStatements& database, const QString& portfolioId, const DataState& data) {
  database.Execute(sql::CalculatePortfolio(portfolioId));
  if (data.edition.isEmpty() && data.lastDay == 0) return;
  database.Execute(sql::NoteEdition(portfolioId, data.edition, data.lastDay));
}

}  // namespace holdwise::calc
