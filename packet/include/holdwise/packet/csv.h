#pragma once
#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <cstdint>
#include <string_view>
#include <vector>

#include "holdwise/packet/result_set.h"

/// CSV as people have it: comma separated, optional double quotes (doubled inside), LF or CRLF, UTF-8 with or without
/// byte-order mark, or GB18030.
namespace holdwise {

/// Whole content of a file as UTF-8 without byte-order mark: valid UTF-8 is taken as such, everything else must be
/// valid GB18030. Neither: Error(Corrupt). Missing: Error(NotFound); unreadable: Error(Io); above `maxBytes`:
/// Error(Refused).
[[nodiscard]] QByteArray ReadTextFile(const QString& path, std::int64_t maxBytes = 512LL << 20);
/// The same for bytes at hand.
[[nodiscard]] QByteArray ToUtf8Text(const QByteArray& bytes);

/// Walks the records of a UTF-8 text without copying plain fields. Blank lines are skipped. The text must outlive it.
class CsvReader {
 public:
  explicit CsvReader(std::string_view utf8);
  /// Moves to the next record; false at the end. An unclosed quote: Error(Corrupt) with the line number.
  bool Next();
  /// Fields of the current record, blanks at both ends removed from unquoted fields. Valid until the next Next().
  [[nodiscard]] const std::vector<std::string_view>& Fields() const noexcept { return fields_; }
  /// 1-based number of the line on which the current record begins.
  [[nodiscard]] std::int64_t Line() const noexcept { return line_; }

 private:
  std::string_view rest_;
  std::int64_t nextLine_ = 1;
  std::int64_t line_ = 0;
  std::vector<std::string_view> fields_;
  std::vector<std::string> unquoted_;
};

/// One field as CSV (quoted when needed).
[[nodiscard]] QString CsvField(const QString& text);

/// A result set as CSV: heading row of "name:type" (type one of integer, real, text, datetime), null as an empty
/// unquoted field, an empty text as "". FromCsv reads exactly that back; a bad heading or value is Error(Refused) with
/// line and column.
[[nodiscard]] QByteArray ResultSetToCsv(const ResultSet& resultSet);
[[nodiscard]] ResultSet ResultSetFromCsv(const QByteArray& utf8);

}  // namespace holdwise
