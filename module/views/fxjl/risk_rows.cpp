// SPDX-License-Identifier: MIT
#include "risk_rows.h"

#include "common/frames/security_links.h"
#include "common/frames/uncalculated.h"
#include "common/host/codes.h"
#include "common/series/all_stock_data.h"
#include "common/series/holding_rows.h"
#include "common/series/shared_objects.h"
#include "holdwise/packet/number_text.h"
#include "risk_layout.h"

namespace holdwise::risk {
namespace {

void ShowFigures(const QString& code, int row, TStringGrid& grid) {
  const TTextGrid& table = g_AllStockData->GetCurStringGrid();
  const int found = table.RowOf(GetCodeCNum(code));
  DeviationTexts deviation;
  if (found >= 0) deviation = TextsOfDeviation(RealOr(g_AllStockData->GetBZCStringList()->ValueOf(code)));
  grid.SetCells(kSecurityVariance, row, deviation.variance);
  grid.SetCells(kSecurityDeviation, row, deviation.deviation);
  grid.SetCells(kSecurityAlpha, row, table.Cells(risk_table::kAlpha, found));
  grid.SetCells(kSecurityBeta, row, table.Cells(risk_table::kBeta, found));
}

}  // namespace

void ShowPortfolios(const ResultSet& portfolios, TStringGrid& grid) {
  const int name = portfolios.Column("COMNAME");
  const int id = portfolios.Column("ID");
  const int variance = portfolios.Column("FC");
  const int deviation = portfolios.Column("ZHBZC");
  const int alpha = portfolios.Column("ALPHA");
  const int beta = portfolios.Column("BETA");
  const GridBatch batch(grid);
  grid.SetRowCount(portfolios.RowCount());
  for (int row = 0; row < portfolios.RowCount(); ++row) {
    grid.SetCells(kName, row, portfolios.TextAt(row, name));
    grid.SetCells(kVariance, row, FigureText(NumberAt(portfolios, row, variance)));
    grid.SetCells(kDeviation, row, FigureText(NumberAt(portfolios, row, deviation)));
    grid.SetCells(kAlpha, row, FigureText(NumberAt(portfolios, row, alpha)));
    grid.SetCells(kBeta, row, FigureText(NumberAt(portfolios, row, beta)));
    grid.SetCells(kId, row, portfolios.TextAt(row, id));
    MarkUncalculated(portfolios, row, {kVariance, kDeviation, kAlpha, kBeta}, grid);
  }
}

void ShowSecurities(const ResultSet& holdings, TStringGrid& grid) {
  const int codeColumn = holdings.Column("SECUCODE");
  const GridBatch batch(grid);
  grid.SetRowCount(holdings.RowCount());
  if (holdings.IsEmpty()) ClearStrnGrd(grid);
  for (int row = 0; row < holdings.RowCount(); ++row) {
    const QString code = holdings.TextAt(row, codeColumn);
    grid.SetCells(kCode, row, GetCodeCNum(code));
    grid.SetCells(kSecurityName, row, NameOrDelisted(code));
    ShowFigures(code, row, grid);
  }
}

}  // namespace holdwise::risk
