// SPDX-License-Identifier: MIT
#include "holdwise/market/figures.h"

#include <algorithm>
#include <cmath>

namespace holdwise {
namespace {

bool HasReturn(const PeriodRow& row) {
  return row.previousClose > 0;
}

/// Means and centred sums, carried forward period by period (Welford): a security that never moves has a deviation of
/// exactly 0, not one that is left over from rounding.
struct Sums {
  long double count = 0;
  long double meanMarket = 0;
  long double mean = 0;
  long double squareMarket = 0;
  long double square = 0;
  long double cross = 0;

  void Add(double marketReturn, double ownReturn) {
    ++count;
    const long double stepMarket = marketReturn - meanMarket;
    const long double step = ownReturn - mean;
    const long double share = 1 / count;
    meanMarket += stepMarket * share;
    mean += step * share;
    squareMarket += stepMarket * (marketReturn - meanMarket);
    square += step * (ownReturn - mean);
    cross += stepMarket * (ownReturn - mean);
  }
};

}  // namespace

IndexReturns ReturnsOf(const PeriodSeries& series) {
  IndexReturns index;
  for (const PeriodRow& row : series) {
    if (!HasReturn(row)) continue;
    index.periods.push_back(row.period);
    index.returns.push_back(row.periodReturn);
  }
  return index;
}

MarketReturns ReturnsOf(std::span<const Bar> indexBars, Window window) {
  MarketReturns market;
  std::transform(std::begin(kPeriodTypes), std::end(kPeriodTypes), market.begin(),
                 [&](PeriodType type) { return ReturnsOf(ComputeSeries(indexBars, type, window)); });
  return market;
}

AlignedReturns AlignReturns(const PeriodSeries& series, const IndexReturns& index) {
  AlignedReturns aligned;
  auto row = std::find_if(series.begin(), series.end(), HasReturn);
  if (row == series.end()) return aligned;
  const auto first = std::lower_bound(index.periods.begin(), index.periods.end(), row->period);
  aligned.first = static_cast<int>(first - index.periods.begin());
  aligned.values.reserve(static_cast<std::size_t>(index.periods.end() - first));
  for (auto period = first; period != index.periods.end(); ++period) {
    while (row != series.end() && row->period < *period) ++row;
    const bool hasRow = row != series.end() && row->period == *period;
    aligned.values.push_back(hasRow ? row->periodReturn : 0);
    if (hasRow) ++aligned.traded;
  }
  return aligned;
}

Figures ComputeFigures(const PeriodSeries& series, const IndexReturns& index, double riskFree) {
  const std::vector<double> own = AlignReturns(series, index).values;
  return FiguresOf(own, std::span(index.returns).last(own.size()), riskFree);
}

Figures FiguresOf(std::span<const double> own, std::span<const double> market, double riskFree) {
  Sums sums;
  for (std::size_t i = 0; i < own.size(); ++i) sums.Add(market[i], own[i]);
  Figures figures;
  if (sums.count == 0) return figures;
  const long double variance = sums.count > 1 ? sums.square / (sums.count - 1) : 0;
  const long double deviation = std::sqrt(variance);
  const long double beta = sums.squareMarket > 0 ? sums.cross / sums.squareMarket : 0;
  const long double excess = sums.mean - riskFree;
  figures.count = static_cast<int>(sums.count);
  figures.meanReturn = static_cast<double>(sums.mean);
  figures.variance = static_cast<double>(variance);
  figures.deviation = static_cast<double>(deviation);
  figures.beta = static_cast<double>(beta);
  figures.alpha = static_cast<double>(excess - beta * (sums.meanMarket - riskFree));
  if (beta != 0) figures.treynor = static_cast<double>(excess / beta);
  if (deviation > 0) figures.sharpe = static_cast<double>(excess / deviation);
  return figures;
}

}  // namespace holdwise
