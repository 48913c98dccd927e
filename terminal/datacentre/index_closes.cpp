// SPDX-License-Identifier: MIT
#include "datacentre/index_closes.h"

#include "holdwise/packet/dates.h"
#include "holdwise/packet/table_limits.h"
#include "table_reader.h"

namespace holdwise {
namespace {

constexpr int kDaily = 0;

}  // namespace

std::map<int, double> ReadIndexCloses(const QString& dataFolder, int indexNumber) {
  const TableReader file(dataFolder + QStringLiteral("/QMTL/TZZH/Day250/指数/allzs.dat"), kIndexSeriesLimits);
  if (!file.Edition().isEmpty())
    file.RequireEdition(TableReader(dataFolder + QStringLiteral("/market.dat"), kMarketLimits).Edition());
  const int code = file.Column("SecuCode", ColumnType::Integer);
  const int type = file.Column("hqtype", ColumnType::Integer);
  const int date = file.Column("hqdate", ColumnType::Integer);
  const int close = file.Column("closeprice", ColumnType::Real);
  std::map<int, double> closes;
  for (int row = 0; row < file.RowCount(); ++row) {
    if (file.IntegerAt(row, code) != indexNumber || file.IntegerAt(row, type) != kDaily) continue;
    if (!(file.RealAt(row, close) > 0)) file.Refuse(row, QStringLiteral("收盘价不大于0"));
    const int day = file.IntegerAt(row, date);
    if (!IsMarketDate(day) || !IsWeekday(day)) file.Refuse(row, QStringLiteral("日期%1不是交易日").arg(day));
    if (!closes.empty() && day <= closes.rbegin()->first)
      file.Refuse(row, QStringLiteral("日期%1重复或没有按先后顺序排列").arg(day));
    closes[day] = file.RealAt(row, close);
  }
  if (closes.empty()) file.Refuse(0, QStringLiteral("没有指数%1的日线").arg(indexNumber));
  return closes;
}

}  // namespace holdwise
