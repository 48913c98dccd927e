// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <string_view>
#include <vector>

#include "holdings/csv_portfolios.h"
#include "holdwise/packet/csv_reader.h"

namespace holdwise {

/// Walks the records of a text that can be read. The text must outlive it.
class Records {
 public:
  /// Those that cannot be read are added to `problems`, which must outlive it too; none: nobody is told.
  Records(std::string_view utf8, char separator, std::vector<ImportProblem>* problems)
      : reader_(utf8, BlankLines::Skip, separator), problems_(problems) {}
  /// Moves to the next record; false at the end.
  bool Next();
  [[nodiscard]] int Line() const { return static_cast<int>(reader_.Line()); }
  [[nodiscard]] const std::vector<std::string_view>& Fields() const { return reader_.Fields(); }
  /// Nothing but separators, as spreadsheets write the empty rows below a table.
  [[nodiscard]] bool IsEmpty() const;

 private:
  CsvReader reader_;
  std::vector<ImportProblem>* problems_;
};

[[nodiscard]] QString TextOf(std::string_view field);
/// With every character shown that a report could not show.
void AddProblem(std::vector<ImportProblem>& problems, int line, const QString& reason);

}  // namespace holdwise
