// SPDX-License-Identifier: MIT
#include "packet_decode.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "cbor.h"
#include "packet_layout.h"

namespace holdwise {

/// Counts what the result set will take in memory, so that small content cannot become a large set.
class MemoryBudget {
 public:
  explicit MemoryBudget(std::int64_t bytes) : left_(static_cast<std::uint64_t>(std::max<std::int64_t>(bytes, 0))) {}
  void Take(const CborReader& reader, std::uint64_t bytes) {
    if (bytes > left_) reader.Refuse("占用内存过多");
    left_ -= bytes;
  }

 private:
  std::uint64_t left_;
};

namespace {

ColumnType ReadType(CborReader& reader) {
  const std::string_view name = reader.Text();
  const auto found = std::find(kTypeNames.begin(), kTypeNames.end(), name);
  if (found == kTypeNames.end()) reader.Corrupt("类型不明");
  return static_cast<ColumnType>(found - kTypeNames.begin());
}

/// The byte string of a typed array whose length must be that of all rows.
std::string_view ReadArrayBytes(CborReader& reader, std::size_t rows, std::size_t valueBytes) {
  const std::string_view bytes = reader.Bytes();
  if (bytes.size() != rows * valueBytes) reader.Corrupt("值的个数与行数不符");
  return bytes;
}

template <typename Stored, typename Held>
void ReadArray(CborReader& reader, std::size_t rows, std::vector<Held>& values) {
  const std::string_view bytes = ReadArrayBytes(reader, rows, sizeof(Stored));
  values.resize(rows);
  if (rows == 0) return;
  if constexpr (std::is_same_v<Stored, Held>) {
    std::memcpy(values.data(), bytes.data(), bytes.size());
  } else {
    for (std::size_t row = 0; row < rows; ++row) {
      Stored value;
      std::memcpy(&value, bytes.data() + row * sizeof(Stored), sizeof(Stored));
      values[row] = value;  // NOLINT(bugprone-signed-char-misuse): a number of eight bits, not a character
    }
  }
}

void ReadIntegers(CborReader& reader, std::size_t rows, std::vector<std::int64_t>& values) {
  switch (reader.Head(CborMajor::Tag)) {
    case kTagInt8:
      return ReadArray<std::int8_t>(reader, rows, values);
    case kTagInt16:
      return ReadArray<std::int16_t>(reader, rows, values);
    case kTagInt32:
      return ReadArray<std::int32_t>(reader, rows, values);
    case kTagInt64:
      return ReadArray<std::int64_t>(reader, rows, values);
    default:
      reader.Corrupt("值的类型与列的类型不符");
  }
}

void ReadReals(CborReader& reader, std::size_t rows, std::vector<double>& values) {
  if (reader.Head(CborMajor::Tag) != kTagFloat64) reader.Corrupt("值的类型与列的类型不符");
  ReadArray<double>(reader, rows, values);
  if (!std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); })) {
    reader.Corrupt("有不是有限数的值");
  }
}

void ReadTexts(CborReader& reader, std::size_t rows, const PacketLimits& limits, MemoryBudget& budget,
               std::vector<std::string>& values) {
  const std::uint64_t count = reader.Head(CborMajor::Array);
  if (count != rows || count > reader.Remaining()) reader.Corrupt("值的个数与行数不符");
  values.reserve(rows);
  for (std::size_t row = 0; row < rows; ++row) {
    const std::string_view text = reader.Text();
    if (text.size() > static_cast<std::size_t>(limits.textBytes)) reader.Refuse("文本过长");
    budget.Take(reader, text.size());
    values.emplace_back(text);
  }
}

std::vector<bool> ReadNulls(CborReader& reader, std::size_t rows) {
  reader.Key(kKeyNulls);
  const std::string_view bitmap = reader.Bytes();
  if (bitmap.size() != NullBytes(rows)) reader.Corrupt("空值标记的个数与行数不符");
  if (rows % 8 != 0 && static_cast<unsigned char>(bitmap.back()) >> rows % 8 != 0) reader.Corrupt("空值标记有多余的位");
  std::vector<bool> nulls(rows);
  for (std::size_t row = 0; row < rows; ++row) nulls[row] = (bitmap[row / 8] >> row % 8 & 1) != 0;
  return nulls;
}

