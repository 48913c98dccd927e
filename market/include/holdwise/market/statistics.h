#pragma once
#include <cstdint>
#include <span>
#include <vector>

#include "holdwise/market/bar_reader.h"
#include "holdwise/packet/result_set.h"

/// Price statistics of one security as the data folder holds them. Pure and thread-safe.
namespace holdwise {

enum class PeriodType { Day = 0, Week = 1, Month = 2 };
inline constexpr PeriodType kPeriodTypes[] = {PeriodType::Day, PeriodType::Week, PeriodType::Month};

/// First and last trading date of the window, YYYYMMDD, both inside.
struct Window {
  int startDate = 0;
  int endDate = 0;
};

struct PeriodRow {
  int date = 0;              ///< date of the last bar in the period
  double close = 0;          ///< that bar's close
  double previousClose = 0;  ///< close of the previous period that has a bar; 0 when there is none
  double periodReturn = 0;   ///< close / previousClose - 1; 0 when there is no previous close
};

struct PeriodSeries {
  std::vector<PeriodRow> rows;  ///< oldest first; periods whose last bar lies inside the window
  double meanReturn = 0;        ///< arithmetic mean of the returns that have a previous close; 0 when none has
  double deviation = 0;         ///< sample standard deviation (n - 1) of the same returns; 0 with fewer than two
};

/// `bars` ascending by date, also from before the window. A week runs from Monday to Sunday, a month is a calendar
/// month; a week or month whose bars go past the window's end does not occur because later bars are not read.
[[nodiscard]] PeriodSeries ComputeSeries(std::span<const Bar> bars, PeriodType type, Window window);

/// An empty statistics table. With `hasCode` the first column is `SecuCode`, as in the file of the indices.
[[nodiscard]] ResultSet MakeStatisticsTable(bool hasCode);
/// Appends the rows of one series. `code` is used only by a table that has a code column.
void AppendSeries(ResultSet& table, const PeriodSeries& series, PeriodType type, Window window, int code = 0);
/// The three series of one security, one after the other. Returns the daily one.
PeriodSeries AppendStatistics(ResultSet& table, std::span<const Bar> bars, Window window, int code = 0);

}  // namespace holdwise
