// SPDX-License-Identifier: MIT
#pragma once
#include <span>
#include <string>
#include <vector>

#include "database/engine/firebird_client.h"
#include "holdwise/packet/result_set.h"

namespace holdwise::firebird {

/// Turns the engine's row messages into rows of a ResultSet. Whole numbers become Integer, approximate and scaled
/// numbers Real, texts (fixed-length ones without their padding) and text blobs Text, dates and timestamps DateTime.
class RowReader {
 public:
  RowReader() = default;
  /// Throws the engine's exception, or Error(Refused) for a column type that has no place in a ResultSet.
  RowReader(Status& status, Firebird::IMessageMetadata& format);

  /// The columns without rows. A name the engine gives twice gets "_1", "_2", ... appended.
  [[nodiscard]] ResultSet EmptyResult() const { return empty_; }
  void Append(std::span<const unsigned char> message, Status& status, Firebird::IAttachment& attachment,
              const Transaction& transaction, ResultSet& rows) const;

 private:
  struct Column {
    unsigned type = 0;
    unsigned length = 0;
    double divisor = 1;
    bool scaled = false;
    unsigned offset = 0;
    unsigned nullOffset = 0;
  };
  void AppendNumber(const Column& column, std::int64_t value, int row, int index, ResultSet& rows) const;

  std::vector<Column> columns_;
  ResultSet empty_;
};

}  // namespace holdwise::firebird
