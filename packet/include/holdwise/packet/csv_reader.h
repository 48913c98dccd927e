// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

/// CSV as people have it: separated by commas or another character, optional double quotes (doubled inside), LF or
/// CRLF. What ReadTextFile gives is text to be read here.
namespace holdwise {

/// What happens to a line with nothing but blanks.
enum class BlankLines {
  Skip,
  Keep,  ///< a record of one empty field
};

/// Walks the records of a UTF-8 text without copying plain fields. The text must outlive it.
class CsvReader {
 public:
  explicit CsvReader(std::string_view utf8, BlankLines blankLines = BlankLines::Skip, char separator = ',');
  /// Moves to the next record; false at the end. An unclosed quote, or characters between a closing quote and the next
  /// separator: Error(Corrupt), with Line() the line on which the bad record begins. The next call goes on behind the
  /// line with those characters; nothing is left behind an unclosed quote.
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
  char separator_;
  std::string_view blanks_;  ///< what may stand around a field's quotes
  std::int64_t nextLine_ = 1;
  std::int64_t line_ = 0;
  std::vector<std::string_view> fields_;
  std::vector<bool> quoted_;
  /// Fields with doubled quotes, undoubled; a deque because views into it must survive its growth.
  std::deque<std::string> unquoted_;
};

}  // namespace holdwise
