// SPDX-License-Identifier: MIT
#include "common/series/missing_prices.h"

#include <algorithm>
#include <utility>

#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "common/store/statements.h"

namespace holdwise {
namespace {

void Append(std::vector<MissingInput>& inputs, Lack lack, const QStringList& codes) {
  for (const QString& code : codes) inputs.push_back({lack, code, ModuleHost().CodeNums().NameOf(code), 0});
}

}  // namespace

std::vector<IncompletePortfolio> PortfoliosLackingPrices(DatabaseStatements& database) {
  const TMissingCodes prices = g_NowPrice ? g_NowPrice->HoldingsWithoutPrice() : TMissingCodes();
  const TMissingCodes closes = g_UserValue ? g_UserValue->HoldingsWithoutPreviousClose() : TMissingCodes();
  const TMissingCodes weekCloses = g_ClosePrice ? g_ClosePrice->HoldingsWithoutWeekClose() : TMissingCodes();
  const TMissingCodes monthCloses = g_ClosePrice ? g_ClosePrice->HoldingsWithoutMonthClose() : TMissingCodes();
  if (prices.isEmpty() && closes.isEmpty() && weekCloses.isEmpty() && monthCloses.isEmpty()) return {};
  const ResultSet rows = database.Query(sql::kSavedPortfolios);
  const int id = rows.Column("ID");
  const int name = rows.Column("COMNAME");
  std::vector<IncompletePortfolio> portfolios;
  for (int row = 0; row < rows.RowCount(); ++row) {
    IncompletePortfolio portfolio{rows.TextAt(row, id), rows.TextAt(row, name), 0, {}};
    Append(portfolio.missing, Lack::NoPrice, prices.value(portfolio.id));
    Append(portfolio.missing, Lack::NoPreviousClose, closes.value(portfolio.id));
    Append(portfolio.missing, Lack::NoWeekClose, weekCloses.value(portfolio.id));
    Append(portfolio.missing, Lack::NoMonthClose, monthCloses.value(portfolio.id));
    if (!portfolio.missing.empty()) portfolios.push_back(std::move(portfolio));
  }
  return portfolios;
}

std::vector<IncompletePortfolio> WithThoseLackingPrices(std::vector<IncompletePortfolio> portfolios,
                                                        DatabaseStatements& database) {
  for (IncompletePortfolio& one : PortfoliosLackingPrices(database)) {
    const auto same = std::find_if(portfolios.begin(), portfolios.end(),
                                   [&](const IncompletePortfolio& other) { return other.id == one.id; });
    if (same == portfolios.end()) {
      portfolios.push_back(std::move(one));
    } else {
      same->missing.insert(same->missing.end(), one.missing.begin(), one.missing.end());
    }
  }
  return portfolios;
}

}  // namespace holdwise
