// SPDX-License-Identifier: MIT
#include "stress_rows.h"

#include "common/frames/security_links.h"
#include "common/host/codes.h"
#include "common/series/shared_objects.h"
#include "holdwise/packet/number_text.h"
#include "stress_figures.h"
#include "stress_layout.h"

namespace holdwise::stress {
namespace {

constexpr int kMoneyDecimals = 2;

QString ValueIn(const TNameValueSnapshot& list, const QString& name) {
  return list ? list->ValueOf(name) : QString();
}

void ShowGain(const QString& profit, double cost, int row, TStringGrid& grid) {
  const double gain = RealOr(profit);
  grid.SetCells(kGain, row, profit.isEmpty() ? QString() : FormatFixed(gain, kMoneyDecimals));
  grid.SetCells(kGainRate, row, profit.isEmpty() ? QString() : ReturnRateText(gain, cost));
}

}  // namespace

Scenario PresentScenario() {
  return {g_ExpectValue->Basis(),
          g_ExpectValue->GetStockPriceStringList(),
          g_ExpectValue->GetStockAddStringList(),
          g_ExpectValue->GetStockProfitStringList(),
          g_ExpectValue->GetGroupValueStringList(),
          g_ExpectValue->GetGroupAddStringList(),
          g_ExpectValue->GetGroupProfitStringList()};
}

void ShowPortfolios(const ResultSet& portfolios, const Scenario& scenario, TStringGrid& grid) {
  const int name = portfolios.Column("COMNAME");
  const int date = portfolios.Column("EDITDATE");
  const int idColumn = portfolios.Column("ID");
  const TNameValueSnapshot costs = g_UserValue->GetUserValuesStringList();
  const GridBatch batch(grid);
  grid.SetRowCount(portfolios.RowCount());
  for (int row = 0; row < portfolios.RowCount(); ++row) {
    const QString id = portfolios.TextAt(row, idColumn);
    grid.SetCells(kName, row, portfolios.TextAt(row, name));
    grid.SetCells(kCreated, row, portfolios.TextAt(row, date));
    grid.SetCells(kValue, row, ValueIn(scenario.groupValues, id));
    grid.SetCells(kChange, row, ValueIn(scenario.groupChanges, id));
    ShowGain(ValueIn(scenario.groupProfits, id), RealOr(costs->ValueOf(id)), row, grid);
    grid.SetCells(kId, row, id);
  }
}

std::vector<SharedProfit> ShowHoldings(const ResultSet& holdings, const QString& portfolioId, const Scenario& scenario,
                                       TStringGrid& grid) {
  const int codeColumn = holdings.Column("SECUCODE");
  const GridBatch batch(grid);
  grid.SetRowCount(holdings.RowCount());
  if (holdings.IsEmpty()) ClearStrnGrd(grid);
  QHash<QString, int> timesHeld;
  for (int row = 0; row < holdings.RowCount(); ++row) ++timesHeld[holdings.TextAt(row, codeColumn)];
  std::vector<SharedProfit> shared;
  for (int row = 0; row < holdings.RowCount(); ++row) {
    const QString code = holdings.TextAt(row, codeColumn);
    grid.SetCells(kCode, row, GetCodeCNum(code));
    grid.SetCells(kSecurityName, row, NameOrDelisted(code));
    grid.SetCells(kPrice, row, ValueIn(scenario.stockPrices, code));
    grid.SetCells(kHoldingChange, row, ValueIn(scenario.stockChanges, code));
    // Of a security in several portfolios it is the profit of the last of them: intended.
    grid.SetCells(kProfit, row, ValueIn(scenario.stockProfits, code));
    const QString owner = scenario.basis.sharedProfits.value(code, portfolioId);
    const bool isOwn = owner == portfolioId;
    if (!isOwn || timesHeld.value(code) > 1) shared.push_back({row, owner, isOwn});
  }
  return shared;
}

}  // namespace holdwise::stress
