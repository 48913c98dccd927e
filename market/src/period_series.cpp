// SPDX-License-Identifier: MIT
#include "holdwise/market/period_series.h"

#include <algorithm>

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

}  // namespace

PeriodSeries ComputeSeries(std::span<const Bar> bars, PeriodType type, Window window) {
  PeriodSeries series;
  double previousClose = 0;
  for (std::size_t i = 0; i < bars.size(); ++i) {
    const Bar& bar = bars[i];
    const int period = PeriodNumber(bar.date, type);
    if (i + 1 < bars.size() && PeriodNumber(bars[i + 1].date, type) == period) continue;
    if (bar.date >= window.startDate && bar.date <= window.endDate) {
      const double periodReturn = previousClose > 0 ? bar.close / previousClose - 1 : 0;
      series.push_back({period, bar.date, bar.close, previousClose, periodReturn});
    }
    previousClose = bar.close;
  }
  return series;
}

std::vector<Bar> StandingBars(std::span<const Bar> bars, std::span<const int> tradingDates) {
  std::vector<Bar> standing;
  if (bars.empty()) return standing;
  auto date = std::upper_bound(tradingDates.begin(), tradingDates.end(), bars.front().date);
  standing.reserve(bars.size() + static_cast<std::size_t>(tradingDates.end() - date));
  for (const Bar& bar : bars) {
    for (; date != tradingDates.end() && *date < bar.date; ++date) standing.push_back({*date, standing.back().close});
    if (date != tradingDates.end() && *date == bar.date) ++date;
    standing.push_back(bar);
  }
  for (; date != tradingDates.end(); ++date) standing.push_back({*date, standing.back().close});
  return standing;
}

}  // namespace holdwise
