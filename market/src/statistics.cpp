#include "holdwise/market/statistics.h"

#include <cmath>
#include <utility>

#include "holdwise/packet/dates.h"

namespace holdwise {
namespace {

int PeriodNumber(int date, PeriodType type) {
  switch (type) {
    case PeriodType::Week:
      return WeekNumber(date);
    case PeriodType::Month:
      return MonthNumber(date);
    case PeriodType::Day:
      break;
  }
  return date;
}

void SetFigures(PeriodSeries& series) {
  // Extended accumulators: the mean of daily returns is a small difference of large sums.
  long double sum = 0;
  int count = 0;
  for (const PeriodRow& row : series.rows) {
    if (row.previousClose <= 0) continue;
    sum += row.periodReturn;
    ++count;
  }
  if (count == 0) return;
  const long double mean = sum / count;
  series.meanReturn = static_cast<double>(mean);
  if (count < 2) return;
  long double squares = 0;
  for (const PeriodRow& row : series.rows) {
    if (row.previousClose > 0) squares += (row.periodReturn - mean) * (row.periodReturn - mean);
  }
  series.deviation = static_cast<double>(std::sqrt(squares / (count - 1)));
}

enum StatisticsColumn {
  kClosePrice,
  kType,
  kRowId,
  kReturn,
  kMeanReturn,
  kDate,
  kOldClosePrice,
  kDeviation,
  kIsLastDay,
  kStartDate,
  kEndDate
};

}  // namespace

PeriodSeries ComputeSeries(std::span<const Bar> bars, PeriodType type, Window window) {
  PeriodSeries series;
  double previousClose = 0;
  for (std::size_t i = 0; i < bars.size(); ++i) {
    const Bar& bar = bars[i];
    const bool isLastOfPeriod =
        i + 1 == bars.size() || PeriodNumber(bars[i + 1].date, type) != PeriodNumber(bar.date, type);
    if (!isLastOfPeriod) continue;
    if (bar.date >= window.startDate && bar.date <= window.endDate) {
      const double periodReturn = previousClose > 0 ? bar.close / previousClose - 1 : 0;
      series.rows.push_back({bar.date, bar.close, previousClose, periodReturn});
    }
    previousClose = bar.close;
  }
  SetFigures(series);
  return series;
}

ResultSet MakeStatisticsTable(bool hasCode) {
  ResultSet table;
  if (hasCode) table.AddColumn("SecuCode", ColumnType::Integer);
  table.AddColumn("closeprice", ColumnType::Real);
  table.AddColumn("hqtype", ColumnType::Integer);
  table.AddColumn("rowid", ColumnType::Integer);
  table.AddColumn("ggqjsyl", ColumnType::Real);
  table.AddColumn("pjsyl", ColumnType::Real);
  table.AddColumn("hqdate", ColumnType::Integer);
  table.AddColumn("oldcloseprice", ColumnType::Real);
  table.AddColumn("sylbzc", ColumnType::Real);
  table.AddColumn("islastday", ColumnType::Integer);
  table.AddColumn("startdate", ColumnType::Integer);
  table.AddColumn("enddate", ColumnType::Integer);
  return table;
}

void AppendSeries(ResultSet& table, const PeriodSeries& series, PeriodType type, Window window, int code) {
  const int shift = table.Column("closeprice");  // 1 behind a code column
  const int count = static_cast<int>(series.rows.size());
  for (int i = 0; i < count; ++i) {
    const PeriodRow& period = series.rows[static_cast<std::size_t>(i)];
    const int row = table.AppendRow();
    if (shift > 0) table.SetInteger(row, 0, code);
    table.SetReal(row, shift + kClosePrice, period.close);
    table.SetInteger(row, shift + kType, static_cast<int>(type));
    table.SetInteger(row, shift + kRowId, i + 1);
    table.SetReal(row, shift + kReturn, period.periodReturn);
    table.SetReal(row, shift + kMeanReturn, series.meanReturn);
    table.SetInteger(row, shift + kDate, period.date);
    table.SetReal(row, shift + kOldClosePrice, period.previousClose);
    table.SetReal(row, shift + kDeviation, series.deviation);
    table.SetInteger(row, shift + kIsLastDay, i + 1 == count ? 1 : 0);
    table.SetInteger(row, shift + kStartDate, window.startDate);
    table.SetInteger(row, shift + kEndDate, window.endDate);
  }
}

PeriodSeries AppendStatistics(ResultSet& table, std::span<const Bar> bars, Window window, int code) {
  PeriodSeries daily;
  for (const PeriodType type : kPeriodTypes) {
    PeriodSeries series = ComputeSeries(bars, type, window);
    AppendSeries(table, series, type, window, code);
    if (type == PeriodType::Day) daily = std::move(series);
  }
  return daily;
}

}  // namespace holdwise
