#include "holdwise/market/risk_figures.h"

#include <cmath>

#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

/// What lies behind is rounding of the arithmetic, and the terminal shows the figures as they stand.
constexpr int kDigits = 12;

}  // namespace

IndexReturns ReturnsOf(const PeriodSeries& daily) {
  IndexReturns index;
  for (const PeriodRow& row : daily.rows) {
    if (row.previousClose <= 0) continue;
    index.dates.push_back(row.date);
    index.returns.push_back(row.periodReturn);
  }
  return index;
}

RiskFigures ComputeRisk(const PeriodSeries& daily, const IndexReturns& index, double riskFreePerDay) {
  // Means and centred sums are carried forward day by day (Welford): a security that never moves then has a deviation
  // of exactly 0, not one that is left over from rounding.
  long double meanMarket = 0;
  long double mean = 0;
  long double squareMarket = 0;
  long double square = 0;
  long double cross = 0;
  auto row = daily.rows.begin();
  for (std::size_t i = 0; i < index.dates.size(); ++i) {
    while (row != daily.rows.end() && row->date < index.dates[i]) ++row;
    const bool hasRow = row != daily.rows.end() && row->date == index.dates[i];
    const double dayReturn = hasRow ? row->periodReturn : 0;
    const long double stepMarket = index.returns[i] - meanMarket;
    const long double step = dayReturn - mean;
    const auto count = static_cast<long double>(i + 1);
    meanMarket += stepMarket / count;
    mean += step / count;
    squareMarket += stepMarket * (index.returns[i] - meanMarket);
    square += step * (dayReturn - mean);
    cross += stepMarket * (dayReturn - mean);
  }
  RiskFigures figures;
  const std::size_t days = index.dates.size();
  if (days == 0) return figures;
  // The divisors n - 1 of covariance and variance cancel out.
  const long double beta = squareMarket > 0 ? cross / squareMarket : 0;
  const long double deviation = days > 1 ? std::sqrt(square / static_cast<long double>(days - 1)) : 0;
  const long double excess = mean - riskFreePerDay;
  figures.beta = static_cast<double>(beta);
  figures.alpha = static_cast<double>(excess - beta * (meanMarket - riskFreePerDay));
  if (beta != 0) figures.treynor = static_cast<double>(excess / beta);
  if (deviation > 0) figures.sharpe = static_cast<double>(excess / deviation);
  return figures;
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
    table.SetReal(row, beta, RoundToDigits(security.figures.beta, kDigits));
    table.SetReal(row, alpha, RoundToDigits(security.figures.alpha, kDigits));
    table.SetReal(row, treynor, RoundToDigits(security.figures.treynor, kDigits));
    table.SetReal(row, sharpe, RoundToDigits(security.figures.sharpe, kDigits));
  }
  return table;
}

}  // namespace holdwise
