// SPDX-License-Identifier: MIT
#pragma once
#include <span>
#include <vector>

#include "holdwise/market/csv_table.h"

namespace holdwise {

/// The close of one trading day: date YYYYMMDD, price in yuan or points.
struct Bar {
  int date = 0;
  double close = 0;
  bool operator==(const Bar&) const = default;
};

/// What a file of daily bars held.
struct BarFile {
  std::vector<Bar> bars;        ///< ascending, one a date
  std::vector<double> volumes;  ///< of each bar, in the file's unit; empty when the file has no such column
  std::vector<Rejection> rejections;
};

/// Reads one CSV file of daily bars: date and close are needed, open, high, low and volume are checked when they are
/// there. Lines in any order. Of two lines with one date the first in the file counts, the later is rejected. Lines
/// dated after `lastDate` (0 = no limit) are not read. A Saturday or Sunday is rejected, and so is a date inside
/// `tradingDates` (ascending; empty = no check) that is not one of them. Errors of the file as a whole: see CsvTable.
/// Thread-safe.
[[nodiscard]] BarFile ReadBars(const QString& path, std::span<const int> tradingDates = {}, int lastDate = 0);

}  // namespace holdwise
