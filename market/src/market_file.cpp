// SPDX-License-Identifier: MIT
#include "market_file.h"

#include <QDir>

#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/table_limits.h"

namespace holdwise {
namespace {

constexpr int kFolderFormat = 1;

}  // namespace

ResultSet MarketTable(int currentDate, bool isSimulated, const QString& edition) {
  ResultSet table;
  const int date = table.AddColumn("current_date", ColumnType::Integer);
  const int simulated = table.AddColumn("simulated", ColumnType::Integer);
  const int format = table.AddColumn("format", ColumnType::Integer);
  const int name = table.AddColumn("edition", ColumnType::Text);
  const int row = table.AppendRow();
  table.SetInteger(row, date, currentDate);
  table.SetInteger(row, simulated, isSimulated ? 1 : 0);
  table.SetInteger(row, format, kFolderFormat);
  table.SetText(row, name, edition);
  return table;
}

void RefuseOtherKind(const QString& folder, bool isSimulated) {
  bool wasSimulated = isSimulated;
  try {
    const ResultSet table = ReadPacketFile(QDir(folder).filePath(QString::fromUtf8(kMarketFile)), kMarketLimits);
    wasSimulated = table.IntegerAt(0, table.Column("simulated")) != 0;
  } catch (const Error&) {
    return;
  }
  if (wasSimulated == isSimulated) return;
  const QString text = wasSimulated ? QStringLiteral("目录“%1”里是虚构数据，没有用真实行情替换它")
                                    : QStringLiteral("目录“%1”里是真实行情，没有用虚构数据替换它");
  throw Error(ErrorCategory::Refused,
              (text.arg(folder) + QStringLiteral("；请换一个 --out，确要替换请加 --replace")).toStdString());
}

}  // namespace holdwise
