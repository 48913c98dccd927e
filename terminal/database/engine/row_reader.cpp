// SPDX-License-Identifier: MIT
#include "database/engine/row_reader.h"

#include <array>
#include <cmath>
#include <cstring>

namespace holdwise::firebird {

namespace {

constexpr unsigned kNullBit = 1;
constexpr std::int64_t kMillisecondsPerDay = 86'400'000;
constexpr std::int64_t kDaysTo1970 = 40'587;  // from the engine's day zero, 1858-11-17
constexpr std::int64_t kTimeUnitsPerMillisecond = 10;

template <typename T>
T Get(std::span<const unsigned char> message, unsigned offset) {
  T value;
  std::memcpy(&value, message.data() + offset, sizeof value);
  return value;
}

std::string_view TextAt(std::span<const unsigned char> message, unsigned offset, std::size_t length) {
  return {reinterpret_cast<const char*>(message.data()) + offset, length};
}

std::int64_t MillisecondsOf(ISC_DATE day, ISC_TIME time) {
  return (day - kDaysTo1970) * kMillisecondsPerDay + static_cast<std::int64_t>(time) / kTimeUnitsPerMillisecond;
}

std::string BlobText(Status& status, Firebird::IAttachment& attachment, const Transaction& transaction, ISC_QUAD id) {
  Handle<Firebird::IBlob> blob(attachment.openBlob(status.Get(), &transaction.Get(), &id, 0, nullptr));
  std::string text;
  std::array<char, 8192> segment{};
  for (;;) {
    unsigned length = 0;
    const int result = blob->getSegment(status.Get(), segment.size(), segment.data(), &length);
    if (result != Firebird::IStatus::RESULT_OK && result != Firebird::IStatus::RESULT_SEGMENT) break;
    text.append(segment.data(), length);
  }
  blob->close(status.Get());
  static_cast<void>(blob.release());  // the engine has freed it
  return text;
}

ColumnType ResultTypeOf(unsigned type, bool scaled, const std::string& name) {
  switch (type) {
    case SQL_SHORT:
    case SQL_LONG:
    case SQL_INT64:
      return scaled ? ColumnType::Real : ColumnType::Integer;
    case SQL_BOOLEAN:
      return ColumnType::Integer;
    case SQL_FLOAT:
    case SQL_DOUBLE:
    case SQL_D_FLOAT:
      return ColumnType::Real;
    case SQL_TYPE_DATE:
    case SQL_TIMESTAMP:
      return ColumnType::DateTime;
    case SQL_TEXT:
    case SQL_VARYING:
    case SQL_BLOB:
    case SQL_NULL:
      return ColumnType::Text;
    default:
      throw Error(ErrorCategory::Refused, "列“" + name + "”的类型不能读取");
  }
}

}  // namespace

RowReader::RowReader(Status& status, Firebird::IMessageMetadata& format) {
  for (unsigned i = 0; i < format.getCount(status.Get()); ++i) {
    Column column;
    column.type = format.getType(status.Get(), i) & ~kNullBit;
    column.length = format.getLength(status.Get(), i);
    const int scale = format.getScale(status.Get(), i);
    column.scaled = scale != 0;
    column.divisor = std::pow(10.0, -scale);
    column.offset = format.getOffset(status.Get(), i);
    column.nullOffset = format.getNullOffset(status.Get(), i);
    const std::string alias = format.getAlias(status.Get(), i);
    std::string name = alias.empty() ? "F" : alias;
    for (int repeat = 1; empty_.FindColumn(name) >= 0; ++repeat) name = alias + "_" + std::to_string(repeat);
    empty_.AddColumn(name, ResultTypeOf(column.type, column.scaled, name));
    columns_.push_back(column);
  }
}

void RowReader::AppendNumber(const Column& column, std::int64_t value, int row, int index, ResultSet& rows) const {
  if (column.scaled) {
    rows.SetReal(row, index, static_cast<double>(value) / column.divisor);
  } else {
    rows.SetInteger(row, index, value);
  }
}

void RowReader::Append(std::span<const unsigned char> message, Status& status, Firebird::IAttachment& attachment,
                       const Transaction& transaction, ResultSet& rows) const {
  const int row = rows.AppendRow();
  for (int i = 0; i < static_cast<int>(columns_.size()); ++i) {
    const Column& column = columns_[static_cast<std::size_t>(i)];
    if (Get<std::int16_t>(message, column.nullOffset) != 0) continue;
    switch (column.type) {
      case SQL_SHORT:
        AppendNumber(column, Get<std::int16_t>(message, column.offset), row, i, rows);
        break;
      case SQL_LONG:
        AppendNumber(column, Get<std::int32_t>(message, column.offset), row, i, rows);
        break;
      case SQL_INT64:
        AppendNumber(column, Get<std::int64_t>(message, column.offset), row, i, rows);
        break;
      case SQL_BOOLEAN:
        rows.SetInteger(row, i, Get<FB_BOOLEAN>(message, column.offset) != 0 ? 1 : 0);
        break;
      case SQL_FLOAT:
        rows.SetReal(row, i, static_cast<double>(Get<float>(message, column.offset)));
        break;
      case SQL_DOUBLE:
      case SQL_D_FLOAT:
        rows.SetReal(row, i, Get<double>(message, column.offset));
        break;
      case SQL_TYPE_DATE:
        rows.SetDateTime(row, i, MillisecondsOf(Get<ISC_DATE>(message, column.offset), 0));
        break;
      case SQL_TIMESTAMP: {
        const auto stamp = Get<ISC_TIMESTAMP>(message, column.offset);
        rows.SetDateTime(row, i, MillisecondsOf(stamp.timestamp_date, stamp.timestamp_time));
        break;
      }
      case SQL_VARYING:
        rows.SetText(row, i, TextAt(message, column.offset + 2, Get<std::uint16_t>(message, column.offset)));
        break;
      case SQL_BLOB:
        rows.SetText(row, i, BlobText(status, attachment, transaction, Get<ISC_QUAD>(message, column.offset)));
        break;
      default: {
        std::string_view text = TextAt(message, column.offset, column.length);
        const std::size_t last = text.find_last_not_of(' ');
        rows.SetText(row, i, text.substr(0, last == std::string_view::npos ? 0 : last + 1));
      }
    }
  }
}

}  // namespace holdwise::firebird
