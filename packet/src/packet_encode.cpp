// SPDX-License-Identifier: MIT
#include "packet_encode.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "cbor.h"
#include "packet_layout.h"

namespace holdwise {
namespace {

[[noreturn]] void Refuse(const std::string& what) {
  throw Error(ErrorCategory::Refused, "数据无法写成数据文件：" + what);
}

std::string Place(const std::string& columnName, std::size_t row) {
  return "“" + columnName + "”列第 " + std::to_string(row + 1) + " 行";
}

void WriteTypedArray(CborWriter& writer, std::uint64_t tag, const void* data, std::size_t bytes) {
  writer.Head(CborMajor::Tag, tag);
  writer.Bytes({static_cast<const char*>(data), bytes});
}

template <typename Narrow>
void WriteNarrow(CborWriter& writer, std::uint64_t tag, const std::vector<std::int64_t>& values) {
  std::vector<Narrow> narrow(values.size());
  std::transform(values.begin(), values.end(), narrow.begin(), [](std::int64_t v) { return static_cast<Narrow>(v); });
  WriteTypedArray(writer, tag, narrow.data(), narrow.size() * sizeof(Narrow));
}

/// The narrowest typed array that holds all values.
void WriteIntegers(CborWriter& writer, const std::vector<std::int64_t>& values) {
  std::int64_t low = 0;
  std::int64_t high = 0;
  for (const std::int64_t value : values) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
  const auto fits = [low, high]<typename Narrow>(Narrow) {
    return low >= std::numeric_limits<Narrow>::min() && high <= std::numeric_limits<Narrow>::max();
  };
  if (fits(std::int8_t())) return WriteNarrow<std::int8_t>(writer, kTagInt8, values);
  if (fits(std::int16_t())) return WriteNarrow<std::int16_t>(writer, kTagInt16, values);
  if (fits(std::int32_t())) return WriteNarrow<std::int32_t>(writer, kTagInt32, values);
  WriteTypedArray(writer, kTagInt64, values.data(), values.size() * sizeof(std::int64_t));
}

void WriteReals(CborWriter& writer, const std::string& name, const std::vector<double>& values) {
  const auto bad = std::find_if(values.begin(), values.end(), [](double v) { return !std::isfinite(v); });
  if (bad != values.end()) Refuse(Place(name, static_cast<std::size_t>(bad - values.begin())) + "不是有限数");
  WriteTypedArray(writer, kTagFloat64, values.data(), values.size() * sizeof(double));
}

void WriteNulls(CborWriter& writer, const std::vector<bool>& nulls) {
  std::string bitmap(NullBytes(nulls.size()), '\0');
  for (std::size_t row = 0; row < nulls.size(); ++row) {
    if (nulls[row]) bitmap[row / 8] = static_cast<char>(bitmap[row / 8] | 1 << row % 8);
  }
  writer.Text(kKeyNulls);
  writer.Bytes(bitmap);
}

void CheckContent(std::size_t bytes, const PacketLimits& limits) {
  if (bytes > static_cast<std::size_t>(limits.contentBytes)) {
    Refuse("内容超过 " + std::to_string(limits.contentBytes) + " 字节");
  }
}

}  // namespace

void PacketEncoder::EncodeColumn(const ResultSet& resultSet, int index, const PacketLimits& limits,
                                 std::string& content) {
  const ResultSet::ColumnData& column = resultSet.columns_[static_cast<std::size_t>(index)];
  if (column.name.size() > static_cast<std::size_t>(limits.nameBytes)) Refuse("列名过长：" + column.name);
  const bool hasNulls = std::find(column.nulls.begin(), column.nulls.end(), true) != column.nulls.end();
  CborWriter writer(content);
  writer.Head(CborMajor::Map, kColumnEntries + (hasNulls ? 1 : 0));
  writer.Text(kKeyName);
  writer.Text(column.name);
  writer.Text(kKeyType);
  writer.Text(kTypeNames[static_cast<std::size_t>(column.type)]);
  writer.Text(kKeyValues);
  switch (column.type) {
    case ColumnType::Integer:
    case ColumnType::DateTime:
      CheckContent(content.size() + column.integers.size(), limits);
      WriteIntegers(writer, column.integers);
      break;
    case ColumnType::Real:
      CheckContent(content.size() + column.reals.size() * sizeof(double), limits);
      WriteReals(writer, column.name, column.reals);
      break;
    case ColumnType::Text:
      writer.Head(CborMajor::Array, column.texts.size());
      for (std::size_t row = 0; row < column.texts.size(); ++row) {
        const std::string& text = column.texts[row];
        if (text.size() > static_cast<std::size_t>(limits.textBytes)) Refuse(Place(column.name, row) + "的文本过长");
        CheckContent(content.size() + text.size(), limits);
        writer.Text(text);
      }
      break;
  }
  if (hasNulls) WriteNulls(writer, column.nulls);
}

std::string PacketEncoder::Encode(const ResultSet& resultSet, const PacketLimits& limits) {
  if (resultSet.ColumnCount() > limits.columns) Refuse("列数超过 " + std::to_string(limits.columns));
  if (resultSet.RowCount() > limits.rows) Refuse("行数超过 " + std::to_string(limits.rows));
  std::string content;
  CborWriter writer(content);
  writer.Head(CborMajor::Map, kPacketEntries);
  writer.Text(kKeyFormat);
  writer.Text(kFormatName);
  writer.Text(kKeyVersion);
  writer.Head(CborMajor::Unsigned, kFormatVersion);
  writer.Text(kKeyRows);
  writer.Head(CborMajor::Unsigned, static_cast<std::uint64_t>(resultSet.RowCount()));
  writer.Text(kKeyColumns);
  writer.Head(CborMajor::Array, resultSet.columns_.size());
  for (int column = 0; column < resultSet.ColumnCount(); ++column) EncodeColumn(resultSet, column, limits, content);
  CheckContent(content.size(), limits);
  return content;
}

}  // namespace holdwise
