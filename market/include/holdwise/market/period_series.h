// SPDX-License-Identifier: MIT
#pragma once
#include <span>
#include <vector>

#include "holdwise/market/bar_reader.h"

/// The returns of one security by days, weeks or months. Pure and thread-safe.
namespace holdwise {

enum class PeriodType { Day = 0, Week = 1, Month = 2 };
inline constexpr PeriodType kPeriodTypes[] = {PeriodType::Day, PeriodType::Week, PeriodType::Month};

/// First and last trading date of the window, YYYYMMDD, both inside.
struct Window {
  int startDate = 0;
  int endDate = 0;
  bool operator==(const Window&) const = default;
};

struct PeriodRow {
  int period = 0;            ///< what is the same for all securities: the date, or the running number of week or month
  int date = 0;              ///< date of the last bar in the period
  double close = 0;          ///< that bar's close
  double previousClose = 0;  ///< close of the previous period in the series; 0 when there is none
  double periodReturn = 0;   ///< close / previousClose - 1; 0 when there is no previous close
};

/// Oldest first; periods whose last bar lies inside the window.
using PeriodSeries = std::vector<PeriodRow>;

/// `bars` ascending by date, also from before the window. A week runs from Monday to Sunday, a month is a calendar
/// month; a week or month whose bars go past the window's end does not occur because later bars are not read.
[[nodiscard]] PeriodSeries ComputeSeries(std::span<const Bar> bars, PeriodType type, Window window);

/// `bars` with one more on each of `tradingDates` (ascending) that comes after the first of them and has none: the
/// price stood still, at the close before. Of these the weeks and months of a stock are made, so that each of the
/// market's from its first bar on has a row. Both ascending by date; no bar gives none.
[[nodiscard]] std::vector<Bar> StandingBars(std::span<const Bar> bars, std::span<const int> tradingDates);

}  // namespace holdwise
