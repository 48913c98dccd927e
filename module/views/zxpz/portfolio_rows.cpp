// SPDX-License-Identifier: MIT
#include "portfolio_rows.h"

#include "common/frames/security_links.h"
#include "common/host/host_access.h"
#include "common/series/holding_rows.h"
#include "editor_layout.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::editor {
namespace {

QString Percent(double fraction) {
  return FormatFixed(fraction * 100, 2);
}
QString SixDecimals(double value) {
  return FormatFixed(value, 6);
}

}  // namespace

void ShowPortfolios(const ResultSet& portfolios, TStringGrid& grid) {
  const int name = portfolios.Column("COMNAME");
  const int date = portfolios.Column("EDITDATE");
  const int style = portfolios.Column("ZHFG");
  const int target = portfolios.Column("MBSYL");
  const int variance = portfolios.Column("FC");
  const int beta = portfolios.Column("BETA");
  const GridBatch batch(grid);
  grid.SetRowCount(portfolios.RowCount());
  for (int row = 0; row < portfolios.RowCount(); ++row) {
    grid.SetCells(kNumber, row, QString::number(row + 1));
    grid.SetCells(kName, row, portfolios.TextAt(row, name));
    grid.SetCells(kCreated, row, portfolios.TextAt(row, date));
    grid.SetCells(kStyle, row, portfolios.TextAt(row, style));
    grid.SetCells(kTarget, row, Percent(NumberAt(portfolios, row, target)));
    grid.SetCells(kVariance, row, SixDecimals(NumberAt(portfolios, row, variance)));
    grid.SetCells(kBeta, row, SixDecimals(NumberAt(portfolios, row, beta)));
  }
}

void ShowProvisional(const QString& name, const QString& today, int row, TStringGrid& grid) {
  const GridBatch batch(grid);
  if (row >= grid.RowCount()) grid.SetRowCount(row + 1);
  grid.SetCells(kName, row, name);
  grid.SetCells(kCreated, row, today);
  grid.SetCells(kStyle, row, QString());
  for (const int column : {kTarget, kVariance, kBeta}) grid.SetCells(column, row, QStringLiteral("0"));
}

void ShowDetails(const ResultSet& holdings, TStringGrid& grid) {
  const int code = holdings.Column("SecuCode");
  const int quantity = holdings.Column("PZSL");
  const int weight = holdings.Column("PZBL");
  const int buyPrice = holdings.Column("BUYPRICE");
  const CodeNumServices& services = ModuleHost().CodeNums();
  const GridBatch batch(grid);
  grid.SetRowCount(holdings.RowCount());
  if (holdings.IsEmpty()) ClearStrnGrd(grid);
  for (int row = 0; row < holdings.RowCount(); ++row) {
    const QString stored = SixDigits(IntegerOr(holdings.TextAt(row, code)));
    grid.SetCells(kCode, row, services.IsCodeNumber(stored) ? stored.mid(1) : stored);
    grid.SetCells(kSecurityName, row, NameOrDelisted(stored));
    grid.SetCells(kQuantity, row, holdings.TextAt(row, quantity));
    grid.SetCells(kWeight, row, holdings.TextAt(row, weight));
    grid.SetCells(kBuyPrice, row, holdings.TextAt(row, buyPrice));
  }
}

std::vector<HoldingRow> HoldingsIn(const TStringGrid& details) {
  std::vector<HoldingRow> holdings;
  if (details.IsEmpty()) return holdings;
  for (int row = 0; row < details.RowCount(); ++row) {
    holdings.push_back({.code = details.Cells(kCode, row),
                        .name = details.Cells(kSecurityName, row),
                        .price = details.Cells(kBuyPrice, row),
                        .quantity = details.Cells(kQuantity, row)});
  }
  return holdings;
}

}  // namespace holdwise::editor
