// SPDX-License-Identifier: MIT
#pragma once
#include <functional>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "bar_lines.h"

namespace holdwise {

/// Bars of many securities in one table or several (one a date, say): every line names its security. Their lines are
/// kept compactly until each security's bars are taken. Not thread-safe; Take may be called from several threads for
/// different securities.
class LongBars {
 public:
  /// @param numberOf code number of what a line's code means, 0 when it is none that is wanted
  LongBars(std::function<int(std::string_view)> numberOf, const BarRules& rules);

  /// Reads one more table. Errors as CsvTable's and ReadBars'; no column with the code: Error(Refused).
  void Read(const QString& path);
  /// After the last table: what was not used; of each code that is not wanted one line, the first.
  [[nodiscard]] std::vector<Rejection> TakeRejections();
  /// Those that have a line, ascending.
  [[nodiscard]] std::vector<int> Numbers() const;
  /// The bars of one of Numbers(), once: its lines are let go.
  [[nodiscard]] BarFile Take(int number, const BarRules& rules);
  /// As CsvTable::Understood, of each table.
  [[nodiscard]] const std::vector<std::pair<QString, QString>>& Understood() const { return understood_; }

 private:
  struct Unknown {
    QString path;
    std::int64_t line = 0;
    std::int64_t lines = 0;
  };

  BarLines* LinesOf(std::string_view code, const CsvTable& table, const QString& path);

  std::function<int(std::string_view)> numberOf_;
  BarRules rules_;
  std::vector<LineFile> files_;
  std::uint32_t linesBefore_ = 0;
  std::map<int, BarLines> lines_;
  std::unordered_map<std::string, BarLines*> byCode_;  // null = not wanted
  std::string lastCode_;
  BarLines* lastLines_ = nullptr;
  std::map<std::string, Unknown> unknown_;
  std::vector<Rejection> rejections_;
  std::vector<std::pair<QString, QString>> understood_;
};

}  // namespace holdwise
