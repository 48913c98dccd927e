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
#include "holdwise/packet/text_pieces.h"

namespace holdwise {

/// A line, several lines or a whole file that was not used, and why.
struct Rejection {
  QString file;
  std::int64_t line = 0;   ///< 1-based; 0 = the whole file
  QString reason;          ///< Chinese
  std::int64_t lines = 1;  ///< so many with the same reason, of which `line` is the first
  /// "file:line: reason", without the line for a whole file.
  [[nodiscard]] QString ToText() const;
};

/// A column that a table may have: the headings under which people know it, in lower case.
struct CsvColumn {
  const char* title;  ///< Chinese, for people
  std::vector<std::string_view> headings;
  bool isRequired = false;
  /// Whether two fields of a line say the same, where the table has the column under two headings; none: equal texts.
  bool (*agree)(std::string_view, std::string_view) = nullptr;
  /// Where two that differ are no contradiction: whether the one counts rather than the other. Of two as good the one
  /// under the earlier of the headings counts.
  bool (*isBetter)(std::string_view one, std::string_view other) = nullptr;
  const char* choice = nullptr;  ///< the same in Chinese, for people
};

/// A CSV file with one heading line, its columns in any order. Headings are compared without regard to ASCII case and
/// without a unit in brackets behind them; columns that are not asked for are ignored. A column may stand there twice,
/// under two of its headings: lines in which the fields disagree are rejected, unless the column says which counts.
/// Files of any size are read piece by piece. Not thread-safe.
class CsvTable {
 public:
  /// Reads the heading. Missing: Error(NotFound); unreadable: Error(Io); neither UTF-8 nor GB18030: Error(Corrupt);
  /// no heading line, a required column missing or a heading given twice: Error(Refused).
  /// @param pieceBytes as TextPieces: little for who wants to see the heading alone
  CsvTable(const QString& path, std::span<const CsvColumn> columns, std::int64_t pieceBytes = TextPieces::kPieceBytes);
  CsvTable(const CsvTable&) = delete;
  CsvTable& operator=(const CsvTable&) = delete;

  /// Moves to the next line; false at the end. A line with another number of fields than the heading or with characters
  /// behind a closing quote is rejected and passed over; what stands behind an unclosed quote is rejected whole (in
  /// very large files: for some megabytes). Error as the constructor where a later piece cannot be read.
  bool Next();
  [[nodiscard]] bool Has(std::size_t column) const { return firstPlaces_[column] >= 0; }
  /// Field of the current line; empty when the table has no such column.
  [[nodiscard]] std::string_view Field(std::size_t column) const;
  [[nodiscard]] const QString& Path() const { return path_; }
  [[nodiscard]] std::int64_t Line() const { return linesBefore_ + reader_->Line(); }
  /// What was taken for what, in Chinese: "日期=date，收盘=close；未用：turn".
  [[nodiscard]] QString Understood() const;

  /// Records that the current line is not used.
  void Reject(const QString& reason);
  /// Appends what has been rejected so far to `rejections`, and forgets it.
  void MoveRejectionsTo(std::vector<Rejection>& rejections);

 private:
  struct SecondPlace {
    std::size_t column;
    std::size_t place;
  };

  void MapHeadings();
  void SetBetterFirst();
  bool NextPiece();
  void ChooseFields();
  [[nodiscard]] std::optional<QString> Disagreement() const;

  QString path_;
  std::vector<CsvColumn> columns_;
  TextPieces pieces_;
  QByteArray text_;
  std::unique_ptr<CsvReader> reader_;
  std::int64_t linesBefore_ = 0;  // in the pieces before
  std::vector<std::string> headings_;
  std::vector<int> firstPlaces_;  // field index of each asked column, -1 = not there
  std::vector<int> places_;       // the same in the current line
  std::vector<SecondPlace> secondPlaces_;
  std::vector<Rejection> rejections_;
};

/// A field as a text.
[[nodiscard]] QString FieldText(std::string_view utf8);
/// 1, 1.0, true, Y, 是; letters in either case.
[[nodiscard]] bool SaysYes(std::string_view text) noexcept;
/// 0, 0.0, false, N, 否; letters in either case.
[[nodiscard]] bool SaysNo(std::string_view text) noexcept;
/// Nothing, or what programs write for it: nan, NaN, None, null, NaT, -, -- and the like.
[[nodiscard]] bool IsBlankCell(std::string_view text) noexcept;
/// Above zero, below 1e9.
[[nodiscard]] bool IsPrice(double value) noexcept;
/// A number in a table that must be a decimal, perhaps with an exponent: finite, not negative, below 1e9. Returns the
/// reason when it is not: "" is missing. `value` is set only on success.
[[nodiscard]] std::optional<QString> ReadPlainDecimal(std::string_view text, double& value);
/// The same, and above zero: a price.
[[nodiscard]] std::optional<QString> ReadPrice(std::string_view text, double& value);

}  // namespace holdwise
