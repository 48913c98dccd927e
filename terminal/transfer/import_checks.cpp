// SPDX-License-Identifier: MIT
#include "import_checks.h"

#include <algorithm>
#include <utility>

#include "import_statements.h"

namespace holdwise {
namespace {

/// The database takes no notice of blanks at the end of a text, and of nothing else.
QString Compared(QString name) {
  while (name.endsWith(QLatin1Char(' '))) name.chop(1);
  return name;
}

}  // namespace

void RequireNoQuestion(const UserDataServices& database) {
  if (database.InTransaction())
    throw Error(ErrorCategory::Busy, "终端窗口里有一个提问还没有回答（例如是否删除组合），请先回答它，再导入一次");
}

QStringList UnpricedStocks(std::vector<int> stocks, const TDataCenter& dataCentre) {
  std::sort(stocks.begin(), stocks.end());
  stocks.erase(std::unique(stocks.begin(), stocks.end()), stocks.end());
  QStringList warnings;
  for (const int stock : stocks) {
    if (dataCentre.StockNowData(stock).currentPrice > 0) continue;
    warnings.append(QStringLiteral("股票%1没有行情，组合市值暂不包括它").arg(QString::number(stock).right(6)));
  }
  return warnings;
}

TakenNames::TakenNames(UserDataServices& database) {
  const ResultSet rows = database.Query(import_sql::kNames);
  const int name = rows.Column("COMNAME");
  names_.reserve(rows.RowCount());
  for (int row = 0; row < rows.RowCount(); ++row) names_.insert(Compared(rows.TextAt(row, name)));
}

QString TakenNames::ProblemOf(const QString& name) const {
  return names_.contains(Compared(name)) ? QStringLiteral("已有名称为“%1”的组合").arg(name) : QString();
}

ImportResult Refused(std::vector<ImportProblem> problems) {
  SortByLine(problems);
  ImportResult refused;
  refused.problems = std::move(problems);
  return refused;
}

ImportResult Cancelled() {
  ImportResult cancelled;
  cancelled.cancelled = true;
  return cancelled;
}

ImportProblem NamesStandThere() {
  return {0, QStringLiteral("文件里写有组合名称，不能用 --import-as 另起名称")};
}

}  // namespace holdwise
