// SPDX-License-Identifier: MIT
#include "holdwise/packet/result_set.h"

#include <QStringDecoder>
#include <QUtf8StringView>
#include <algorithm>
#include <cmath>

#include "date_time_text.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

char LowerAscii(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameName(std::string_view a, std::string_view b) noexcept {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

bool IsUtf8(std::string_view text) noexcept {
  return QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8();
}

/// Every character of the text: Qt takes a byte-order mark at the beginning away.
QString WholeText(const std::string& utf8) {
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
  return decoder(QByteArrayView(utf8));
}

[[noreturn]] void Refuse(const std::string& text) {
  throw Error(ErrorCategory::Refused, text);
}

std::string Place(const std::string& columnName, int row) {
  return "“" + columnName + "”列第 " + std::to_string(row + 1) + " 行";
}

}  // namespace

QString Value::ToText() const {
  if (isNull) return {};
  switch (type) {
    case ColumnType::Integer:
      return QString::number(integer);
    case ColumnType::Real:
      return ShortestText(real);
    case ColumnType::DateTime:
      return QString::fromStdString(DateTimeUtf8(integer));
    case ColumnType::Text:
      break;
  }
  return WholeText(text);
}

int ResultSet::AddColumn(std::string_view name, ColumnType type) {
  if (name.empty()) Refuse("列名为空");
  if (!IsUtf8(name)) Refuse("列名不是有效的 UTF-8");
  if (FindColumn(name) >= 0) Refuse("列名重复：" + std::string(name));
  ColumnData column;
  column.name = name;
  column.type = type;
  const auto rows = static_cast<std::size_t>(rowCount_);
  column.WithValues([rows](auto& values) { values.resize(rows); });
  column.nulls.resize(rows, true);
  columns_.push_back(std::move(column));
  return ColumnCount() - 1;
}

const std::string& ResultSet::ColumnName(int column) const {
  CheckColumn(column);
  return columns_[static_cast<std::size_t>(column)].name;
}

ColumnType ResultSet::TypeOf(int column) const {
  CheckColumn(column);
  return columns_[static_cast<std::size_t>(column)].type;
}

int ResultSet::FindColumn(std::string_view name) const noexcept {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (SameName(columns_[i].name, name)) return static_cast<int>(i);
  }
  return -1;
}

int ResultSet::Column(std::string_view name) const {
  const int column = FindColumn(name);
  if (column < 0) throw Error(ErrorCategory::NotFound, "没有名为“" + std::string(name) + "”的列");
  return column;
}

int ResultSet::AppendRow() {
  for (ColumnData& column : columns_) {
    column.WithValues([](auto& values) { values.emplace_back(); });
    column.nulls.push_back(true);
  }
  return rowCount_++;
}

void ResultSet::Reserve(int rows) {
  const auto count = static_cast<std::size_t>(std::max(rows, 0));
  for (ColumnData& column : columns_) {
    column.WithValues([count](auto& values) { values.reserve(count); });
    column.nulls.reserve(count);
  }
}

void ResultSet::SetInteger(int row, int column, std::int64_t value) {
  ColumnData& data = Typed(row, column, ColumnType::Integer);
  data.integers[static_cast<std::size_t>(row)] = value;
  data.nulls[static_cast<std::size_t>(row)] = false;
}

void ResultSet::SetReal(int row, int column, double value) {
  ColumnData& data = Typed(row, column, ColumnType::Real);
  data.reals[static_cast<std::size_t>(row)] = value;
  data.nulls[static_cast<std::size_t>(row)] = false;
}

void ResultSet::SetText(int row, int column, std::string_view utf8) {
  ColumnData& data = Typed(row, column, ColumnType::Text);
  if (!IsUtf8(utf8)) Refuse(Place(data.name, row) + "的文本不是有效的 UTF-8");
  data.texts[static_cast<std::size_t>(row)] = utf8;
  data.nulls[static_cast<std::size_t>(row)] = false;
}

void ResultSet::SetText(int row, int column, const QString& text) {
  ColumnData& data = Typed(row, column, ColumnType::Text);
  if (!text.isValidUtf16()) Refuse(Place(data.name, row) + "的文本不是有效的 Unicode");
  data.texts[static_cast<std::size_t>(row)] = text.toStdString();
  data.nulls[static_cast<std::size_t>(row)] = false;
}

void ResultSet::SetDateTime(int row, int column, std::int64_t milliseconds) {
  ColumnData& data = Typed(row, column, ColumnType::DateTime);
  data.integers[static_cast<std::size_t>(row)] = milliseconds;
  data.nulls[static_cast<std::size_t>(row)] = false;
}

void ResultSet::SetNull(int row, int column) {
  CheckCell(row, column);
  ColumnData& data = columns_[static_cast<std::size_t>(column)];
  const auto at = static_cast<std::size_t>(row);
  data.WithValues([at](auto& values) { values[at] = {}; });
  data.nulls[at] = true;
}

bool ResultSet::IsNull(int row, int column) const {
  CheckCell(row, column);
  return columns_[static_cast<std::size_t>(column)].nulls[static_cast<std::size_t>(row)];
}

