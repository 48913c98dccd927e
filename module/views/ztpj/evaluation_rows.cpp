// SPDX-License-Identifier: MIT
#include "evaluation_rows.h"

#include "common/frames/security_links.h"
#include "common/frames/uncalculated.h"
#include "common/host/codes.h"
#include "common/series/all_stock_data.h"
#include "common/series/holding_rows.h"
#include "common/series/shared_objects.h"
#include "evaluation_figures.h"
#include "evaluation_layout.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::evaluation {
namespace {

void ShowFigures(const QString& code, int row, TStringGrid& grid) {
  const TTextGrid& table = g_AllStockData->GetCurStringGrid();
  const int found = table.RowOf(code);
  if (found < 0) return;
  grid.SetCells(kSecuritySharpe, row, FigureText(RealOr(table.Cells(risk_table::kSharpe, found))));
  grid.SetCells(kSecurityTreynor, row, FigureText(RealOr(table.Cells(risk_table::kTreynor, found))));
  grid.SetCells(kSecurityBeta, row, FigureText(RealOr(table.Cells(risk_table::kBeta, found))));
}

}  // namespace

void ShowPortfolios(const ResultSet& portfolios, double rate, TStringGrid& grid) {
  const int name = portfolios.Column("COMNAME");
  const int id = portfolios.Column("ID");
  const int beta = portfolios.Column("BETA");
  const int sharpe = portfolios.Column("SHARP");
  const int treynor = portfolios.Column("TREYNOR");
  const QString riskFree = RateText(rate);
  const GridBatch batch(grid);
  grid.SetRowCount(portfolios.RowCount());
  for (int row = 0; row < portfolios.RowCount(); ++row) {
    grid.SetCells(kName, row, portfolios.TextAt(row, name));
    grid.SetCells(kRiskFree, row, riskFree);
    grid.SetCells(kBeta, row, FigureText(NumberAt(portfolios, row, beta)));
    grid.SetCells(kSharpe, row, FigureText(NumberAt(portfolios, row, sharpe)));
    grid.SetCells(kTreynor, row, FigureText(NumberAt(portfolios, row, treynor)));
    grid.SetCells(kId, row, portfolios.TextAt(row, id));
    MarkUncalculated(portfolios, row, {kBeta, kSharpe, kTreynor}, grid);
  }
}

void ShowHoldings(const ResultSet& holdings, const QString& riskFree, TStringGrid& grid) {
  const int codeColumn = holdings.Column("SecuCode");
  const int buyPrice = holdings.Column("BUYPRICE");
  const GridBatch batch(grid);
  ClearStrnGrd(grid);
  grid.SetRowCount(holdings.RowCount());
  for (int row = 0; row < holdings.RowCount(); ++row) {
    const QString number = SixDigits(IntegerOr(holdings.TextAt(row, codeColumn)));
    const QString code = GetCodeCNum(number);
    grid.SetCells(kCode, row, code);
    grid.SetCells(kSecurityName, row, NameOrDelisted(number));
    grid.SetCells(kSecurityRiskFree, row, riskFree.isEmpty() ? QStringLiteral("0") : riskFree);
    ShowFigures(code, row, grid);
    grid.SetCells(kBuyPrice, row, holdings.TextAt(row, buyPrice));
  }
}

void RefreshHoldings(TStringGrid& grid) {
  const TNameValueSnapshot prices = g_NowPrice->GetNowPriceStringList();
  const GridBatch batch(grid);
  for (int row = 0; row < grid.RowCount(); ++row) {
    const double price = RealOr(prices->ValueOf(grid.Cells(kCode, row)));
    const auto texts = LiveTextsOf(price, RealOr(grid.Cells(kBuyPrice, row)), grid.Cells(kSecurityRiskFree, row));
    if (!texts) continue;
    grid.SetCells(kSecurityReturn, row, texts->gain);
    grid.SetCells(kSecurityExcess, row, texts->excess);
  }
}

std::vector<IncompletePortfolio> RefreshPortfolios(TStringGrid& grid, ShownPortfolios& shown) {
  const TNameValueSnapshot values = g_NowPrice->GetNowValueGroupStringList();
  const TNameValueSnapshot costs = g_UserValue->GetUserValuesStringList();
  if (values == shown.values && costs == shown.costs) return shown.lacking;
  std::vector<IncompletePortfolio> lacking;
  const GridBatch batch(grid);
  for (int row = 0; row < grid.RowCount(); ++row) {
    const QString& id = grid.Cells(kId, row);
    const double cost = RealOr(costs->ValueOf(id));
    const auto texts = LiveTextsOf(RealOr(values->ValueOf(id)), cost, grid.Cells(kRiskFree, row));
    if (!texts) continue;
    if (cost == 0) lacking.push_back({id, grid.Cells(kName, row), 0, {{Lack::NoCost, {}, {}, 0}}});
    grid.SetCells(kReturn, row, texts->gain);
    grid.SetCells(kExcess, row, texts->excess);
  }
  shown = {values, costs, lacking};
  return lacking;
}

}  // namespace holdwise::evaluation
