// SPDX-License-Identifier: MIT
#include "table_reader.h"

#include <QDir>
#include <algorithm>
#include <limits>

namespace holdwise {
namespace {

[[noreturn]] void Fail(ErrorCategory category, const QString& path, const QString& text) {
  throw Error(category, QStringLiteral("行情数据文件“%1”：%2").arg(QDir::toNativeSeparators(path), text).toStdString());
}

ResultSet ReadTable(const QString& path, const PacketLimits& limits) {
  try {
    return ReadPacketFile(path, limits);
  } catch (const Error& error) {
    Fail(error.Category(), path, QString::fromUtf8(error.what()).remove(path + QStringLiteral("：")));
  }
}

}  // namespace

TableReader::TableReader(const QString& path, const PacketLimits& limits, bool mayBeEmpty)
    : path_(path), table_(ReadTable(path, limits)) {
  if (table_.IsEmpty() && !mayBeEmpty) Fail(ErrorCategory::Corrupt, path_, QStringLiteral("文件没有数据行"));
}

int TableReader::Column(const char* name, ColumnType type, bool mayBeNull) const {
  const int column = table_.FindColumn(name);
  if (column < 0) Fail(ErrorCategory::Corrupt, path_, QStringLiteral("缺少列“%1”").arg(QLatin1String(name)));
  if (table_.TypeOf(column) != type) {
    Fail(ErrorCategory::Corrupt, path_, QStringLiteral("列“%1”的类型不对").arg(QLatin1String(name)));
  }
  if (mayBeNull) return column;
  for (int row = 0; row < table_.RowCount(); ++row) {
    if (table_.IsNull(row, column)) {
      Fail(ErrorCategory::Corrupt, path_, QStringLiteral("第%1行的列“%2”为空").arg(row + 1).arg(QLatin1String(name)));
    }
  }
  return column;
}

int TableReader::IntegerAt(int row, int column) const {
  const std::int64_t value = table_.Integers(column)[static_cast<std::size_t>(row)];
  if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
    Refuse(row, QStringLiteral("数值%1超出范围").arg(value));
  }
  return static_cast<int>(value);
}

QString TableReader::Edition() const {
  constexpr std::size_t kMostBytes = 64;
  if (table_.FindColumn("edition") < 0 || table_.IsEmpty()) return {};
  const std::string text = table_.Utf8At(0, Column("edition", ColumnType::Text, true));
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  });
  if (!isPlain || text.size() > kMostBytes) Refuse(0, QStringLiteral("数据版本标记无效"));
  return QString::fromStdString(text);
}

void TableReader::RequireEdition(const QString& edition) const {
  const QString madeWith = Edition();
  if (madeWith.isEmpty() || edition.isEmpty() || madeWith == edition) return;
  Refuse(0, QStringLiteral("是随另一份数据生成的，与market.dat不符，请重新生成数据目录"));
}

void TableReader::Refuse(int row, const QString& reason) const {
  Fail(ErrorCategory::Refused, path_, QStringLiteral("第%1行：%2").arg(row + 1).arg(reason));
}

}  // namespace holdwise
