// SPDX-License-Identifier: MIT
#include "holdwise/packet/csv_result_set.h"

#include <algorithm>
#include <optional>

#include "date_time_text.h"
#include "holdwise/packet/csv_reader.h"
#include "holdwise/packet/number_text.h"
#include "packet_layout.h"

namespace holdwise {
namespace {

[[noreturn]] void Refuse(const std::string& text) {
  throw Error(ErrorCategory::Refused, text);
}

void AppendField(std::string& csv, std::string_view text) {
  // At the beginning of a text a byte-order mark that is meant would be taken for one that is not.
  const bool quotes = text.empty() || text.starts_with("\xEF\xBB\xBF") ||
                      text.find_first_of(",\"\r\n") != std::string_view::npos ||
                      std::string_view(" \t").find(text.front()) != std::string_view::npos ||
                      std::string_view(" \t").find(text.back()) != std::string_view::npos;
  if (!quotes) {
    csv.append(text);
    return;
  }
  csv.push_back('"');
  for (const char c : text) {
    if (c == '"') csv.push_back('"');
    csv.push_back(c);
  }
  csv.push_back('"');
}

void AppendCell(std::string& csv, const ResultSet& resultSet, int row, int column) {
  if (resultSet.IsNull(row, column)) return;
  if (resultSet.TypeOf(column) != ColumnType::DateTime) {
    AppendField(csv, resultSet.Utf8At(row, column));
    return;
  }
  const std::optional<std::string> text = ExactDateTimeUtf8(resultSet.IntegerAt(row, column));
  if (!text) Refuse("“" + resultSet.ColumnName(column) + "”列第 " + std::to_string(row + 1) + " 行的日期超出范围");
  csv.append(*text);
}

void ReadHeading(const CsvReader& reader, ResultSet& resultSet) {
  for (const std::string_view field : reader.Fields()) {
    const std::size_t colon = field.rfind(':');
    const auto type = colon == std::string_view::npos
                          ? kTypeNames.end()
                          : std::find(kTypeNames.begin(), kTypeNames.end(), field.substr(colon + 1));
    const std::string place =
        "第 " + std::to_string(reader.Line()) + " 行第 " + std::to_string(resultSet.ColumnCount() + 1) + " 列：";
    if (type == kTypeNames.end()) Refuse(place + "列头应为“列名:类型”，而不是“" + std::string(field) + "”");
    try {
      resultSet.AddColumn(field.substr(0, colon), static_cast<ColumnType>(type - kTypeNames.begin()));
    } catch (const Error& error) {
      Refuse(place + error.what());
    }
  }
}

/// False when the text is not of the column's type.
bool SetCell(ResultSet& resultSet, int row, int column, std::string_view text) {
  switch (resultSet.TypeOf(column)) {
    case ColumnType::Integer:
      if (const auto value = ParseInteger(text)) return resultSet.SetInteger(row, column, *value), true;
      return false;
    case ColumnType::Real:
      if (const auto value = ParseReal(text)) return resultSet.SetReal(row, column, *value), true;
      return false;
    case ColumnType::DateTime:
      if (const auto value = ParseDateTime(text)) return resultSet.SetDateTime(row, column, *value), true;
      return false;
    case ColumnType::Text:
      break;
  }
  resultSet.SetText(row, column, text);
  return true;
}

void ReadRow(const CsvReader& reader, ResultSet& resultSet) {
  const auto& fields = reader.Fields();
  const std::string line = "第 " + std::to_string(reader.Line()) + " 行";
  if (fields.size() != static_cast<std::size_t>(resultSet.ColumnCount())) {
    Refuse(line + "：有 " + std::to_string(fields.size()) + " 列，应有 " + std::to_string(resultSet.ColumnCount()) +
           " 列");
  }
  const int row = resultSet.AppendRow();
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const auto column = static_cast<int>(i);
    if (fields[i].empty() && !reader.IsQuoted(i)) continue;
    if (!SetCell(resultSet, row, column, fields[i])) {
      Refuse(line + "“" + resultSet.ColumnName(column) + "”列：不认识的值“" + std::string(fields[i]) + "”");
    }
  }
}

}  // namespace

QString CsvField(const QString& text) {
  std::string csv;
  AppendField(csv, text.toStdString());
  return QString::fromStdString(csv);
}

QByteArray ResultSetToCsv(const ResultSet& resultSet) {
  if (resultSet.ColumnCount() == 0) Refuse("没有列，无法写成文本");
  std::string csv;
  for (int column = 0; column < resultSet.ColumnCount(); ++column) {
    if (column > 0) csv.push_back(',');
    const auto type = static_cast<std::size_t>(resultSet.TypeOf(column));
    AppendField(csv, resultSet.ColumnName(column) + ':' + std::string(kTypeNames[type]));
  }
  csv.push_back('\n');
  for (int row = 0; row < resultSet.RowCount(); ++row) {
    for (int column = 0; column < resultSet.ColumnCount(); ++column) {
      if (column > 0) csv.push_back(',');
      AppendCell(csv, resultSet, row, column);
    }
    csv.push_back('\n');
  }
  return QByteArray::fromStdString(csv);
}

ResultSet ResultSetFromCsv(const QByteArray& utf8) {
  // In a set of one column an empty line is a null.
  CsvReader reader(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())), BlankLines::Keep);
  const auto isBlank = [&reader] {
    return reader.Fields().size() == 1 && reader.Fields().front().empty() && !reader.IsQuoted(0);
  };
  const auto next = [&reader] {
    try {
      return reader.Next();
    } catch (const Error& error) {
      throw Error(error.Category(), "第 " + std::to_string(reader.Line()) + " 行：" + error.what());
    }
  };
  ResultSet resultSet;
  while (next()) {
    if (resultSet.ColumnCount() == 0) {
      if (!isBlank()) ReadHeading(reader, resultSet);
    } else if (resultSet.ColumnCount() == 1 || !isBlank()) {
      ReadRow(reader, resultSet);
    }
  }
  if (resultSet.ColumnCount() == 0) Refuse("文本中没有列头");
  return resultSet;
}

}  // namespace holdwise
