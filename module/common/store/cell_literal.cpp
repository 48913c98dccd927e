// SPDX-License-Identifier: MIT
#include "common/store/cell_literal.h"

#include <cmath>

#include "common/store/statements.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/text_file.h"

namespace holdwise::sql {
namespace {

QString ShownValue(const ResultSet& table, int row, int column) {
  if (table.TypeOf(column) == ColumnType::Real && !std::isfinite(table.RealAt(row, column))) {
    return QStringLiteral("NaN/Inf");
  }
  return ShownText(table.TextAt(row, column));
}

}  // namespace

void RefuseCell(const ResultSet& table, int row, int column, const QString& why) {
  QString text = QStringLiteral("第%1行的“%2”列").arg(row + 1).arg(QString::fromStdString(table.ColumnName(column)));
  if (table.IsNull(row, column)) {
    text += QStringLiteral("没有值");
  } else {
    text += why.isEmpty() ? QStringLiteral("的值无效") : why;
    text += QStringLiteral("：“%1”").arg(ShownValue(table, row, column));
  }
  throw Error(ErrorCategory::Refused, text.toStdString());
}

std::string NumberIfAny(const ResultSet& table, int row, int column) {
  if (table.IsNull(row, column)) return {};
  switch (table.TypeOf(column)) {
    case ColumnType::Integer:
      return std::to_string(table.IntegerAt(row, column));
    case ColumnType::Real: {
      const double value = table.RealAt(row, column);
      if (!std::isfinite(value)) RefuseCell(table, row, column);
      return ShortestUtf8(value);
    }
    case ColumnType::DateTime:
      RefuseCell(table, row, column);
    case ColumnType::Text:
      break;
  }
  std::string text = table.Utf8At(row, column);
  if (!text.empty() && !ParseReal(std::string_view(text))) RefuseCell(table, row, column);
  return text;
}

std::string NumberLiteral(const ResultSet& table, int row, int column) {
  std::string text = NumberIfAny(table, row, column);
  if (text.empty()) RefuseCell(table, row, column);
  return text;
}

std::string IntegerLiteral(const ResultSet& table, int row, int column) {
  std::string text = NumberLiteral(table, row, column);
  if (table.TypeOf(column) == ColumnType::Text) {
    if (!ParseInteger(std::string_view(text))) RefuseCell(table, row, column);
    return text;
  }
  try {
    return std::to_string(table.IntegerAt(row, column));
  } catch (const Error&) {  // a real with a fraction, or too large
    RefuseCell(table, row, column);
  }
}

QString DateTimeLiteral(const ResultSet& table, int row, int column) {
  if (table.TypeOf(column) != ColumnType::DateTime || table.IsNull(row, column)) RefuseCell(table, row, column);
  return TextLiteral(table.TextAt(row, column));
}

QString QuotableText(const ResultSet& table, int row, int column) {
  QString text = table.TextAt(row, column);
  if (text.contains(QLatin1Char('\'')) || text.contains(QChar(0))) RefuseCell(table, row, column);
  return text;
}

}  // namespace holdwise::sql
