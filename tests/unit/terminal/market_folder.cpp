// SPDX-License-Identifier: MIT
#include "market_folder.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "holdwise/packet/number_text.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {

const QStringList MarketFolder::kSecurityHeadings = {
    QStringLiteral("code:text"),      QStringLiteral("name:text"),         QStringLiteral("industry:text"),
    QStringLiteral("market:integer"), QStringLiteral("list_date:integer"), QStringLiteral("a_share:integer")};
const QStringList MarketFolder::kQuoteHeadings = {QStringLiteral("code_number:integer"), QStringLiteral("price:real"),
                                                  QStringLiteral("prev_close:real")};

ResultSet MakeTable(const QStringList& headings, const std::vector<QStringList>& rows) {
  ResultSet table;
  for (const QString& heading : headings) {
    const QString type = heading.section(QLatin1Char(':'), 1);
    table.AddColumn(heading.section(QLatin1Char(':'), 0, 0).toStdString(),
                    type == QLatin1String("integer") ? ColumnType::Integer
                    : type == QLatin1String("real")  ? ColumnType::Real
                                                     : ColumnType::Text);
  }
  for (const QStringList& cells : rows) {
    const int row = table.AppendRow();
    for (int column = 0; column < cells.size(); ++column) {
      if (cells[column] == QLatin1String("NULL")) continue;
      switch (table.TypeOf(column)) {
        case ColumnType::Integer:
          table.SetInteger(row, column, cells[column].toLongLong());
          break;
        case ColumnType::Real:
          table.SetReal(row, column, cells[column].toDouble());
          break;
        default:
          table.SetText(row, column, cells[column]);
          break;
      }
    }
  }
  return table;
}

MarketFolder::MarketFolder() {
  WriteMarket(20240529, false);
  Write(QStringLiteral("securities.dat"), MakeTable(kSecurityHeadings, SecurityRows()));
  Write(QStringLiteral("trading_dates.dat"),
        MakeTable({QStringLiteral("date:integer")}, {{QStringLiteral("20240524")},
                                                     {QStringLiteral("20240527")},
                                                     {QStringLiteral("20240528")},
                                                     {QStringLiteral("20240529")},
                                                     {QStringLiteral("20240530")}}));
  WriteQuotes(QuoteRows());
}

void MarketFolder::Write(const QString& name, const ResultSet& table) const {
  QDir().mkpath(QFileInfo(File(name)).path());
  WritePacketFile(File(name), table, Durability::Replaceable);
}

void MarketFolder::WriteBytes(const QString& name, const QByteArray& bytes) const {
  QFile file(File(name));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
  ASSERT_EQ(file.write(bytes), bytes.size());
}

void MarketFolder::WriteMarket(int currentDate, bool simulated, const QString& edition) const {
  QStringList headings{QStringLiteral("current_date:integer"), QStringLiteral("simulated:integer"),
                       QStringLiteral("format:integer")};
  QStringList row{QString::number(currentDate), QString::number(simulated ? 1 : 0), QStringLiteral("1")};
  if (!edition.isEmpty()) {
    headings.append(QStringLiteral("edition:text"));
    row.append(edition);
  }
  Write(QStringLiteral("market.dat"), MakeTable(headings, {row}));
}

void MarketFolder::WriteQuotes(const std::vector<QStringList>& rows) const {
  Write(QStringLiteral("quotes.dat"), MakeTable(kQuoteHeadings, rows));
}

std::vector<QStringList> MarketFolder::SecurityRows() {
  const auto row = [](const char* text) { return QString::fromUtf8(text).split(QLatin1Char(',')); };
  std::vector<QStringList> rows = {row("000001,平安银行,银行,2,19910403,1"), row("000002,万科Ａ,房地产,2,19910129,1"),
                                   row("300750,宁德时代,电池,2,20180611,1"), row("600000,浦发银行,银行,1,19991110,1"),
                                   row("600036,招商银行,银行,1,NULL,1"),     row("900901,云赛Ｂ股,电子,1,19920221,0")};
  for (int i = 1; i <= 12; ++i) {
    rows.push_back({QString::number(601000 + i), QStringLiteral("股票%1").arg(i), QStringLiteral("综合"),
                    QStringLiteral("1"), QStringLiteral("20200102"), QStringLiteral("1")});
  }
  return rows;
}

std::vector<QStringList> MarketFolder::QuoteRows() {
  const auto row = [](const char* text) { return QString::fromUtf8(text).split(QLatin1Char(',')); };
  return {row("1,3111.02,3109.57"), row("399001,9414.22,9391.05"), row("399300,3613.52,3609.17"),
          row("1600000,8.15,8.2"),  row("1600036,34.5,34.61"),     row("1000001,11.23,11.05"),
          row("1000002,8.33,0"),    row("1300750,199.88,201.3")};
}

}  // namespace holdwise
