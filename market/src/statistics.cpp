// SPDX-License-Identifier: MIT
#include "holdwise/market/statistics.h"

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

void AppendSeries(ResultSet& table, const SecurityStatistics& security, std::size_t type) {
  const auto& [series, figures] = security.ofTypes[type];
  const int count = static_cast<int>(series.size());
  for (int i = 0; i < count; ++i) {
    const PeriodRow& period = series[static_cast<std::size_t>(i)];
    const int row = table.AppendRow();
    table.SetInteger(row, kCode, security.code);
    table.SetReal(row, kClosePrice, period.close);
    table.SetInteger(row, kType, static_cast<int>(kPeriodTypes[type]));
    table.SetInteger(row, kRowId, i + 1);
    table.SetReal(row, kReturn, period.periodReturn);
    table.SetReal(row, kMeanReturn, figures.meanReturn);
    table.SetInteger(row, kDate, period.date);
    table.SetReal(row, kOldClosePrice, period.previousClose);
    table.SetReal(row, kDeviation, figures.deviation);
    table.SetInteger(row, kIsLastDay, i + 1 == count ? 1 : 0);
    table.SetInteger(row, kStartDate, security.window.startDate);
    table.SetInteger(row, kEndDate, security.window.endDate);
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

SecurityStatistics ComputeStatistics(const SecurityBars& security, const MarketReturns& market, Window window,
                                     double riskFreePerDay) {
  const std::vector<Bar> standing = StandingBars(security.bars, security.tradingDates);
  SecurityStatistics statistics{security.code, window, {}};
  for (std::size_t i = 0; i < std::size(kPeriodTypes); ++i) {
    const PeriodType type = kPeriodTypes[i];
    auto& [series, figures] = statistics.ofTypes[i];
    series = ComputeSeries(type == PeriodType::Day ? security.bars : standing, type, window);
    series.shrink_to_fit();  // those of thousands of securities are kept
    // A rate a day, whatever the period: the rows hold mean and deviation, which do not depend on it.
    figures = ComputeFigures(series, market[i], riskFreePerDay);
  }
  return statistics;
}

void AppendStatistics(ResultSet& table, const SecurityStatistics& security) {
  std::size_t rows = 0;
  for (const SeriesFigures& ofType : security.ofTypes) rows += ofType.series.size();
  table.Reserve(table.RowCount() + static_cast<int>(rows));
  for (std::size_t type = 0; type < security.ofTypes.size(); ++type) AppendSeries(table, security, type);
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
