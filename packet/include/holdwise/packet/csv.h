#pragma once
#include <QByteArray>
#include <QString>
#include <cstdint>
#include <deque>
#include <string>
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

/// A text from outside as it stands in a message: control characters, which would cut the message short or break its
/// lines, become "\x" and their two hexadecimal digits; of more than 400 characters the first 400 and "…".
[[nodiscard]] QString ShownText(const QString& text);

/// What happens to a line with nothing but blanks.
enum class BlankLines {
  Skip,
  Keep,  ///< a record of one empty field
};

/// Walks the records of a UTF-8 text without copying plain fields. The text must outlive it.
class CsvReader {
 public:
  explicit CsvReader(std::string_view utf8, BlankLines blankLines = BlankLines::Skip);
  /// Moves to the next record; false at the end. An unclosed quote, or characters between a closing quote and the next
  /// comma: Error(Corrupt), with Line() the line on which the bad record begins. The next call goes on behind the line
  /// with those characters; nothing is left behind an unclosed quote.
  bool Next();
  /// Fields of the current record, blanks (space, tab) at both ends removed from unquoted fields. Valid until the next
  /// Next().
  [[nodiscard]] const std::vector<std::string_view>& Fields() const noexcept { return fields_; }
  /// Whether the field was written in quotes: tells an empty text from nothing.
  [[nodiscard]] bool IsQuoted(std::size_t field) const { return field < quoted_.size() && quoted_[field]; }
  /// 1-based number of the line on which the current record begins.
  [[nodiscard]] std::int64_t Line() const noexcept { return line_; }

 private:
  void SplitPlain(std::string_view line);
  void SplitQuoted();
  std::string_view TakeQuoted();
  void EndLine();

  std::string_view rest_;
  BlankLines blankLines_;
  std::int64_t nextLine_ = 1;
  std::int64_t line_ = 0;
  std::vector<std::string_view> fields_;
  std::vector<bool> quoted_;
  /// Fields with doubled quotes, undoubled; a deque because views into it must survive its growth.
  std::deque<std::string> unquoted_;
};

/// One field as CSV: in quotes when it is empty, begins or ends with a blank, begins with a byte-order mark, or holds a
/// comma, a quote or a line end.
[[nodiscard]] QString CsvField(const QString& text);

/// A result set as CSV: heading row of "name:type" (type one of integer, real, text, datetime), null as an empty
/// unquoted field, an empty text as "", a datetime as "YYYY-MM-DD", "YYYY-MM-DD HH:MM:SS" or with ".mmm" behind.
/// FromCsv reads exactly that back; a bad heading or value is Error(Refused) with line and column, as is text without a
/// heading. ToCsv refuses a set without columns, a real that is not finite and a datetime outside the years 1 to 9999.
[[nodiscard]] QByteArray ResultSetToCsv(const ResultSet& resultSet);
[[nodiscard]] ResultSet ResultSetFromCsv(const QByteArray& utf8);

}  // namespace holdwise