/// A null cell must hold 0 or the empty text: one table has one form.
template <typename Held>
void CheckNullCells(const CborReader& reader, const std::vector<bool>& nulls, const std::vector<Held>& values) {
  for (std::size_t row = 0; row < values.size(); ++row) {
    if (nulls[row] && values[row] != Held()) reader.Corrupt("空值处另有内容");
  }
}

void CheckLimit(const CborReader& reader, std::uint64_t value, int limit, const char* what) {
  if (value > static_cast<std::uint64_t>(std::max(limit, 0))) {
    reader.Refuse(std::string(what) + "为 " + std::to_string(value) + "，最多 " + std::to_string(limit));
  }
}

}  // namespace

void PacketDecoder::DecodeColumn(CborReader& reader, const PacketLimits& limits, MemoryBudget& budget,
                                 ResultSet& result) {
  const auto rows = static_cast<std::size_t>(result.rowCount_);
  const std::string number = "第 " + std::to_string(result.ColumnCount() + 1) + " 列";
  reader.SetPlace(number + "：");
  const std::uint64_t entries = reader.Head(CborMajor::Map);
  if (entries != kColumnEntries && entries != kColumnEntries + 1) reader.Corrupt("列的描述有误");
  ResultSet::ColumnData column;
  reader.Key(kKeyName);
  column.name = reader.Text();
  CheckLimit(reader, column.name.size(), limits.nameBytes, "列名长度");
  if (column.name.empty()) reader.Corrupt("列名为空");
  reader.SetPlace(number + "“" + column.name + "”：");
  if (result.FindColumn(column.name) >= 0) reader.Corrupt("列名重复");
  reader.Key(kKeyType);
  column.type = ReadType(reader);
  const bool isText = column.type == ColumnType::Text;
  budget.Take(reader, rows * (isText ? sizeof(std::string) : sizeof(std::int64_t)) + NullBytes(rows));
  reader.Key(kKeyValues);
  if (isText) {
    ReadTexts(reader, rows, limits, budget, column.texts);
  } else if (column.type == ColumnType::Real) {
    ReadReals(reader, rows, column.reals);
  } else {
    ReadIntegers(reader, rows, column.integers);
  }
  if (entries == kColumnEntries) {
    column.nulls.resize(rows, false);
  } else {
    column.nulls = ReadNulls(reader, rows);
    CheckNullCells(reader, column.nulls, column.integers);
    CheckNullCells(reader, column.nulls, column.reals);
    CheckNullCells(reader, column.nulls, column.texts);
  }
  result.columns_.push_back(std::move(column));
  reader.SetPlace({});
}

ResultSet PacketDecoder::Decode(std::string_view content, const PacketLimits& limits) {
  CborReader reader(content);
  MemoryBudget budget(limits.memoryBytes);
  if (reader.Head(CborMajor::Map) != kPacketEntries) reader.Corrupt("文件头有误");
  reader.Key(kKeyFormat);
  if (reader.Text() != kFormatName) reader.Corrupt("格式名不符");
  reader.Key(kKeyVersion);
  if (const std::uint64_t version = reader.Head(CborMajor::Unsigned); version != kFormatVersion) {
    reader.Corrupt("不认识的格式版本 " + std::to_string(version));
  }
  reader.Key(kKeyRows);
  const std::uint64_t rowCount = reader.Head(CborMajor::Unsigned);
  CheckLimit(reader, rowCount, limits.rows, "行数");
  reader.Key(kKeyColumns);
  const std::uint64_t columnCount = reader.Head(CborMajor::Array);
  CheckLimit(reader, columnCount, limits.columns, "列数");
  if (columnCount > reader.Remaining()) reader.Corrupt("内容不完整");

  ResultSet result;
  result.rowCount_ = static_cast<int>(rowCount);
  result.columns_.reserve(columnCount);
  for (std::uint64_t i = 0; i < columnCount; ++i) DecodeColumn(reader, limits, budget, result);
  if (reader.Remaining() != 0) reader.Corrupt("末尾有多余的内容");
  return result;
}

}  // namespace holdwise
