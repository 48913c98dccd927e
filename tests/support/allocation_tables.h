// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <utility>
#include <vector>

#include "holdwise/packet/packet_file.h"

/// The files of the smart allocation, as packets.
namespace holdwise::test {

/// One line of a candidate list.
struct CandidateLine {
  const char* style;
  double target;
  double variance;
  double beta;
  QString file;
};
inline QByteArray CandidateList(const std::vector<CandidateLine>& lines) {
  ResultSet table;
  const int style = table.AddColumn("ZHFG", ColumnType::Text);
  for (const char* name : {"MBSYL", "FC", "BETA"}) table.AddColumn(name, ColumnType::Real);
  const int file = table.AddColumn("FILENAME", ColumnType::Text);
  for (const CandidateLine& line : lines) {
    const int row = table.AppendRow();
    table.SetText(row, style, line.style);
    table.SetReal(row, style + 1, line.target);
    table.SetReal(row, style + 2, line.variance);
    table.SetReal(row, style + 3, line.beta);
    table.SetText(row, file, line.file);
  }
  return EncodePacket(table);
}

using WeightedCodes = std::vector<std::pair<const char*, double>>;
inline QByteArray CompositionFile(const WeightedCodes& parts) {
  ResultSet table;
  const int code = table.AddColumn("SecuCode", ColumnType::Text);
  const int weight = table.AddColumn("PZBL", ColumnType::Real);
  for (const auto& [text, value] : parts) {
    const int row = table.AppendRow();
    table.SetText(row, code, text);
    table.SetReal(row, weight, value);
  }
  return EncodePacket(table);
}

inline QByteArray CapitalTable(const std::vector<std::pair<int, double>>& limits) {
  ResultSet table;
  const int count = table.AddColumn("StockCount", ColumnType::Integer);
  const int money = table.AddColumn("StockMoney", ColumnType::Real);
  for (const auto& [stocks, limit] : limits) {
    const int row = table.AppendRow();
    table.SetInteger(row, count, stocks);
    table.SetReal(row, money, limit);
  }
  return EncodePacket(table);
}

inline QByteArray PoolFile(const std::vector<std::pair<const char*, double>>& estimates) {
  ResultSet table;
  const int code = table.AddColumn("SecuCode", ColumnType::Text);
  const int date = table.AddColumn("CTIme", ColumnType::Text);
  const int price = table.AddColumn("PRICE", ColumnType::Real);
  for (const auto& [text, estimate] : estimates) {
    const int row = table.AppendRow();
    table.SetText(row, code, text);
    table.SetText(row, date, "2024-05-29");
    table.SetReal(row, price, estimate);
  }
  return EncodePacket(table);
}

/// The same file with a text column more, the same in all rows.
inline QByteArray Naming(const char* column, const char* text, const QByteArray& file) {
  ResultSet table = DecodePacket(file);
  const int added = table.AddColumn(column, ColumnType::Text);
  for (int row = 0; row < table.RowCount(); ++row) table.SetText(row, added, text);
  return EncodePacket(table);
}
/// The same file, naming the edition of the data it was made with.
inline QByteArray MadeWith(const char* edition, const QByteArray& file) {
  return Naming("edition", edition, file);
}

}  // namespace holdwise::test
