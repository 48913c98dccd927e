// SPDX-License-Identifier: MIT
#include "holdwise/market/statistics.h"

#include <utility>

#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

/// What lies behind is rounding of the arithmetic, and the terminal shows the figures as they stand.
constexpr int kRiskDigits = 12;

enum StatisticsColumn {
  kCode,
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

/// What all rows of one series share.
struct SeriesHead {
  int code = 0;
  PeriodType type = PeriodType::Day;
  Window window;
  Figures figures;
};

void AppendSeries(ResultSet& table, const PeriodSeries& series, const SeriesHead& head) {
  const int count = static_cast<int>(series.size());
  for (int i = 0; i < count; ++i) {
    const PeriodRow& period = series[static_cast<std::size_t>(i)];
    const int row = table.AppendRow();
    table.SetInteger(row, kCode, head.code);
    table.SetReal(row, kClosePrice, period.close);
    table.SetInteger(row, kType, static_cast<int>(head.type));
    table.SetInteger(row, kRowId, i + 1);
    table.SetReal(row, kReturn, period.periodReturn);
    table.SetReal(row, kMeanReturn, head.figures.meanReturn);
    table.SetInteger(row, kDate, period.date);
    table.SetReal(row, kOldClosePrice, period.previousClose);
    table.SetReal(row, kDeviation, head.figures.deviation);
    table.SetInteger(row, kIsLastDay, i + 1 == count ? 1 : 0);
    table.SetInteger(row, kStartDate, head.window.startDate);
    table.SetInteger(row, kEndDate, head.window.endDate);
  }
}

}  // namespace

ResultSet MakeStatisticsTable() {
  ResultSet table;
  table.AddColumn("SecuCode", ColumnType::Integer);
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

DailyFigures AppendStatistics(ResultSet& table, const SecurityBars& security, const MarketReturns& market,
                              Window window, double riskFreePerDay) {
  const std::vector<Bar> standing = StandingBars(security.bars, security.tradingDates);
  DailyFigures daily;
  for (std::size_t i = 0; i < std::size(kPeriodTypes); ++i) {
    const PeriodType type = kPeriodTypes[i];
    PeriodSeries series = ComputeSeries(type == PeriodType::Day ? security.bars : standing, type, window);
    // A rate a day, whatever the period: the rows hold mean and deviation, which do not depend on it.
    const Figures figures = ComputeFigures(series, market[i], riskFreePerDay);
    AppendSeries(table, series, {security.code, type, window, figures});
    if (type == PeriodType::Day) daily = {std::move(series), figures};
  }
  return daily;
}

ResultSet RiskTable(const std::vector<RiskRow>& rows) {
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  const int beta = table.AddColumn("beta", ColumnType::Real);
  const int alpha = table.AddColumn("alpha", ColumnType::Real);
  const int treynor = table.AddColumn("treynor", ColumnType::Real);
  const int sharpe = table.AddColumn("sharpe", ColumnType::Real);
  table.Reserve(static_cast<int>(rows.size()));
  for (const RiskRow& security : rows) {
    const int row = table.AppendRow();
    table.SetText(row, code, security.code);
    table.SetReal(row, beta, RoundToDigits(security.figures.beta, kRiskDigits));
    table.SetReal(row, alpha, RoundToDigits(security.figures.alpha, kRiskDigits));
    table.SetReal(row, treynor, RoundToDigits(security.figures.treynor, kRiskDigits));
    table.SetReal(row, sharpe, RoundToDigits(security.figures.sharpe, kRiskDigits));
  }
  return table;
}

}  // namespace holdwise
