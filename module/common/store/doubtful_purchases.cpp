// SPDX-License-Identifier: MIT
#include "common/store/doubtful_purchases.h"

#include <utility>

#include "common/host/host_access.h"
#include "common/store/statements.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

/// No day is later than this one.
const QString kNoDate = QStringLiteral("9999-12-31");

}  // namespace

std::vector<IncompletePortfolio> DoubtfulPurchases(DatabaseStatements& database) {
  QString today = ModuleHost().DataCenter().CurrentDateText();
  if (today.isEmpty()) today = kNoDate;
  const ResultSet rows = database.Query(sql::DoubtfulPurchases(today));
  std::vector<IncompletePortfolio> portfolios;
  for (int row = 0; row < rows.RowCount(); ++row) {
    IncompletePortfolio portfolio{rows.TextAt(row, rows.Column("ID")), rows.TextAt(row, rows.Column("COMNAME")), 0, {}};
    const QString day = rows.TextAt(row, rows.Column("EDITDATE"));
    if (!rows.IsNull(row, rows.Column("BOUGHTLATER")))
      portfolio.missing.push_back({Lack::BoughtLater, {}, {}, 0, day + QStringLiteral(" 晚于行情日期 ") + today});
    if (const int close = rows.Column("MARKETCLOSE"); !rows.IsNull(row, close)) {
      portfolio.missing.push_back(
          {Lack::CorrectedIndex,
           {},
           {},
           0,
           QStringLiteral(
               "%1 的上证指数收盘已更正为 %2，组合仍按买入时保存的 %3 计算；要采用更正后的收盘，请删除组合后重新导入")
               .arg(day, FormatFixed(rows.RealAt(row, close), 2),
                    FormatFixed(rows.RealAt(row, rows.Column("ZSCLOSEPRICE")), 2))});
    }
    portfolios.push_back(std::move(portfolio));
  }
  return portfolios;
}

}  // namespace holdwise
