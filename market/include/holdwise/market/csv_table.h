// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "holdwise/packet/csv_reader.h"

namespace holdwise {

/// A line or a whole file that was not used, and why.
struct Rejection {
  QString file;
  std::int64_t line = 0;  ///< 1-based; 0 = the whole file
  QString reason;         ///< Chinese
  /// "file:line: reason", without the line for a whole file.
  [[nodiscard]] QString ToText() const;
};

/// A column that a table may have: the headings under which people know it, in lower case.
struct CsvColumn {
  std::vector<std::string_view> headings;
  bool isRequired = false;
};

/// A CSV file with one heading line, its columns in any order. Headings are compared without regard to ASCII case and
/// without a unit in brackets behind them; columns that are not asked for are ignored. Not thread-safe.
class CsvTable {
 public:
  /// Reads the whole file. Missing: Error(NotFound); unreadable: Error(Io); neither UTF-8 nor GB18030: Error(Corrupt);
  /// no heading line, a required column missing or a column given twice: Error(Refused).
  CsvTable(const QString& path, std::span<const CsvColumn> columns);
  CsvTable(const CsvTable&) = delete;
  CsvTable& operator=(const CsvTable&) = delete;

  /// Moves to the next line; false at the end. A line with another number of fields than the heading or with characters
  /// behind a closing quote is rejected and passed over; an unclosed quote is rejected and ends the table.
  bool Next();
  [[nodiscard]] bool Has(std::size_t column) const { return places_[column] >= 0; }
  /// Field of the current line; empty when the table has no such column.
  [[nodiscard]] std::string_view Field(std::size_t column) const;
  [[nodiscard]] std::int64_t Line() const { return reader_->Line(); }

  /// Records that the current line is not used.
  void Reject(const QString& reason);
  [[nodiscard]] std::vector<Rejection> TakeRejections() { return std::move(rejections_); }

 private:
  void MapHeadings(std::span<const CsvColumn> columns);

  QString path_;
  QByteArray text_;
  std::unique_ptr<CsvReader> reader_;
  std::size_t fieldCount_ = 0;
  std::vector<int> places_;  // field index of each asked column, -1 = not there
  std::vector<Rejection> rejections_;
};

/// A number in a table that must be a plain decimal: digits with at most one point, no sign, no exponent, at most four
/// digits behind the point that are not trailing zeros, below 1e9. Returns the reason when it is not: "" is missing.
/// `value` is set only on success.
[[nodiscard]] std::optional<QString> ReadPlainDecimal(std::string_view text, double& value);
/// The same, and above zero: a price.
[[nodiscard]] std::optional<QString> ReadPrice(std::string_view text, double& value);

}  // namespace holdwise
