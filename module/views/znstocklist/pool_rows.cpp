// SPDX-License-Identifier: MIT
#include "pool_rows.h"

#include <vector>

#include "common/grid/string_grid.h"
#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "holdwise/packet/number_text.h"

namespace holdwise::pool {
namespace {

constexpr int kDecimals = 2;
constexpr double kScale = 10'000;  // of the account figures

void ShowAccount(int codeNumber, int row, TStringGrid& grid) {
  const TDataCenter& dataCenter = ModuleHost().DataCenter();
  const auto account = dataCenter.StockAccountInfo(codeNumber);
  if (!account) {
    const QString why = QStringLiteral(
        "数据目录里没有这只股票的每股收益和每股净资产（accounts.dat），昨收和这两项不显示；"
        "生成数据目录时用 --accounts 给出");
    for (const int column : {kPreviousClose, kEarnings, kNetAssets}) grid.SetNoFigure({column, row}, why);
    return;
  }
  grid.SetCells(kPreviousClose, row, FormatFixed(dataCenter.StockNowData(codeNumber).previousClose, kDecimals));
  grid.SetCells(kEarnings, row, FormatFixed(account->eps / kScale, kDecimals));
  grid.SetCells(kNetAssets, row, FormatFixed(account->netAssetPerShare / kScale, kDecimals));
}

}  // namespace

const ColumnTable& PoolTable() {
  static const ColumnTable table = {
      {.title = QStringLiteral("代码")},
      {.title = QStringLiteral("名称")},
      {.title = QStringLiteral("日期")},
      {.title = QStringLiteral("估值")},
      {.title = QStringLiteral("昨收")},
      {.title = QStringLiteral("每股收益")},
      {.title = QStringLiteral("每股净资产"), .takesRest = true},
  };
  return table;
}

void ShowPool(const ResultSet& securities, TStringGrid& grid) {
  const int codeColumn = securities.Column("SecuCode");
  const int dateColumn = securities.Column("CTIme");
  const int priceColumn = securities.Column("PRICE");
  std::vector<QString> estimates;
  for (int row = 0; row < securities.RowCount(); ++row) {
    const bool isThere = !securities.IsNull(row, priceColumn);
    estimates.push_back(isThere ? FormatFixed(securities.RealAt(row, priceColumn), kDecimals) : QString());
  }
  ClearStrnGrd(grid);
  const GridBatch batch(grid);
  grid.SetRowCount(securities.RowCount());
  for (int row = 0; row < securities.RowCount(); ++row) {
    const QString code = securities.TextAt(row, codeColumn);
    const QString codeNumber = GetCodeNum(code);
    grid.SetCells(kCode, row, code);
    grid.SetCells(kName, row, ModuleHost().CodeNums().NameOf(codeNumber));
    grid.SetCells(kDate, row, securities.TextAt(row, dateColumn));
    grid.SetCells(kEstimate, row, estimates[static_cast<std::size_t>(row)]);
    ShowAccount(static_cast<int>(IntegerOr(codeNumber)), row, grid);
  }
}

}  // namespace holdwise::pool
