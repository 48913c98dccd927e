// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "holdwise/packet/error.h"

namespace holdwise {

enum class ColumnType : std::uint8_t {
  Integer = 0,   ///< signed 64-bit
  Real = 1,      ///< IEEE double
  Text = 2,      ///< UTF-8
  DateTime = 3,  ///< signed 64-bit milliseconds since 1970-01-01 00:00:00, no time zone
};

/// One value outside a result set. `isNull` wins over the other members.
struct Value {
  bool isNull = true;
  ColumnType type = ColumnType::Text;
  std::int64_t integer = 0;  ///< Integer and DateTime
  double real = 0;           ///< Real
  std::string text;          ///< Text

  /// Text form, as ResultSet::TextAt gives it; empty for null.
  [[nodiscard]] QString ToText() const;
};

/// A table of named, typed columns. A value type (copy = deep copy; move is cheap). Not synchronised: share it between
/// threads only as const. Row and column indices start at 0; an index outside the table throws Error(Refused).
/// Column names are matched without regard to ASCII case, as the database does.
class ResultSet {
 public:
  /// Adds a column; rows that already exist hold null there. A name that is empty or already used throws
  /// Error(Refused). Returns the column's index.
  int AddColumn(std::string_view name, ColumnType type);

  [[nodiscard]] int ColumnCount() const noexcept { return static_cast<int>(columns_.size()); }
  [[nodiscard]] int RowCount() const noexcept { return rowCount_; }
  [[nodiscard]] bool IsEmpty() const noexcept { return rowCount_ == 0; }
  [[nodiscard]] const std::string& ColumnName(int column) const;
  [[nodiscard]] ColumnType TypeOf(int column) const;
  /// Index of the named column, or -1.
  [[nodiscard]] int FindColumn(std::string_view name) const noexcept;
  /// Index of the named column; throws Error(NotFound) naming it when there is none.
  [[nodiscard]] int Column(std::string_view name) const;

  /// Appends one row of nulls and returns its index.
  int AppendRow();
  void Reserve(int rows);
  /// Setters: the column must be of that type, else Error(Refused). SetText wants valid UTF-8, else Error(Refused).
  void SetInteger(int row, int column, std::int64_t value);
  void SetReal(int row, int column, double value);
  void SetText(int row, int column, std::string_view utf8);
  void SetText(int row, int column, const QString& text);
  void SetText(int row, int column, const char* utf8) { SetText(row, column, std::string_view(utf8)); }
  void SetDateTime(int row, int column, std::int64_t milliseconds);
  void SetNull(int row, int column);

  [[nodiscard]] bool IsNull(int row, int column) const;
  /// Integer and DateTime columns as stored; a Real that is a whole number in range; a Text that the strict integer
  /// reading accepts. Anything else, null included, throws Error(Refused) naming column and row.
  [[nodiscard]] std::int64_t IntegerAt(int row, int column) const;
  /// Real and Integer columns, and Text that the strict number reading accepts. Otherwise Error(Refused).
  [[nodiscard]] double RealAt(int row, int column) const;
  /// Every type: Integer in decimal, Real as the shortest decimal text, DateTime as "YYYY-MM-DD" (midnight) or
  /// "YYYY-MM-DD HH:MM:SS"; null gives the empty text.
  [[nodiscard]] QString TextAt(int row, int column) const;
  [[nodiscard]] std::string Utf8At(int row, int column) const;
  [[nodiscard]] Value ValueAt(int row, int column) const;
  /// Whole numeric columns for tight loops; null rows hold 0. Valid until the next change. Wrong type: Error(Refused).
  [[nodiscard]] const std::vector<std::int64_t>& Integers(int column) const;
  [[nodiscard]] const std::vector<double>& Reals(int column) const;

  bool operator==(const ResultSet& other) const;

 private:
  friend class PacketDecoder;
  friend class PacketEncoder;
  struct ColumnData {
    std::string name;
    ColumnType type = ColumnType::Integer;
    std::vector<std::int64_t> integers;
    std::vector<double> reals;
    std::vector<std::string> texts;
    std::vector<bool> nulls;

    /// Runs the action on the one vector that the type uses.
    template <typename Action>
    void WithValues(Action action) {
      if (type == ColumnType::Text) {
        action(texts);
      } else if (type == ColumnType::Real) {
        action(reals);
      } else {
        action(integers);
      }
    }
  };
  void CheckColumn(int column) const;
  void CheckCell(int row, int column) const;
  /// The column of a cell; a cell without a value is refused.
  [[nodiscard]] const ColumnData& ColumnWithValue(int row, int column) const;
  ColumnData& Typed(int row, int column, ColumnType type);

  std::vector<ColumnData> columns_;
  int rowCount_ = 0;
};

}  // namespace holdwise