const ResultSet::ColumnData& ResultSet::ColumnWithValue(int row, int column) const {
  CheckCell(row, column);
  const ColumnData& data = columns_[static_cast<std::size_t>(column)];
  if (data.nulls[static_cast<std::size_t>(row)]) Refuse(Place(data.name, row) + "没有值");
  return data;
}

std::int64_t ResultSet::IntegerAt(int row, int column) const {
  const ColumnData& data = ColumnWithValue(row, column);
  const auto at = static_cast<std::size_t>(row);
  switch (data.type) {
    case ColumnType::Integer:
    case ColumnType::DateTime:
      return data.integers[at];
    case ColumnType::Real: {
      const double value = data.reals[at];
      // 2^63 is exact as a double; every whole double below it converts without loss.
      if (value >= -0x1p63 && value < 0x1p63 && value == std::floor(value)) return static_cast<std::int64_t>(value);
      Refuse(Place(data.name, row) + "不是整数");
    }
    case ColumnType::Text:
      break;
  }
  const std::optional<std::int64_t> value = ParseInteger(std::string_view(data.texts[at]));
  if (!value) Refuse(Place(data.name, row) + "不是整数：" + data.texts[at]);
  return *value;
}

double ResultSet::RealAt(int row, int column) const {
  const ColumnData& data = ColumnWithValue(row, column);
  const auto at = static_cast<std::size_t>(row);
  switch (data.type) {
    case ColumnType::Integer:
      return static_cast<double>(data.integers[at]);
    case ColumnType::Real:
      return data.reals[at];
    case ColumnType::DateTime:
      Refuse(Place(data.name, row) + "是日期，不是数值");
    case ColumnType::Text:
      break;
  }
  const std::optional<double> value = ParseReal(std::string_view(data.texts[at]));
  if (!value) Refuse(Place(data.name, row) + "不是数值：" + data.texts[at]);
  return *value;
}

QString ResultSet::TextAt(int row, int column) const {
  return WholeText(Utf8At(row, column));
}

std::string ResultSet::Utf8At(int row, int column) const {
  CheckCell(row, column);
  const ColumnData& data = columns_[static_cast<std::size_t>(column)];
  const auto at = static_cast<std::size_t>(row);
  if (data.nulls[at]) return {};
  switch (data.type) {
    case ColumnType::Integer:
      return std::to_string(data.integers[at]);
    case ColumnType::Real:
      return ShortestUtf8(data.reals[at]);
    case ColumnType::DateTime:
      return DateTimeUtf8(data.integers[at]);
    case ColumnType::Text:
      break;
  }
  return data.texts[at];
}

Value ResultSet::ValueAt(int row, int column) const {
  CheckCell(row, column);
  const ColumnData& data = columns_[static_cast<std::size_t>(column)];
  const auto at = static_cast<std::size_t>(row);
  Value value;
  value.type = data.type;
  value.isNull = data.nulls[at];
  switch (data.type) {
    case ColumnType::Integer:
    case ColumnType::DateTime:
      value.integer = data.integers[at];
      break;
    case ColumnType::Real:
      value.real = data.reals[at];
      break;
    case ColumnType::Text:
      value.text = data.texts[at];
      break;
  }
  return value;
}

const std::vector<std::int64_t>& ResultSet::Integers(int column) const {
  CheckColumn(column);
  const ColumnData& data = columns_[static_cast<std::size_t>(column)];
  if (data.type != ColumnType::Integer && data.type != ColumnType::DateTime) Refuse("“" + data.name + "”列不是整数列");
  return data.integers;
}

const std::vector<double>& ResultSet::Reals(int column) const {
  CheckColumn(column);
  const ColumnData& data = columns_[static_cast<std::size_t>(column)];
  if (data.type != ColumnType::Real) Refuse("“" + data.name + "”列不是实数列");
  return data.reals;
}

bool ResultSet::operator==(const ResultSet& other) const {
  // A null cell always holds 0 or the empty text, so the stored values compare as the cells do.
  return rowCount_ == other.rowCount_ && std::equal(columns_.begin(), columns_.end(), other.columns_.begin(),
                                                    other.columns_.end(), [](const ColumnData& a, const ColumnData& b) {
                                                      return a.name == b.name && a.type == b.type &&
                                                             a.nulls == b.nulls && a.integers == b.integers &&
                                                             a.reals == b.reals && a.texts == b.texts;
                                                    });
}

void ResultSet::CheckColumn(int column) const {
  if (column < 0 || column >= ColumnCount()) {
    Refuse("列号 " + std::to_string(column) + " 超出范围（共 " + std::to_string(ColumnCount()) + " 列）");
  }
}

void ResultSet::CheckCell(int row, int column) const {
  CheckColumn(column);
  if (row < 0 || row >= rowCount_) {
    Refuse("行号 " + std::to_string(row) + " 超出范围（共 " + std::to_string(rowCount_) + " 行）");
  }
}

ResultSet::ColumnData& ResultSet::Typed(int row, int column, ColumnType type) {
  CheckCell(row, column);
  ColumnData& data = columns_[static_cast<std::size_t>(column)];
  if (data.type != type) Refuse(Place(data.name, row) + "的类型与要写入的值不符");
  return data;
}

}  // namespace holdwise
